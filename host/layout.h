// Where things stand in the window: pure arithmetic.
#pragma once

#include "framework.h"

/// The cells of a matrix, and its colour bar with room for numbers to the right of it.
struct MatrixLayout {
    CRect cells;  // empty when there is no room
    CRect bar;
};

/// In the middle of `area`. Cells are square; those of a matrix with unequal sides are stretched
/// until the matrix itself is square, as far as there is room.
MatrixLayout matrixLayout(const CRect& area, int rows, int cols);

/// The two panes of the window: side by side, or one above the other where it is higher than wide.
struct PaneLayout {
    CRect matrix;
    CRect pairs;
};

PaneLayout paneLayout(int width, int height);

/// Sensor 0 of `sensors` at the top, then clockwise.
CPoint onCircle(CPoint middle, double radius, int sensor, int sensors);

/// How far from the middle, 0 to 1 of the radius, the line between two sensors is pulled:
/// neighbours are joined near the circle, opposite sensors straight across.
double bendOf(int from, int to, int sensors);

/// The slice `steps` away from `slice`, never outside the slices.
__int64 stepped(__int64 slice, __int64 steps, __int64 slices);
