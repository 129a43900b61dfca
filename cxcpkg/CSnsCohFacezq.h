// The package that hosts create: the end of the package chain.
#pragma once

#include "cxcdata/cxc_api.h"
#include "cxcpkg/CSnsCohFace09File.h"
#include "framework.h"

class CDlgSnsCohManager;

/// Adds to the file layer: summing, and the manager window. Destruction destroys the manager
/// window first, then the datasets, then the list of viewers, which are not told.
class CXC_API CSnsCohFacezq : public CSnsCohFace09File {
public:
    /// Without datasets, viewers and manager window.
    CSnsCohFacezq() = default;
    /// In the order told above.
    ~CSnsCohFacezq();

    /// Adds `data` to the dataset of class cls (-1: the current one), value by value. Returns the
    /// result of its sumDatSetSns; 0 without such a dataset.
    int sumPkg(const CSnsCohDatazq& data, int cls);

    /// Adds the dataset of `other` to the one here for the first class, in class order, that both
    /// packages have; deliberately only for that one. Returns the result of sumDatSetSns; 0
    /// without a common class.
    int sumFace(const CSnsCohFacezq& other);

    /// Shows the manager window of the package; the first call makes it under `parent`, which may
    /// be null, and the package owns it. Returns 1; in a build without windows 0, after "The
    /// manager windows are available on Windows only.".
    int showDlgSnsCohManager(CWnd* parent);

    CDlgSnsCohManager* m_dlgSnsCohManager = nullptr;  ///< owning; null until first shown
};
