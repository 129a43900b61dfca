// The Waveform CxC Manager: the window in which a user manages one package.
#pragma once

#include "cxcdata/cxc_api.h"
#include "cxcui/CListSnsCohDatazq.h"
#include "cxcui/CListSnsCohFacezq.h"
#include "cxcui/still_there.h"
#include "framework.h"

class CSnsCohDatazq;
class CSnsCohFacezq;

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
    CDlgSnsCohManager();
    ~CDlgSnsCohManager() override;

    /// Gives the dialog its package and shows it: chooses the listed dataset, the current one or
    /// else the first there is, and fills all controls.
    void show(CSnsCohFacezq& package);

    /// Nothing of the package is touched any more.
    void forgetPackage();

    CListSnsCohFacezq m_listFace;        // the package's datasets
    CListSnsCohDatazq m_listData;        // the channel pairs of the listed dataset
    double m_factor = 0.8;               // carried
    int m_option = 1;                    // carried
    CSnsCohFacezq* m_package = nullptr;  // not owned; handlers use the one of m_listFace
    __int64 m_extra = 0;                 // carried
    CStatic m_splitter;                  // the bar between the lists
    CPoint m_dragPoint;                  // where the splitter last saw the mouse, client pixels
    bool m_overSplitter = false;         // the mouse is over the splitter or drags it
    CComboBox m_comboRow;                // row sensor of the listed dataset
    __int64 m_sliceFirst = 0;            // edit: first selected slice
    __int64 m_timeTotal = 0;             // edit: number of slices
    CComboBox m_comboOperation;          // how Act-Ctl is made
    CString m_title = _T("Wave CxC Manager");

protected:
    void DoDataExchange(CDataExchange* exchange) override;
    BOOL OnInitDialog() override;

    afx_msg void OnSize(UINT type, int cx, int cy);
    afx_msg void OnContextMenu(CWnd* window, CPoint point);
    afx_msg void OnChooseColumn(NMHDR* notification, LRESULT* result);
    afx_msg void OnDelete();
    afx_msg void OnLButtonDown(UINT flags, CPoint point);
    afx_msg void OnLButtonUp(UINT flags, CPoint point);
    afx_msg void OnMouseMove(UINT flags, CPoint point);
    afx_msg BOOL OnSetCursor(CWnd* window, UINT hitTest, UINT message);
    afx_msg void OnChooseDataset(NMHDR* notification, LRESULT* result);
    afx_msg void OnLButtonDblClk(UINT flags, CPoint point);
    afx_msg void OnExit();
    afx_msg void OnChooseRow();
    afx_msg void OnChangeSliceFirst();
    afx_msg void OnStepBack();
    afx_msg void OnStepForward();
    afx_msg void OnCombine();
    afx_msg void OnChooseOperation();
    afx_msg void OnAccumulateTime();
    afx_msg void OnUpdateControls();
    afx_msg void OnApply();
    afx_msg void OnStatistic();
    afx_msg void OnSetName();
    afx_msg void OnZeroDiagonal();
    afx_msg void OnSaveData();
    afx_msg void OnOpenData();
    afx_msg void OnExportData();
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

    void step(int by);
    void placeOpened(CSnsCohDatazq* opened);
    int classForOpened();
    bool isSplitterAt(CPoint point) const;
    void dragSplitter(int dx);

    cxc::Life m_life;
};
