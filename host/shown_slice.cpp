#include "host/shown_slice.h"

#include "cxc.h"

#include <algorithm>
#include <cstring>
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

}  // namespace

ShownSlice readSlice(CSnsCohDatazq* dataset) {
    ShownSlice shown;
    if (dataset == nullptr || dataset->getMCC4class() == nullptr) return shown;
    __int64 rows = 0;
    __int64 cols = 0;
    dataset->getChnlRowCol(rows, cols);
    shown.rows = static_cast<int>(std::clamp<__int64>(rows, 0, mostSensors));
    shown.cols = static_cast<int>(std::clamp<__int64>(cols, 0, mostSensors));
    shown.slices = dataset->getSnsCohTimTotal();
    shown.slice =
        std::clamp<__int64>(dataset->m_selectBegin, 0, std::max<__int64>(shown.slices - 1, 0));
    shown.name = dataset->m_cxcName;
    if (dataset->m_samplingRate > 0.0) shown.latency = dataset->getLatency4PtSecond(shown.slice);
    dataset->getSnsCohRange(shown.least, shown.most, false, 0, 0, 1);
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
    hash = mixed(mixed(mixed(mixed(hash, rows), cols), slice), slices);
    hash = mixed(mixed(mixed(hash, latency), least), most);
    hash = mixed(mixed(mixed(hash, basic), active), suppressive);
    return mixed(hash, values.data(), values.size() * sizeof(double));
}
