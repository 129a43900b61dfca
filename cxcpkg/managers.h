// What packages and groups ask of their manager windows. Two sources implement it, and a build
// links one of them: the windows themselves, or no_managers.cpp where there are none.
#pragma once

#include "framework.h"

class CDlgGroupTrlCxcDataManager;
class CDlgSnsCohManager;
class CGroupMeegCxcFacezq;
class CSnsCohFacezq;

namespace cxc {

/// Shows the manager of `package`; the first call makes it and stores it in the package. Returns 1
/// when the window is shown, 0 where there are no windows, after telling the user.
int showManager(CSnsCohFacezq& package, CWnd* parent);
int showManager(CGroupMeegCxcFacezq& group, CWnd* parent);

/// Destroys the window and deletes its object, which forgets its package or group first, so that
/// no message of the dying window reaches it. Null is allowed.
void deleteManager(CDlgSnsCohManager* manager);
void deleteManager(CDlgGroupTrlCxcDataManager* manager);

}  // namespace cxc
