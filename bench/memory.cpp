#include "bench/memory.h"

#include <malloc.h>

#include <atomic>
#include <cstddef>
#include <cstdlib>
#include <fstream>
#include <new>
#include <string>

namespace {

// Bytes asked from the allocator by this process while counting is on.
std::atomic<bool> g_counting{false};
std::atomic<std::size_t> g_bytes{0};

void* countedNew(std::size_t bytes) {
    if (g_counting) g_bytes += bytes;
    void* memory = std::malloc(bytes == 0 ? 1 : bytes);
    if (memory == nullptr) throw std::bad_alloc();
    return memory;
}

// A line of the system's account of this process [bytes].
double status(const std::string& name) {
    std::ifstream lines("/proc/self/status");
    for (std::string word; lines >> word;) {
        double kibibytes = 0.0;
        if (word == name + ":" && lines >> kibibytes) return kibibytes * 1024.0;
    }
    return 0.0;
}

}  // namespace

void* operator new(std::size_t bytes) {
    return countedNew(bytes);
}
void* operator new[](std::size_t bytes) {
    return countedNew(bytes);
}
void operator delete(void* memory) noexcept {
    std::free(memory);
}
void operator delete[](void* memory) noexcept {
    std::free(memory);
}
void operator delete(void* memory, std::size_t) noexcept {
    std::free(memory);
}
void operator delete[](void* memory, std::size_t) noexcept {
    std::free(memory);
}

namespace bench {

Memory memoryOf(const std::function<void()>& work) {
    ::malloc_trim(0);
    std::ofstream("/proc/self/clear_refs") << 5;  // the peak starts anew
    const double before = status("VmRSS");
    g_bytes = 0;
    g_counting = true;
    work();
    g_counting = false;
    return {status("VmHWM") - before, static_cast<double>(g_bytes.load())};
}

}  // namespace bench
