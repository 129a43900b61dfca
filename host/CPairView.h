// The sensors on a circle, and the strongest pairs as lines between them.
#pragma once

#include "framework.h"
#include "host/CPictureView.h"

/// Lines have the dataset's active colour for positive values and its suppressive colour for
/// negative ones, paler and thinner the weaker they are; the circle has its basic colour.
class CPairView : public CPictureView {
    DECLARE_DYNAMIC(CPairView)

public:
    using CPictureView::CPictureView;

protected:
    void draw(CDC& dc, const CRect& area) override;

private:
    void drawLines(CDC& dc, CPoint middle, int radius);
    void drawSensors(CDC& dc, CPoint middle, int radius);
};
