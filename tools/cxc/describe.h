// What a dataset says about itself, and in what two datasets differ.
#pragma once

#include "cxc.h"

#include <string>
#include <vector>

namespace tool {

/// "100 slices of 64 x 64 sensors"
std::string sizeOf(const CSnsCohData& dataset);
/// A number as short as it can be without becoming another.
std::string shortest(double value);

/// Slices, rows and columns that are really there.
struct Shape {
    __int64 slices;
    __int64 rows;
    __int64 columns;
};
Shape shapeOf(const CSnsCohData& dataset);
/// Pair (r, c) of the grid, which must be inside the shape.
const CWavChnlChnlDatazq& pairOf(const CSnsCohData& dataset, __int64 r, __int64 c);

/// The channel numbers of the sensors.
struct Channels {
    Channels() = default;
    explicit Channels(const CSnsCohData& dataset);

    /// For a dataset whose pairs come one after the other.
    void take(__int64 r, __int64 c, const CWavChnlChnlDatazq& pair);

    std::vector<__int64> rows;
    std::vector<__int64> columns;
};

/// What must be alike in datasets that are combined, kept without the values.
struct Traits {
    explicit Traits(const CSnsCohDatazq& dataset);
    /// Of a dataset without its grid, and the channels of its pairs.
    Traits(const CSnsCohDatazq& dataset, Channels channelsOfPairs);

    __int64 slices;
    Channels channels;
    double band[2];
    double rate;
    double latency[2];
    int type;
    std::string window;  // the line of the computation note that tells it; empty without one
};

/// In what a dataset differs from another: "band: 8 to 14 Hz, not 8 to 13 Hz".
std::vector<std::string> differences(const Traits& one, const Traits& other);

/// Gives a pair the channel numbers of another.
void describePairLike(CWavChnlChnlDatazq& made, const CWavChnlChnlDatazq& source);
/// Gives `made` the band, latency, rate, channel type and channel numbers of `source`, and selects
/// all slices.
void describeLike(CSnsCohDatazq& made, const CSnsCohDatazq& source);

/// Appends lines to a computation note.
void addToNote(CSnsCohDatazq& dataset, const std::string& text);

}  // namespace tool
