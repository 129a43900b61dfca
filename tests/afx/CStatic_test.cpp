#ifdef _WIN32

#include "tests/afx/ControlsDialog.h"

#include <gtest/gtest.h>

namespace {

class CStaticTest : public test::ControlsTest {};

TEST_F(CStaticTest, IsMadeOutsideTemplatesAsTheOtherControlsAre) {
    const CRect rect(0, 0, 50, 20);
    CStatic label;
    CButton push;
    CEdit edit;
    CComboBox choice;
    ASSERT_TRUE(label.Create(_T("label"), WS_VISIBLE, rect, &dialog));
    ASSERT_TRUE(push.Create(_T("push"), WS_VISIBLE | BS_PUSHBUTTON, rect, &dialog, 2001));
    ASSERT_TRUE(edit.Create(WS_VISIBLE | WS_BORDER, rect, &dialog, 2002));
    ASSERT_TRUE(choice.Create(WS_VISIBLE | CBS_DROPDOWNLIST, rect, &dialog, 2003));
    CFont font;
    ASSERT_TRUE(font.CreatePointFont(80, _T("Tahoma")));
    edit.SetFont(&font);
    EXPECT_EQ(edit.GetFont(), &font);
    EXPECT_EQ(dialog.GetDlgItem(2001), &push);
    CString text;
    label.GetWindowText(text);
    EXPECT_EQ(test::toUtf8(text), "label");
    choice.DestroyWindow();
    edit.DestroyWindow();
    push.DestroyWindow();
    label.DestroyWindow();
}

}  // namespace

#endif
