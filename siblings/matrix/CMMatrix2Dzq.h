// CMMatrix2Dzq: the matrix that is created, handed over in arrays and released with array delete.
#pragma once

#include "siblings/matrix/CMMatrix2D.h"

/// Adds nothing: the type of which the coherence library makes and takes arrays.
class CXC_MATRIX_API CMMatrix2Dzq : public CMMatrix2D {};
