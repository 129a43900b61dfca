#include "cxcui/CDlgGroupTrlCxcDataManager.h"

#include "cxcpkg/CGroupMeegCxcFacezq.h"
#include "cxcpkg/dataset_owner.h"
#include "cxcui/child_placement.h"
#include "res/resource.h"

#include <vector>

namespace {

// The information window of all group managers, apart from that of the waveform managers.
CRichInfozq statisticsWindow;

}  // namespace

IMPLEMENT_DYNAMIC(CDlgGroupTrlCxcDataManager, CDialogEx)

BEGIN_MESSAGE_MAP(CDlgGroupTrlCxcDataManager, CDialogEx)
ON_WM_SIZE()
ON_WM_CONTEXTMENU()
ON_COMMAND(ID_GROUP_SHOW, &CDlgGroupTrlCxcDataManager::OnToggleShow)
ON_NOTIFY(LVN_ITEMCHANGED, IDC_GROUP_DATASETS, &CDlgGroupTrlCxcDataManager::OnChooseActive)
ON_COMMAND(ID_GROUP_ACTIVE_COLOR, &CDlgGroupTrlCxcDataManager::OnSetActiveColor)
ON_COMMAND(ID_GROUP_SUPPRESSIVE_COLOR, &CDlgGroupTrlCxcDataManager::OnSetSuppressiveColor)
ON_COMMAND(ID_GROUP_BASIC_COLOR, &CDlgGroupTrlCxcDataManager::OnSetBasicColor)
ON_COMMAND(ID_GROUP_DELETE, &CDlgGroupTrlCxcDataManager::OnDelete)
ON_WM_MOUSEMOVE()
ON_BN_CLICKED(IDC_GROUP_HIDE_ALL, &CDlgGroupTrlCxcDataManager::OnHideAll)
ON_BN_CLICKED(IDC_GROUP_SHOW_ALL, &CDlgGroupTrlCxcDataManager::OnShowAll)
ON_BN_CLICKED(IDC_GROUP_SELECT, &CDlgGroupTrlCxcDataManager::OnReadControls)
ON_COMMAND(ID_GROUP_EXIT, &CDlgGroupTrlCxcDataManager::OnExit)
ON_COMMAND(ID_GROUP_SELECT_HIDE, &CDlgGroupTrlCxcDataManager::OnNothing)
ON_COMMAND(ID_GROUP_MAKE_ACTIVE, &CDlgGroupTrlCxcDataManager::OnMakeActive)
ON_BN_CLICKED(IDC_GROUP_APPLY, &CDlgGroupTrlCxcDataManager::OnApply)
ON_WM_TIMER()
ON_COMMAND(ID_GROUP_CHANGE_NAME, &CDlgGroupTrlCxcDataManager::OnNothing)
ON_COMMAND(ID_GROUP_COMPUTING_INFO, &CDlgGroupTrlCxcDataManager::OnReadControls)
ON_COMMAND(ID_GROUP_NOTE, &CDlgGroupTrlCxcDataManager::OnReadControls)
ON_COMMAND(ID_GROUP_EXCIT_OR_AVERAGE_FRAMES, &CDlgGroupTrlCxcDataManager::OnHostCommand)
ON_COMMAND(ID_GROUP_INHIBIT_OR_BEST_FRAME, &CDlgGroupTrlCxcDataManager::OnHostCommand)
ON_COMMAND(ID_GROUP_ZERO_DIAGONAL, &CDlgGroupTrlCxcDataManager::OnHostCommand)
ON_BN_CLICKED(IDC_GROUP_STATISTICS, &CDlgGroupTrlCxcDataManager::OnStatistics)
ON_COMMAND(ID_GROUP_SMALL_WORLD_THRESHOLD, &CDlgGroupTrlCxcDataManager::OnSmallWorldThreshold)
ON_COMMAND(ID_GROUP_SMALL_WORLD_DIRECTION, &CDlgGroupTrlCxcDataManager::OnSmallWorldDirection)
ON_COMMAND(ID_GROUP_SMALL_WORLD_PRECISE, &CDlgGroupTrlCxcDataManager::OnSmallWorldPrecise)
ON_COMMAND(ID_GROUP_AVERAGE_ALL, &CDlgGroupTrlCxcDataManager::OnAverageAll)
ON_UPDATE_COMMAND_UI(ID_GROUP_AVERAGE_ALL, &CDlgGroupTrlCxcDataManager::OnUpdateAverageAll)
ON_COMMAND(ID_GROUP_SAVE, &CDlgGroupTrlCxcDataManager::OnSaveData)
ON_COMMAND(ID_GROUP_OPEN, &CDlgGroupTrlCxcDataManager::OnOpenData)
ON_COMMAND(ID_GROUP_EXPORT, &CDlgGroupTrlCxcDataManager::OnExportData)
ON_COMMAND(ID_GROUP_SUMMARIZE_ALL, &CDlgGroupTrlCxcDataManager::OnSummarizeAll)
END_MESSAGE_MAP()

