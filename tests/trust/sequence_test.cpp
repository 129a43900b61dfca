// Random sequences of calls on a package and a group, beside a plain counterpart: every result,
// every message, every field and every value is the same to the last bit.
#include "tests/trust/Sequence.h"
#include "tests/trust/QuietApp.h"

#include <gtest/gtest.h>

#include <random>
#include <vector>

namespace {

TEST(Sequences, EveryCallDoesWhatThePlainCounterpartDoes) {
    test::QuietApp app;
    std::mt19937 random(20261121);
    std::uniform_int_distribution<int> byte(0, 255);
    std::uniform_int_distribution<std::size_t> length(1, 600);
    for (int i = 0; i < 4000; ++i) {
        std::vector<std::uint8_t> bytes(length(random));
        for (std::uint8_t& one : bytes)
            one = static_cast<std::uint8_t>(byte(random));
        ASSERT_EQ(test::playSequence(app, bytes.data(), bytes.size()), "") << "sequence " << i;
    }
}

}  // namespace
