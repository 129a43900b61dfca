// The message that a window procedure is working on.
#pragma once

#include "afx_user.h"

namespace afx {

/// The innermost one, with its original parameters.
const MSG& currentMessage();

}  // namespace afx
