// A fuzz target for one kind of record: see tests/trust/RecordCheck.h for what must hold.
#pragma once

#include "tests/trust/RecordCheck.h"

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>

namespace fuzz {

/// Ends the process where something is wrong, as the fuzzer expects it.
inline int require(const std::string& wrong) {
    if (wrong.empty()) return 0;
    std::fprintf(stderr, "%s\n", wrong.c_str());
    std::abort();
}

/// Reads the input into a new object, and into one that held `before`.
template <class Record, class Model>
int checkRecord(const std::uint8_t* data, std::size_t size, const std::string& before) {
    const std::string bytes(reinterpret_cast<const char*>(data), size);
    require(test::RecordCheck<Record, Model>()(bytes));
    return require(test::RecordCheck<Record, Model>(before)(bytes));
}

}  // namespace fuzz
