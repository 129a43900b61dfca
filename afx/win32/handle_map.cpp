#include "afx/win32/handle_map.h"

#include <vector>

namespace afx {
namespace {

std::vector<FreeTemporaries>& maps() {
    static std::vector<FreeTemporaries>& all = *new std::vector<FreeTemporaries>;
    return all;
}

}  // namespace

void addTemporaries(FreeTemporaries freeThem) {
    maps().push_back(freeThem);
}

void freeTemporaryObjects() {
    for (const FreeTemporaries freeThem : maps())
        freeThem();
}

}  // namespace afx
