#include "cxcdata/CWavChnlChnlDatazq.h"

#include <type_traits>

static_assert(sizeof(CWavChnlChnlDatazq) == sizeof(CWavChnlChnlData) &&
                  std::is_standard_layout_v<CWavChnlChnlDatazq>,
              "the derived layers add operations only");
