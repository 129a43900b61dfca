#include "cxcui/CDlgSnsCohManager.h"

#include "cxcdata/grid.h"
#include "cxcpkg/CSnsCohFacezq.h"
#include "cxcpkg/class_slots.h"
#include "cxcpkg/dataset_owner.h"
#include "cxcui/child_placement.h"
#include "cxcui/list_setup.h"
#include "cxcui/rows_with_pairs.h"
#include "cxcui/selection_step.h"
#include "res/resource.h"
#include "siblings/commonui/CDlgInputString.h"
#include "siblings/commonui/CRichInfozq.h"

#include <algorithm>

namespace {

// The information window of all waveform managers.
CRichInfozq statisticsWindow;

// The operations of Act-Ctl, by operation code.
constexpr LPCTSTR operations[] = {_T("A-C"), _T("A+C"), _T("A*C"), _T("A/C")};
constexpr int operationCount = 4;

}  // namespace

IMPLEMENT_DYNAMIC(CDlgSnsCohManager, CDialogEx)

BEGIN_MESSAGE_MAP(CDlgSnsCohManager, CDialogEx)
ON_WM_SIZE()
ON_WM_CONTEXTMENU()
ON_NOTIFY(LVN_ITEMCHANGED, IDC_WAVEFORM_PAIRS, &CDlgSnsCohManager::OnChooseColumn)
ON_BN_CLICKED(IDC_WAVEFORM_DELETE, &CDlgSnsCohManager::OnDelete)
ON_WM_LBUTTONDOWN()
ON_WM_LBUTTONUP()
ON_WM_MOUSEMOVE()
ON_WM_SETCURSOR()
ON_NOTIFY(LVN_ITEMCHANGED, IDC_WAVEFORM_DATASETS, &CDlgSnsCohManager::OnChooseDataset)
ON_WM_LBUTTONDBLCLK()
ON_BN_CLICKED(IDOK, &CDlgSnsCohManager::OnExit)
ON_CBN_SELCHANGE(IDC_WAVEFORM_ROW, &CDlgSnsCohManager::OnChooseRow)
ON_EN_CHANGE(IDC_WAVEFORM_SLICE_FIRST, &CDlgSnsCohManager::OnChangeSliceFirst)
ON_BN_CLICKED(IDC_WAVEFORM_STEP_BACK, &CDlgSnsCohManager::OnStepBack)
ON_BN_CLICKED(IDC_WAVEFORM_STEP_FORWARD, &CDlgSnsCohManager::OnStepForward)
ON_BN_CLICKED(IDC_WAVEFORM_COMBINE, &CDlgSnsCohManager::OnCombine)
ON_CBN_SELCHANGE(IDC_WAVEFORM_OPERATION, &CDlgSnsCohManager::OnChooseOperation)
ON_BN_CLICKED(IDC_WAVEFORM_ACCUMULATE, &CDlgSnsCohManager::OnAccumulateTime)
ON_BN_CLICKED(IDC_WAVEFORM_UPDATE, &CDlgSnsCohManager::OnUpdateControls)
ON_BN_CLICKED(IDC_WAVEFORM_APPLY, &CDlgSnsCohManager::OnApply)
ON_BN_CLICKED(IDC_WAVEFORM_STATISTIC, &CDlgSnsCohManager::OnStatistic)
ON_COMMAND(ID_WAVEFORM_SET_NAME, &CDlgSnsCohManager::OnSetName)
ON_COMMAND(ID_WAVEFORM_ZERO_DIAGONAL, &CDlgSnsCohManager::OnZeroDiagonal)
ON_COMMAND(ID_WAVEFORM_SAVE, &CDlgSnsCohManager::OnSaveData)
ON_COMMAND(ID_WAVEFORM_OPEN, &CDlgSnsCohManager::OnOpenData)
ON_COMMAND(ID_WAVEFORM_EXPORT, &CDlgSnsCohManager::OnExportData)
END_MESSAGE_MAP()

CDlgSnsCohManager::CDlgSnsCohManager() = default;

// While the controls' objects still exist: a dying window sends them messages.
CDlgSnsCohManager::~CDlgSnsCohManager() {
    DestroyWindow();
}

