// The Waveform CxC Manager: the window in which a user manages one package.
#pragma once

#include "cxcdata/cxc_api.h"
#include "cxcfile/file_commands.h"
#include "cxcui/CListSnsCohDatazq.h"
#include "cxcui/CListSnsCohFacezq.h"
#include "cxcui/still_there.h"
#include "framework.h"

class CSnsCohDatazq;
class CSnsCohFacezq;

/// The Waveform CxC Manager, the window in which a user manages one package.
///
/// Modeless. Lists the datasets of the package and the channel pairs of one of them. Most commands
/// act on the current dataset (the current class of the package); the rows, the columns and the
/// slices that are chosen belong to the listed dataset, which is another choice. Filling the list
/// of datasets deliberately leaves Act-Ctl the current class.
///
/// The package makes, owns and deletes the dialog through showDlgSnsCohManager. "Exit", Escape and
/// the close box hide it. No viewer of the package is told of anything.
class CXC_API CDlgSnsCohManager : public CDialogEx {
    DECLARE_DYNAMIC(CDlgSnsCohManager)

public:
    /// Without a package and without a window.
    CDlgSnsCohManager();
    /// Destroys the window, while the controls' objects still exist.
    ~CDlgSnsCohManager() override;

    /// Gives the dialog its package and shows it: chooses the listed dataset, the current one or
    /// else the first there is, and fills all controls.
    void show(CSnsCohFacezq& package);

    /// Nothing of the package is touched any more.
    void forgetPackage();

    /// @name Fields
    /// What stands in the controls, and what the package is told. "Carried" ones are the host's.
    /// @{
    CListSnsCohFacezq m_listFace;        ///< the package's datasets
    CListSnsCohDatazq m_listData;        ///< the channel pairs of the listed dataset
    double m_factor = 0.8;               ///< carried
    int m_option = 1;                    ///< carried
    CSnsCohFacezq* m_package = nullptr;  ///< not owned; handlers use the one of m_listFace
    __int64 m_extra = 0;                 ///< carried
    CStatic m_splitter;                  ///< the bar between the lists
    CPoint m_dragPoint;                  ///< where the splitter last saw the mouse, client pixels
    bool m_overSplitter = false;         ///< the mouse is over the splitter or drags it
    CComboBox m_comboRow;                ///< row sensor of the listed dataset
    __int64 m_sliceFirst = 0;            ///< edit: first selected slice
    __int64 m_timeTotal = 0;             ///< edit: number of slices
    CComboBox m_comboOperation;          ///< how Act-Ctl is made
    /// The caption, with the name of the current dataset behind it.
    CString m_title = _T("Wave CxC Manager");
    /// @}

protected:
    /// @name Handlers
    /// Called by the framework: commands, controls, mouse. A command that needs a current dataset
    /// changes nothing without one, after "This is no data!" where no class is current.
    /// @{

    /// Between controls and members.
    void DoDataExchange(CDataExchange* exchange) override;
    /// Icon, columns, pictures and the operations "A-C", "A+C", "A*C", "A/C".
    BOOL OnInitDialog() override;

    /// The lists and the splitter reach down to the lower edge, the list of pairs to the right.
    afx_msg void OnSize(UINT type, int cx, int cy);
    /// Nothing.
    afx_msg void OnContextMenu(CWnd* window, CPoint point);
    /// List of pairs: the chosen row is the current column of the listed dataset, clamped.
    afx_msg void OnChooseColumn(NMHDR* notification, LRESULT* result);
    /// "Delete": releases the current dataset; then lists the first that there is.
    afx_msg void OnDelete();
    /// Begins to drag the splitter.
    afx_msg void OnLButtonDown(UINT flags, CPoint point);
    /// Ends dragging.
    afx_msg void OnLButtonUp(UINT flags, CPoint point);
    /// Drags the splitter; neither list becomes narrower than 30 pixels.
    afx_msg void OnMouseMove(UINT flags, CPoint point);
    /// Over the splitter the cursor 4008.
    afx_msg BOOL OnSetCursor(CWnd* window, UINT hitTest, UINT message);
    /// List of datasets: lists the dataset of the chosen row and makes its class current.
    afx_msg void OnChooseDataset(NMHDR* notification, LRESULT* result);
    /// As the framework.
    afx_msg void OnLButtonDblClk(UINT flags, CPoint point);
    /// "Exit": reads the controls and hides the dialog.
    afx_msg void OnExit();
    /// The chosen row is the current row of the listed dataset; lists its pairs.
    afx_msg void OnChooseRow();
    /// Edit of the slice: selects that single slice of the listed dataset, clamped.
    afx_msg void OnChangeSliceFirst();
    /// "<<<": moves the selection of the listed dataset by one slice down.
    afx_msg void OnStepBack();
    /// ">>>": moves the selection of the listed dataset by one slice up.
    afx_msg void OnStepForward();
    /// "A-C=X": doAct_Ctl_operation of the package, with its messages.
    afx_msg void OnCombine();
    /// Sets the operation code of the package.
    afx_msg void OnChooseOperation();
    /// "Accum Time": collapses the current dataset to one slice.
    afx_msg void OnAccumulateTime();
    /// "Update": fills the edits from the current dataset and both lists anew.
    afx_msg void OnUpdateControls();
    /// "Apply": the edit is the begin of the current dataset's selection, deliberately as typed.
    afx_msg void OnApply();
    /// "Statistic": shows the statistics of the current dataset in the information window.
    afx_msg void OnStatistic();
    /// "Set Name": asks for the name of the current dataset.
    afx_msg void OnSetName();
    /// "Zero Diagonal": clears the diagonal of the current dataset.
    afx_msg void OnZeroDiagonal();
    /// "Save CxC Data": saveCxcDataStd of the current dataset.
    afx_msg void OnSaveData();
    /// "Open CxC Data": opens into a new dataset, which goes to the first class that is free, or
    /// whose "Set as Active?!", "Set as Control?!" or "Set as Act-Control?!" is answered Yes;
    /// deliberately to Active after three refusals, and also when the user cancelled the file.
    afx_msg void OnOpenData();
    /// "Export CxC Data to Text File": exportCxc2txtFile of the current dataset.
    afx_msg void OnExportData();
    /// @}
    DECLARE_MESSAGE_MAP()

private:
    CSnsCohFacezq* package() const { return m_listFace.m_package; }
    CSnsCohDatazq* currentDataset();
    void list(CSnsCohDatazq* dataset);
    void dropListedUnlessThere();
    void showTitleOf(const CSnsCohDatazq& dataset);

    void writeControls();
    void refreshDatasets();
    void refreshRows();
    int refreshEdits();

    using WriteDataset = int (*)(CSnsCohData09File& data, const cxc::StillThere& stillThere);
    void writeCurrent(WriteDataset write);

    void step(int by);
    int classForOpened();
    bool isSplitterAt(CPoint point) const;
    void dragSplitter(int dx);

    cxc::Life m_life;
};
