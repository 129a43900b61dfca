#ifdef _WIN32

#include "tests/afx/ControlsDialog.h"

namespace test {

IMPLEMENT_DYNAMIC(ControlsDialog, CDialogEx)

BEGIN_MESSAGE_MAP(ControlsDialog, CDialogEx)
ON_WM_SIZE()
ON_WM_CONTEXTMENU()
ON_NOTIFY(LVN_ITEMCHANGED, IDC_LIST, &ControlsDialog::onItemChanged)
ON_NOTIFY(LVN_COLUMNCLICK, IDC_LIST, &ControlsDialog::onColumnClick)
ON_BN_CLICKED(IDC_BUTTON, &ControlsDialog::onPressed)
ON_BN_CLICKED(IDC_BUTTON, &ControlsDialog::onPressedAgain)
ON_BN_CLICKED(IDC_CHECK, &ControlsDialog::onChecked)
ON_WM_LBUTTONDOWN()
ON_WM_LBUTTONUP()
ON_WM_LBUTTONDBLCLK()
ON_WM_MOUSEMOVE()
ON_WM_CAPTURECHANGED()
ON_WM_SETCURSOR()
ON_CBN_SELCHANGE(IDC_COMBO, &ControlsDialog::onChosen)
ON_EN_CHANGE(IDC_FIRST, &ControlsDialog::onFirstChanged)
ON_COMMAND(ID_SHARED, &ControlsDialog::onShared)
ON_COMMAND(ID_SHARED, &ControlsDialog::onSharedLater)
ON_COMMAND(ID_ONE, &ControlsDialog::onOne)
ON_UPDATE_COMMAND_UI(ID_ONE, &ControlsDialog::onUpdateOne)
END_MESSAGE_MAP()

}  // namespace test

#endif
