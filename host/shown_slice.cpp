#include "host/shown_slice.h"

#include "cxc.h"

#include <algorithm>
#include <cmath>
#include <string_view>

namespace {

// Beyond this a picture shows nothing to anybody, and a damaged file may claim anything.
constexpr __int64 mostSensors = 4096;

std::size_t mixed(std::size_t hash, const void* bytes, std::size_t count) {
    const std::string_view text(static_cast<const char*>(bytes), count);
    return hash * 31 + std::hash<std::string_view>()(text);
}

template <class T>
std::size_t mixed(std::size_t hash, const T& value) {
    return mixed(hash, &value, sizeof(value));
}

// Over all slices, so that colours can be compared from slice to slice. The form with a selection
// leaves the range that the dataset keeps, and saves, as it is.
void readRange(CSnsCohDatazq& dataset, ShownSlice& shown) {
    dataset.getSnsCohRange(shown.least, shown.most, true, 0, shown.slices - 1, 1);
    if (std::isfinite(shown.least) && std::isfinite(shown.most)) return;
    // A first value that is no number hides all others from that range.
    bool found = false;
    for (int r = 0; r < shown.rows; ++r) {
        for (int c = 0; c < shown.cols; ++c) {
            for (__int64 t = 0; r != c && t < shown.slices; ++t) {
                const double value = dataset.getValue(t, r, c);
                if (!std::isfinite(value)) continue;
                shown.least = found ? std::min(shown.least, value) : value;
                shown.most = found ? std::max(shown.most, value) : value;
                found = true;
            }
        }
    }
    if (!found) shown.least = shown.most = 0.0;
}

}  // namespace

ShownSlice readSlice(CSnsCohDatazq* dataset) {
    ShownSlice shown;
    if (dataset == nullptr) return shown;
    shown.fromDataset = true;
    shown.name = dataset->m_cxcName;
    if (dataset->getMCC4class() == nullptr) return shown;
    __int64 rows = 0;
    __int64 cols = 0;
    dataset->getChnlRowCol(rows, cols);
    shown.rows = static_cast<int>(std::clamp<__int64>(rows, 0, mostSensors));
    shown.cols = static_cast<int>(std::clamp<__int64>(cols, 0, mostSensors));
    shown.slices = std::max<__int64>(dataset->getSnsCohTimTotal(), 0);
    shown.slice =
        std::clamp<__int64>(dataset->m_selectBegin, 0, std::max<__int64>(shown.slices - 1, 0));
    if (dataset->m_samplingRate > 0.0) shown.latency = dataset->getLatency4PtSecond(shown.slice);
    readRange(*dataset, shown);
    shown.values.reserve(static_cast<std::size_t>(shown.rows) *
                         static_cast<std::size_t>(shown.cols));
    for (int r = 0; r < shown.rows; ++r) {
        for (int c = 0; c < shown.cols; ++c)
            shown.values.push_back(dataset->getValue(shown.slice, r, c));
    }
    shown.basic = dataset->m_basicColor;
    shown.active = dataset->m_activeColor;
    shown.suppressive = dataset->m_suppressiveColor;
    return shown;
}

std::size_t ShownSlice::fingerprint() const {
    std::size_t hash =
        mixed(0, name.GetString(), static_cast<std::size_t>(name.GetLength()) * sizeof(TCHAR));
    hash = mixed(hash, fromDataset);
    hash = mixed(mixed(mixed(mixed(hash, rows), cols), slice), slices);
    hash = mixed(mixed(mixed(hash, latency), least), most);
    hash = mixed(mixed(mixed(hash, basic), active), suppressive);
    return mixed(hash, values.data(), values.size() * sizeof(double));
}
