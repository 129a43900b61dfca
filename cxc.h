// Everything a host needs, in one include: the framework, the matrix class and every exported
// class of the library.
#pragma once

#include "framework.h"

#include "siblings/matrix/CMMatrix2Dzq.h"

#include "cxcdata/CWavChnlChnlDatazq.h"

#include "cxcdata/CSnsCohDatazq.h"

#include "cxcdata/array_exchange.h"

#include "cxcpkg/CSnsCohFacezq.h"

#include "cxcpkg/CGroupMeegCxcFacezq.h"

#if defined(_WIN32)
#include "cxcui/CDlgGroupTrlCxcDataManager.h"

#include "cxcui/CDlgSnsCohManager.h"
#endif
