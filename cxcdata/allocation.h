// The one gate through which the library makes arrays and objects. A failure of any kind (no
// memory, a negative count, a byte count beyond the address range) is a null pointer, whatever
// the platform's operator new does.
#pragma once

#include "cxcdata/cxc_api.h"
#include "framework.h"

#include <cstddef>
#include <cstdint>
#include <new>
#include <utility>

namespace cxc {

/// Asked before every allocation of the gate; returning true makes that allocation fail.
/// For tests of failing memory; null (the default) asks nobody.
using AllocationHook = bool (*)(std::size_t bytes);
CXC_API void setAllocationHook(AllocationHook hook);

/// True when the hook wants an allocation of `bytes` to fail.
CXC_API bool allocationRefused(std::size_t bytes);

/// The rule for sizes that a file or a host only claims: memory above this many bytes is taken only
/// when there is as much data behind the claim. Smaller claims just fail where the data end.
constexpr __int64 largestUnbackedClaim = 1 << 26;

/// Physical memory of the machine in bytes; "no limit known" is the largest double.
double physicalMemory();

/// Whether a grid of rows x cols vectors of nTim values each can be held by this machine at all.
/// Asked before the first byte is taken, because a system that overcommits never says no.
bool gridFitsMemory(__int64 rows, __int64 cols, __int64 nTim);

/// The most that reserveHeap takes at once [bytes]; allocators hand larger blocks back at once.
constexpr double largestReserve = 31.5 * 1024 * 1024;

/// Says that about `bytes` will soon be taken in many small arrays, so that a system that serves
/// large memory pages on request gives them in large pages: one visit to the system for each 2 MiB
/// instead of for each 4 KiB. Changes nothing but speed; systems without such pages do nothing.
CXC_API void reserveHeap(std::size_t bytes);

/// Runs `make` and turns every way in which memory can be refused into null.
template <class Make>
auto allocateOrNull(std::size_t bytes, Make make) -> decltype(make()) {
    if (allocationRefused(bytes)) return nullptr;
    try {
        return make();
    } catch (CMemoryException* e) {
        e->Delete();
    } catch (const std::bad_alloc&) {
    }
    return nullptr;
}

/// Array of n default-initialised elements (doubles are not cleared), made by array new and
/// released by the caller with array delete. n = 0 is a valid empty array. Null on failure.
template <class T>
T* newArray(__int64 n) {
    constexpr std::uint64_t most = static_cast<std::uint64_t>(PTRDIFF_MAX) / sizeof(T);
    if (n < 0 || static_cast<std::uint64_t>(n) > most) return nullptr;
    const std::size_t count = static_cast<std::size_t>(n);
    return allocateOrNull(count * sizeof(T), [count] { return new T[count]; });
}

/// One object, released by the caller with delete. Null on failure.
template <class T, class... Arguments>
T* newObject(Arguments&&... arguments) {
    return allocateOrNull(sizeof(T), [&] { return new T(std::forward<Arguments>(arguments)...); });
}

}  // namespace cxc
