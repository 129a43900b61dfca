// Opening whatever the user brings: a dataset, a package or a group.
#pragma once

#include "framework.h"

class CGroupMeegCxcFacezq;
class CSnsCohFacezq;

enum class Opened { nothing, intoPackage, intoGroup };

/// Opens a file by the magic string at its beginning. A package record replaces the package, a
/// group record the group. A dataset goes to the first free class of the package; when all three
/// are taken, to the end of the group. The user is told why a file could not be opened; package and
/// group are as before then.
Opened openRecord(const CString& path, CSnsCohFacezq& package, CGroupMeegCxcFacezq& group);
