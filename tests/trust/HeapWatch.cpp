#include "tests/trust/HeapWatch.h"

#include "cxcdata/allocation.h"

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <new>

#if !defined(_WIN32)
#include <malloc.h>
#endif

namespace {

struct State {
    bool armed = false;
    int failing = 0;
    bool onlyThat = false;
    int count = 0;
    long long live = 0;
    long long peak = 0;
};

thread_local State t_state;

bool refused() {
    State& state = t_state;
    if (!state.armed) return false;
    ++state.count;
    if (state.failing < 1) return false;
    return state.onlyThat ? state.count == state.failing : state.count >= state.failing;
}

void taken(long long bytes) {
    State& state = t_state;
    if (!state.armed) return;
    state.live += bytes;
    state.peak = std::max(state.peak, state.live);
}

#if defined(_WIN32)

bool ask(std::size_t bytes) {
    if (refused()) return true;
    taken(static_cast<long long>(bytes));
    return false;
}

#else

void* counted(void* block) {
    if (block != nullptr) taken(static_cast<long long>(malloc_usable_size(block)));
    return block;
}

void givenBack(void* block) {
    if (block != nullptr && t_state.armed)
        t_state.live -= static_cast<long long>(malloc_usable_size(block));
}

#endif

}  // namespace

#if defined(CXC_TEST_SANITIZED)

// The sanitizer owns malloc, so that only the operators can be asked.
namespace {

void* newBlock(std::size_t bytes) {
    return refused() ? nullptr : counted(std::malloc(bytes == 0 ? 1 : bytes));
}

void* newBlockOrThrow(std::size_t bytes) {
    void* const block = newBlock(bytes);
    if (block == nullptr) throw std::bad_alloc();
    return block;
}

void deleteBlock(void* block) {
    givenBack(block);
    std::free(block);
}

}  // namespace

void* operator new(std::size_t n) {
    return newBlockOrThrow(n);
}
void* operator new[](std::size_t n) {
    return newBlockOrThrow(n);
}
void* operator new(std::size_t n, const std::nothrow_t&) noexcept {
    return newBlock(n);
}
void* operator new[](std::size_t n, const std::nothrow_t&) noexcept {
    return newBlock(n);
}
void operator delete(void* p) noexcept {
    deleteBlock(p);
}
void operator delete[](void* p) noexcept {
    deleteBlock(p);
}
void operator delete(void* p, std::size_t) noexcept {
    deleteBlock(p);
}
void operator delete[](void* p, std::size_t) noexcept {
    deleteBlock(p);
}
void operator delete(void* p, const std::nothrow_t&) noexcept {
    deleteBlock(p);
}
void operator delete[](void* p, const std::nothrow_t&) noexcept {
    deleteBlock(p);
}

#elif defined(__GLIBC__)

// The libraries have to find these instead of the C library's own.
#pragma GCC visibility push(default)
extern "C" {

void* __libc_malloc(std::size_t);
void* __libc_calloc(std::size_t, std::size_t);
void* __libc_realloc(void*, std::size_t);
void __libc_free(void*);

void* malloc(std::size_t bytes) noexcept {
    if (refused()) {
        errno = ENOMEM;
        return nullptr;
    }
    return counted(__libc_malloc(bytes));
}

void* calloc(std::size_t n, std::size_t bytes) noexcept {
    if (refused()) {
        errno = ENOMEM;
        return nullptr;
    }
    return counted(__libc_calloc(n, bytes));
}

void* realloc(void* block, std::size_t bytes) noexcept {
    if (refused()) {
        errno = ENOMEM;
        return nullptr;
    }
    givenBack(block);
    return counted(__libc_realloc(block, bytes));
}

void free(void* block) noexcept {
    givenBack(block);
    __libc_free(block);
}

}  // extern "C"
#pragma GCC visibility pop

#endif

namespace test {

#if defined(__GLIBC__) && !defined(CXC_TEST_SANITIZED)
namespace {

// Sweeps take and return large blocks all the time: they are not handed back to the system each
// time.
const bool g_keepsMemory =
    mallopt(M_MMAP_THRESHOLD, 1 << 30) == 1 && mallopt(M_TRIM_THRESHOLD, 1 << 30) == 1;

}  // namespace
#endif

HeapWatch::HeapWatch(int n, Failing failing) {
#if defined(_WIN32)
    cxc::setAllocationHook(ask);
#endif
    State state;
    state.armed = true;
    state.failing = n;
    state.onlyThat = failing == onlyThat;
    t_state = state;
}

HeapWatch::~HeapWatch() {
    stop();
}

void HeapWatch::stop() {
    t_state.armed = false;
#if defined(_WIN32)
    cxc::setAllocationHook(nullptr);
#endif
}

int HeapWatch::count() const {
    return t_state.count;
}

long long HeapWatch::live() const {
#if defined(_WIN32)
    return 0;
#else
    return t_state.live;
#endif
}

long long HeapWatch::peak() const {
    return t_state.peak;
}

}  // namespace test