void CDlgSnsCohManager::DoDataExchange(CDataExchange* exchange) {
    CDialogEx::DoDataExchange(exchange);
    DDX_Control(exchange, IDC_WAVEFORM_PAIRS, m_listData);
    DDX_Control(exchange, IDC_WAVEFORM_DATASETS, m_listFace);
    DDX_Control(exchange, IDC_WAVEFORM_SPLITTER, m_splitter);
    DDX_Control(exchange, IDC_WAVEFORM_ROW, m_comboRow);
    DDX_Text(exchange, IDC_WAVEFORM_SLICE_FIRST, m_sliceFirst);
    DDX_Control(exchange, IDC_WAVEFORM_OPERATION, m_comboOperation);
    DDX_Text(exchange, IDC_WAVEFORM_TIME_TOTAL, m_timeTotal);
}

BOOL CDlgSnsCohManager::OnInitDialog() {
    CDialogEx::OnInitDialog();
    SetIcon(AfxGetApp()->LoadIcon(IDI_WAVEFORM_MANAGER), TRUE);
    m_listData.setUpColumns();
    m_listData.setUpImages();
    static constexpr LPCTSTR titles[] = {_T("Name"),      _T("CmptInfo"), _T("Latency B"),
                                         _T("Latency E"), _T("Sensors"),  _T("Act Sns"),
                                         _T("CxC Sns")};
    cxc::setUpColumns(m_listFace, titles);
    m_listFace.setUpImages();
    m_comboOperation.ResetContent();
    for (const LPCTSTR operation : operations)
        m_comboOperation.AddString(operation);
    m_comboOperation.SetCurSel(m_package == nullptr ? 0 : m_package->m_actCtlOperation);
    UpdateData(FALSE);
    return TRUE;
}

void CDlgSnsCohManager::show(CSnsCohFacezq& package) {
    const cxc::Life::Witness witness(m_life);
    m_listFace.m_package = &package;
    m_listData.m_owner = &package;
    m_package = &package;
    if (currentDataset() == nullptr && !witness.ended()) package.getTrlCohDataAny();
    if (witness.ended()) return;
    CSnsCohDatazq* const current = currentDataset();
    if (witness.ended()) return;
    list(current);
    ShowWindow(SW_SHOW);
    refreshDatasets();
    refreshRows();
    refreshEdits();
}

void CDlgSnsCohManager::forgetPackage() {
    m_listFace.m_package = nullptr;
    m_listData.m_owner = nullptr;
    m_listData.m_dataset = nullptr;
    m_package = nullptr;
}

// The dataset of the current class; without a class "This is no data!" is shown, and null.
CSnsCohDatazq* CDlgSnsCohManager::currentDataset() {
    if (package() == nullptr) return nullptr;
    if (package()->getCurntCohDataSetID() != -1) return package()->getCoherenceData(-1);
    const cxc::ModalScope modal(*this, m_life);
    return package()->getCoherenceData(-1);
}

void CDlgSnsCohManager::list(CSnsCohDatazq* dataset) {
    m_listData.m_dataset = dataset;
}

// A new dataset may be given the memory of a released one, and would then seem to be listed.
void CDlgSnsCohManager::dropListedUnlessThere() {
    if (m_listData.dataset() == nullptr) m_listData.m_dataset = nullptr;
}

void CDlgSnsCohManager::showTitleOf(const CSnsCohDatazq& dataset) {
    m_title.Format(_T("Wave CxC Manager-%s"), dataset.m_cxcName.GetString());
    SetWindowText(m_title);
}

// The framework keeps what the controls say during an exchange to itself. A new slice in the edit
// chooses that slice also when the dialog itself has written it.
void CDlgSnsCohManager::writeControls() {
    const CWnd* const edit = GetDlgItem(IDC_WAVEFORM_SLICE_FIRST);
    CString before;
    CString after;
    if (edit != nullptr) edit->GetWindowText(before);
    UpdateData(FALSE);
    if (edit != nullptr) edit->GetWindowText(after);
    if (before != after) OnChangeSliceFirst();
}

void CDlgSnsCohManager::refreshDatasets() {
    m_listFace.refill();
    m_listData.refill();
}

