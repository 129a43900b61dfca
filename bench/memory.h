// Memory that a piece of work needs.
#pragma once

#include <functional>

namespace bench {

struct Memory {
    double peak = 0.0;       // most memory beyond what the process held before [bytes]
    double allocated = 0.0;  // bytes asked for by `new`, whether released since or not
};

/// Does the work once. One thread at a time.
Memory memoryOf(const std::function<void()>& work);

}  // namespace bench
