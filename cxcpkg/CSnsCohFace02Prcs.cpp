#include "cxcpkg/CSnsCohFace02Prcs.h"

#include "cxcpkg/class_slots.h"
#include "cxcpkg/combine.h"
#include "cxcpkg/dataset_owner.h"
#include "cxcpkg/widening.h"

namespace {

int refused(LPCTSTR text) {
    AfxMessageBox(text);
    return 0;
}

bool hasBoth(const CSnsCohFace& package) {
    return package.m_cohActive != nullptr && package.m_cohControl != nullptr;
}

// Asks, and reduces Control to one slice. Returns whether both classes are still there and
// Control is reduced; the box lets the user and the host work on the package meanwhile.
bool reduceControl(CSnsCohFace& package) {
    const int button =
        AfxMessageBox(_T("This operation requires Control dataset has 1 slice"), MB_YESNO);
    if (button != IDYES || !hasBoth(package)) return false;
    if (package.m_cohControl->accumulateTime1() == 0) {
        AfxMessageBox(_T("Control dataset accumulating failed!"));
        return false;
    }
    return true;
}

}  // namespace

int CSnsCohFace02Prcs::accumulateTrlCoh(CSnsCohDatazq* data) {
    return cxc::accumulateSlices(data);
}

double CSnsCohFace02Prcs::getLatency4PtSecond(__int64) {
    return 0.0;
}

__int64 CSnsCohFace02Prcs::getCohTimSlcMax() const {
    return m_cohActive == nullptr ? 1 : m_cohActive->m_headerLong2;
}

int CSnsCohFace02Prcs::getSnsCohRange(int cls, double& lo, double& hi, bool flag, int mode) {
    const cxc::CohClass* const wanted = cxc::cohClass(cls);
    return cxc::rangeOf(wanted == nullptr ? nullptr : this->*wanted->slot, lo, hi, flag, mode);
}

int CSnsCohFace02Prcs::checkSelect4Class(__int64 first, __int64 last, int cls) {
    const cxc::CohClass* const wanted = cxc::cohClass(cls);
    if (wanted == nullptr) return refused(_T("Wrong wave selection class!"));
    CSnsCohDatazq* const dataset = this->*wanted->slot;
    return dataset == nullptr ? 0 : dataset->checkSelect(first, last);
}

int CSnsCohFace02Prcs::matchAtiveControl(__int64& activeFirst, __int64& activeLast,
                                         __int64& controlFirst, __int64& controlLast) {
    if (!hasBoth(*this)) return refused(_T("There is no Active or Control data!?"));
    cxc::Selection active = {activeFirst, activeLast};
    cxc::Selection control = {controlFirst, controlLast};
    const cxc::Width activeWidth(active);
    const cxc::Width controlWidth(control);
    const cxc::Width none({0, 0});
    if (activeWidth == controlWidth) return 1;
    if (!(none < activeWidth) && !(none < controlWidth))
        return refused(_T("The selected data range is wrong!"));

    bool matched = false;
    if (controlWidth < activeWidth) {
        matched = cxc::widen(control, activeWidth, m_cohControl->getSnsCohTimTotal());
        controlFirst = control.first;
        controlLast = control.last;
    } else {
        matched = cxc::widen(active, controlWidth, m_cohActive->getSnsCohTimTotal());
        activeFirst = active.first;
        activeLast = active.last;
    }
    return matched ? 1 : refused(_T("Can't match the active and control selections!"));
}

int CSnsCohFace02Prcs::doAct_Ctl_operation() {
    if (!hasBoth(*this))
        // The two blanks are part of the text.
        return refused(_T("This operation requires  both Active and Control datasets!"));
    if (m_cohActive->m_snsRowTotal != m_cohControl->m_snsRowTotal ||
        m_cohActive->m_snsColTotal != m_cohControl->m_snsColTotal)
        return refused(
            _T("This operation requires Active and Control datasets have the same size"));
    if (m_cohControl->getSnsCohTimTotal() > 1 && !reduceControl(*this)) return 0;
    if (m_cohActCtl == nullptr) {
        // Deliberately without the name of its class.
        m_cohActCtl = cxc::newDataset().release();
        if (m_cohActCtl == nullptr) return refused(_T("This operation requires more memory"));
    }
    // The operation writes every value, so that clearing them first would be a pass for nothing,
    // unless it is an unknown one or works on a slot that is also a source.
    const bool clear = m_actCtlOperation < 0 || m_actCtlOperation > 3 ||
                       m_cohActCtl == m_cohActive || m_cohActCtl == m_cohControl;
    if (m_cohActCtl->checkInitSnsCohData(m_cohActive->m_snsRowTotal, m_cohActive->m_snsColTotal,
                                         m_cohActive->getSnsCohTimTotal(), clear) == 0)
        return 0;
    cxc::combineDatasets(m_actCtlOperation, *m_cohActive, *m_cohControl, *m_cohActCtl);
    return 1;
}
