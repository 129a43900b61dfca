#include "cxcdata/passes.h"

#include "cxcdata/one_double.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstring>
#include <limits>
#include <random>
#include <vector>

namespace {

namespace pass = cxc::pass;
using pass::First;
using pass::laneCount;
using pass::Width;

std::vector<Width> widths() {
    std::vector<Width> there;
    for (const Width width : {Width::two, Width::four, Width::eight}) {
        if (pass::has(width)) there.push_back(width);
    }
    return there;
}

// Values of every kind, the same ones in every run.
std::vector<double> values(std::size_t count, unsigned seed) {
    using Limits = std::numeric_limits<double>;
    const double special[] = {0.0,
                              -0.0,
                              Limits::infinity(),
                              -Limits::infinity(),
                              Limits::quiet_NaN(),
                              -Limits::quiet_NaN(),
                              Limits::denorm_min(),
                              -Limits::denorm_min(),
                              Limits::min() / 3.0,
                              -Limits::max()};
    std::mt19937 random(seed);
    // Some vectors have no infinities and no NaN, which would hide the sums of the others.
    const unsigned kinds = seed % 3 == 0 ? 10 : 2;
    const unsigned often = seed % 5 == 0 ? 2 : 11;
    std::uniform_real_distribution<double> usual(-3.0, 3.0);
    std::vector<double> made;
    for (std::size_t i = 0; i < count; ++i) {
        const bool rare = random() % often == 0;
        made.push_back(rare ? special[random() % kinds] : usual(random));
    }
    return made;
}

bool same(double a, double b) {
    return std::memcmp(&a, &b, sizeof(a)) == 0;
}

template <class Accumulator>
testing::AssertionResult same(const Accumulator& a, const Accumulator& b) {
    for (std::size_t f = 0; f < a.field.size(); ++f) {
        if (!same(a.field[f], b.field[f]))
            return testing::AssertionFailure()
                   << "field " << f << " is " << a.field[f] << ", not " << b.field[f];
    }
    return testing::AssertionSuccess();
}

template <template <class> class Accumulator>
void addPlainly(First first, const pass::Slice& slice, Accumulator<double>& accumulator) {
    Accumulator<cxc::OneDouble> one;
    for (std::size_t f = 0; f < accumulator.field.size(); ++f)
        one.field[f] = {accumulator.field[f]};
    for (__int64 t = slice.begin; t < slice.end; ++t) {
        if (t == slice.begin && first == First::starts)
            one.start({slice.data[t]});
        else
            one.add({slice.data[t]});
    }
    for (std::size_t f = 0; f < accumulator.field.size(); ++f)
        accumulator.field[f] = one.field[f].only;
}

enum class Lengths { even, uneven, someEmpty, oneOnly };

__int64 lengthOf(Lengths lengths, __int64 length, int lane) {
    switch (lengths) {
        case Lengths::even:
            return length;
        case Lengths::uneven:
            return length + lane * 5 % 7;
        case Lengths::someEmpty:
            return lane % 3 == 1 ? 0 : length;
        case Lengths::oneOnly:
            return lane == 6 ? length : 0;
    }
    return 0;
}

template <template <class> class Accumulator>
void expectEachLaneByItself(Width width, First first, Lengths lengths, __int64 length) {
    std::vector<std::vector<double>> data;
    pass::Slices slices;
    pass::Lanes<Accumulator> lanes;
    std::vector<Accumulator<double>> alone;
    for (int k = 0; k < laneCount; ++k) {
        const __int64 begin = k % 2;
        const __int64 end = begin + lengthOf(lengths, length, k);
        const auto seed = static_cast<unsigned>(100 * length + k);
        data.push_back(values(static_cast<std::size_t>(end) + 1, seed));
        alone.emplace_back();
        alone.back().start(data.back()[static_cast<std::size_t>(end)]);
        lanes.set(k, alone.back());
        slices[static_cast<std::size_t>(k)] = {data.back().data(), begin, end, true};
        addPlainly(first, slices[static_cast<std::size_t>(k)], alone.back());
    }
    pass::walk<Accumulator>(width, first, slices, lanes);
    for (int k = 0; k < laneCount; ++k) {
        ASSERT_TRUE(same(lanes.get(k), alone[static_cast<std::size_t>(k)]))
            << "lane " << k << " length " << length << " lengths " << static_cast<int>(lengths)
            << " width " << static_cast<int>(width);
    }
}

template <template <class> class Accumulator>
void expectSideBySideChangesNothing() {
    for (const Width width : widths()) {
        for (const Lengths lengths :
             {Lengths::even, Lengths::uneven, Lengths::someEmpty, Lengths::oneOnly}) {
            for (__int64 length = 0; length <= 70; ++length) {
                expectEachLaneByItself<Accumulator>(width, First::adds, lengths, length);
                expectEachLaneByItself<Accumulator>(width, First::starts, lengths, length);
            }
        }
    }
}

TEST(Passes, LanesSideBySideGiveWhatEachGivesByItselfOnEveryWidth) {
    expectSideBySideChangesNothing<pass::Range>();
    expectSideBySideChangesNothing<pass::MagnitudeRange>();
    expectSideBySideChangesNothing<pass::RangeSum>();
    expectSideBySideChangesNothing<pass::SquareSum>();
    expectSideBySideChangesNothing<pass::Statistic>();
}

// The sum of eight equal vectors, which all widths are to give in every lane.
template <template <class> class Accumulator>
void expectSum(First first, const std::vector<double>& vector, double before, double expected) {
    for (const Width width : widths()) {
        pass::Lanes<Accumulator> lanes;
        pass::Slices slices;
        for (int k = 0; k < laneCount; ++k) {
            Accumulator<double> begun = pass::nothingSeen<Accumulator>();
            begun.field[Accumulator<double>::sum] = before;
            lanes.set(k, begun);
            slices[static_cast<std::size_t>(k)] = {vector.data(), 0,
                                                   static_cast<__int64>(vector.size()), true};
        }
        pass::walk<Accumulator>(width, first, slices, lanes);
        for (int k = 0; k < laneCount; ++k) {
            const double sum = lanes.get(k).field[Accumulator<double>::sum];
            EXPECT_TRUE(std::isnan(sum));
            EXPECT_EQ(std::signbit(sum), std::signbit(expected)) << "width of " << vector.size();
        }
    }
}

TEST(Passes, OfSeveralNaNsTheFirstStaysInASumOnEveryWidth) {
    const double nan = std::numeric_limits<double>::quiet_NaN();
    for (const std::size_t length : {2u, 5u, 8u, 19u}) {
        std::vector<double> vector(length, 1.0);
        vector[length / 2] = -nan;
        vector.back() = nan;
        expectSum<pass::RangeSum>(First::starts, vector, 0.0, length == 2 ? nan : -nan);
        expectSum<pass::Statistic>(First::adds, vector, nan, nan);
        vector.back() = -nan;
        vector[length / 2] = nan;
        if (length > 2) expectSum<pass::Statistic>(First::starts, vector, 0.0, nan);
        if (length > 2) expectSum<pass::SquareSum>(First::adds, vector, 0.0, nan);
        expectSum<pass::RangeSum>(First::adds, vector, -nan, -nan);
    }
}

TEST(Passes, TheWidestIsThereAndTwoAlwaysIs) {
    EXPECT_TRUE(pass::has(Width::two));
    EXPECT_TRUE(pass::has(pass::widest()));
    EXPECT_EQ(widths().back(), pass::widest());
}

// A grid with vectors of different lengths, empty ones, and a row that was never made.
class Grid {
public:
    Grid(__int64 rows, __int64 cols, bool uneven)
        : m_table(cxc::grid::newTable(rows, cols)), m_rows(rows), m_cols(cols) {
        for (__int64 r = 0; r < rows; ++r) {
            if (uneven && r % 6 == 4) continue;
            cxc::grid::newRow(m_table.get(), r);
            for (__int64 c = 0; c < cols; ++c)
                fill(cxc::grid::row(m_table.get(), r)[c], uneven ? (r * 3 + c) % 9 : 9,
                     static_cast<unsigned>(100 * r + c));
        }
    }
    CWavChnlChnlDatazq* const* table() const { return m_table.get(); }
    __int64 rows() const { return m_rows; }
    __int64 cols() const { return m_cols; }

private:
    static void fill(CWavChnlChnlDatazq& vector, __int64 size, unsigned seed) {
        std::vector<double> made = values(static_cast<std::size_t>(size), seed);
        if (size > 0) vector.copy2Mtx(made.data(), size);
    }

