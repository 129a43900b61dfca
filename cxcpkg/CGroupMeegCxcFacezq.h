// The group that hosts create: the end of the group chain.
#pragma once

#include "cxcdata/cxc_api.h"
#include "cxcpkg/CGroupMeegCxcFace09File.h"
#include "framework.h"

class CDlgGroupTrlCxcDataManager;

/// Adds to the file layer: summing, and the manager window. Destruction destroys the manager
/// window, but deliberately not the datasets: call cleanSnsCohPkg first.
class CXC_API CGroupMeegCxcFacezq : public CGroupMeegCxcFace09File {
public:
    /// Without datasets, viewers and manager window.
    CGroupMeegCxcFacezq() = default;
    /// Destroys the manager window; the datasets stay, see above.
    ~CGroupMeegCxcFacezq();

    /// Adds `data` to the dataset at `index`, value by value. Returns the result of its
    /// sumDatSetSns; 0 without such a dataset.
    int sumPkg(const CSnsCohDatazq& data, int index);

    /// Shows the manager window of the group; the first call makes it under `parent`, which may be
    /// null, and the group owns it. Returns 1; in a build without windows 0, after "The manager
    /// windows are available on Windows only.".
    int showDlgGroupCxcManager(CWnd* parent);

    CDlgGroupTrlCxcDataManager* m_dlgGroupCxcManager = nullptr;  ///< owning; null until first shown
};
