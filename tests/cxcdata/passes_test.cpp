#include "cxcdata/passes.h"

#include <gtest/gtest.h>

#include <cstring>
#include <random>
#include <vector>

namespace {

namespace pass = cxc::pass;

// Values of every kind, the same ones in every run.
std::vector<double> values(std::size_t count, unsigned seed) {
    constexpr double infinity = std::numeric_limits<double>::infinity();
    const double special[] = {0.0,
                              -0.0,
                              infinity,
                              -infinity,
                              std::numeric_limits<double>::quiet_NaN(),
                              std::numeric_limits<double>::denorm_min(),
                              -std::numeric_limits<double>::max()};
    std::mt19937 random(seed);
    std::uniform_real_distribution<double> usual(-3.0, 3.0);
    std::vector<double> made;
    for (std::size_t i = 0; i < count; ++i)
        made.push_back(random() % 11 == 0 ? special[random() % 7] : usual(random));
    return made;
}

// The same bits; of NaNs, which one it is may differ.
bool same(double a, double b) {
    return std::memcmp(&a, &b, sizeof(a)) == 0 || (std::isnan(a) && std::isnan(b));
}

template <template <class> class Accumulator, std::size_t Lanes>
void expectEachRowByItself(bool special) {
    for (std::size_t length = 0; length < 70; ++length) {
        std::vector<std::vector<double>> rows;
        std::array<pass::Slice, Lanes> slices;
        std::array<Accumulator<double>, Lanes> together;
        std::array<Accumulator<double>, Lanes> alone;
        for (std::size_t r = 0; r < Lanes; ++r) {
            // Rows of different lengths, and all different.
            const std::size_t own = length + (special ? r % 3 : 0);
            rows.push_back(values(own + 1, static_cast<unsigned>(100 * length + r)));
        }
        for (std::size_t r = 0; r < Lanes; ++r) {
            const auto end = static_cast<__int64>(rows[r].size());
            together[r].start(rows[r][0]);
            alone[r].start(rows[r][0]);
            slices[r] = {rows[r].data(), 1, end, true};
            for (__int64 t = 1; t < end; ++t)
                alone[r].add(rows[r][static_cast<std::size_t>(t)]);
        }
        pass::walk<Accumulator>(slices, together);
        for (std::size_t r = 0; r < Lanes; ++r) {
            for (std::size_t f = 0; f < alone[r].field.size(); ++f) {
                ASSERT_TRUE(same(together[r].field[f], alone[r].field[f]))
                    << "row " << r << " field " << f << " length " << length;
            }
        }
    }
}

template <template <class> class Accumulator>
void expectSideBySideChangesNothing() {
    for (const bool unequal : {false, true}) {
        expectEachRowByItself<Accumulator, 8>(unequal);
        expectEachRowByItself<Accumulator, 4>(unequal);
        expectEachRowByItself<Accumulator, 1>(unequal);
    }
}

TEST(Passes, RowsSideBySideGiveWhatEachGivesByItself) {
    expectSideBySideChangesNothing<pass::Range>();
    expectSideBySideChangesNothing<pass::MagnitudeRange>();
    expectSideBySideChangesNothing<pass::RangeSum>();
    expectSideBySideChangesNothing<pass::SquareSum>();
    expectSideBySideChangesNothing<pass::Statistic>();
}

}  // namespace
