// Application and windows.
#pragma once

#include "afx.h"
#include "afx_app.h"
#include "afx_module.h"
#include "afx_user.h"
#include "afx_wnd.h"
#include "afxcoll.h"

#include "afx_button.h"
#include "afx_clientdc.h"
#include "afx_cmdui.h"
#include "afx_combobox.h"
#include "afx_dialog.h"
#include "afx_edit.h"
#include "afx_framewnd.h"
#include "afx_menu.h"
#include "afx_paintdc.h"
#include "afx_static.h"
#include "afxdd_.h"
#include "afxmsg_.h"
