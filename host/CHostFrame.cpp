#include "host/CHostFrame.h"

#include "host/layout.h"
#include "host/resource.h"

#include <algorithm>
#include <utility>

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
ON_UPDATE_COMMAND_UI(ID_HOST_SLICE_BACK, &CHostFrame::OnUpdateSlice)
ON_UPDATE_COMMAND_UI(ID_HOST_SLICE_FORWARD, &CHostFrame::OnUpdateSlice)
ON_UPDATE_COMMAND_UI(ID_HOST_SLICE_FAR_BACK, &CHostFrame::OnUpdateSlice)
ON_UPDATE_COMMAND_UI(ID_HOST_SLICE_FAR_FORWARD, &CHostFrame::OnUpdateSlice)
ON_UPDATE_COMMAND_UI(ID_HOST_SLICE_FIRST, &CHostFrame::OnUpdateSlice)
ON_UPDATE_COMMAND_UI(ID_HOST_SLICE_LAST, &CHostFrame::OnUpdateSlice)
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
    if (opened == Opened::nothing) return;
    refreshManager(opened);
    showGroup(opened == Opened::intoGroup);
}

// An open manager lists what there was before, until it is shown again. The waveform manager makes
// another class current when it lists them, so the class of the new dataset is set again.
void CHostFrame::refreshManager(Opened opened) {
    if (opened == Opened::intoPackage) {
        CDlgSnsCohManager* const manager = m_package.m_dlgSnsCohManager;
        if (manager == nullptr || !::IsWindowVisible(manager->GetSafeHwnd())) return;
        const int current = m_package.getCurntCohDataSetID();
        if (current < 0) m_package.getTrlCohDataAny();
        m_package.showDlgSnsCohManager(this);
        if (current >= 0) m_package.m_curntCohDataSetID = current;
    } else {
        CDlgGroupTrlCxcDataManager* const manager = m_group.m_dlgGroupCxcManager;
        if (manager == nullptr || !::IsWindowVisible(manager->GetSafeHwnd())) return;
        m_group.showDlgGroupCxcManager(this);
    }
    SetForegroundWindow();
}

void CHostFrame::showGroup(bool group) {
    m_showsGroup = group;
    lookForChanges();
}

// The current dataset of what is shown. A package may have none in its current class: a manager
// makes the classes current in turn; then the first it has is shown. Its own operations for that
// would change the current class, which a view must not do.
CSnsCohDatazq* CHostFrame::shownDataset() {
    if (m_showsGroup) return m_group.getTrlCohDataAny();
    CSnsCohDatazq* const slots[] = {m_package.m_cohActive, m_package.m_cohControl,
                                    m_package.m_cohActCtl};
    const int current = m_package.getCurntCohDataSetID();
    if (current >= 0 && current < 3 && slots[current] != nullptr) return slots[current];
    for (CSnsCohDatazq* const dataset : slots) {
        if (dataset != nullptr) return dataset;
    }
    return nullptr;
}

// A view paints: the library, or Windows, has asked for that, and what is shown may have changed
// meanwhile.
const ShownSlice& CHostFrame::current() {
    lookForChanges();
    return m_shown;
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
    CString title = _T("CxC Host");
    CString text = _T("  No dataset");
    if (m_shown.fromDataset) {
        title = m_shown.name + _T(" - CxC Host");
        text = _T("  ") + m_shown.name;
    }
    if (!m_shown.empty()) {
        CString facts;
        facts.Format(
            _T("     slice %I64d of %I64d     %.2f s     %d x %d sensors     ")
            _T("range %.3g to %.3g"),
            m_shown.slice + 1, m_shown.slices, m_shown.latency, m_shown.rows, m_shown.cols,
            m_shown.least, m_shown.most);
        text += facts;
    }
    m_status.SetWindowText(text);
    SetWindowText(title);
}

void CHostFrame::step(__int64 slices) {
    CSnsCohDatazq* const dataset = shownDataset();
    if (dataset == nullptr || m_shown.empty()) return;
    const __int64 slice = stepped(m_shown.slice, slices, m_shown.slices);
    dataset->setSelect(slice, slice);
    lookForChanges();
}

void CHostFrame::OnSliceBack() {
    step(-1);
}

void CHostFrame::OnSliceForward() {
    step(1);
}

void CHostFrame::OnSliceFarBack() {
    step(-farStep);
}

void CHostFrame::OnSliceFarForward() {
    step(farStep);
}

void CHostFrame::OnSliceFirst() {
    step(-m_shown.slices);
}

void CHostFrame::OnSliceLast() {
    step(m_shown.slices);
}

void CHostFrame::OnUpdateSlice(CCmdUI* item) {
    item->Enable(m_shown.slices > 1);
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
    const PaneLayout panes = paneLayout(cx, height);
    m_matrix.MoveWindow(panes.matrix);
    m_pairs.MoveWindow(panes.pairs);
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
