#include "records.h"

namespace binding {

double storedBytes(const CSnsCohData& data) {
    constexpr double header = 512.0;
    constexpr double pair = 78.0;
    if (data.m_mCC == nullptr || data.m_snsRowTotal < 1 || data.m_snsColTotal < 1) return header;
    const CWavChnlChnlDatazq& first = data.m_mCC[0][0];
    const __int64 values = std::max<__int64>(first.m_size, 0);
    const __int64 backups = first.m_bkData == nullptr ? 0 : std::max<__int64>(first.m_bkSize, 0);
    const double pairs =
        static_cast<double>(data.m_snsRowTotal) * static_cast<double>(data.m_snsColTotal);
    return header +
           pairs * (pair + 8.0 * (static_cast<double>(values) + static_cast<double>(backups)));
}

}  // namespace binding
