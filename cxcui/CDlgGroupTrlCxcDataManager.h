// The Source Coherence Image Manager: the window in which a user manages a group.
#pragma once

#include "cxcdata/cxc_api.h"
#include "cxcfile/file_commands.h"
#include "cxcui/CListGrpTrlCxcDatazq.h"
#include "cxcui/still_there.h"
#include "framework.h"
#include "siblings/commonui/CRichInfozq.h"

class CGroupMeegCxcFacezq;
class CSnsCohDatazq;

/// The Source Coherence Image Manager, the window in which a user manages a group.
///
/// Modeless. Lists the datasets of the group: the active one is the group's current dataset, each
/// is shown or hidden. The host is told of nearly every command through m_hostNotify, and repaints
/// its views; it may do anything there, also release datasets, the group and with it the dialog.
///
/// The group makes, owns and deletes the dialog through showDlgGroupCxcManager. "Exit", Escape and
/// the close box hide it.
class CXC_API CDlgGroupTrlCxcDataManager : public CDialogEx {
    DECLARE_DYNAMIC(CDlgGroupTrlCxcDataManager)

public:
    /// Without a group and without a window.
    CDlgGroupTrlCxcDataManager();
    /// Destroys the window, while the controls' objects still exist.
    ~CDlgGroupTrlCxcDataManager() override;

    /// Gives the dialog its group, shows it, fills it and brings it to the front.
    void show(CGroupMeegCxcFacezq& group, CWnd* parent);

    /// Nothing of the group is touched any more.
    void forgetGroup();

    /// @name Fields
    /// What stands in the controls, and what the host is told. "Carried" ones are the host's.
    /// @{
    CWnd* m_viewer = nullptr;                ///< a host view, carried
    CWnd* m_parent = nullptr;                ///< as last given to showDlgGroupCxcManager
    CGroupMeegCxcFacezq* m_group = nullptr;  ///< not owned
    void (*m_hostNotify)(int) = nullptr;     ///< the host's, called with 0 after changes
    int m_mode = 0;                          ///< carried
    CStatic m_colorSwatch;                   ///< painted in the active dataset's basic colour
    CButton m_buttonApply;                   ///< "Apply"
    CListGrpTrlCxcDatazq m_list;             ///< the datasets of the group
    /// "Active:" and the name of the active dataset; without one "No File", not shown.
    CString m_title = _T("Managers for Group CxC Data");
    int m_select = 0;               ///< check box: choosing a dataset hides all others
    int m_all = 1;                  ///< check box, read by nothing
    CRichInfozq m_infoFirst;        ///< carried
    CRichInfozq m_infoSecond;       ///< carried
    int m_smallWorldThreshold = 1;  ///< toggled by the menu, for the host
    int m_smallWorldDirection = 0;  ///< toggled by the menu, for the host
    int m_smallWorldPrecise = 1;    ///< toggled by the menu, for the host
    /// @}

protected:
    /// @name Handlers
    /// Called by the framework: commands, controls, mouse. A command that needs the active dataset
    /// does nothing without one. The host is told after showing, hiding, choosing, colours,
    /// "Delete", "Apply", "Statistics", the two results and OnHostCommand, and after nothing else.
    /// @{

    /// Between controls and members.
    void DoDataExchange(CDataExchange* exchange) override;
    /// Sets the list up.
    BOOL OnInitDialog() override;

    /// The list reaches to the right and to the lower edge.
    afx_msg void OnSize(UINT type, int cx, int cy);
    /// The popup menu, at the point or, from the keyboard, at the pointer.
    afx_msg void OnContextMenu(CWnd* window, CPoint point);
    /// "Show": shows the selected datasets that are hidden and hides those that are shown.
    afx_msg void OnToggleShow();
    /// List: the dataset of the chosen row becomes the active one; with "Select" checked all
    /// others are hidden. Choosing the first deliberately ends there and tells nobody.
    afx_msg void OnChooseActive(NMHDR* notification, LRESULT* result);
    /// Asks for the active colour of every selected dataset, or of the active one where none
    /// is selected.
    afx_msg void OnSetActiveColor();
    /// As OnSetActiveColor, for the suppressive colour.
    afx_msg void OnSetSuppressiveColor();
    /// "SetBasic Color": as OnSetActiveColor, for the basic colour.
    afx_msg void OnSetBasicColor();
    /// "Delete": releases the first selected dataset, deliberately only that one.
    afx_msg void OnDelete();
    /// Takes the focus.
    afx_msg void OnMouseMove(UINT flags, CPoint point);
    /// "Hide All": hides all datasets.
    afx_msg void OnHideAll();
    /// "Show All": shows all datasets.
    afx_msg void OnShowAll();
    /// "Select", "Source-Coherence Note", "Computing Information...": reads the controls.
    afx_msg void OnReadControls();
    /// "Exit": reads the controls and hides the dialog.
    afx_msg void OnExit();
    /// "Select Hide", "Change Name": nothing.
    afx_msg void OnNothing();
    /// "Active": the last selected dataset becomes the active one.
    afx_msg void OnMakeActive();
    /// "Apply": fills the list anew and tells the host.
    afx_msg void OnApply();
    /// As the framework.
    afx_msg void OnTimer(UINT_PTR timer);
    /// "Time-Frames to One (Average)", "Time-Frame to One (Best)", "Zero Diagonal (Same Points)",
    /// "Set Excit Color", "Set Inhibit Color": the host's to carry out; it is told.
    afx_msg void OnHostCommand();
    /// "Statistics": shows those of the active dataset in the information window.
    afx_msg void OnStatistics();
    /// "Graph Theory (Small World) Threshold": toggles m_smallWorldThreshold.
    afx_msg void OnSmallWorldThreshold();
    /// "Graph Theory (Small World) Direction": toggles m_smallWorldDirection.
    afx_msg void OnSmallWorldDirection();
    /// "Graph Theory (Small World) Precise": toggles m_smallWorldPrecise.
    afx_msg void OnSmallWorldPrecise();
    /// "Average All Network": averageAll of the group.
    afx_msg void OnAverageAll();
    /// Nothing: "Average All Network" is always there.
    afx_msg void OnUpdateAverageAll(CCmdUI* item);
    /// "Save CxC Data": saveCxcDataStd of the active dataset.
    afx_msg void OnSaveData();
    /// "Open CxC Data": opens into a new dataset, which is appended, deliberately also when the
    /// user cancelled.
    afx_msg void OnOpenData();
    /// "Export CxC Data to Text File": exportCxc2txtFile of the active dataset.
    afx_msg void OnExportData();
    /// "Summarize All Network": summaryAll of the group.
    afx_msg void OnSummarizeAll();
    /// @}
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

    using WriteDataset = int (*)(CSnsCohData09File& data, const cxc::StillThere& stillThere);
    void writeActive(WriteDataset write);

    cxc::Life m_life;
};
