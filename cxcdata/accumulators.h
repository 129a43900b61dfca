// What the passes keep of the values they have seen, over a Number: a double, or several doubles
// of vectors side by side. Default-constructed they hold nothing of use: `nothing` are the fields
// of one that has seen nothing; start takes the first value: as such a NaN stays, while add passes
// over it in the extremes.
#pragma once

#include <array>
#include <cmath>
#include <limits>

namespace cxc::pass {

/// One for each accumulator.
enum class Kind { range, magnitudeRange, rangeSum, squareSum, statistic };

/// sum + value, where of two NaNs the older one stays: which of them an addition gives is otherwise
/// the compiler's choice, and their signs are printed.
inline double plus(double sum, double value) {
    return std::isnan(sum) ? sum : sum + value;
}
inline double magnitude(double value) {
    return std::fabs(value);
}
inline double lowered(double least, double value) {
    return value < least ? value : least;
}
inline double raised(double most, double value) {
    return value > most ? value : most;
}

template <class Number>
struct Range {
    static constexpr Kind kind = Kind::range;
    static constexpr int fields = 2;
    std::array<Number, fields> field = {};  // least, greatest

    void start(Number value) { field = {value, value}; }
    void add(Number value) {
        field[0] = lowered(field[0], value);
        field[1] = raised(field[1], value);
    }
    static constexpr std::array<double, fields> nothing = {
        std::numeric_limits<double>::infinity(), -std::numeric_limits<double>::infinity()};
};

template <class Number>
struct MagnitudeRange {
    static constexpr Kind kind = Kind::magnitudeRange;
    static constexpr int fields = 2;
    std::array<Number, fields> field = {};  // least, greatest

    void start(Number value) { field = {magnitude(value), magnitude(value)}; }
    void add(Number value) {
        field[0] = lowered(field[0], magnitude(value));
        field[1] = raised(field[1], magnitude(value));
    }
    static constexpr std::array<double, fields> nothing = Range<double>::nothing;
};

template <class Number>
struct RangeSum {
    static constexpr Kind kind = Kind::rangeSum;
    static constexpr int fields = 3;
    static constexpr int sum = 2;           // NaN wherever any of the sums is
    std::array<Number, fields> field = {};  // least, greatest, sum

    void start(Number value) { field = {value, value, value}; }
    void add(Number value) {
        field[0] = lowered(field[0], value);
        field[1] = raised(field[1], value);
        field[2] = field[2] + value;
    }
    void toMeans(Number size) { field[2] = field[2] / size; }
    static constexpr std::array<double, fields> nothing = {Range<double>::nothing[0],
                                                           Range<double>::nothing[1], 0.0};
};

template <class Number>
struct SquareSum {
    static constexpr Kind kind = Kind::squareSum;
    static constexpr int fields = 1;
    static constexpr int sum = 0;
    std::array<Number, fields> field = {};

    void start(Number value) { field = {value * value}; }
    void add(Number value) { field[0] = field[0] + value * value; }
    static constexpr std::array<double, fields> nothing = {0.0};
};

template <class Number>
struct Statistic {
    static constexpr Kind kind = Kind::statistic;
    static constexpr int fields = 5;
    static constexpr int sum = 2;
    // least, greatest, sum, sum of magnitudes, sum of squares
    std::array<Number, fields> field = {};

    void start(Number value) { field = {value, value, value, magnitude(value), value * value}; }
    void add(Number value) {
        field[0] = lowered(field[0], value);
        field[1] = raised(field[1], value);
        field[2] = field[2] + value;
        field[3] = field[3] + magnitude(value);
        field[4] = field[4] + value * value;
    }
    void toMeans(Number size) {
        field[2] = field[2] / size;
        field[3] = field[3] / size;
        field[4] = squareRoot(field[4] / size);
    }
    static constexpr std::array<double, fields> nothing = {
        Range<double>::nothing[0], Range<double>::nothing[1], 0.0, 0.0, 0.0};
};

}  // namespace cxc::pass
