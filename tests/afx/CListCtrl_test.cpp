#ifdef _WIN32

#include "tests/afx/ControlsDialog.h"

#include <gtest/gtest.h>

namespace {

using test::ControlsDialog;
using test::TestApp;

// A list that deals with clicks on its columns, and with no double click.
class OwnList : public CListCtrl {
public:
    int columns = 0;
    int column = -1;
    int doubles = 0;

protected:
    afx_msg void onColumnClick(NMHDR* header, LRESULT* result) {
        ++columns;
        column = reinterpret_cast<const NMLISTVIEW*>(header)->iSubItem;
        *result = 0;
    }
    afx_msg void OnLButtonDblClk(UINT, CPoint) { ++doubles; }
    DECLARE_MESSAGE_MAP()
};

BEGIN_MESSAGE_MAP(OwnList, CListCtrl)
ON_NOTIFY_REFLECT(LVN_COLUMNCLICK, &OwnList::onColumnClick)
ON_WM_LBUTTONDBLCLK()
END_MESSAGE_MAP()

class CListCtrlTest : public testing::Test {
protected:
    void SetUp() override {
        ASSERT_TRUE(dialog.Create(IDD_CONTROLS));
        for (int i = 0; i < 3; ++i) {
            CString title;
            title.Format(_T("column %d"), i);
            EXPECT_EQ(list.InsertColumn(i, title, LVCFMT_LEFT, 60 + i, i + 1), i);
        }
        dialog.changes.clear();
    }
    void fill(int count) {
        for (int i = 0; i < count; ++i) {
            CString text;
            text.Format(_T("item %d"), i);
            EXPECT_EQ(list.InsertItem(i, text), i);
        }
    }
    void clickItem(int item) {
        CRect rect;
        list.GetItemRect(item, rect, LVIR_LABEL);
        test::click(list.m_hWnd, CPoint(rect.left + 5, rect.CenterPoint().y));
    }
    std::string itemText(int item, int sub) { return test::toUtf8(list.GetItemText(item, sub)); }