CDlgGroupTrlCxcDataManager::CDlgGroupTrlCxcDataManager() = default;

// While the controls' objects still exist: a dying window sends them messages.
CDlgGroupTrlCxcDataManager::~CDlgGroupTrlCxcDataManager() {
    DestroyWindow();
}

void CDlgGroupTrlCxcDataManager::DoDataExchange(CDataExchange* exchange) {
    CDialogEx::DoDataExchange(exchange);
    DDX_Control(exchange, IDC_GROUP_SWATCH, m_colorSwatch);
    DDX_Control(exchange, IDC_GROUP_APPLY, m_buttonApply);
    DDX_Control(exchange, IDC_GROUP_DATASETS, m_list);
    DDX_Check(exchange, IDC_GROUP_ALL, m_all);
    DDX_Check(exchange, IDC_GROUP_SELECT, m_select);
}

BOOL CDlgGroupTrlCxcDataManager::OnInitDialog() {
    CDialogEx::OnInitDialog();
    m_list.m_owner = this;
    m_list.ModifyStyle(LVS_SMALLICON, LVS_REPORT | LVS_ALIGNLEFT);
    m_list.SetExtendedStyle(LVS_EX_TWOCLICKACTIVATE | LVS_EX_FULLROWSELECT | LVS_EX_TRACKSELECT);
    m_list.setUp();
    UpdateData(FALSE);
    return TRUE;
}

void CDlgGroupTrlCxcDataManager::show(CGroupMeegCxcFacezq& group, CWnd* parent) {
    m_group = &group;
    m_list.m_group = &group;
    m_parent = parent;
    ShowWindow(SW_SHOW);
    const cxc::Life::Witness witness(m_life);
    refresh();
    if (!witness.ended()) SetForegroundWindow();
}

void CDlgGroupTrlCxcDataManager::forgetGroup() {
    m_group = nullptr;
    m_list.m_group = nullptr;
}

int CDlgGroupTrlCxcDataManager::refresh() {
    if (m_group == nullptr) {
        UpdateData(FALSE);
        return 1;
    }
    const cxc::Life::Witness witness(m_life);
    refillList();
    if (witness.ended()) return 0;
    const CSnsCohDatazq* const active = activeDataset();
    if (active == nullptr) {
        // Deliberately the caption keeps its text.
        m_title = _T("No File");
        UpdateData(FALSE);
        return 0;
    }
    m_title.Format(_T("Active:%s"), active->m_cxcName.GetString());
    SetWindowText(m_title);
    paintSwatch(active->m_basicColor);
    checkSelectHide(active->m_tscsInfo);
    UpdateData(FALSE);
    return 1;
}

void CDlgGroupTrlCxcDataManager::refillList() {
    m_list.m_group = m_group;
    m_list.refill();
}

// Painted once: deliberately nothing paints it again when it was covered.
void CDlgGroupTrlCxcDataManager::paintSwatch(COLORREF color) {
    if (m_colorSwatch.m_hWnd == nullptr) return;
    CDC* const dc = m_colorSwatch.GetDC();
    if (dc == nullptr) return;
    CRect area;
    m_colorSwatch.GetClientRect(area);
    dc->FillSolidRect(area, color);
    m_colorSwatch.ReleaseDC(dc);
}

