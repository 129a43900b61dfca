// The windows of packages and groups, where there are windows.
#include "cxcpkg/managers.h"

#include "cxcdata/allocation.h"
#include "cxcpkg/CGroupMeegCxcFacezq.h"
#include "cxcpkg/CSnsCohFacezq.h"
#include "cxcui/CDlgGroupTrlCxcDataManager.h"
#include "cxcui/CDlgSnsCohManager.h"
#include "res/resource.h"

namespace cxc {
namespace {

// Makes the dialog where it is missing, and its window, also where that has died with its parent.
// Returns whether there is a window; none without memory for the dialog.
template <class Dialog>
bool make(Dialog*& dialog, UINT id, CWnd* parent) {
    if (dialog == nullptr) dialog = newObject<Dialog>();
    return dialog != nullptr && (dialog->m_hWnd != nullptr || dialog->Create(id, parent));
}

}  // namespace

int showManager(CSnsCohFacezq& package, CWnd* parent) {
    if (make(package.m_dlgSnsCohManager, IDD_WAVEFORM_MANAGER, parent))
        package.m_dlgSnsCohManager->show(package);
    return 1;
}

int showManager(CGroupMeegCxcFacezq& group, CWnd* parent) {
    if (make(group.m_dlgGroupCxcManager, IDD_GROUP_MANAGER, parent))
        group.m_dlgGroupCxcManager->show(group, parent);
    return 1;
}

void deleteManager(CDlgSnsCohManager* manager) {
    if (manager == nullptr) return;
    manager->forgetPackage();
    delete manager;
}

void deleteManager(CDlgGroupTrlCxcDataManager* manager) {
    if (manager == nullptr) return;
    manager->forgetGroup();
    delete manager;
}

}  // namespace cxc
