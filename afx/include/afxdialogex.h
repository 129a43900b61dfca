// Dialogs with a background of their own: nothing beyond afxwin.h so far.
#pragma once

#include "afxwin.h"
