#include "host/CHostFrame.h"

#include "host/resource.h"

#include <algorithm>

IMPLEMENT_DYNAMIC(CHostFrame, CFrameWnd)

BEGIN_MESSAGE_MAP(CHostFrame, CFrameWnd)
ON_WM_SIZE()
ON_WM_ERASEBKGND()
ON_WM_DROPFILES()
ON_COMMAND(ID_HOST_OPEN, &CHostFrame::OnOpen)
ON_COMMAND(ID_HOST_EXIT, &CHostFrame::OnExit)
ON_COMMAND(ID_HOST_WAVEFORM_MANAGER, &CHostFrame::OnWaveformManager)
ON_COMMAND(ID_HOST_GROUP_MANAGER, &CHostFrame::OnGroupManager)
ON_COMMAND(ID_HOST_SHOW_PACKAGE, &CHostFrame::OnShowPackage)
ON_COMMAND(ID_HOST_SHOW_GROUP, &CHostFrame::OnShowGroup)
ON_UPDATE_COMMAND_UI(ID_HOST_SHOW_PACKAGE, &CHostFrame::OnUpdateShowPackage)
ON_UPDATE_COMMAND_UI(ID_HOST_SHOW_GROUP, &CHostFrame::OnUpdateShowGroup)
ON_COMMAND(ID_HOST_SLICE_BACK, &CHostFrame::OnSliceBack)
ON_COMMAND(ID_HOST_SLICE_FORWARD, &CHostFrame::OnSliceForward)
ON_COMMAND(ID_HOST_SLICE_FAR_BACK, &CHostFrame::OnSliceFarBack)
ON_COMMAND(ID_HOST_SLICE_FAR_FORWARD, &CHostFrame::OnSliceFarForward)
ON_COMMAND(ID_HOST_SLICE_FIRST, &CHostFrame::OnSliceFirst)
ON_COMMAND(ID_HOST_SLICE_LAST, &CHostFrame::OnSliceLast)
END_MESSAGE_MAP()

namespace {

constexpr int statusHeight = 22;  // pixels
constexpr int farStep = 10;       // slices

// A callback of the library has no place for an object.
CHostFrame* theFrame = nullptr;

void onManagerCommand(int) {
    if (theFrame != nullptr) theFrame->lookForChanges();
}

}  // namespace

CHostFrame::CHostFrame() {
    theFrame = this;
}

// Viewers leave before their windows go; a group does not release its datasets by itself.
CHostFrame::~CHostFrame() {
    theFrame = nullptr;
    m_package.viewerRemove(nullptr, true);
    m_group.viewerRemove(nullptr, true);
    m_group.cleanSnsCohPkg();
}

BOOL CHostFrame::create() {
    if (!LoadFrame(IDR_HOST, WS_OVERLAPPEDWINDOW)) return FALSE;
    SetWindowText(_T("CxC Host"));
    m_font.CreatePointFont(80, _T("MS Shell Dlg"));
    m_matrix.create(*this, 1);
    m_pairs.create(*this, 2);
    m_status.Create(_T(""), WS_CHILD | WS_VISIBLE | SS_LEFT | SS_CENTERIMAGE, CRect(0, 0, 1, 1),
                    this, 3);
    m_status.SetFont(&m_font);
    for (CWnd* const view : {static_cast<CWnd*>(&m_matrix), static_cast<CWnd*>(&m_pairs)}) {
        m_package.viewerAdd(view);
        m_group.viewerAdd(view);
        view->DragAcceptFiles();
    }
    DragAcceptFiles();
    SetWindowPos(nullptr, 0, 0, 1060, 620, SWP_NOMOVE | SWP_NOZORDER);
    showStatus();
    return TRUE;
}

void CHostFrame::openFile(const CString& path) {
    const Opened opened = openRecord(path, m_package, m_group);
    if (opened != Opened::nothing) showGroup(opened == Opened::intoGroup);
}

void CHostFrame::showGroup(bool group) {
    m_showsGroup = group;
    lookForChanges();
}

// The current dataset of what is shown. A package may have none in its current class: a manager
// makes the classes current in turn; then the first it has is shown.
CSnsCohDatazq* CHostFrame::shownDataset() {
    if (m_showsGroup) {
        const int current = m_group.getCurntCohDataSetID();
        const bool there = current >= 0 && current < m_group.getTotalCohDataset();
        return there ? m_group.getCoherenceData(current) : nullptr;
    }
    CSnsCohDatazq* const slots[] = {m_package.m_cohActive, m_package.m_cohControl,
                                    m_package.m_cohActCtl};
    const int current = m_package.getCurntCohDataSetID();
    if (current >= 0 && current < 3 && slots[current] != nullptr) return slots[current];
    for (CSnsCohDatazq* const dataset : slots) {
        if (dataset != nullptr) return dataset;
    }
    return nullptr;
}

