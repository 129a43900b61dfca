#include "cxcpkg/CSnsCohFace.h"

#include "cxcpkg/class_slots.h"
#include "cxcpkg/dataset_owner.h"

#include <algorithm>
#include <type_traits>

static_assert(!std::is_polymorphic_v<CSnsCohFace>, "the package chain has no virtual operations");

namespace {

using cxc::CohClass;
using cxc::currentOr;

// The dataset of a class, made and named where it is missing; null on failure.
CSnsCohDatazq* neededDataset(CSnsCohFace& package, const CohClass& cls) {
    CSnsCohDatazq*& slot = package.*cls.slot;
    if (slot == nullptr) slot = cxc::newDataset(cls.datasetName).release();
    return slot;
}

int sizeClass(CSnsCohFace& package, const CohClass& cls, int nSns, __int64 nTime, bool flag) {
    CSnsCohDatazq* const dataset = neededDataset(package, cls);
    return dataset == nullptr ? 0 : dataset->checkInitSnsCohData(nSns, nSns, nTime, flag);
}

// Deliberate: the dataset that is made for Control lands in the Active slot, without a grid and
// with the default name, and the former Active has no owner any more.
void missControl(CSnsCohFace& package) {
    cxc::DatasetOwner made = cxc::newDataset();
    if (made == nullptr) return;
    cxc::keepReachable(package.m_cohActive);
    package.m_cohActive = made.release();
}

}  // namespace

CSnsCohFace::CSnsCohFace()
    : m_pkgID(0),
      m_pkgName(_T("SnsCohFace")),
      m_pkgInfo(_T("Unknown")),
      m_pkgShow(false),
      m_actCtlOperation(0),
      m_curntCohDataSetID(-1),
      m_cohActive(nullptr),
      m_cohControl(nullptr),
      m_cohActCtl(nullptr) {}

CSnsCohFace::~CSnsCohFace() {
    cleanSnsCohPkg();
}

__int64 CSnsCohFace::getTotalCohDataset() {
    __int64 n = 0;
    for (const CohClass& cls : cxc::cohClasses)
        n += this->*cls.slot == nullptr ? 0 : 1;
    return n;
}

int CSnsCohFace::getCohDatasetListID(int id) {
    const int n = static_cast<int>(getTotalCohDataset());
    return n == 0 ? -1 : std::clamp(id, 0, n - 1);
}

int CSnsCohFace::setCurrentCohDataset(int id) {
    const int clamped = getCohDatasetListID(id);
    m_curntCohDataSetID = std::max(clamped, 0);
    return clamped == -1 ? 0 : 1;
}

int CSnsCohFace::setCurntCohDataSetID(int id) {
    m_curntCohDataSetID = getCohDatasetListID(id);
    return m_curntCohDataSetID;
}

int CSnsCohFace::getCurntCohDataSetID() {
    return m_curntCohDataSetID;
}

int CSnsCohFace::setCohData(CSnsCohDatazq* data, int cls) {
    const CohClass* const wanted = cxc::cohClass(currentOr(*this, cls));
    if (wanted == nullptr) return 0;
    CSnsCohDatazq*& slot = this->*wanted->slot;
    const bool dies = data == slot;
    cxc::releaseSlot(*this, *wanted);
    slot = dies ? nullptr : data;
    return 1;
}

CSnsCohDatazq* CSnsCohFace::getCoherenceData(int cls) {
    if (cls == -1 && m_curntCohDataSetID == -1) {
        AfxMessageBox(_T("This is no data!"));
        return nullptr;
    }
    const int id = currentOr(*this, cls);
    const CohClass* const wanted = cxc::cohClass(id);
    if (wanted == nullptr) return nullptr;
    m_curntCohDataSetID = id;
    return this->*wanted->slot;
}

CSnsCohDatazq* CSnsCohFace::getTrlCohDataAny() {
    for (int id = 0; id < 3; ++id) {
        if (CSnsCohDatazq* const dataset = this->*cxc::cohClasses[id].slot) {
            m_curntCohDataSetID = id;
            return dataset;
        }
    }
    return nullptr;
}

int CSnsCohFace::hasCohTimeData4Show() {
    return getTotalCohDataset() > 0 ? 1 : 0;
}

CSnsCohDatazq* CSnsCohFace::actCohDataset2ListID(int listID) {
    for (int id = 0; id < 3; ++id) {
        CSnsCohDatazq* const dataset = this->*cxc::cohClasses[id].slot;
        if (dataset != nullptr && dataset->m_headerInt9 == listID) {
            m_curntCohDataSetID = id;
            return dataset;
        }
    }
    return nullptr;
}

int CSnsCohFace::deleteCohDataset(int cls) {
    const CohClass* const wanted = cxc::cohClass(currentOr(*this, cls));
    if (wanted == nullptr) return 0;
    cxc::releaseSlot(*this, *wanted);
    return 1;
}

int CSnsCohFace::checkInitSnsCohPkg(int nSns, __int64 nActTime, __int64 nCtlTime, __int64 nMixTime,
                                    bool flag) {
    if (nSns < 2 || nActTime < 1) return 0;
    if (sizeClass(*this, cxc::activeClass, nSns, nActTime, flag) == 0) return 0;
    if (nCtlTime < 1) {
        cxc::releaseSlot(*this, cxc::controlClass);
    } else if (m_cohControl == nullptr) {
        missControl(*this);
        return 0;
    } else if (m_cohControl->checkInitSnsCohData(nSns, nSns, nCtlTime, flag) == 0) {
        return 0;
    }
    if (nMixTime >= 1) return sizeClass(*this, cxc::actCtlClass, nSns, nMixTime, flag);
    cxc::releaseSlot(*this, cxc::actCtlClass);
    return 1;
}

CSnsCohDatazq* CSnsCohFace::checkInitSnsCoh4Class(int nSns, __int64 nTime, int cls, bool flag) {
    if (nSns < 2 || nTime < 1) return nullptr;
    const int id = currentOr(*this, cls);
    const CohClass* const wanted = cxc::cohClass(id);
    if (wanted == nullptr) {
        AfxMessageBox(_T("Wrong wave selection class!"));
        return nullptr;
    }
    m_curntCohDataSetID = id;
    return sizeClass(*this, *wanted, nSns, nTime, flag) == 0 ? nullptr : this->*wanted->slot;
}

int CSnsCohFace::cleanSnsCohPkg() {
    for (const CohClass& cls : cxc::cohClasses)
        cxc::releaseSlot(*this, cls);
    return 1;
}

int CSnsCohFace::setTrlCxcClass(int cls) {
    const CohClass* const wanted = cxc::cohClass(cls);
    if (wanted == nullptr) {
        AfxMessageBox(_T("The set class is wrong!?"));
        return 0;
    }
    if (this->*wanted->slot == nullptr) return 0;
    m_curntCohDataSetID = cls;
    return 1;
}

CString CSnsCohFace::getCohDataPkgName() {
    return m_pkgName;
}

bool CSnsCohFace::getCohDataPkgShow() {
    return m_pkgShow;
}
