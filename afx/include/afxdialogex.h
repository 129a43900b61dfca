// Dialogs with a background of their own.
#pragma once

#include "afx_dialogex.h"
#include "afxwin.h"