    cxc::grid::Owner m_table;
    __int64 m_rows;
    __int64 m_cols;
};

pass::Slice allButDiagonal(const CWavChnlChnlDatazq* vector, __int64 r, __int64 c) {
    if (vector == nullptr || r == c) return {};
    const cxc::grid::Values held = cxc::grid::values(vector);
    return {held.data, 0, held.size, true};
}

template <class Check>
void onGrids(Check check) {
    for (const bool uneven : {false, true}) {
        for (const __int64 cols : {1, 3, 8, 13}) {
            for (__int64 rows = 1; rows <= 19; ++rows)
                check(Grid(rows, cols, uneven));
        }
    }
}

template <template <class> class Accumulator>
void expectRowsInOrder(const Grid& grid, Width width) {
    __int64 r = 0;
    const auto check = [&](const Accumulator<double>& row) {
        Accumulator<double> plain = pass::nothingSeen<Accumulator>();
        for (__int64 c = 0; c < grid.cols(); ++c) {
            const pass::Slice slice = allButDiagonal(cxc::grid::cell(grid.table(), r, c), r, c);
            addPlainly(First::adds, slice, plain);
        }
        EXPECT_TRUE(same(row, plain)) << "row " << r << " of " << grid.rows();
        ++r;
    };
    pass::eachRow<Accumulator>(grid.table(), grid.rows(), grid.cols(), allButDiagonal, check,
                               width);
    EXPECT_EQ(r, grid.rows());
}

TEST(Passes, RowsAreSummedInOrderOnEveryWidth) {
    onGrids([](const Grid& grid) {
        for (const Width width : widths()) {
            expectRowsInOrder<pass::Range>(grid, width);
            expectRowsInOrder<pass::MagnitudeRange>(grid, width);
            expectRowsInOrder<pass::RangeSum>(grid, width);
            expectRowsInOrder<pass::SquareSum>(grid, width);
        }
    });
}

void plainMeans(pass::RangeSum<double>& vector, double size) {
    vector.field[2] /= size;
}
void plainMeans(pass::Statistic<double>& vector, double size) {
    vector.field[2] /= size;
    vector.field[3] /= size;
    vector.field[4] = std::sqrt(vector.field[4] / size);
}

template <template <class> class Accumulator>
struct Taken {
    struct Vector {
        Accumulator<double> accumulator;
        __int64 size;
    };
    std::vector<Vector> vectors;

