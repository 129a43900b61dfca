// Builds without the manager windows: the user is told so, nothing is made, nothing is deleted.
#include "cxcpkg/managers.h"

namespace cxc {
namespace {

int tellUser() {
    AfxMessageBox(_T("The manager windows are available on Windows only."));
    return 0;
}

}  // namespace

int showManager(CSnsCohFacezq&, CWnd*) {
    return tellUser();
}

int showManager(CGroupMeegCxcFacezq&, CWnd*) {
    return tellUser();
}

void deleteManager(CDlgSnsCohManager*) {}

void deleteManager(CDlgGroupTrlCxcDataManager*) {}

}  // namespace cxc