void CDlgSnsCohManager::refreshRows() {
    m_comboRow.ResetContent();
    const cxc::Life::Witness witness(m_life);
    const CSnsCohDatazq* const current = currentDataset();
    if (witness.ended()) return;
    if (current != nullptr && current->m_mCC != nullptr) {
        // A file may claim more rows than there are, and many without a pair.
        const __int64 rows =
            std::min({current->m_snsRowTotal, cxc::grid::rows(current->m_mCC),
                      cxc::rowsWithPairs(current->m_mCC) + cxc::mostRowsWithoutPairs});
        for (__int64 r = 0; r < rows; ++r) {
            const CWavChnlChnlDatazq* const pair = cxc::grid::cell(current->m_mCC, r, 0);
            CString text;
            text.Format(_T("%I64d->%I64d"), r, pair == nullptr ? 0 : pair->m_chnlA);
            m_comboRow.AddString(text);
        }
        m_comboRow.SetCurSel(static_cast<int>(current->m_rowCrt));
    }
    writeControls();
}

int CDlgSnsCohManager::refreshEdits() {
    const cxc::Life::Witness witness(m_life);
    CSnsCohDatazq* const current = currentDataset();
    if (witness.ended()) return 1;
    if (current != nullptr) {
        m_timeTotal = current->getSnsCohTimTotal();
        m_sliceFirst = current->m_selectBegin;
        showTitleOf(*current);
    }
    if (package() != nullptr) m_comboOperation.SetCurSel(package()->m_actCtlOperation);
    writeControls();
    return 1;
}

// The current class decides what the commands act on; the chosen row is also the listed dataset.
void CDlgSnsCohManager::OnChooseDataset(NMHDR* notification, LRESULT* result) {
    *result = 0;
    if (package() == nullptr || m_listFace.isFilling()) return;
    const int item = reinterpret_cast<const NMLISTVIEW*>(notification)->iItem;
    CSnsCohDatazq* const chosen = package()->actCohDataset2ListID(item);
    if (chosen != nullptr) showTitleOf(*chosen);
    list(chosen);
    m_listData.refill();
    const cxc::Life::Witness witness(m_life);
    refreshRows();
    if (!witness.ended()) refreshEdits();
}

void CDlgSnsCohManager::OnChooseColumn(NMHDR* notification, LRESULT* result) {
    *result = 0;
    if (m_listData.isFilling()) return;
    const cxc::Life::Witness witness(m_life);
    UpdateData(TRUE);
    if (witness.ended()) return;
    CSnsCohDatazq* const listed = m_listData.dataset();
    if (listed == nullptr) return;
    const __int64 item = reinterpret_cast<const NMLISTVIEW*>(notification)->iItem;
    listed->m_columnCrt = cxc::clampIndex(item, std::max<__int64>(listed->m_snsColTotal, 1));
}

void CDlgSnsCohManager::OnChooseRow() {
    const int chosen = m_comboRow.GetCurSel();
    CSnsCohDatazq* const listed = m_listData.dataset();
    if (chosen >= 0 && listed != nullptr) listed->m_rowCrt = chosen;
    m_listData.refill();
}

// A text that is no number leaves the slice as it was read last, and that one is selected.
void CDlgSnsCohManager::OnChangeSliceFirst() {
    const cxc::Life::Witness witness(m_life);
    UpdateData(TRUE);
    if (witness.ended()) return;
    CSnsCohDatazq* const listed = m_listData.dataset();
    if (listed == nullptr) return;
    listed->setSelect(m_sliceFirst, m_sliceFirst);
    m_listData.refill();
}

void CDlgSnsCohManager::OnStepBack() {
    step(-1);
}

void CDlgSnsCohManager::OnStepForward() {
    step(1);
}

void CDlgSnsCohManager::step(int by) {
    const cxc::Life::Witness witness(m_life);
    UpdateData(TRUE);
    if (witness.ended()) return;
    CSnsCohDatazq* const listed = m_listData.dataset();
    if (listed == nullptr) return;
    const cxc::Slices moved =
        cxc::stepped({listed->m_selectBegin, listed->m_selectEnd}, listed->m_cohTimTotal, by);
    listed->m_selectBegin = moved.first;
    listed->m_selectEnd = moved.last;
    m_listData.refill();
    refreshEdits();
}

void CDlgSnsCohManager::OnCombine() {
    const cxc::Life::Witness witness(m_life);
    UpdateData(TRUE);
    if (witness.ended() || package() == nullptr) return;
    {
        const cxc::ModalScope modal(*this, m_life);
        package()->doAct_Ctl_operation();
    }
    if (!witness.ended()) refreshDatasets();
}

void CDlgSnsCohManager::OnChooseOperation() {
    const cxc::Life::Witness witness(m_life);
    UpdateData(TRUE);
    if (witness.ended() || package() == nullptr) return;
    const int chosen = m_comboOperation.GetCurSel();
    if (chosen >= 0 && chosen < operationCount) package()->m_actCtlOperation = chosen;
}

