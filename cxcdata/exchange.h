// Copies between the grid of a dataset (one vector over time per pair) and matrices (one per
// time slice). Both sides are walked in tiles, so that every cache line is used up while it is
// there, whichever side it belongs to.
#pragma once

#include "cxcdata/CWavChnlChnlDatazq.h"
#include "framework.h"

class CMMatrix2Dzq;

namespace cxc::exchange {

/// Element (r, c) of matrix t becomes element t of vector (r, c), for the first `count` matrices
/// as large as they are; 0.0 where there is no such value.
/// Returns false at the first matrix without storage; those before it are filled then.
bool gridToMatrices(CWavChnlChnlDatazq* const* table, CMMatrix2Dzq* mats, __int64 count);

/// Element t of vector (r, c) becomes element (r, c) of matrix t, where both exist.
/// Returns false at the first matrix without storage or size; those before it are copied then.
bool matricesToGrid(CMMatrix2Dzq* mats, __int64 count, CWavChnlChnlDatazq** table);

}  // namespace cxc::exchange
