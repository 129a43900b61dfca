// A child window that paints one slice of a dataset.
#pragma once

#include "framework.h"
#include "host/pixels.h"
#include "host/shown_slice.h"

/// Asks its source for the slice whenever it paints, so that an invalidated view shows what there
/// is then. Paints into a bitmap first and shows it whole, so that nothing flickers. The source
/// must live as long as the view.
class CPictureView : public CWnd {
    DECLARE_DYNAMIC(CPictureView)

public:
    explicit CPictureView(SliceSource& source) : m_source(source) {}

    BOOL create(CWnd& parent, UINT id);

protected:
    /// Paints on a white ground; font and text mode are set. The slice has values.
    virtual void draw(CDC& dc, const CRect& area, const ShownSlice& shown) = 0;
    /// What is told where no dataset is.
    virtual CString hint() const = 0;

    afx_msg void OnPaint();
    afx_msg BOOL OnEraseBkgnd(CDC* dc);
    afx_msg void OnDropFiles(HDROP files);
    DECLARE_MESSAGE_MAP()

private:
    void paint(CDC& dc, const CRect& area, const ShownSlice& shown);

    SliceSource& m_source;
};

/// Stretches pixels over a rectangle, each as a plain block.
void drawPixels(CDC& dc, const CRect& place, const Pixels& pixels);

/// Text with its middle at a point.
void drawCentered(CDC& dc, CPoint middle, const CString& text);

CString numberText(__int64 number);
CString valueText(double value);
