// CWavChnlChnlDatazq: the channel-pair vector that grids are made of.
#pragma once

#include "cxcdata/CWavChnlChnlData09File.h"

/// Adds nothing: the type of the vectors of a grid, CSnsCohData::m_mCC.
class CXC_API CWavChnlChnlDatazq : public CWavChnlChnlData09File {};
