// A child window that paints one slice of a dataset.
#pragma once

#include "framework.h"
#include "host/shown_slice.h"

/// Paints into a bitmap first and shows it whole, so that nothing flickers. What is painted belongs
/// to the frame and must live as long as the view.
class CPictureView : public CWnd {
    DECLARE_DYNAMIC(CPictureView)

public:
    explicit CPictureView(const ShownSlice& shown) : m_shown(shown) {}

    BOOL create(CWnd& parent, UINT id);

protected:
    /// Paints on a white ground; font and text mode are set. There is something to show.
    virtual void draw(CDC& dc, const CRect& area) = 0;

    const ShownSlice& shown() const { return m_shown; }

    afx_msg void OnPaint();
    afx_msg BOOL OnEraseBkgnd(CDC* dc);
    afx_msg void OnDropFiles(HDROP files);
    DECLARE_MESSAGE_MAP()

private:
    void paint(CDC& dc, const CRect& area);

    const ShownSlice& m_shown;
};

/// Text with its middle at a point.
void drawCentered(CDC& dc, CPoint middle, const CString& text);

CString numberText(__int64 number);
CString valueText(double value);
