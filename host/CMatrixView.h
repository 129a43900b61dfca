// The sensors against the sensors, as a picture.
#pragma once

#include "framework.h"
#include "host/CPictureView.h"

class ColorMap;

/// Row sensors from above, column sensors from the left, with a colour bar.
class CMatrixView : public CPictureView {
    DECLARE_DYNAMIC(CMatrixView)

public:
    using CPictureView::CPictureView;

protected:
    void draw(CDC& dc, const CRect& area) override;

private:
    void drawCells(CDC& dc, const CRect& cells, const ColorMap& colors);
    void drawNumbers(CDC& dc, const CRect& cells);
    void drawBar(CDC& dc, const CRect& bar, const ColorMap& colors);
};