// Deliberately in the popup "Edit", although the item lies in "View": no mark is seen.
void CDlgGroupTrlCxcDataManager::checkSelectHide(bool shown) {
    constexpr int edit = 1;
    CMenu* const menu = GetMenu();
    CMenu* const popup = menu == nullptr ? nullptr : menu->GetSubMenu(edit);
    if (popup == nullptr) return;
    popup->CheckMenuItem(ID_GROUP_SELECT_HIDE,
                         static_cast<UINT>(MF_BYCOMMAND | (shown ? MF_CHECKED : MF_UNCHECKED)));
}

void CDlgGroupTrlCxcDataManager::notifyHost() {
    if (m_hostNotify != nullptr) m_hostNotify(0);
}

void CDlgGroupTrlCxcDataManager::refreshAndNotify() {
    const cxc::Life::Witness witness(m_life);
    refresh();
    if (!witness.ended()) notifyHost();
}

void CDlgGroupTrlCxcDataManager::notifyAndRefresh() {
    const cxc::Life::Witness witness(m_life);
    notifyHost();
    if (!witness.ended()) refresh();
}

int CDlgGroupTrlCxcDataManager::datasetCount() const {
    return m_group == nullptr ? 0 : static_cast<int>(m_group->getTotalCohDataset());
}

CSnsCohDatazq* CDlgGroupTrlCxcDataManager::datasetAt(int index) const {
    return m_group == nullptr ? nullptr : cxc::datasetAt(m_group->m_cohDatasets, index);
}

CSnsCohDatazq* CDlgGroupTrlCxcDataManager::activeDataset() const {
    return m_group == nullptr ? nullptr : datasetAt(m_group->m_curntCohDataSetID);
}

// The first dataset whose stored row it is; -1 for none.
int CDlgGroupTrlCxcDataManager::indexOfRow(int row) const {
    for (int i = 0; row >= 0 && i < datasetCount(); ++i) {
        const CSnsCohDatazq* const dataset = datasetAt(i);
        if (dataset != nullptr && dataset->m_headerInt9 == row) return i;
    }
    return -1;
}

void CDlgGroupTrlCxcDataManager::OnChooseActive(NMHDR* notification, LRESULT* result) {
    *result = 0;
    if (m_list.isFilling()) return;
    UpdateData(TRUE);
    if (m_group == nullptr) return;
    const int index = indexOfRow(reinterpret_cast<const NMLISTVIEW*>(notification)->iItem);
    if (index < 0) {
        m_list.SetExtendedStyle(LVS_EX_ONECLICKACTIVATE | LVS_EX_TRACKSELECT);
        return;
    }
    m_group->setCurntCohDataSetID(index);
    // Deliberate: the result is the index, and choosing the first dataset ends here.
    if (m_group->setCurntCohDataSetID(index) == 0) return;
    if (m_select != 0) {
        m_group->setShowAllCxc(0);
        CSnsCohDatazq* const active = activeDataset();
        if (active != nullptr) active->m_tscsInfo = true;
    }
    *result = 1;
    notifyHost();
}

void CDlgGroupTrlCxcDataManager::OnToggleShow() {
    if (m_group == nullptr) return;
    for (int i = 0; i < datasetCount(); ++i) {
        CSnsCohDatazq* const dataset = datasetAt(i);
        if (dataset != nullptr && m_list.isSelected(*dataset))
            dataset->m_tscsInfo = !dataset->m_tscsInfo;
    }
    refreshAndNotify();
}

void CDlgGroupTrlCxcDataManager::OnMakeActive() {
    if (m_group == nullptr) return;
    for (int i = 0; i < datasetCount(); ++i) {
        const CSnsCohDatazq* const dataset = datasetAt(i);
        if (dataset != nullptr && m_list.isSelected(*dataset)) m_group->setCurntCohDataSetID(i);
    }
    refreshAndNotify();
}

