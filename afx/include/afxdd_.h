// Dialog data exchange (Windows): called in DoDataExchange, in the order of the exchange.
//
// Differences from MFC:
//  1. Only texts, integers, check boxes and controls; no validation functions.
//  2. An integer beyond the member's range gives the nearest value, none wraps around. As with
//     the C library's scanf, what follows the digits is not looked at ("12abc" is 12).
#pragma once

#include "afx_dataexchange.h"

#ifdef _WIN32

/// Attaches the control to its window, once, in either direction. Throws CNotSupportedException.
AFX_API void AFXAPI DDX_Control(CDataExchange* pDX, int nIDC, CWnd& rControl);

/// To the control: written only when the text differs, so that no equal text raises EN_CHANGE.
/// From the control: text that is no number leaves the value, shows "Enter an integer." and fails.
AFX_API void AFXAPI DDX_Text(CDataExchange* pDX, int nIDC, int& value);
AFX_API void AFXAPI DDX_Text(CDataExchange* pDX, int nIDC, LONGLONG& value);
AFX_API void AFXAPI DDX_Text(CDataExchange* pDX, int nIDC, CString& value);

/// 0 unchecked, 1 checked, 2 indeterminate; any other value is shown as unchecked.
AFX_API void AFXAPI DDX_Check(CDataExchange* pDX, int nIDC, int& value);

#endif
