#ifdef _WIN32

#include "tests/afx/ControlsDialog.h"

#include <gtest/gtest.h>

namespace {

class CComboBoxTest : public test::ControlsTest {};

TEST_F(CComboBoxTest, HoldsStringsAndAChoice) {
    CComboBox& combo = dialog.combo;
    EXPECT_EQ(combo.GetCount(), 0);
    EXPECT_EQ(combo.GetCurSel(), CB_ERR);
    EXPECT_EQ(combo.AddString(_T("A-C")), 0);
    EXPECT_EQ(combo.AddString(_T("A+C")), 1);
    EXPECT_EQ(combo.SetCurSel(1), 1);
    EXPECT_EQ(combo.GetCurSel(), 1);
    EXPECT_EQ(combo.SetCurSel(2), CB_ERR);
    EXPECT_EQ(combo.SetCurSel(-1), CB_ERR);
    EXPECT_EQ(combo.GetCurSel(), CB_ERR);
    CString text;
    combo.GetLBText(0, text);
    EXPECT_EQ(test::toUtf8(text), "A-C");
    try {
        combo.GetLBText(2, text);
        FAIL();
    } catch (CInvalidArgException* e) {
        e->Delete();
    }
    combo.ResetContent();
    EXPECT_EQ(combo.GetCount(), 0);
    EXPECT_EQ(dialog.countOf("chosen"), 0) << "nothing that a program does is a choice";
}

TEST_F(CComboBoxTest, ChoiceOfTheUserIsTold) {
    dialog.combo.AddString(_T("one"));
    dialog.combo.AddString(_T("two"));
    dialog.combo.SetCurSel(0);
    dialog.showActive();
    dialog.combo.SetFocus();
    test::pressKey(VK_DOWN);
    EXPECT_EQ(dialog.countOf("chosen"), 1);
    EXPECT_EQ(dialog.combo.GetCurSel(), 1);
}

}  // namespace

#endif
