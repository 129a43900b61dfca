// For the one source of an extension DLL that holds its DllMain.
#pragma once

#include "afx_module.h"
