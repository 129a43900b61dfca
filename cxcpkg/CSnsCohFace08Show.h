// What the display windows of a host need from a package.
#pragma once

#include "cxcdata/cxc_api.h"
#include "cxcpkg/CSnsCohFace02Prcs.h"
#include "framework.h"

class CMMatrix2Dzq;

/// Adds to the processing layer: data as matrices, display names, viewer windows.
///
/// Viewers are windows that want to repaint when the package changes; they read the package when
/// they paint. A viewer must be removed before its window object is destroyed. It must be a
/// permanent object of this thread, one that created or was attached to its window, not a
/// temporary one of CWnd::FromHandle. No message is sent: repainting takes place when the thread
/// next handles its paint messages.
class CXC_API CSnsCohFace08Show : public CSnsCohFace02Prcs {
public:
    /// 1 when the current class has a dataset. With datasets but no current class it shows
    /// "This is no data!" and gives 0.
    int hasCohData4show();

    /// The dataset of class cls (-1: the current one) as an array of matrices, one per time slice,
    /// square with the dataset's row count; the class becomes current. The caller owns the array
    /// (array delete) and takes its length from getSnsCohTimTotal of the dataset.
    /// Null without a dataset or grid, for no such class, and without memory.
    CMMatrix2Dzq* getSnsCohMtx4class(int cls);

    /// Display name of class cls (-1: the current one): "Active", "Control", "Mix Act-Ctl", else
    /// "Unknown". Deliberately, the class becomes current.
    CString getCxcDataName4Class(int cls);

    /// Registers a viewer; null is appended as well, again and again. Returns the new number of
    /// entries, or 0 when it is registered already. Throws the memory exception, list unchanged.
    int viewerAdd(CWnd* wnd);

    /// Removes a viewer and returns the number of entries left; -1 when it is not registered.
    /// `all` removes all: 0.
    int viewerRemove(CWnd* wnd, bool all);

    /// Asks for repainting of the whole client area, `erase` with the background, and registers
    /// wnd where it is not null and not yet registered.
    /// all false: wnd, hidden or not; 1, or 0 for null. all true: every visible viewer; returns
    /// the number of entries, not of repainted windows. Throws as viewerAdd.
    int viewerInvalidate(bool erase, CWnd* wnd, bool all);
};
