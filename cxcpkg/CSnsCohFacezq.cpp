#include "cxcpkg/CSnsCohFacezq.h"

#include "cxcpkg/class_slots.h"
#include "cxcpkg/managers.h"

CSnsCohFacezq::~CSnsCohFacezq() {
    cxc::deleteManager(m_dlgSnsCohManager);
}

int CSnsCohFacezq::sumPkg(const CSnsCohDatazq& data, int cls) {
    const cxc::CohClass* const wanted = cxc::cohClass(cxc::currentOr(*this, cls));
    if (wanted == nullptr || this->*wanted->slot == nullptr) return 0;
    return (this->*wanted->slot)->sumDatSetSns(data);
}

int CSnsCohFacezq::sumFace(const CSnsCohFacezq& other) {
    for (const cxc::CohClass& cls : cxc::cohClasses) {
        CSnsCohDatazq* const mine = this->*cls.slot;
        const CSnsCohDatazq* const theirs = other.*cls.slot;
        if (mine != nullptr && theirs != nullptr) return mine->sumDatSetSns(*theirs);
    }
    return 0;
}

int CSnsCohFacezq::showDlgSnsCohManager(CWnd* parent) {
    return cxc::showManager(*this, parent);
}
