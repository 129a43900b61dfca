// Which modules the process has, and which of them hold resources.
#pragma once

#include "afx_module.h"

#include <vector>

namespace afx {

struct ModuleState {
    HINSTANCE instance;                        // the program
    HINSTANCE resources;                       // searched first; null: the program
    std::vector<CDynLinkLibrary*> extensions;  // in the order of loading
};

/// The one of the process.
ModuleState& moduleState();

}  // namespace afx
