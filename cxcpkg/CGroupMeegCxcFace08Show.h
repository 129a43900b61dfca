// What the display windows of a host need from a group.
#pragma once

#include "cxcdata/cxc_api.h"
#include "cxcpkg/CGroupMeegCxcFace02Prcs.h"
#include "framework.h"

class CMMatrix2Dzq;

/// Adds to the processing layer: show flags and viewer windows. The rules for viewers are those
/// of CSnsCohFace08Show.
class CXC_API CGroupMeegCxcFace08Show : public CGroupMeegCxcFace02Prcs {
public:
    /// 1 when there is a dataset at the current index. Shows no message.
    int hasCohData4show();

    /// Always null, whatever the argument: the test for a dataset is inverted, and that is kept
    /// deliberately. Take the matrices from the dataset itself.
    CMMatrix2Dzq* getSnsCohMtx4class(int id);

    /// "None" when there is a dataset at the current index, whatever the argument (the test is
    /// inverted, and that is kept deliberately), else an empty text. Take the name from the
    /// dataset itself.
    CString getCxcDataName4Id(int id);

    /// Shows (non-zero) or hides all datasets. Returns the number of entries.
    int setShowAllCxc(int show);

    /// As CSnsCohFace08Show::viewerAdd.
    int viewerAdd(CWnd* wnd);
    /// As CSnsCohFace08Show::viewerRemove.
    int viewerRemove(CWnd* wnd, bool all);
    /// As CSnsCohFace08Show::viewerInvalidate.
    int viewerInvalidate(bool erase, CWnd* wnd, bool all);
};
