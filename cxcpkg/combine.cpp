#include "cxcpkg/combine.h"

#include "cxcdata/element_wise.h"
#include "cxcdata/grid.h"

#include <algorithm>

namespace cxc {
namespace {

template <class Operation>
void each(const double* active, double* result, __int64 n, Operation operation) {
    elementWise(result, active, n,
                [operation](TwoDoubles, TwoDoubles values) { return operation(values); });
}

}  // namespace

void combineValues(int operation, const double* active, double control, double* result, __int64 n) {
    const TwoDoubles controls(control, control);
    switch (operation) {
        case 0:
            each(active, result, n, [controls](TwoDoubles values) { return values - controls; });
            break;
        case 1:
            each(active, result, n,
                 [controls](TwoDoubles values) { return plus(values, controls); });
            break;
        case 2:
            each(active, result, n, [controls](TwoDoubles values) { return values * controls; });
            break;
        case 3:
            if (control == 0.0)
                std::fill_n(result, n, 0.0);
            else
                each(active, result, n,
                     [controls](TwoDoubles values) { return values / controls; });
            break;
        default:
            break;
    }
}

void combineDatasets(int operation, const CSnsCohData& active, const CSnsCohData& control,
                     CSnsCohData& result) {
    const __int64 rows = std::min(active.m_snsRowTotal, grid::rows(active.m_mCC));
    const __int64 cols =
        std::min({active.m_snsColTotal, grid::cols(active.m_mCC), grid::cols(control.m_mCC)});
    const __int64 resultCols = grid::cols(result.m_mCC);
    for (__int64 r = 0; r < grid::rows(result.m_mCC); ++r) {
        const CWavChnlChnlDatazq* const made = grid::row(result.m_mCC, r);
        const CWavChnlChnlDatazq* const baselines = grid::row(control.m_mCC, r);
        const CWavChnlChnlDatazq* const actives = r < rows ? grid::row(active.m_mCC, r) : nullptr;
        const __int64 inside = actives == nullptr || baselines == nullptr ? 0 : cols;
        for (__int64 c = 0; made != nullptr && c < resultCols; ++c) {
            const grid::Values target = grid::values(made + c);
            const grid::Values baseline = c < inside ? grid::values(baselines + c) : grid::Values{};
            const grid::Values values =
                baseline.size > 0 ? grid::values(actives + c) : grid::Values{};
            const __int64 n =
                std::max<__int64>(std::min({values.size, active.m_cohTimTotal, target.size}), 0);
            if (n > 0) combineValues(operation, values.data, baseline.data[0], target.data, n);
            if (n < target.size) std::fill(target.data + n, target.data + target.size, 0.0);
        }
    }
}

}  // namespace cxc
