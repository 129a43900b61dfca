// CWavChnlChnlDatazq: the channel-pair vector that grids are made of.
#pragma once

#include "cxcdata/CWavChnlChnlData09File.h"

class CXC_API CWavChnlChnlDatazq : public CWavChnlChnlData09File {};
