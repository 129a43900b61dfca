// Common controls.
#pragma once

#include "afxwin.h"

#include "afx_headerctrl.h"
#include "afx_imagelist.h"
#include "afx_listctrl.h"
#include "afx_richeditctrl.h"
