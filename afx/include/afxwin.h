// Application and windows.
#pragma once

#include "afx.h"
#include "afx_app.h"
#include "afx_module.h"
#include "afx_user.h"
#include "afx_wnd.h"
#include "afxcoll.h"
