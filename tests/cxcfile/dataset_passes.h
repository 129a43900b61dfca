// Verbs of the dataset record's tests: load bytes, store a dataset, watch memory.
#pragma once

#include "cxcdata/CSnsCohDatazq.h"
#include "cxcdata/allocation.h"
#include "tests/support/ArchiveFile.h"
#include "tests/support/Bytes.h"
#include "tests/support/Outcome.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <string>

namespace test {

inline int load(CSnsCohData09File& data, const Bytes& bytes) {
    return ArchiveFile(bytes).load([&](CArchive& ar) { return data.serialize(ar); });
}

inline std::string stored(CSnsCohData09File& data) {
    ArchiveFile file;
    EXPECT_EQ(file.store([&](CArchive& ar) { return data.serialize(ar); }), 1);
    return file.bytes();
}

// What loading comes to, with exceptions as outcomes.
inline Outcome outcomeOfLoading(CSnsCohData09File& data, const Bytes& bytes) {
    return outcomeOf([&] { return load(data, bytes); });
}

// Watches the library's arrays while it lives, and can make one of them fail.
class MemoryWatch {
public:
    // failing: which allocation fails, counted from 1; 0 for none.
    explicit MemoryWatch(int failing = 0) {
        s_count = 0;
        s_failing = failing;
        s_bytes = 0;
        s_largest = 0;
        cxc::setAllocationHook(&MemoryWatch::ask);
    }
    MemoryWatch(const MemoryWatch&) = delete;
    MemoryWatch& operator=(const MemoryWatch&) = delete;
    ~MemoryWatch() { cxc::setAllocationHook(nullptr); }

    static int count() { return s_count; }
    static std::size_t bytes() { return s_bytes; }      // of all allocations together
    static std::size_t largest() { return s_largest; }  // bytes of the largest one

private:
    static bool ask(std::size_t bytes) {
        s_bytes += bytes;
        s_largest = std::max(s_largest, bytes);
        return ++s_count == s_failing;
    }

    inline static int s_count = 0;
    inline static int s_failing = 0;
    inline static std::size_t s_bytes = 0;
    inline static std::size_t s_largest = 0;
};

}  // namespace test
