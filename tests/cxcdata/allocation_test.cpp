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

// An operator new that has nothing left, as the language's own says it.
struct Refused {
    static void* operator new(std::size_t) { throw std::bad_alloc(); }
    static void* operator new[](std::size_t) { throw std::bad_array_new_length(); }
    static void operator delete(void*) {}
    static void operator delete[](void*) {}
    double value = 0.0;
};

// Holds an array of its own, so that a half-made row must be taken down again.
struct Part {
    Part() : array(new double[2]) {
        if (++s_made == 3) AfxThrowMemoryException();
        ++s_alive;
    }
    ~Part() { --s_alive; }
    std::unique_ptr<double[]> array;
    inline static int s_made = 0;
    inline static int s_alive = 0;
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

TEST(Allocation, TheLanguagesOwnExceptionsGiveNullToo) {
    EXPECT_EQ(cxc::newArray<Refused>(3), nullptr);
    EXPECT_EQ(cxc::newObject<Refused>(), nullptr);
}

TEST(Allocation, AnArrayThatFailsInTheMiddleIsTakenDownWhole) {
    Part::s_made = 0;
    EXPECT_EQ(cxc::newArray<Part>(5), nullptr);
    EXPECT_EQ(Part::s_made, 3);
    EXPECT_EQ(Part::s_alive, 0);
}

TEST(Allocation, OnlyTheAllocationThatIsMeantToFailFails) {
    const test::FailingMemory failing(2, true);
    const std::unique_ptr<double[]> first(cxc::newArray<double>(1));
    const std::unique_ptr<double[]> second(cxc::newArray<double>(1));
    const std::unique_ptr<double[]> third(cxc::newArray<double>(1));
    EXPECT_NE(first, nullptr);
    EXPECT_EQ(second, nullptr);
    EXPECT_NE(third, nullptr);
}
