// A dialog with one control of each kind, and a record of what its handlers were called for.
#pragma once

#ifdef _WIN32

#include "tests/afx/resource.h"
#include "tests/support/Input.h"
#include "tests/support/TestApp.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace test {

class ControlsDialog : public CDialogEx {
    DECLARE_DYNAMIC(ControlsDialog)

public:
    explicit ControlsDialog(CWnd* parent = nullptr) : CDialogEx(IDD_CONTROLS, parent) {}
    ~ControlsDialog() override { DestroyWindow(); }

    HWND control(int id) const { return ::GetDlgItem(m_hWnd, id); }
    std::string textOf(int id) const {
        CString text;
        GetDlgItem(id)->GetWindowText(text);
        return toUtf8(text);
    }
    int countOf(const std::string& call) const {
        int count = 0;
        for (const std::string& made : calls)
            count += made == call ? 1 : 0;
        return count;
    }
    /// Visible and active, the pointer out of the way.
    void showActive() {
        ShowWindow(SW_SHOW);
        SetForegroundWindow();
        pump();
        parkPointer();
        calls.clear();
    }

    BOOL OnInitDialog() override {
        calls.push_back("init");
        return CDialogEx::OnInitDialog();
    }

    std::vector<std::string> calls;
    long long first = 11;
    long long second = 22;
    CString text = _T("text");
    int number = 44;
    int check = 1;
    CListCtrl list;
    CStatic splitter;
    CComboBox combo;
    CButton button;
    bool throwOnPress = false;
    bool cancelOnPress = false;
    bool exchangeOnChange = false;

protected:
    void DoDataExchange(CDataExchange* pDX) override {
        CDialogEx::DoDataExchange(pDX);
        DDX_Control(pDX, IDC_LIST, list);
        DDX_Control(pDX, IDC_SPLITTER, splitter);
        DDX_Control(pDX, IDC_COMBO, combo);
        DDX_Control(pDX, IDC_BUTTON, button);
        DDX_Text(pDX, IDC_FIRST, first);
        DDX_Text(pDX, IDC_SECOND, second);
        DDX_Text(pDX, IDC_TEXT, text);
        DDX_Text(pDX, IDC_NUMBER, number);
        DDX_Check(pDX, IDC_CHECK, check);
    }

    void OnOK() override {
        calls.push_back("ok");
        CDialogEx::OnOK();
    }
    void OnCancel() override {
        calls.push_back("cancel");
        CDialogEx::OnCancel();
    }

    afx_msg void onFirstChanged() {
        calls.push_back("first");
        if (exchangeOnChange) UpdateData(TRUE);
    }
    afx_msg void onPressed() {
        calls.push_back("pressed");
        if (throwOnPress) AfxThrowMemoryException();
        if (cancelOnPress) EndDialog(77);
    }
    afx_msg void onPressedAgain() { calls.push_back("pressed again"); }
    afx_msg void onChecked() { calls.push_back("checked"); }
    afx_msg void onChosen() { calls.push_back("chosen"); }
    afx_msg void onShared() { calls.push_back("shared"); }
    afx_msg void onSharedLater() { calls.push_back("shared later"); }
    afx_msg void onOne() { calls.push_back("one"); }
    afx_msg void onUpdateOne(CCmdUI* ui) {
        calls.push_back("update one");
        ui->Enable(oneEnabled);
    }
    afx_msg void onItemChanged(NMHDR* header, LRESULT* result) {
        const auto* const change = reinterpret_cast<const NMLISTVIEW*>(header);
        changes.push_back(*change);
        *result = 0;
    }
    afx_msg void onColumnClick(NMHDR*, LRESULT* result) {
        calls.push_back("column");
        *result = 0;
    }
    afx_msg void OnSize(UINT type, int cx, int cy) {
        CDialogEx::OnSize(type, cx, cy);
        size = CSize(cx, cy);
    }
    afx_msg void OnContextMenu(CWnd* wnd, CPoint pos) {
        calls.push_back("context");
        menuWindow = wnd->m_hWnd;
        menuPoint = pos;
    }
    afx_msg void OnLButtonDown(UINT flags, CPoint point) {
        calls.push_back("down");
        down = point;
        SetCapture();
        CDialogEx::OnLButtonDown(flags, point);
    }
    afx_msg void OnLButtonUp(UINT flags, CPoint point) {
        calls.push_back("up");
        if (GetCapture() == this) ::ReleaseCapture();
        CDialogEx::OnLButtonUp(flags, point);
    }
    afx_msg void OnMouseMove(UINT flags, CPoint point) {
        moved = point;
        CDialogEx::OnMouseMove(flags, point);
    }
    afx_msg void OnLButtonDblClk(UINT, CPoint) { calls.push_back("double"); }
    afx_msg void OnCaptureChanged(CWnd* wnd) {
        calls.push_back("capture lost");
        CDialogEx::OnCaptureChanged(wnd);
    }
    afx_msg BOOL OnSetCursor(CWnd* wnd, UINT hitTest, UINT message) {
        calls.push_back("cursor");
        cursorWindow = wnd->m_hWnd;
        return CDialogEx::OnSetCursor(wnd, hitTest, message);
    }

    DECLARE_MESSAGE_MAP()

public:
    BOOL oneEnabled = TRUE;
    std::vector<NMLISTVIEW> changes;
    CSize size;
    CPoint down;
    CPoint moved;
    HWND menuWindow = nullptr;
    CPoint menuPoint;
    HWND cursorWindow = nullptr;
};

/// Tests of the controls in the dialog.
class ControlsTest : public testing::Test {
protected:
    void SetUp() override {
        ASSERT_TRUE(dialog.Create(IDD_CONTROLS));
        dialog.calls.clear();
    }

    TestApp app;
    ControlsDialog dialog;
};

}  // namespace test

#endif
