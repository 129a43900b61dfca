#ifdef _WIN32

#include "tests/afx/ControlsDialog.h"

#include <gtest/gtest.h>

namespace {

class CEditTest : public test::ControlsTest {};

TEST_F(CEditTest, SelectsLimitsAndRefuses) {
    CEdit edit;
    ASSERT_TRUE(edit.SubclassDlgItem(IDC_TEXT, &dialog));
    edit.SetWindowText(_T("abcdef"));
    edit.SetSel(1, 3);
    int first = 0;
    int end = 0;
    edit.GetSel(first, end);
    EXPECT_EQ(first, 1);
    EXPECT_EQ(end, 3);
    edit.SetSel(0, -1);
    edit.GetSel(first, end);
    EXPECT_EQ(end, 6);
    edit.LimitText(2);
    dialog.showActive();
    edit.SetFocus();
    edit.SetSel(0, -1);
    test::typeText(L"xyz");
    EXPECT_EQ(dialog.textOf(IDC_TEXT), "xy");
    EXPECT_TRUE(edit.SetReadOnly());
    test::typeText(L"q");
    EXPECT_EQ(dialog.textOf(IDC_TEXT), "xy");
    edit.UnsubclassWindow();
}

}  // namespace

#endif
