// Counts what is taken from the heap, and makes it fail.
//
// Natively every allocation of the process passes here, those of the language, of strings and of
// lists included; under the sanitizers those of the language; on Windows those that the library
// makes through its gate.
#pragma once

#include <cstddef>

#if defined(__has_feature)
#if __has_feature(address_sanitizer)
#define CXC_TEST_SANITIZED
#endif
#endif
#if defined(__SANITIZE_ADDRESS__)
#define CXC_TEST_SANITIZED
#endif

namespace test {

/// While it lives, allocations of this thread are counted, and fail where it says so. Only one at
/// a time.
class HeapWatch {
public:
    enum Failing { onlyThat, fromThereOn };

    /// The n-th allocation fails, counted from 1; 0 lets all succeed.
    explicit HeapWatch(int n = 0, Failing failing = fromThereOn);
    ~HeapWatch();
    HeapWatch(const HeapWatch&) = delete;
    HeapWatch& operator=(const HeapWatch&) = delete;

    int count() const;
    /// Bytes that were taken and not given back; 0 on Windows.
    long long live() const;
    /// The most that was taken at a time; on Windows all that was taken.
    long long peak() const;

    /// From now on nothing is counted and nothing fails.
    void stop();
};

}  // namespace test
