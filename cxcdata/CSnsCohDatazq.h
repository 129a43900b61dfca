// The dataset that packages create and hold: the end of the dataset chain.
#pragma once

#include "cxcdata/CSnsCohData09File.h"
#include "cxcdata/cxc_api.h"
#include "framework.h"

/// Adds to the file layer: summing datasets and collapsing one over time.
class CXC_API CSnsCohDatazq : public CSnsCohData09File {
public:
    /// Adds `other` to this dataset, value by value. Both need a grid, the same number of rows
    /// (at least 1) and the same number of time slices; the column counts are deliberately not
    /// compared and only columns below the row count are added. A pair without values on either
    /// side is skipped. `other` may be this dataset. Names, notes, ranges and selection stay.
    /// Returns 1, or 0 with nothing changed.
    int sumDatSetSns(const CSnsCohDatazq& other);

    /// Replaces the grid by one of a single time slice that holds the mean of every pair over
    /// all slices; the backup of every new vector holds the mean as well, its channel numbers
    /// and flag are kept. The selection becomes slice 0. Pointers into the old grid are dead.
    /// Returns 1, or 0 with the dataset untouched (no grid, no slices, no memory).
    int accumulateTime1();
};
