// The list of a package's datasets, one row per class that has one.
#pragma once

#include "cxcdata/cxc_api.h"
#include "framework.h"

class CSnsCohFacezq;

/// The list of a package's datasets in its manager, one row per class that has one.
///
/// A view like CListSnsCohDatazq. Its columns and the handling of its selection are its dialog's.
class CXC_API CListSnsCohFacezq : public CListCtrl {
    DECLARE_DYNAMIC(CListSnsCohFacezq)

public:
    /// Without a window and without a package.
    CListSnsCohFacezq() = default;

    /// Pictures and extended styles. Always 1.
    int setUpImages();

    /// Shows the package anew: the classes in order. Deliberately every class in turn becomes
    /// current, so that Act-Ctl is the current class afterwards, whether it has a dataset or not.
    /// Nothing without a package.
    void refill();

    /// Inserts the row of class k (-1: the current one), which becomes current, and stores the
    /// row's index in its dataset. Returns 1 when every text was set, else 0: without a package,
    /// a dataset or a class, the latter after "This is no data!" for -1.
    int fillRow(int k);

    /// Whether rows are being inserted: what the control tells its dialog then is no choice.
    bool isFilling() const { return m_filling; }

    CSnsCohFacezq* m_package = nullptr;  ///< whose datasets are listed, not owned
    CImageList* m_imageLarge = nullptr;  ///< 32 x 32, made by the setup, never deleted
    CImageList* m_imageSmall = nullptr;  ///< 16 x 16, made by the setup, never deleted

protected:
    DECLARE_MESSAGE_MAP()

private:
    bool m_filling = false;
};
