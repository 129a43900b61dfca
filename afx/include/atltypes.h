// CPoint, CSize and CRect (Windows).
//
// Differences from MFC:
//  1. Only construction, size, offset and tests; no operators beyond those of equality.
#pragma once

#include "afx_user.h"

#ifdef _WIN32

class CSize : public SIZE {
public:
    CSize() : SIZE() {}
    CSize(int width, int height) : SIZE() {
        cx = width;
        cy = height;
    }
    CSize(SIZE size) : SIZE(size) {}
};

class CPoint : public POINT {
public:
    CPoint() : POINT() {}
    CPoint(int initX, int initY) : POINT() {
        x = initX;
        y = initY;
    }
    CPoint(POINT point) : POINT(point) {}

    void Offset(int dx, int dy) {
        x += dx;
        y += dy;
    }
    BOOL operator==(POINT point) const { return x == point.x && y == point.y; }
    BOOL operator!=(POINT point) const { return !(*this == point); }
};

/// Right and bottom are not part of the rectangle.
class CRect : public RECT {
public:
    CRect() : RECT() {}
    CRect(int l, int t, int r, int b) : RECT() { SetRect(l, t, r, b); }
    CRect(const RECT& rect) : RECT(rect) {}
    CRect(POINT position, SIZE size) : RECT() {
        SetRect(position.x, position.y, position.x + size.cx, position.y + size.cy);
    }

    int Width() const { return right - left; }
    int Height() const { return bottom - top; }
    CSize Size() const { return CSize(Width(), Height()); }
    CPoint TopLeft() const { return CPoint(left, top); }
    CPoint CenterPoint() const { return CPoint((left + right) / 2, (top + bottom) / 2); }
    BOOL IsRectEmpty() const { return Width() <= 0 || Height() <= 0; }
    BOOL PtInRect(POINT point) const {
        return point.x >= left && point.x < right && point.y >= top && point.y < bottom;
    }

    void SetRect(int l, int t, int r, int b) {
        left = l;
        top = t;
        right = r;
        bottom = b;
    }
    /// Makes it smaller by x on the left and the right, by y at the top and the bottom.
    void DeflateRect(int x, int y) { SetRect(left + x, top + y, right - x, bottom - y); }
    void OffsetRect(int dx, int dy) { SetRect(left + dx, top + dy, right + dx, bottom + dy); }

    operator LPRECT() { return this; }
    operator LPCRECT() const { return this; }

    BOOL operator==(const RECT& rect) const {
        return left == rect.left && top == rect.top && right == rect.right && bottom == rect.bottom;
    }
    BOOL operator!=(const RECT& rect) const { return !(*this == rect); }
};

#endif
