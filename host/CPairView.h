// The sensors on a circle, and the strongest pairs as lines between them.
#pragma once

#include "framework.h"
#include "host/CPictureView.h"

/// Lines have the dataset's three colours by sign and strength, and are thicker the stronger they
/// are; a scale below the circle shows them.
class CPairView : public CPictureView {
    DECLARE_DYNAMIC(CPairView)

public:
    using CPictureView::CPictureView;

protected:
    void draw(CDC& dc, const CRect& area, const ShownSlice& shown) override;
    CString hint() const override { return _T("The strongest pairs will be shown here."); }
};
