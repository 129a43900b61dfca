// The Source Coherence Image Manager: the window in which a user manages a group.
#pragma once

#include "cxcdata/cxc_api.h"
#include "cxcui/CListGrpTrlCxcDatazq.h"
#include "cxcui/still_there.h"
#include "framework.h"
#include "siblings/commonui/CRichInfozq.h"

class CGroupMeegCxcFacezq;
class CSnsCohDatazq;

/// Modeless. Lists the datasets of the group: the active one is the group's current dataset, each
/// is shown or hidden. The host is told of nearly every command through m_hostNotify, and repaints
/// its views; it may do anything there, also release datasets, the group and with it the dialog.
///
/// The group makes, owns and deletes the dialog through showDlgGroupCxcManager. "Exit", Escape and
/// the close box hide it.
class CXC_API CDlgGroupTrlCxcDataManager : public CDialogEx {
    DECLARE_DYNAMIC(CDlgGroupTrlCxcDataManager)

public:
    CDlgGroupTrlCxcDataManager();
    ~CDlgGroupTrlCxcDataManager() override;

    /// Gives the dialog its group, shows it, fills it and brings it to the front.
    void show(CGroupMeegCxcFacezq& group, CWnd* parent);

    /// Nothing of the group is touched any more.
    void forgetGroup();

    CWnd* m_viewer = nullptr;                // a host view, carried
    CWnd* m_parent = nullptr;                // as last given to showDlgGroupCxcManager
    CGroupMeegCxcFacezq* m_group = nullptr;  // not owned
    void (*m_hostNotify)(int) = nullptr;     // the host's, called with 0 after changes
    int m_mode = 0;                          // carried
    CStatic m_colorSwatch;                   // painted in the active dataset's basic colour
    CButton m_buttonApply;
    CListGrpTrlCxcDatazq m_list;
    CString m_title = _T("Managers for Group CxC Data");
    int m_select = 0;               // check box: choosing a dataset hides all others
    int m_all = 1;                  // check box, read by nothing
    CRichInfozq m_infoFirst;        // carried
    CRichInfozq m_infoSecond;       // carried
    int m_smallWorldThreshold = 1;  // toggled by the menu, for the host
    int m_smallWorldDirection = 0;  // toggled by the menu, for the host
    int m_smallWorldPrecise = 1;    // toggled by the menu, for the host

protected:
    void DoDataExchange(CDataExchange* exchange) override;
    BOOL OnInitDialog() override;

    afx_msg void OnSize(UINT type, int cx, int cy);
    afx_msg void OnContextMenu(CWnd* window, CPoint point);
    afx_msg void OnToggleShow();
    afx_msg void OnChooseActive(NMHDR* notification, LRESULT* result);
    afx_msg void OnSetActiveColor();
    afx_msg void OnSetSuppressiveColor();
    afx_msg void OnSetBasicColor();
    afx_msg void OnDelete();
    afx_msg void OnMouseMove(UINT flags, CPoint point);
    afx_msg void OnHideAll();
    afx_msg void OnShowAll();
    afx_msg void OnReadControls();
    afx_msg void OnExit();
    afx_msg void OnNothing();
    afx_msg void OnMakeActive();
    afx_msg void OnApply();
    afx_msg void OnTimer(UINT_PTR timer);
    afx_msg void OnHostCommand();
    afx_msg void OnStatistics();
    afx_msg void OnSmallWorldThreshold();
    afx_msg void OnSmallWorldDirection();
    afx_msg void OnSmallWorldPrecise();
    afx_msg void OnAverageAll();
    afx_msg void OnUpdateAverageAll(CCmdUI* item);
    afx_msg void OnSaveData();
    afx_msg void OnOpenData();
    afx_msg void OnExportData();
    afx_msg void OnSummarizeAll();
    DECLARE_MESSAGE_MAP()

private:
    int refresh();
    void refillList();
    void paintSwatch(COLORREF color);
    void checkSelectHide(bool shown);
    void notifyHost();
    void refreshAndNotify();
    void notifyAndRefresh();
    CSnsCohDatazq* activeDataset() const;
    CSnsCohDatazq* datasetAt(int index) const;
    int datasetCount() const;
    int indexOfRow(int row) const;
    void showAll(bool shown);
    void chooseColor(COLORREF CSnsCohDatazq::*color);
    void askColor(CSnsCohDatazq* dataset, COLORREF CSnsCohDatazq::*color);
    void appendResults(int (CGroupMeegCxcFacezq::*operation)());

    cxc::Life m_life;
};
