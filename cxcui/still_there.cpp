#include "cxcui/still_there.h"

#include "cxcpkg/class_slots.h"

namespace cxc {

bool isThere(const CSnsCohFace& package, const CSnsCohDatazq* dataset) {
    if (dataset == nullptr) return false;
    for (const CohClass& cls : cohClasses) {
        if (package.*cls.slot == dataset) return true;
    }
    return false;
}

bool isThere(const CGroupMeegCxcFace& group, const CSnsCohDatazq* dataset) {
    if (dataset == nullptr) return false;
    for (INT_PTR i = 0; i < group.m_cohDatasets.GetSize(); ++i) {
        if (group.m_cohDatasets.GetAt(i) == dataset) return true;
    }
    return false;
}

ModalScope::ModalScope(CWnd& window, const Life& life)
    : m_window(window),
      m_witness(life),
      m_wasActive(window.m_hWnd != nullptr && ::GetActiveWindow() == window.m_hWnd),
      m_wasEnabled(window.m_hWnd != nullptr && window.IsWindowEnabled()) {
    if (m_wasEnabled) window.EnableWindow(FALSE);
}

ModalScope::~ModalScope() {
    if (m_witness.ended() || m_window.m_hWnd == nullptr || !m_wasEnabled) return;
    m_window.EnableWindow(TRUE);
    if (m_wasActive) ::SetActiveWindow(m_window.m_hWnd);
}

}  // namespace cxc