// Deliberately one dataset for each command, however many are selected.
void CDlgGroupTrlCxcDataManager::OnDelete() {
    if (m_group == nullptr) return;
    for (int i = 0; i < datasetCount(); ++i) {
        const CSnsCohDatazq* const dataset = datasetAt(i);
        if (dataset == nullptr || !m_list.isSelected(*dataset)) continue;
        m_group->deleteCohDataset(i);
        break;
    }
    refreshAndNotify();
}

void CDlgGroupTrlCxcDataManager::OnHideAll() {
    showAll(false);
}

void CDlgGroupTrlCxcDataManager::OnShowAll() {
    showAll(true);
}

void CDlgGroupTrlCxcDataManager::showAll(bool shown) {
    if (m_group == nullptr) return;
    m_group->setShowAllCxc(shown ? 1 : 0);
    refreshAndNotify();
}

void CDlgGroupTrlCxcDataManager::OnSetActiveColor() {
    chooseColor(&CSnsCohDatazq::m_activeColor);
}

void CDlgGroupTrlCxcDataManager::OnSetSuppressiveColor() {
    chooseColor(&CSnsCohDatazq::m_suppressiveColor);
}

void CDlgGroupTrlCxcDataManager::OnSetBasicColor() {
    chooseColor(&CSnsCohDatazq::m_basicColor);
}

void CDlgGroupTrlCxcDataManager::chooseColor(COLORREF CSnsCohDatazq::*color) {
    // Remembered first: while a dialog is open the host may change the group.
    std::vector<CSnsCohDatazq*> chosen;
    for (int i = 0; i < datasetCount(); ++i) {
        CSnsCohDatazq* const dataset = datasetAt(i);
        if (dataset != nullptr && m_list.isSelected(*dataset)) chosen.push_back(dataset);
    }
    if (chosen.empty() && activeDataset() != nullptr) chosen.push_back(activeDataset());
    const cxc::Life::Witness witness(m_life);
    for (CSnsCohDatazq* const dataset : chosen) {
        askColor(dataset, color);
        if (witness.ended()) return;
    }
    refreshAndNotify();
}

void CDlgGroupTrlCxcDataManager::askColor(CSnsCohDatazq* dataset, COLORREF CSnsCohDatazq::*color) {
    if (m_group == nullptr || !cxc::isThere(*m_group, dataset)) return;
    const cxc::Life::Witness witness(m_life);
    CColorDialog dialog(dataset->*color, CC_FULLOPEN | CC_RGBINIT, this);
    const INT_PTR answer = dialog.DoModal();
    if (answer != IDOK || witness.ended() || m_group == nullptr) return;
    if (cxc::isThere(*m_group, dataset)) dataset->*color = dialog.GetColor();
}

void CDlgGroupTrlCxcDataManager::OnReadControls() {
    UpdateData(TRUE);
}

void CDlgGroupTrlCxcDataManager::OnNothing() {}

void CDlgGroupTrlCxcDataManager::OnExit() {
    UpdateData(TRUE);
    OnOK();
}

void CDlgGroupTrlCxcDataManager::OnApply() {
    if (m_group == nullptr) return;
    UpdateData(TRUE);
    const cxc::Life::Witness witness(m_life);
    m_list.refill();
    if (!witness.ended()) notifyHost();
}

// Commands that are the host's to carry out; it is only told that something was asked for.
void CDlgGroupTrlCxcDataManager::OnHostCommand() {
    UpdateData(TRUE);
    if (m_group != nullptr) notifyAndRefresh();
}

void CDlgGroupTrlCxcDataManager::OnStatistics() {
    UpdateData(TRUE);
    CSnsCohDatazq* const active = activeDataset();
    if (active == nullptr) return;
    statisticsWindow.showRichInfo02(active->getStatistics(), active->m_cxcName);
    notifyAndRefresh();
}

void CDlgGroupTrlCxcDataManager::OnSmallWorldThreshold() {
    m_smallWorldThreshold = m_smallWorldThreshold == 0 ? 1 : 0;
}

