#include "cxcpkg/CGroupMeegCxcFacezq.h"

#include "cxcpkg/managers.h"

CGroupMeegCxcFacezq::~CGroupMeegCxcFacezq() {
    cxc::deleteManager(m_dlgGroupCxcManager);
}

int CGroupMeegCxcFacezq::sumPkg(const CSnsCohDatazq& data, int index) {
    CSnsCohDatazq* const dataset = getCoherenceData(index);
    return dataset == nullptr ? 0 : dataset->sumDatSetSns(data);
}

int CGroupMeegCxcFacezq::showDlgGroupCxcManager(CWnd* parent) {
    return cxc::showManager(*this, parent);
}
