// The system's dialogs: files and colours.
#pragma once

#include "afx_colordialog.h"
#include "afx_commondialog.h"
#include "afx_filedialog.h"
#include "afxwin.h"