void CDlgGroupTrlCxcDataManager::OnSmallWorldDirection() {
    m_smallWorldDirection = m_smallWorldDirection == 0 ? 1 : 0;
}

void CDlgGroupTrlCxcDataManager::OnSmallWorldPrecise() {
    m_smallWorldPrecise = m_smallWorldPrecise == 0 ? 1 : 0;
}

void CDlgGroupTrlCxcDataManager::OnAverageAll() {
    appendResults(&CGroupMeegCxcFacezq::averageAll);
}

void CDlgGroupTrlCxcDataManager::OnUpdateAverageAll(CCmdUI*) {}

void CDlgGroupTrlCxcDataManager::OnSummarizeAll() {
    appendResults(&CGroupMeegCxcFacezq::summaryAll);
}

void CDlgGroupTrlCxcDataManager::appendResults(int (CGroupMeegCxcFacezq::*operation)()) {
    UpdateData(TRUE);
    if (m_group == nullptr) return;
    const cxc::Life::Witness witness(m_life);
    {
        const cxc::ModalScope modal(*this, m_life);
        (m_group->*operation)();
    }
    if (witness.ended()) return;
    notifyHost();
    if (witness.ended()) return;
    UpdateData(FALSE);
    refillList();
}

void CDlgGroupTrlCxcDataManager::OnSaveData() {
    writeActive(cxc::saveDataset);
}

void CDlgGroupTrlCxcDataManager::OnExportData() {
    writeActive(cxc::exportDataset);
}

void CDlgGroupTrlCxcDataManager::writeActive(WriteDataset write) {
    CSnsCohDatazq* const active = activeDataset();
    if (active == nullptr) return;
    const cxc::Life::Witness witness(m_life);
    const cxc::ModalScope modal(*this, m_life);
    write(*active,
          [&] { return !witness.ended() && m_group != nullptr && cxc::isThere(*m_group, active); });
}

// Deliberately, a dataset is appended also when the user has cancelled, or the file was no dataset:
// an empty one then.
void CDlgGroupTrlCxcDataManager::OnOpenData() {
    if (m_group == nullptr) return;
    const cxc::Life::Witness witness(m_life);
    cxc::DatasetOwner opened = cxc::newDataset();
    if (opened == nullptr) return;
    {
        const cxc::ModalScope modal(*this, m_life);
        opened->openCxcDataStd();
    }
    if (witness.ended() || m_group == nullptr) return;
    if (m_group->setCohData(opened.get(), datasetCount()) != 0) opened.release();
    refillList();
}

void CDlgGroupTrlCxcDataManager::OnContextMenu(CWnd*, CPoint point) {
    CMenu menu;
    if (!menu.LoadMenu(IDR_GROUP_POPUP)) return;
    CMenu* const popup = menu.GetSubMenu(0);
    if (popup == nullptr) return;
    if (activeDataset() != nullptr) popup->CheckMenuItem(ID_GROUP_SHOW, MF_BYCOMMAND | MF_CHECKED);
    // From the keyboard there is no point.
    if (point.x == -1 && point.y == -1) ::GetCursorPos(&point);
    popup->TrackPopupMenu(TPM_LEFTALIGN | TPM_RIGHTBUTTON, point.x, point.y, this);
}

void CDlgGroupTrlCxcDataManager::OnMouseMove(UINT flags, CPoint point) {
    if (IsWindowVisible()) SetFocus();
    CDialogEx::OnMouseMove(flags, point);
}

void CDlgGroupTrlCxcDataManager::OnTimer(UINT_PTR timer) {
    CDialogEx::OnTimer(timer);
}

void CDlgGroupTrlCxcDataManager::OnSize(UINT type, int cx, int cy) {
    CDialogEx::OnSize(type, cx, cy);
    constexpr int margin = 10;
    cxc::changePlacement(m_list, [&](RECT& place) {
        place.right = cx - margin;
        place.bottom = cy - margin;
    });
}
