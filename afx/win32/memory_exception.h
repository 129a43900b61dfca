// Memory that the language refuses is the framework's exception where the framework catches.
#pragma once

#include "afx_exception.h"

#include <new>

namespace afx {

/// Runs `call`. A std::bad_alloc that leaves it goes on as a CMemoryException.
template <class Call>
auto withMemoryException(Call call) -> decltype(call()) {
    try {
        return call();
    } catch (const std::bad_alloc&) {
        AfxThrowMemoryException();
    }
}

}  // namespace afx
