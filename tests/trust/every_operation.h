// Every operation of a vector, a dataset, a package and a group, one after another, on objects
// that a file, a failure or a host may have left in any state. What they return goes into a
// number, so that two runs over the same state can be compared.
#pragma once

#include "cxcpkg/CGroupMeegCxcFacezq.h"
#include "cxcpkg/CSnsCohFacezq.h"
#include "framework.h"

#include <cstdint>

namespace test {

/// While it lives, the library is refused arrays above `largest` bytes and more than `total` bytes
/// together: counters that a file announces are to fail early, not to fill the machine.
class MemoryBudget {
public:
    explicit MemoryBudget(std::size_t largest = 64 << 10, std::size_t total = 512 << 10);
    ~MemoryBudget();
    MemoryBudget(const MemoryBudget&) = delete;
    MemoryBudget& operator=(const MemoryBudget&) = delete;
};

/// Takes in what operations return.
class Digest {
public:
    void take(double value);
    void take(__int64 value);
    void take(int value) { take(static_cast<__int64>(value)); }
    void take(bool value) { take(static_cast<__int64>(value)); }
    void take(const CString& text);
    std::uint64_t value() const { return m_value; }

private:
    void takeBits(std::uint64_t bits);
    std::uint64_t m_value = 1469598103934665603u;
};

/// All leave the object in a valid state, but another one.
void useEverything(CWavChnlChnlDatazq& vector, Digest& digest);
void useEverything(CSnsCohDatazq& dataset, Digest& digest);
void useEverything(CSnsCohFacezq& package, Digest& digest);
/// Releases the datasets at the end.
void useEverything(CGroupMeegCxcFacezq& group, Digest& digest);

/// checkInitSnsCohPkg. The library loses the former Active where a Control is asked for that is not
/// there, deliberately; a test must not.
int sizePackage(CSnsCohFacezq& package, int sensors, __int64 active, __int64 control, __int64 mixed,
                bool zero);

/// Those operations that change nothing but what was last determined.
void look(CSnsCohDatazq& dataset, Digest& digest);

}  // namespace test
