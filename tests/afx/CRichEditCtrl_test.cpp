#ifdef _WIN32

#include "tests/afx/ControlsDialog.h"

#include <gtest/gtest.h>

namespace {

class CRichEditCtrlTest : public test::ControlsTest {};

TEST_F(CRichEditCtrlTest, ShowsSelectsAndCopies) {
    CRichEditCtrl rich;
    const CRect rect(0, 0, 200, 100);
    ASSERT_TRUE(rich.Create(WS_VISIBLE | ES_MULTILINE | ES_READONLY, rect, &dialog, 2004));
    rich.LimitText(0x7FFFFFFF);
    CString text;
    for (int i = 0; i < 10000; ++i)
        text += _T("line\r\n");
    rich.SetWindowText(text);
    rich.SetSel(1, 3);
    long first = 0;
    long end = 0;
    rich.GetSel(first, end);
    EXPECT_EQ(first, 1);
    EXPECT_EQ(end, 3);
    EXPECT_EQ(test::toUtf8(rich.GetSelText()), "in");
    rich.Copy();
    ASSERT_TRUE(::OpenClipboard(dialog.m_hWnd));
    const HANDLE data = ::GetClipboardData(CF_UNICODETEXT);
    ASSERT_NE(data, nullptr);
    EXPECT_EQ(test::toUtf8(static_cast<LPCTSTR>(::GlobalLock(data))), "in");
    ::GlobalUnlock(data);
    ::CloseClipboard();
    rich.SetSel(0, -1);
    EXPECT_GE(rich.GetSelText().GetLength(), 40000);
    EXPECT_TRUE(rich.SetReadOnly(FALSE));
    rich.DestroyWindow();
}

}  // namespace

#endif
