#include "cxcdata/allocation.h"

#include "tests/support/DatasetFixture.h"

#include <gtest/gtest.h>

#include <limits>
#include <memory>
#include <vector>

namespace {

std::vector<std::size_t> g_asked;

bool record(std::size_t bytes) {
    g_asked.push_back(bytes);
    return false;
}

struct Thrower {
    Thrower() { AfxThrowMemoryException(); }
};

}  // namespace

TEST(Allocation, CountsThatNoArrayCanHaveGiveNull) {
    for (const __int64 n : {-1LL, std::numeric_limits<long long>::min(), (1LL << 60) + 1,
                            (1LL << 61) + 1, std::numeric_limits<long long>::max()})
        EXPECT_EQ(cxc::newArray<double>(n), nullptr) << n;
}

TEST(Allocation, AnArrayOfNothingHasAnAddress) {
    const std::unique_ptr<double[]> none(cxc::newArray<double>(0));
    EXPECT_NE(none, nullptr);
}

TEST(Allocation, TheHookIsAskedForEveryArrayWithItsBytes) {
    g_asked.clear();
    cxc::setAllocationHook(record);
    const std::unique_ptr<double[]> array(cxc::newArray<double>(3));
    const std::unique_ptr<CSnsCohDatazq> object(cxc::newObject<CSnsCohDatazq>());
    cxc::setAllocationHook(nullptr);
    EXPECT_EQ(g_asked, std::vector<std::size_t>({24, sizeof(CSnsCohDatazq)}));
}

TEST(Allocation, ARefusingHookMakesItFail) {
    const test::FailingMemory failing(1);
    EXPECT_EQ(cxc::newArray<double>(3), nullptr);
    EXPECT_EQ(cxc::newObject<CSnsCohDatazq>(), nullptr);
}

TEST(Allocation, AFrameworkExceptionInAConstructorGivesNull) {
    EXPECT_EQ(cxc::newObject<Thrower>(), nullptr);
}
