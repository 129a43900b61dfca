// CMMatrix2Dzq: the matrix that is created, handed over in arrays and released with array delete.
#pragma once

#include "siblings/matrix/CMMatrix2D.h"

class CXC_MATRIX_API CMMatrix2Dzq : public CMMatrix2D {};
