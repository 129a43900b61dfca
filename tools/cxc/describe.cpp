#include "tools/cxc/describe.h"

#include "tools/cxc/app.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <utility>

namespace tool {
namespace {

std::string pairOfNumbers(const double (&values)[2]) {
    return shortest(values[0]) + " to " + shortest(values[1]);
}

bool same(double a, double b) {
    return a == b || (std::isnan(a) && std::isnan(b));
}

bool same(const double (&a)[2], const double (&b)[2]) {
    return same(a[0], b[0]) && same(a[1], b[1]);
}

std::string windowLine(const std::string& note) {
    const std::string word = "Window: ";
    const std::size_t begin = note.find(word);
    if (begin == std::string::npos) return "";
    const std::size_t from = begin + word.size();
    return note.substr(from, note.find_first_of("\r\n,", from) - from);
}

using Found = std::vector<std::string>;

void tell(Found& found, const std::string& what, const std::string& one, const std::string& other) {
    found.push_back(what + ": " + one + ", not " + other);
}

void compareChannels(const std::string& what, const std::vector<__int64>& one,
                     const std::vector<__int64>& other, Found& found) {
    if (one.size() != other.size())
        tell(found, what + "s", std::to_string(one.size()), std::to_string(other.size()));
    const std::size_t common = std::min(one.size(), other.size());
    for (std::size_t i = 0; i < common; ++i) {
        if (one[i] == other[i]) continue;
        // The first one tells enough.
        return tell(found, "channel number of " + what + " " + std::to_string(i + 1),
                    std::to_string(one[i]), std::to_string(other[i]));
    }
}

}  // namespace

std::string sizeOf(const CSnsCohData& dataset) {
    return std::to_string(dataset.m_cohTimTotal) +
           (dataset.m_cohTimTotal == 1 ? " slice of " : " slices of ") +
           std::to_string(dataset.m_snsRowTotal) + " x " + std::to_string(dataset.m_snsColTotal) +
           " sensors";
}

std::string shortest(double value) {
    char text[32];
    const auto end = std::to_chars(text, text + sizeof(text), value);
    return std::string(text, end.ptr);
}

// The grid remembers what it really has; through the public interface that is known where the
// counters agree with what a record can hold.
Shape shapeOf(const CSnsCohData& dataset) {
    if (dataset.m_mCC == nullptr) return {0, 0, 0};
    return {std::max<__int64>(dataset.m_cohTimTotal, 0),
            std::max<__int64>(dataset.m_snsRowTotal, 0),
            std::max<__int64>(dataset.m_snsColTotal, 0)};
}

const CWavChnlChnlDatazq& pairOf(const CSnsCohData& dataset, __int64 r, __int64 c) {
    return dataset.m_mCC[r][c];
}

Channels::Channels(const CSnsCohData& dataset) {
    const Shape shape = shapeOf(dataset);
    for (__int64 r = 0; shape.columns > 0 && r < shape.rows; ++r)
        take(r, 0, pairOf(dataset, r, 0));
    for (__int64 c = 1; shape.rows > 0 && c < shape.columns; ++c)
        take(0, c, pairOf(dataset, 0, c));
}

void Channels::take(__int64 r, __int64 c, const CWavChnlChnlDatazq& pair) {
    if (c == 0) rows.push_back(pair.m_chnlA);
    if (r == 0) columns.push_back(pair.m_chnlB);
}

Traits::Traits(const CSnsCohDatazq& dataset) : Traits(dataset, Channels(dataset)) {}

Traits::Traits(const CSnsCohDatazq& dataset, Channels channelsOfPairs)
    : slices(dataset.m_cohTimTotal),
      channels(std::move(channelsOfPairs)),
      band{dataset.m_headerReal0, dataset.m_headerReal1},
      rate(dataset.m_samplingRate),
      latency{dataset.m_anaLatencyBegin, dataset.m_anaLatencyEnd},
      type(dataset.m_chnlTypeID),
      window(windowLine(utf8(dataset.m_cxcCmptInfo))) {}

std::vector<std::string> differences(const Traits& one, const Traits& other) {
    Found found;
    compareChannels("row", one.channels.rows, other.channels.rows, found);
    compareChannels("column", one.channels.columns, other.channels.columns, found);
    if (!same(one.band, other.band))
        tell(found, "band", pairOfNumbers(one.band) + " Hz", pairOfNumbers(other.band) + " Hz");
    if (!one.window.empty() && !other.window.empty() && one.window != other.window)
        tell(found, "window", one.window, other.window);
    if (!same(one.rate, other.rate))
        tell(found, "slices per second", shortest(one.rate), shortest(other.rate));
    if (!same(one.latency, other.latency))
        tell(found, "latency", pairOfNumbers(one.latency), pairOfNumbers(other.latency));
    if (one.slices != other.slices)
        tell(found, "length", std::to_string(one.slices) + " slices", std::to_string(other.slices));
    if (one.type != other.type)
        tell(found, "channel type", std::to_string(one.type), std::to_string(other.type));
    return found;
}

void describePairLike(CWavChnlChnlDatazq& made, const CWavChnlChnlDatazq& source) {
    made.m_chnlA = source.m_chnlA;
    made.m_chnlB = source.m_chnlB;
}

void describeLike(CSnsCohDatazq& made, const CSnsCohDatazq& source) {
    made.m_headerReal0 = source.m_headerReal0;
    made.m_headerReal1 = source.m_headerReal1;
    made.m_anaLatencyBegin = source.m_anaLatencyBegin;
    made.m_anaLatencyEnd = source.m_anaLatencyEnd;
    made.m_samplingRate = source.m_samplingRate;
    made.m_chnlTypeID = source.m_chnlTypeID;
    const Shape to = shapeOf(made);
    const Shape from = shapeOf(source);
    for (__int64 r = 0; r < std::min(to.rows, from.rows); ++r) {
        for (__int64 c = 0; c < std::min(to.columns, from.columns); ++c)
            describePairLike(made.m_mCC[r][c], pairOf(source, r, c));
    }
    made.m_headerLong2 = made.m_cohTimTotal;
    made.setSelect(0, made.m_cohTimTotal - 1);
}

void addToNote(CSnsCohDatazq& dataset, const std::string& text) {
    CString note = dataset.m_cxcCmptInfo;
    if (!note.IsEmpty()) note += _T("\n");
    dataset.m_cxcCmptInfo = note + utf16(text);
}

}  // namespace tool