void CHostFrame::lookForChanges() {
    ShownSlice fresh = readSlice(shownDataset());
    if (fresh.fingerprint() == m_shown.fingerprint()) return;
    m_shown = std::move(fresh);
    repaint();
}

void CHostFrame::repaint() {
    if (m_showsGroup)
        m_group.viewerInvalidate(false, nullptr, true);
    else
        m_package.viewerInvalidate(false, nullptr, true);
    showStatus();
}

void CHostFrame::showStatus() {
    CString text = _T("  No dataset");
    if (!m_shown.empty()) {
        text.Format(_T("  %s     %d x %d sensors     slice %I64d of %I64d     latency %.3f"),
                    m_shown.name.GetString(), m_shown.rows, m_shown.cols, m_shown.slice + 1,
                    m_shown.slices, m_shown.latency);
    }
    m_status.SetWindowText(text);
}

void CHostFrame::stepTo(__int64 slice) {
    CSnsCohDatazq* const dataset = shownDataset();
    if (dataset == nullptr) return;
    dataset->setSelect(slice, slice);  // clamped into the slices
    lookForChanges();
}

void CHostFrame::OnSliceBack() {
    stepTo(m_shown.slice - 1);
}

void CHostFrame::OnSliceForward() {
    stepTo(m_shown.slice + 1);
}

void CHostFrame::OnSliceFarBack() {
    stepTo(std::max<__int64>(m_shown.slice - farStep, 0));
}

void CHostFrame::OnSliceFarForward() {
    stepTo(m_shown.slice + farStep);
}

void CHostFrame::OnSliceFirst() {
    stepTo(0);
}

void CHostFrame::OnSliceLast() {
    stepTo(m_shown.slices - 1);
}

void CHostFrame::OnOpen() {
    CFileDialog dialog(TRUE, nullptr, nullptr, OFN_HIDEREADONLY | OFN_FILEMUSTEXIST,
                       _T("Coherence (*.cxc;*.cxcpkg;*.cxcgrp)|*.cxc;*.cxcpkg;*.cxcgrp|")
                       _T("All files (*.*)|*.*||"),
                       this);
    if (dialog.DoModal() == IDOK) openFile(dialog.GetPathName());
}

void CHostFrame::OnExit() {
    PostMessage(WM_CLOSE);
}

void CHostFrame::OnWaveformManager() {
    m_package.showDlgSnsCohManager(this);
}

void CHostFrame::OnGroupManager() {
    m_group.showDlgGroupCxcManager(this);
    m_group.m_dlgGroupCxcManager->m_hostNotify = onManagerCommand;
}

void CHostFrame::OnShowPackage() {
    showGroup(false);
}

void CHostFrame::OnShowGroup() {
    showGroup(true);
}

void CHostFrame::OnUpdateShowPackage(CCmdUI* item) {
    item->SetRadio(!m_showsGroup);
}

void CHostFrame::OnUpdateShowGroup(CCmdUI* item) {
    item->SetRadio(m_showsGroup);
}

void CHostFrame::OnSize(UINT type, int cx, int cy) {
    CFrameWnd::OnSize(type, cx, cy);
    if (m_status.m_hWnd == nullptr) return;
    const int height = std::max(cy - statusHeight, 0);
    const int left = cx * 11 / 20;  // the matrix has its colour bar
    m_matrix.MoveWindow(0, 0, left, height);
    m_pairs.MoveWindow(left, 0, cx - left, height);
    m_status.MoveWindow(0, height, cx, statusHeight);
}

// The children cover everything.
BOOL CHostFrame::OnEraseBkgnd(CDC*) {
    return TRUE;
}

void CHostFrame::OnDropFiles(HDROP files) {
    const UINT count = ::DragQueryFile(files, 0xFFFFFFFF, nullptr, 0);
    for (UINT i = 0; i < count; ++i) {
        CString path;
        const UINT length = ::DragQueryFile(files, i, nullptr, 0);
        ::DragQueryFile(files, i, path.GetBuffer(static_cast<int>(length)), length + 1);
        path.ReleaseBuffer();
        openFile(path);
    }
    ::DragFinish(files);
}
