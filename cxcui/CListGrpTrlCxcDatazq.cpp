#include "cxcui/CListGrpTrlCxcDatazq.h"

IMPLEMENT_DYNAMIC(CListGrpTrlCxcDatazq, CListGrpTrlCxcData)

BEGIN_MESSAGE_MAP(CListGrpTrlCxcDatazq, CListGrpTrlCxcData)
END_MESSAGE_MAP()
