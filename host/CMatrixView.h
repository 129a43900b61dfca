// The sensors against the sensors, as a picture.
#pragma once

#include "framework.h"
#include "host/CPictureView.h"

/// Row sensors from above, column sensors from the left, with a colour bar.
class CMatrixView : public CPictureView {
    DECLARE_DYNAMIC(CMatrixView)

public:
    using CPictureView::CPictureView;

protected:
    void draw(CDC& dc, const CRect& area, const ShownSlice& shown) override;
    CString hint() const override { return _T("Choose File, Open, or drop a .cxc file here."); }
};
