// Extensions of the framework: nothing beyond afxwin.h is in use.
#pragma once

#include "afxwin.h"
