// What the application object needs of the platform: one source in win32/, one in headless/.
#pragma once

#include "afx_app.h"

namespace afx {

/// Name of the executable without folder and extension.
CString programName();

/// Module of the program until AfxWinInit names another; null where there are none.
HINSTANCE programModule();

/// What DoMessageBox does unless it is overridden, and AfxMessageBox without an application.
int plainMessageBox(LPCTSTR text, UINT type, LPCTSTR title);

/// Shows the hourglass and remembers the cursor before it.
void beginHourglass();
/// Shows the hourglass where something else has changed the cursor.
void showHourglass();
/// Brings the cursor before the hourglass back.
void endHourglass();

}  // namespace afx
