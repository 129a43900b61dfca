#include "siblings/matrix/CMMatrix2Dzq.h"