    TestApp app;
    ControlsDialog dialog;
    CListCtrl& list = dialog.list;
};

TEST_F(CListCtrlTest, ColumnsAreInsertedAndDeleted) {
    ASSERT_NE(list.GetHeaderCtrl(), nullptr);
    EXPECT_TRUE(list.GetHeaderCtrl()->IsKindOf(RUNTIME_CLASS(CHeaderCtrl)));
    EXPECT_EQ(list.GetHeaderCtrl()->GetItemCount(), 3);
    EXPECT_EQ(list.GetColumnWidth(1), 61);
    LVCOLUMN column = {};
    TCHAR title[32] = {};
    column.mask = LVCF_TEXT | LVCF_SUBITEM | LVCF_FMT;
    column.pszText = title;
    column.cchTextMax = 32;
    ASSERT_TRUE(list.GetColumn(2, &column));
    EXPECT_EQ(test::toUtf8(title), "column 2");
    EXPECT_EQ(column.iSubItem, 3);
    EXPECT_TRUE(list.SetColumnWidth(1, 90));
    EXPECT_EQ(list.GetColumnWidth(1), 90);
    for (int i = 2; i >= 0; --i)
        EXPECT_TRUE(list.DeleteColumn(i));
    EXPECT_EQ(list.GetHeaderCtrl()->GetItemCount(), 0);
    EXPECT_FALSE(list.DeleteColumn(0));
}

TEST_F(CListCtrlTest, ItemsHaveTextsAndImages) {
    EXPECT_EQ(list.InsertItem(5, _T("appended"), 1), 0);
    EXPECT_EQ(list.InsertItem(0, _T("first")), 0);
    EXPECT_EQ(list.InsertItem(LVIF_TEXT | LVIF_PARAM, 1, _T("between"), 0, 0, 0, 17), 1);
    EXPECT_EQ(list.GetItemCount(), 3);
    EXPECT_EQ(itemText(2, 0), "appended");
    EXPECT_TRUE(list.SetItemText(1, 1, _T("one")));
    EXPECT_TRUE(list.SetItem(1, 2, LVIF_TEXT, _T("two"), 0, 0, 0, 0));
    EXPECT_EQ(itemText(1, 1), "one");
    EXPECT_EQ(itemText(1, 2), "two");
    LVITEM item = {};
    item.mask = LVIF_PARAM | LVIF_IMAGE;
    item.iItem = 1;
    ASSERT_TRUE(list.GetItem(&item));
    EXPECT_EQ(item.lParam, 17);
    EXPECT_TRUE(list.DeleteItem(0));
    EXPECT_EQ(itemText(0, 1), "one");
}

TEST_F(CListCtrlTest, MissingItemsAndColumnsAreFailures) {
    fill(1);
    EXPECT_FALSE(list.SetItemText(4, 0, _T("x")));
    EXPECT_FALSE(list.SetItem(4, 0, LVIF_TEXT, _T("x"), 0, 0, 0, 0));
    EXPECT_FALSE(list.SetItem(0, 3, LVIF_TEXT, _T("x"), 0, 0, 0, 0));
    EXPECT_EQ(list.GetItemState(4, LVIS_SELECTED), 0u);
    EXPECT_EQ(itemText(4, 0), "");
    EXPECT_FALSE(list.DeleteItem(4));
}

TEST_F(CListCtrlTest, LongTextsComeBackWhole) {
    fill(1);
    const CString text(_T('y'), 1500);
    EXPECT_TRUE(list.SetItemText(0, 1, text));
    EXPECT_TRUE(list.GetItemText(0, 1) == text);
}

TEST_F(CListCtrlTest, DeletingAllIsASuccessForAnEmptyListToo) {
    EXPECT_TRUE(list.DeleteAllItems());
    fill(3);
    list.SetItemState(1, LVIS_SELECTED, LVIS_SELECTED);
    EXPECT_TRUE(list.DeleteAllItems());
    EXPECT_EQ(list.GetItemCount(), 0);
}

TEST_F(CListCtrlTest, StateIsReadAndSetWithinTheMask) {
    fill(3);
    EXPECT_TRUE(list.SetItemState(1, LVIS_SELECTED | LVIS_FOCUSED, LVIS_SELECTED));
    EXPECT_EQ(list.GetItemState(1, LVIS_SELECTED | LVIS_FOCUSED), static_cast<UINT>(LVIS_SELECTED));
    EXPECT_EQ(list.GetNextItem(-1, LVNI_SELECTED), 1);
    EXPECT_EQ(list.GetNextItem(1, LVNI_SELECTED), -1);
    ASSERT_FALSE(dialog.changes.empty());
    EXPECT_EQ(dialog.changes.back().iItem, 1);
}

TEST_F(CListCtrlTest, ClickSelectsAndTellsTheDialog) {
    fill(5);
    dialog.showActive();
    dialog.changes.clear();
    clickItem(1);
    ASSERT_FALSE(dialog.changes.empty());
    EXPECT_EQ(dialog.changes.back().iItem, 1);
    EXPECT_EQ(list.GetItemState(1, LVIS_SELECTED), static_cast<UINT>(LVIS_SELECTED));
    dialog.changes.clear();
    clickItem(3);
    ASSERT_FALSE(dialog.changes.empty());
    bool deselected = false;
    for (const NMLISTVIEW& change : dialog.changes)
        deselected = deselected || (change.iItem == 1 && (change.uNewState & LVIS_SELECTED) == 0);
    EXPECT_TRUE(deselected) << "the handler hears of the row that lost the selection too";
    EXPECT_EQ(dialog.changes.back().iItem, 3);
    test::parkPointer();
}

TEST_F(CListCtrlTest, RightClickReachesTheDialogAsContextMenu) {
    fill(2);
    dialog.showActive();
    CRect rect;
    list.GetItemRect(1, rect, LVIR_LABEL);
    const CPoint place(rect.left + 5, rect.CenterPoint().y);
    test::rightClick(list.m_hWnd, place);
    ASSERT_EQ(dialog.countOf("context"), 1);
    EXPECT_EQ(dialog.menuWindow, list.m_hWnd);
    CPoint screen = place;
    list.ClientToScreen(&screen);
    EXPECT_EQ(dialog.menuPoint, screen);
    test::parkPointer();
}

TEST_F(CListCtrlTest, ColumnClickReachesTheDialogOfAPlainList) {
    dialog.showActive();
    CRect column;
    list.GetHeaderCtrl()->GetItemRect(1, column);
    test::click(list.GetHeaderCtrl()->m_hWnd, column.CenterPoint());
    EXPECT_EQ(dialog.countOf("column"), 1);
    test::parkPointer();
}

class OwnListDialog : public CDialog {
public:
    ~OwnListDialog() override { DestroyWindow(); }
    OwnList list;
    int columns = 0;
    int contexts = 0;

protected:
    void DoDataExchange(CDataExchange* pDX) override {
        CDialog::DoDataExchange(pDX);
        DDX_Control(pDX, IDC_LIST, list);
    }
    afx_msg void onColumnClick(NMHDR*, LRESULT*) { ++columns; }
    DECLARE_MESSAGE_MAP()
};

BEGIN_MESSAGE_MAP(OwnListDialog, CDialog)
ON_NOTIFY(LVN_COLUMNCLICK, IDC_LIST, &OwnListDialog::onColumnClick)
END_MESSAGE_MAP()

TEST(CListCtrlReflection, ReflectedColumnClickNeverReachesTheDialog) {
    TestApp app;
    OwnListDialog dialog;
    ASSERT_TRUE(dialog.Create(IDD_CONTROLS));
    dialog.list.InsertColumn(0, _T("a"), LVCFMT_LEFT, 60);
    dialog.list.InsertColumn(1, _T("b"), LVCFMT_LEFT, 60);
    dialog.ShowWindow(SW_SHOW);
    dialog.SetForegroundWindow();
    test::pump();
    CRect column;
    dialog.list.GetHeaderCtrl()->GetItemRect(1, column);
    test::click(dialog.list.GetHeaderCtrl()->m_hWnd, column.CenterPoint());
    EXPECT_EQ(dialog.list.columns, 1);
    EXPECT_EQ(dialog.list.column, 1);
    EXPECT_EQ(dialog.columns, 0);
    test::parkPointer();
}

TEST(CListCtrlReflection, EmptyHandlerSwallowsTheDoubleClick) {
    TestApp app;
    OwnListDialog dialog;
    ASSERT_TRUE(dialog.Create(IDD_CONTROLS));
    dialog.list.InsertColumn(0, _T("a"), LVCFMT_LEFT, 60);
    dialog.list.InsertItem(0, _T("item"));
    EXPECT_EQ(dialog.list.SendMessage(WM_LBUTTONDBLCLK, MK_LBUTTON, MAKELPARAM(5, 30)), 0);
    EXPECT_EQ(dialog.list.doubles, 1);
    EXPECT_EQ(dialog.list.GetItemState(0, LVIS_SELECTED), 0u);
}

TEST_F(CListCtrlTest, ExtendedStylesAreReplacedWhole) {
    list.SetExtendedStyle(105);
    EXPECT_EQ(list.GetExtendedStyle(), 105u);
    EXPECT_EQ(list.SetExtendedStyle(72), 105u);
    EXPECT_EQ(list.GetExtendedStyle(), 72u);
}

TEST_F(CListCtrlTest, ImageListsBelongToTheControl) {
    auto* const images = new CImageList;
    ASSERT_TRUE(images->Create(16, 16, ILC_COLOR16, 0, 1));
    const HIMAGELIST handle = images->m_hImageList;
    EXPECT_EQ(list.SetImageList(images, LVSIL_SMALL), nullptr);
    EXPECT_EQ(list.GetImageList(LVSIL_SMALL), images);
    dialog.DestroyWindow();
    EXPECT_EQ(::ImageList_GetImageCount(handle), 0) << "destroyed with the control";
    images->Detach();
    delete images;
}

TEST_F(CListCtrlTest, ReplacedImageListComesBack) {
    CImageList first;
    CImageList second;
    ASSERT_TRUE(first.Create(32, 32, ILC_COLOR16, 0, 1));
    ASSERT_TRUE(second.Create(32, 32, ILC_COLOR16, 0, 1));
    list.SetImageList(&first, LVSIL_NORMAL);
    EXPECT_EQ(list.SetImageList(&second, LVSIL_NORMAL), &first);
    EXPECT_EQ(list.SetImageList(nullptr, LVSIL_NORMAL), &second);
}

TEST_F(CListCtrlTest, TenThousandRowsAreFilledWithoutRedraw) {
    list.SetRedraw(FALSE);
    list.SetItemCount(10000);
    for (int i = 0; i < 10000; ++i)
        list.InsertItem(i, _T("row"));
    list.SetRedraw(TRUE);
    EXPECT_EQ(list.GetItemCount(), 10000);
    EXPECT_TRUE(list.EnsureVisible(9999, FALSE));
}

TEST(CListCtrlCreate, MakesItsOwnWindow) {
    TestApp app;
    CWnd parent;
    ASSERT_TRUE(parent.CreateEx(0, AfxRegisterWndClass(0), _T(""), WS_POPUP, 0, 0, 99, 99, nullptr,
                                nullptr));
    CListCtrl made;
    const CRect rect(0, 0, 90, 90);
    ASSERT_TRUE(made.Create(LVS_REPORT | WS_VISIBLE, rect, &parent, 5));
    EXPECT_EQ(made.GetItemCount(), 0);
}

}  // namespace

#endif