    void take(const Accumulator<double>& accumulator, __int64 size) {
        vectors.push_back({accumulator, size});
    }
};

template <template <class> class Accumulator>
std::vector<typename Taken<Accumulator>::Vector> plainRow(const Grid& grid, __int64 r) {
    Taken<Accumulator> row;
    for (__int64 c = 0; c < grid.cols(); ++c) {
        const pass::Slice slice = allButDiagonal(cxc::grid::cell(grid.table(), r, c), r, c);
        if (!slice.visited) continue;
        Accumulator<double> vector;
        vector.start(0.0);
        addPlainly(First::starts, slice, vector);
        if (slice.end > 0) plainMeans(vector, static_cast<double>(slice.end));
        row.take(vector, slice.end);
    }
    return row.vectors;
}

template <template <class> class Accumulator>
void expectVectorsInOrder(const Grid& grid, Width width) {
    __int64 r = 0;
    const auto check = [&](const Taken<Accumulator>& row) {
        const auto plain = plainRow<Accumulator>(grid, r);
        ASSERT_EQ(row.vectors.size(), plain.size()) << "row " << r << " of " << grid.rows();
        for (std::size_t i = 0; i < plain.size(); ++i) {
            EXPECT_EQ(row.vectors[i].size, plain[i].size);
            EXPECT_TRUE(same(row.vectors[i].accumulator, plain[i].accumulator))
                << "vector " << i << " of row " << r << " of " << grid.rows();
        }
        ++r;
    };
    pass::eachVector<Accumulator, Taken<Accumulator>>(grid.table(), grid.rows(), grid.cols(),
                                                      allButDiagonal, check, width);
    EXPECT_EQ(r, grid.rows());
}

TEST(Passes, VectorsOfARowAreTakenInOrderOnEveryWidth) {
    onGrids([](const Grid& grid) {
        for (const Width width : widths()) {
            expectVectorsInOrder<pass::RangeSum>(grid, width);
            expectVectorsInOrder<pass::Statistic>(grid, width);
        }
    });
}

TEST(AddArray, EveryWidthAddsEveryLengthToTheLastBitAndWritesNothingBehindIt) {
    for (const Width width : widths()) {
        for (std::size_t n = 0; n <= 41; ++n) {
            for (unsigned seed = 0; seed < 15; ++seed) {
                std::vector<double> sums = values(n, seed);
                const std::vector<double> added = values(n, seed + 100);
                std::vector<double> expected;
                for (std::size_t t = 0; t < n; ++t)
                    expected.push_back(pass::plus(sums[t], added[t]));
                sums.insert(sums.end(), 16, -77.0);
                pass::addArray(width, sums.data(), added.data(), static_cast<long long>(n));
                for (std::size_t t = 0; t < n; ++t)
                    ASSERT_TRUE(same(sums[t], expected[t]))
                        << sums[t] << " is not " << expected[t] << " at " << t << " of " << n;
                EXPECT_EQ(
                    std::count(sums.begin() + static_cast<std::ptrdiff_t>(n), sums.end(), -77.0),
                    16);
            }
        }
    }
}

TEST(AddArray, AnArrayMayBeAddedToItselfAndNegativeLengthsAddNothing) {
    for (const Width width : widths()) {
        std::vector<double> both(13, 1.5);
        pass::addArray(width, both.data(), both.data(), 13);
        EXPECT_EQ(both, std::vector<double>(13, 3.0));
        pass::addArray(width, both.data(), both.data(), -5);
        pass::addArray(width, both.data(), both.data(), std::numeric_limits<long long>::min());
        EXPECT_EQ(both, std::vector<double>(13, 3.0));
    }
}

// A few arrays of n elements, and what lies behind the results.
struct SeveralArrays {
    SeveralArrays(std::size_t n, int count, unsigned seed) {
        for (int k = 0; k < count; ++k) {
            held.push_back(values(n, seed + 100 * static_cast<unsigned>(k + 1)));
            arrays.push_back(held.back().data());
        }
    }
    std::vector<std::vector<double>> held;
    std::vector<const double*> arrays;
};

std::vector<double> withTail(std::vector<double> elements) {
    elements.insert(elements.end(), 16, -77.0);
    return elements;
}

void expectSame(const std::vector<double>& got, const std::vector<double>& expected) {
    ASSERT_EQ(got.size(), expected.size());
    for (std::size_t t = 0; t < got.size(); ++t)
        ASSERT_TRUE(same(got[t], expected[t]))
            << got[t] << " is not " << expected[t] << " at " << t;
}

// Calls use(width, n, arrays, results) with three results that have a tail.
template <class Use>
void onSeveralArrays(Use use) {
    for (const Width width : widths()) {
        for (std::size_t n = 0; n <= 27; ++n) {
            for (int count = 0; count <= 7; ++count) {
                for (unsigned seed = 0; seed < 6; ++seed) {
                    SCOPED_TRACE(std::to_string(count) + " of " + std::to_string(n));
                    const SeveralArrays several(n, count, seed);
                    std::array<std::vector<double>, 3> results;
                    for (unsigned f = 0; f < 3; ++f)
                        results[f] = withTail(values(n, seed + 31 * f));
                    use(width, n, several, results);
                    if (testing::Test::HasFatalFailure()) return;
                }
            }
        }
    }
}

TEST(AddArrays, EveryWidthAddsThemInOrderToTheLastBitAndWritesNothingBehind) {
    onSeveralArrays([](Width width, std::size_t n, const SeveralArrays& several, auto& results) {
        std::vector<double> expected = results[0];
        for (const std::vector<double>& array : several.held) {
            for (std::size_t t = 0; t < n; ++t)
                expected[t] = pass::plus(expected[t], array[t]);
        }
        pass::addArrays(width, results[0].data(), several.arrays.data(),
                        static_cast<int>(several.arrays.size()), static_cast<long long>(n));
        expectSame(results[0], expected);
    });
}

TEST(SummariseArrays, EveryWidthTakesThemInOrderToTheLastBitAndWritesNothingBehind) {
    onSeveralArrays([](Width width, std::size_t n, const SeveralArrays& several, auto& results) {
        auto expected = results;
        for (const std::vector<double>& array : several.held) {
            for (std::size_t t = 0; t < n; ++t) {
                expected[0][t] = pass::lowered(expected[0][t], array[t]);
                expected[1][t] = pass::plus(expected[1][t], array[t]);
                expected[2][t] = pass::raised(expected[2][t], array[t]);
            }
        }
        pass::summariseArrays(width, results[0].data(), results[1].data(), results[2].data(),
                              several.arrays.data(), static_cast<int>(several.arrays.size()),
                              static_cast<long long>(n));
        for (std::size_t f = 0; f < 3; ++f)
            expectSame(results[f], expected[f]);
    });
}

TEST(AddArrays, NegativeLengthsAddNothing) {
    const double one = 1.0;
    const double* const arrays[] = {&one, &one, &one};
    for (const Width width : widths()) {
        for (const long long n : {-1LL, -9LL, std::numeric_limits<long long>::min()}) {
            double results[] = {2.0, 3.0, 4.0};
            pass::addArrays(width, results, arrays, 3, n);
            pass::summariseArrays(width, results, results + 1, results + 2, arrays, 3, n);
            EXPECT_EQ(results[0] + results[1] + results[2], 9.0);
        }
    }
}

}  // namespace
