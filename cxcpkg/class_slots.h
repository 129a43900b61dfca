// The three classes of a package as one table: which slot, which names.
#pragma once

#include "cxcpkg/CSnsCohFace.h"
#include "framework.h"

namespace cxc {

struct CohClass {
    CSnsCohDatazq* CSnsCohFace::*slot;
    LPCTSTR datasetName;  // given to a dataset that the package makes
    LPCTSTR displayName;
};

/// By class id.
inline constexpr CohClass cohClasses[] = {
    {&CSnsCohFace::m_cohActive, _T("Active CxC"), _T("Active")},
    {&CSnsCohFace::m_cohControl, _T("Control CxC"), _T("Control")},
    {&CSnsCohFace::m_cohActCtl, _T("Act-Ctl CxC"), _T("Mix Act-Ctl")},
};
inline constexpr const CohClass& activeClass = cohClasses[0];
inline constexpr const CohClass& controlClass = cohClasses[1];
inline constexpr const CohClass& actCtlClass = cohClasses[2];

/// The class that an argument names where -1 stands for the current one.
inline int currentOr(const CSnsCohFace& package, int cls) {
    return cls == -1 ? package.m_curntCohDataSetID : cls;
}

/// Null for anything but 0, 1 and 2; -1 is no class here.
constexpr const CohClass* cohClass(int cls) {
    return cls < 0 || cls > 2 ? nullptr : cohClasses + cls;
}

/// Releases the dataset of a slot; the slot becomes null, and so does any other slot of the
/// package that a host has given the same dataset.
void releaseSlot(CSnsCohFace& package, const CohClass& cls);

}  // namespace cxc
