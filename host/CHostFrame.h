// The main window of the sample host.
#pragma once

#include "cxc.h"
#include "framework.h"
#include "host/CMatrixView.h"
#include "host/CPairView.h"
#include "host/records.h"
#include "host/shown_slice.h"

/// Owns a package, a group and two views of one slice. The views are registered with both as
/// viewers. Opening a file shows where it went: in the package or in the group.
class CHostFrame : public CFrameWnd, private SliceSource {
    DECLARE_DYNAMIC(CHostFrame)

public:
    CHostFrame();
    ~CHostFrame() override;

    BOOL create();
    void openFile(const CString& path);

    /// Reads the shown slice again and repaints when it differs. The waveform manager tells nobody
    /// of its changes, so the program asks for this when it is idle.
    void lookForChanges();

    CSnsCohFacezq& package() { return m_package; }
    CGroupMeegCxcFacezq& group() { return m_group; }
    const ShownSlice& shown() const { return m_shown; }

protected:
    afx_msg void OnSize(UINT type, int cx, int cy);
    afx_msg BOOL OnEraseBkgnd(CDC* dc);
    afx_msg void OnDropFiles(HDROP files);
    afx_msg void OnOpen();
    afx_msg void OnExit();
    afx_msg void OnWaveformManager();
    afx_msg void OnGroupManager();
    afx_msg void OnShowPackage();
    afx_msg void OnShowGroup();
    afx_msg void OnUpdateShowPackage(CCmdUI* item);
    afx_msg void OnUpdateShowGroup(CCmdUI* item);
    afx_msg void OnUpdateSlice(CCmdUI* item);
    afx_msg void OnSliceBack();
    afx_msg void OnSliceForward();
    afx_msg void OnSliceFarBack();
    afx_msg void OnSliceFarForward();
    afx_msg void OnSliceFirst();
    afx_msg void OnSliceLast();
    DECLARE_MESSAGE_MAP()

private:
    const ShownSlice& current() override;
    CSnsCohDatazq* shownDataset();
    void showGroup(bool group);
    void refreshManager(Opened opened);
    void step(__int64 slices);
    void repaint();
    void showStatus();

    CSnsCohFacezq m_package;
    CGroupMeegCxcFacezq m_group;
    ShownSlice m_shown;
    CMatrixView m_matrix{*this};
    CPairView m_pairs{*this};
    CStatic m_status;
    CFont m_font;
    bool m_showsGroup = false;
};