void CDlgSnsCohManager::OnAccumulateTime() {
    const CWaitCursor wait;
    const cxc::Life::Witness witness(m_life);
    UpdateData(TRUE);
    if (witness.ended() || package() == nullptr) return;
    CSnsCohDatazq* const current = currentDataset();
    if (witness.ended()) return;
    if (current != nullptr) current->accumulateTime1();
    refreshDatasets();
    refreshEdits();
}

void CDlgSnsCohManager::OnDelete() {
    const CWaitCursor wait;
    if (package() == nullptr) return;
    const cxc::Life::Witness witness(m_life);
    {
        const cxc::ModalScope modal(*this, m_life);
        package()->deleteCohDataset(-1);
    }
    if (witness.ended()) return;
    dropListedUnlessThere();
    m_listFace.refill();
    list(package()->getTrlCohDataAny());
    m_listData.refill();
    refreshEdits();
}

void CDlgSnsCohManager::OnUpdateControls() {
    const cxc::Life::Witness witness(m_life);
    UpdateData(TRUE);
    if (witness.ended() || package() == nullptr) return;
    CSnsCohDatazq* const current = currentDataset();
    if (witness.ended()) return;
    if (current != nullptr) {
        m_timeTotal = current->getSnsCohTimTotal();
        m_sliceFirst = current->m_selectBegin;
    }
    writeControls();
    if (!witness.ended()) refreshDatasets();
}

// Deliberately as typed: not clamped, the end of the selection stays, nothing is shown anew.
void CDlgSnsCohManager::OnApply() {
    const cxc::Life::Witness witness(m_life);
    UpdateData(TRUE);
    if (witness.ended()) return;
    CSnsCohDatazq* const current = currentDataset();
    if (!witness.ended() && current != nullptr) current->m_selectBegin = m_sliceFirst;
}

void CDlgSnsCohManager::OnStatistic() {
    const cxc::Life::Witness witness(m_life);
    UpdateData(TRUE);
    if (witness.ended()) return;
    CSnsCohDatazq* const current = currentDataset();
    if (witness.ended() || current == nullptr) return;
    const CString statistics = current->getStatistics();
    statisticsWindow.showRichInfo02(statistics, current->m_cxcName);
}

void CDlgSnsCohManager::OnSetName() {
    const cxc::Life::Witness witness(m_life);
    CSnsCohDatazq* const current = currentDataset();
    if (witness.ended()) return;
    if (current != nullptr) {
        CDlgInputString input;
        input.m_text = current->m_cxcName;
        INT_PTR answer = IDCANCEL;
        {
            const cxc::ModalScope modal(*this, m_life);
            answer = input.DoModal();
        }
        if (witness.ended()) return;
        if (answer == IDOK && package() != nullptr && cxc::isThere(*package(), current)) {
            current->m_cxcName = input.m_text;
            m_listFace.refill();
        }
    }
    writeControls();
}

void CDlgSnsCohManager::OnZeroDiagonal() {
    const cxc::Life::Witness witness(m_life);
    CSnsCohDatazq* const current = currentDataset();
    if (witness.ended() || current == nullptr) return;
    current->zeroDiagonal();
    m_listFace.refill();
}

void CDlgSnsCohManager::OnSaveData() {
    writeCurrent(cxc::saveDataset);
}

void CDlgSnsCohManager::OnExportData() {
    writeCurrent(cxc::exportDataset);
}

void CDlgSnsCohManager::writeCurrent(WriteDataset write) {
    const cxc::Life::Witness witness(m_life);
    CSnsCohDatazq* const current = currentDataset();
    if (witness.ended() || current == nullptr) return;
    const cxc::ModalScope modal(*this, m_life);
    write(*current, [&] {
        return !witness.ended() && package() != nullptr && cxc::isThere(*package(), current);
    });
}

// Deliberately, a dataset is placed also when the user has cancelled, or the file was no dataset:
// an empty one then.
void CDlgSnsCohManager::OnOpenData() {
    if (package() == nullptr) return;
    const cxc::Life::Witness witness(m_life);
    cxc::DatasetOwner opened = cxc::newDataset();
    if (opened == nullptr) return;
    int cls = 0;
    {
        const cxc::ModalScope modal(*this, m_life);
        opened->openCxcDataStd();
        if (witness.ended()) return;
        cls = classForOpened();
    }
    if (witness.ended() || package() == nullptr) return;
    package()->setCohData(opened.release(), cls);
    dropListedUnlessThere();
    m_listFace.refill();
}

