// The list of the group manager: the end of its chain.
#pragma once

#include "cxcdata/cxc_api.h"
#include "cxcui/CListGrpTrlCxcData.h"
#include "framework.h"

/// The list of the group manager: the end of its chain.
///
/// Adds its run-time class.
class CXC_API CListGrpTrlCxcDatazq : public CListGrpTrlCxcData {
    DECLARE_DYNAMIC(CListGrpTrlCxcDatazq)

protected:
    DECLARE_MESSAGE_MAP()
};
