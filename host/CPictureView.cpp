#include "host/CPictureView.h"

IMPLEMENT_DYNAMIC(CPictureView, CWnd)

BEGIN_MESSAGE_MAP(CPictureView, CWnd)
ON_WM_PAINT()
ON_WM_ERASEBKGND()
ON_WM_DROPFILES()
END_MESSAGE_MAP()

BOOL CPictureView::create(CWnd& parent, UINT id) {
    const LPCTSTR name =
        AfxRegisterWndClass(CS_HREDRAW | CS_VREDRAW, ::LoadCursor(nullptr, IDC_ARROW));
    return Create(name, _T(""), WS_CHILD | WS_VISIBLE, CRect(0, 0, 1, 1), &parent, id);
}

void CPictureView::OnPaint() {
    const ShownSlice& shown = m_source.current();
    CPaintDC screen(this);
    CRect area;
    GetClientRect(area);
    if (area.Width() < 1 || area.Height() < 1) return;
    CDC memory;
    CBitmap bitmap;
    if (!memory.CreateCompatibleDC(&screen) ||
        !bitmap.CreateCompatibleBitmap(&screen, area.Width(), area.Height()))
        return;
    CBitmap* const before = memory.SelectObject(&bitmap);
    paint(memory, area, shown);
    screen.BitBlt(0, 0, area.Width(), area.Height(), &memory, 0, 0, SRCCOPY);
    memory.SelectObject(before);
}

void CPictureView::paint(CDC& dc, const CRect& area, const ShownSlice& shown) {
    dc.FillSolidRect(area, RGB(255, 255, 255));
    CFont font;
    font.CreatePointFont(80, _T("MS Shell Dlg"));
    CFont* const before = dc.SelectObject(&font);
    dc.SetBkMode(TRANSPARENT);
    if (shown.empty()) {
        dc.SetTextColor(RGB(120, 124, 132));
        drawCentered(dc, area.CenterPoint(),
                     shown.fromDataset ? CString(_T("This dataset holds no values.")) : hint());
    } else {
        dc.SetTextColor(RGB(40, 44, 52));
        draw(dc, area, shown);
    }
    dc.SelectObject(before);
}

// The bitmap covers everything.
BOOL CPictureView::OnEraseBkgnd(CDC*) {
    return TRUE;
}

void CPictureView::OnDropFiles(HDROP files) {
    GetParent()->SendMessage(WM_DROPFILES, reinterpret_cast<WPARAM>(files));
}

void drawPixels(CDC& dc, const CRect& place, const Pixels& pixels) {
    BITMAPINFO info = {};
    info.bmiHeader.biSize = sizeof(info.bmiHeader);
    info.bmiHeader.biWidth = pixels.width;
    info.bmiHeader.biHeight = -pixels.height;
    info.bmiHeader.biPlanes = 1;
    info.bmiHeader.biBitCount = 32;
    info.bmiHeader.biCompression = BI_RGB;
    ::SetStretchBltMode(dc.GetSafeHdc(), COLORONCOLOR);
    ::StretchDIBits(dc.GetSafeHdc(), place.left, place.top, place.Width(), place.Height(), 0, 0,
                    pixels.width, pixels.height, pixels.colors.data(), &info, DIB_RGB_COLORS,
                    SRCCOPY);
}

void drawCentered(CDC& dc, CPoint middle, const CString& text) {
    const CSize size = dc.GetTextExtent(text);
    dc.TextOut(middle.x - size.cx / 2, middle.y - size.cy / 2, text);
}

CString numberText(__int64 number) {
    CString text;
    text.Format(_T("%I64d"), number);
    return text;
}

CString valueText(double value) {
    CString text;
    text.Format(_T("%.3g"), value);
    return text;
}
