#include "cxcdata/allocation.h"

#include "cxcdata/CWavChnlChnlDatazq.h"

#include <limits>

#if defined(__linux__)
#include <sys/mman.h>
#endif
#if !defined(_WIN32)
#include <unistd.h>
#endif

namespace cxc {
namespace {

AllocationHook g_hook = nullptr;

}  // namespace

void setAllocationHook(AllocationHook hook) {
    g_hook = hook;
}

bool allocationRefused(std::size_t bytes) {
    return g_hook != nullptr && g_hook(bytes);
}

double physicalMemory() {
#if defined(_WIN32)
    MEMORYSTATUSEX status = {};
    status.dwLength = sizeof(status);
    if (GlobalMemoryStatusEx(&status)) return static_cast<double>(status.ullTotalPhys);
#else
    const long pages = sysconf(_SC_PHYS_PAGES);
    const long pageSize = sysconf(_SC_PAGESIZE);
    if (pages > 0 && pageSize > 0)
        return static_cast<double>(pages) * static_cast<double>(pageSize);
#endif
    return std::numeric_limits<double>::max();
}

void reserveHeap([[maybe_unused]] std::size_t bytes) {
#if defined(__linux__) && defined(MADV_HUGEPAGE)
    constexpr std::size_t largePage = std::size_t(2) << 20;
    if (bytes < largePage) return;
    // A block that is taken and given back untouched makes the heap grow in one piece; the small
    // arrays are then cut out of it.
    void* const block = ::operator new(bytes, std::nothrow);
    if (block == nullptr) return;
    const auto address = reinterpret_cast<std::uintptr_t>(block);
    const std::uintptr_t begin = (address + largePage - 1) / largePage * largePage;
    const std::uintptr_t end = (address + bytes) / largePage * largePage;
    if (end > begin) madvise(reinterpret_cast<void*>(begin), end - begin, MADV_HUGEPAGE);
    ::operator delete(block);
#endif
}

bool gridFitsMemory(__int64 rows, __int64 cols, __int64 nTim) {
    // Doubles cannot overflow here, and the last digits do not matter.
    constexpr double bytesPerRow = sizeof(void*);
    constexpr double bytesPerPair = sizeof(CWavChnlChnlDatazq);
    const double perPair = bytesPerPair + static_cast<double>(nTim) * sizeof(double);
    const double perRow = bytesPerRow + static_cast<double>(cols) * perPair;
    return static_cast<double>(rows) * perRow <= physicalMemory();
}

}  // namespace cxc
