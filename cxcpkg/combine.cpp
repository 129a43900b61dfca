#include "cxcpkg/combine.h"

#include "cxcdata/grid.h"

#include <algorithm>

namespace cxc {
namespace {

template <class Operation>
void each(const double* active, double* result, __int64 n, Operation operation) {
    for (__int64 t = 0; t < n; ++t)
        result[t] = operation(active[t]);
}

}  // namespace

void combineValues(int operation, const double* active, double control, double* result, __int64 n) {
    switch (operation) {
        case 0:
            each(active, result, n, [control](double value) { return value - control; });
            break;
        case 1:
            each(active, result, n, [control](double value) { return value + control; });
            break;
        case 2:
            each(active, result, n, [control](double value) { return value * control; });
            break;
        case 3:
            if (control == 0.0)
                std::fill_n(result, n, 0.0);
            else
                each(active, result, n, [control](double value) { return value / control; });
            break;
        default:
            break;
    }
}

void combineDatasets(int operation, const CSnsCohData& active, const CSnsCohData& control,
                     CSnsCohData& result) {
    const __int64 rows = std::min(active.m_snsRowTotal, grid::rows(active.m_mCC));
    const __int64 cols = std::min(active.m_snsColTotal, grid::cols(active.m_mCC));
    for (__int64 r = 0; r < grid::rows(result.m_mCC); ++r) {
        for (__int64 c = 0; c < grid::cols(result.m_mCC); ++c) {
            const grid::Values made = grid::values(result.m_mCC, r, c);
            const grid::Values baseline = grid::values(control.m_mCC, r, c);
            const bool inside = r < rows && c < cols && baseline.size > 0;
            const grid::Values values = inside ? grid::values(active.m_mCC, r, c) : grid::Values{};
            const __int64 n = std::min({values.size, active.m_cohTimTotal, made.size});
            if (n > 0) combineValues(operation, values.data, baseline.data[0], made.data, n);
            if (n < made.size)
                std::fill(made.data + std::max<__int64>(n, 0), made.data + made.size, 0.0);
        }
    }
}

}  // namespace cxc