// The first free class, or the first whose dataset may be replaced; deliberately Active when the
// user has refused all three.
int CDlgSnsCohManager::classForOpened() {
    static constexpr LPCTSTR questions[] = {_T("Set as Active?!"), _T("Set as Control?!"),
                                            _T("Set as Act-Control?!")};
    const cxc::Life::Witness witness(m_life);
    for (int cls = 0; cls < 3; ++cls) {
        if (package()->*cxc::cohClasses[cls].slot == nullptr) return cls;
        const bool yes = AfxMessageBox(questions[cls], MB_YESNO) == IDYES;
        if (yes || witness.ended() || package() == nullptr) return cls;
    }
    return 0;
}

void CDlgSnsCohManager::OnExit() {
    const cxc::Life::Witness witness(m_life);
    UpdateData(TRUE);
    if (!witness.ended()) OnOK();
}

void CDlgSnsCohManager::OnContextMenu(CWnd*, CPoint) {}

void CDlgSnsCohManager::OnLButtonDblClk(UINT flags, CPoint point) {
    CDialogEx::OnLButtonDblClk(flags, point);
}

void CDlgSnsCohManager::OnSize(UINT type, int cx, int cy) {
    CDialogEx::OnSize(type, cx, cy);
    constexpr int margin = 10;
    cxc::changePlacement(m_listData, [&](RECT& place) {
        place.right = cx - margin;
        place.bottom = cy - margin;
    });
    const auto reachDown = [&](RECT& place) { place.bottom = cy - margin; };
    cxc::changePlacement(m_listFace, reachDown);
    cxc::changePlacement(m_splitter, reachDown);
}

// The bar takes no mouse messages of its own; the dialog gets those over it.
bool CDlgSnsCohManager::isSplitterAt(CPoint point) const {
    const CWnd* const child = ChildWindowFromPoint(point);
    return child != nullptr && m_splitter.m_hWnd != nullptr && child->m_hWnd == m_splitter.m_hWnd;
}

void CDlgSnsCohManager::OnLButtonDown(UINT flags, CPoint point) {
    if (isSplitterAt(point)) {
        m_dragPoint = point;
        SetCapture();
        m_overSplitter = true;
    }
    CDialogEx::OnLButtonDown(flags, point);
}

void CDlgSnsCohManager::OnMouseMove(UINT flags, CPoint point) {
    const int dx = point.x - m_dragPoint.x;
    if (m_overSplitter && GetCapture() == this && dx != 0) dragSplitter(dx);
    m_overSplitter = isSplitterAt(point);
    m_dragPoint = point;
    CDialogEx::OnMouseMove(flags, point);
}

// Neither list becomes narrower than a few letters.
void CDlgSnsCohManager::dragSplitter(int dx) {
    constexpr int narrowest = 30;
    WINDOWPLACEMENT face = {};
    WINDOWPLACEMENT data = {};
    WINDOWPLACEMENT bar = {};
    if (!m_listFace.GetWindowPlacement(&face) || !m_listData.GetWindowPlacement(&data) ||
        !m_splitter.GetWindowPlacement(&bar))
        return;
    RECT& left = face.rcNormalPosition;
    RECT& right = data.rcNormalPosition;
    if (dx > 0 && right.left + dx > right.right - narrowest) return;
    if (dx < 0 && left.right + dx < left.left + narrowest) return;
    bar.rcNormalPosition.left += dx;
    bar.rcNormalPosition.right += dx;
    left.right += dx;
    right.left += dx;
    m_listFace.SetWindowPlacement(&face);
    m_listData.SetWindowPlacement(&data);
    m_splitter.SetWindowPlacement(&bar);
}

void CDlgSnsCohManager::OnLButtonUp(UINT flags, CPoint point) {
    m_dragPoint = point;
    if (GetCapture() == this) {
        m_overSplitter = false;
        ::ReleaseCapture();
    }
    CDialogEx::OnLButtonUp(flags, point);
}

BOOL CDlgSnsCohManager::OnSetCursor(CWnd* window, UINT hitTest, UINT message) {
    if (!m_overSplitter) return CDialogEx::OnSetCursor(window, hitTest, message);
    ::SetCursor(AfxGetApp()->LoadCursor(IDC_CURSOR_SPLITTER));
    return TRUE;
}
