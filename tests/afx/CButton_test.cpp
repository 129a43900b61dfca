#ifdef _WIN32

#include "tests/afx/ControlsDialog.h"

#include <gtest/gtest.h>

namespace {

class CButtonTest : public test::ControlsTest {};

TEST_F(CButtonTest, CheckIsSetWithoutANotification) {
    CButton box;
    ASSERT_TRUE(box.SubclassDlgItem(IDC_CHECK, &dialog));
    EXPECT_EQ(box.GetCheck(), BST_CHECKED);
    box.SetCheck(BST_UNCHECKED);
    EXPECT_EQ(box.GetCheck(), BST_UNCHECKED);
    EXPECT_EQ(dialog.countOf("checked"), 0);
    box.UnsubclassWindow();
}

}  // namespace

#endif
