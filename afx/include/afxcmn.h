// Common controls: only the system's own declarations so far.
#pragma once

#include "afxwin.h"
