// From values to colours.
#pragma once

#include "framework.h"

/// How the values of one picture become colours. Values with both signs are shown from blue through
/// white, which is 0, to red; values of one sign from white to dark red or dark blue, away from 0.
class ColorMap {
public:
    /// The range of all values that are shown.
    ColorMap(double least, double most);

    /// Values outside the range take the colour of its nearer end; NaN is grey.
    COLORREF colorOf(double value) const;

    /// The ends of the colour bar, the lower one first.
    double bottom() const { return m_bottom; }
    double top() const { return m_top; }

private:
    double m_bottom;
    double m_top;
};
