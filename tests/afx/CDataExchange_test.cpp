#ifdef _WIN32

#include "tests/afx/ControlsDialog.h"

#include <gtest/gtest.h>

#include <limits>

namespace {

using test::ControlsDialog;
using test::TestApp;

class DataExchange : public testing::Test {
protected:
    void SetUp() override {
        ASSERT_TRUE(dialog.Create(IDD_CONTROLS));
        dialog.calls.clear();
    }
    void setText(int id, LPCTSTR text) { ::SetWindowText(dialog.control(id), text); }
    long long parsed(LPCTSTR text) {
        setText(IDC_SECOND, text);
        EXPECT_TRUE(dialog.UpdateData(TRUE));
        return dialog.second;
    }
    int parsedInt(LPCTSTR text) {
        setText(IDC_NUMBER, text);
        EXPECT_TRUE(dialog.UpdateData(TRUE));
        return dialog.number;
    }

    TestApp app;
    ControlsDialog dialog;
};

TEST_F(DataExchange, BringsMembersToTheControls) {
    dialog.first = -9223372036854775807LL - 1;
    dialog.second = 9223372036854775807LL;
    dialog.text = _T("Coh\x00E4renz");
    dialog.number = -17;
    dialog.check = 0;
    EXPECT_TRUE(dialog.UpdateData(FALSE));
    EXPECT_EQ(dialog.textOf(IDC_FIRST), "-9223372036854775808");
    EXPECT_EQ(dialog.textOf(IDC_SECOND), "9223372036854775807");
    EXPECT_EQ(dialog.textOf(IDC_TEXT), "Coh\xC3\xA4renz");
    EXPECT_EQ(dialog.textOf(IDC_NUMBER), "-17");
    EXPECT_EQ(::SendMessage(dialog.control(IDC_CHECK), BM_GETCHECK, 0, 0), 0);
}

TEST_F(DataExchange, BringsControlsToTheMembers) {
    setText(IDC_FIRST, _T("-5"));
    setText(IDC_TEXT, _T("other"));
    ::SendMessage(dialog.control(IDC_CHECK), BM_SETCHECK, BST_UNCHECKED, 0);
    EXPECT_TRUE(dialog.UpdateData(TRUE));
    EXPECT_EQ(dialog.first, -5);
    EXPECT_EQ(test::toUtf8(dialog.text), "other");
    EXPECT_EQ(dialog.check, 0);
}

TEST_F(DataExchange, TextsOfAnyLengthPass) {
    const CString text(_T('x'), 20000);
    dialog.text = text;
    EXPECT_TRUE(dialog.UpdateData(FALSE));
    dialog.text.Empty();
    EXPECT_TRUE(dialog.UpdateData(TRUE));
    EXPECT_TRUE(dialog.text == text);
}

TEST_F(DataExchange, BlanksASignAndDigitsMakeANumber) {
    EXPECT_EQ(parsed(_T("42")), 42);
    EXPECT_EQ(parsed(_T("  -42")), -42);
    EXPECT_EQ(parsed(_T("+7")), 7);
    EXPECT_EQ(parsed(_T("007")), 7);
    EXPECT_EQ(parsed(_T("9223372036854775807")), 9223372036854775807LL);
    EXPECT_EQ(parsed(_T("-9223372036854775808")), -9223372036854775807LL - 1);
    EXPECT_TRUE(app.messages().empty());
}

TEST_F(DataExchange, WhatFollowsTheDigitsDoesNotCount) {
    EXPECT_EQ(parsed(_T("12abc")), 12);
    EXPECT_EQ(parsed(_T("3.9")), 3);
    EXPECT_EQ(parsed(_T("4 5")), 4);
}

TEST_F(DataExchange, NumbersBeyondTheRangeGiveTheNearest) {
    EXPECT_EQ(parsed(_T("123456789012345678901234567890")), 9223372036854775807LL);
    EXPECT_EQ(parsed(_T("-123456789012345678901234567890")), -9223372036854775807LL - 1);
    EXPECT_EQ(parsed(_T("9223372036854775808")), 9223372036854775807LL);
    EXPECT_EQ(parsed(_T("-9223372036854775809")), -9223372036854775807LL - 1);
    EXPECT_EQ(parsedInt(_T("2147483648")), std::numeric_limits<int>::max());
    EXPECT_EQ(parsedInt(_T("-2147483649")), std::numeric_limits<int>::min());
    EXPECT_EQ(parsedInt(_T("123456789012345678901234567890")), std::numeric_limits<int>::max());
    EXPECT_EQ(parsedInt(_T("-8")), -8);
}

class NoNumber : public DataExchange, public testing::WithParamInterface<LPCTSTR> {};

TEST_P(NoNumber, TellsTheUserAndEndsTheExchange) {
    dialog.showActive();
    setText(IDC_FIRST, _T("1"));
    setText(IDC_SECOND, GetParam());
    setText(IDC_TEXT, _T("behind it"));
    EXPECT_FALSE(dialog.UpdateData(TRUE));
    EXPECT_EQ(app.messages(), std::vector<std::string>{"Enter an integer."});
    EXPECT_EQ(dialog.first, 1) << "listed before the failure";
    EXPECT_EQ(dialog.second, 22);
    EXPECT_EQ(test::toUtf8(dialog.text), "text") << "listed behind the failure";
    EXPECT_EQ(::GetFocus(), dialog.control(IDC_SECOND));
    DWORD begin = 1;
    DWORD end = 0;
    ::SendMessage(dialog.control(IDC_SECOND), EM_GETSEL, reinterpret_cast<WPARAM>(&begin),
                  reinterpret_cast<LPARAM>(&end));
    EXPECT_EQ(begin, 0u);
    EXPECT_EQ(end, static_cast<DWORD>(CString(GetParam()).GetLength()));
}

INSTANTIATE_TEST_SUITE_P(Texts, NoNumber,
                         testing::Values(_T(""), _T("abc"), _T("-"), _T("+"), _T("--1"), _T("   "),
                                         _T(".5"), _T("- 1")));

TEST_F(DataExchange, NotificationsAreDroppedDuringTheExchange) {
    dialog.exchangeOnChange = true;
    dialog.first = 99;
    dialog.second = 98;
    EXPECT_TRUE(dialog.UpdateData(FALSE));
    EXPECT_EQ(dialog.textOf(IDC_FIRST), "99");
    EXPECT_EQ(dialog.countOf("first"), 0);
    EXPECT_EQ(dialog.second, 98);
}

TEST_F(DataExchange, NotificationsComeAgainAfterTheExchange) {
    dialog.UpdateData(FALSE);
    setText(IDC_FIRST, _T("5"));
    EXPECT_EQ(dialog.countOf("first"), 1);
    setText(IDC_SECOND, _T("bad"));
    EXPECT_FALSE(dialog.UpdateData(TRUE));
    setText(IDC_FIRST, _T("6"));
    EXPECT_EQ(dialog.countOf("first"), 2);
}

TEST_F(DataExchange, ListNotificationsAreDroppedToo) {
    class Filling : public ControlsDialog {
    public:
        bool fill = false;

    protected:
        void DoDataExchange(CDataExchange* pDX) override {
            ControlsDialog::DoDataExchange(pDX);
            if (fill) list.SetItemState(0, LVIS_SELECTED, LVIS_SELECTED);
        }
    };
    Filling filling;
    ASSERT_TRUE(filling.Create(IDD_CONTROLS));
    filling.list.InsertColumn(0, _T("column"));
    filling.list.InsertItem(0, _T("item"));
    filling.changes.clear();
    filling.fill = true;
    filling.UpdateData(FALSE);
    EXPECT_TRUE(filling.changes.empty());
    filling.list.SetItemState(0, 0, LVIS_SELECTED);
    EXPECT_FALSE(filling.changes.empty());
}

TEST_F(DataExchange, EqualTextIsNotWrittenAgain) {
    const HWND edit = dialog.control(IDC_FIRST);
    setText(IDC_FIRST, _T("11"));
    EXPECT_EQ(dialog.countOf("first"), 1) << "the control itself does not compare";
    ::SendMessage(edit, EM_SETSEL, 1, 1);
    dialog.UpdateData(FALSE);
    DWORD caret = 0;
    ::SendMessage(edit, EM_GETSEL, reinterpret_cast<WPARAM>(&caret), 0);
    EXPECT_EQ(caret, 1u) << "the caret stays";
}

TEST_F(DataExchange, ControlsAreAttachedOnce) {
    const HWND before = dialog.list.m_hWnd;
    EXPECT_TRUE(dialog.UpdateData(TRUE));
    EXPECT_TRUE(dialog.UpdateData(FALSE));
    EXPECT_EQ(dialog.list.m_hWnd, before);
}

TEST_F(DataExchange, CheckBoxesHaveThreeStates) {
    const HWND box = dialog.control(IDC_CHECK);
    ::SendMessage(box, BM_SETSTYLE, BS_AUTO3STATE, 0);
    for (const int state : {2, 1, 0}) {
        dialog.check = state;
        dialog.UpdateData(FALSE);
        EXPECT_EQ(::SendMessage(box, BM_GETCHECK, 0, 0), state);
        dialog.check = -1;
        dialog.UpdateData(TRUE);
        EXPECT_EQ(dialog.check, state);
    }
    dialog.check = 3;
    dialog.UpdateData(FALSE);
    EXPECT_EQ(::SendMessage(box, BM_GETCHECK, 0, 0), 0);
    EXPECT_EQ(dialog.countOf("checked"), 0);
}

TEST_F(DataExchange, ClickOnACheckBoxNotifies) {
    dialog.showActive();
    test::click(dialog.control(IDC_CHECK));
    EXPECT_EQ(dialog.countOf("checked"), 1);
    dialog.UpdateData(TRUE);
    EXPECT_EQ(dialog.check, 0);
    test::parkPointer();
}

TEST_F(DataExchange, TypingRunsTheHandlerAtEachKey) {
    dialog.showActive();
    ::SetFocus(dialog.control(IDC_FIRST));
    ::SendMessage(dialog.control(IDC_FIRST), EM_SETSEL, 0, -1);
    dialog.exchangeOnChange = true;
    test::typeText(L"35");
    EXPECT_EQ(dialog.countOf("first"), 2);
    EXPECT_EQ(dialog.first, 35);
    test::pressKey(VK_BACK);
    test::pressKey(VK_BACK);
    EXPECT_EQ(app.messages(), std::vector<std::string>{"Enter an integer."});
    EXPECT_EQ(dialog.first, 3);
}

TEST_F(DataExchange, MissingControlThrows) {
    CDataExchange exchange(&dialog, FALSE);
    try {
        exchange.PrepareCtrl(4711);
        FAIL();
    } catch (CNotSupportedException* e) {
        e->Delete();
    }
}

TEST_F(DataExchange, OtherExceptionsAreReportedAndEndTheExchange) {
    class Failing : public ControlsDialog {
    public:
        bool fail = false;

    protected:
        void DoDataExchange(CDataExchange* pDX) override {
            ControlsDialog::DoDataExchange(pDX);
            if (fail) AfxThrowMemoryException();
        }
    };
    Failing failing;
    ASSERT_TRUE(failing.Create(IDD_CONTROLS));
    failing.fail = true;
    EXPECT_FALSE(failing.UpdateData(TRUE));
    EXPECT_EQ(app.messages().size(), 1u);
}

}  // namespace

#endif
