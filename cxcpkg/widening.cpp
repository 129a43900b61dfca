#include "cxcpkg/widening.h"

#include <limits>

namespace cxc {
namespace {

using Count = unsigned long long;

Count distance(__int64 from, __int64 to) {
    return static_cast<Count>(to) - static_cast<Count>(from);
}

// The passes in closed form. After pass i (from 1) the ends are max(first - i, 0) and
// min(last + i, top); index 0 is the selection as given, which may lie outside the slices.
class Passes {
public:
    Passes(const Selection& given, const Width& wanted, __int64 total)
        : m_given(given),
          m_wanted(wanted),
          m_top(total == std::numeric_limits<__int64>::min() ? total : total - 1) {}

    __int64 first(Count i) const {
        if (i == 0) return m_given.first;
        if (m_given.first < 0 || static_cast<Count>(m_given.first) <= i) return 0;
        return static_cast<__int64>(static_cast<Count>(m_given.first) - i);
    }

    __int64 last(Count i) const {
        if (i == 0) return m_given.last;
        if (m_given.last >= m_top || distance(m_given.last, m_top) <= i) return m_top;
        return static_cast<__int64>(static_cast<Count>(m_given.last) + i);
    }

    // The three ways in which pass i ends the widening, in the order in which it tests them.
    bool wideAfterFirst(Count i) const { return reached({first(i), last(i - 1)}); }
    bool stuck(Count i) const { return last(i - 1) >= m_top && first(i - 1) <= 0; }
    bool wideAfterLast(Count i) const { return reached({first(i), last(i)}); }
    bool ends(Count i) const { return wideAfterFirst(i) || stuck(i) || wideAfterLast(i); }

private:
    bool reached(const Selection& selection) const { return !(Width(selection) < m_wanted); }

    Selection m_given;
    Width m_wanted;
    __int64 m_top;
};

Count endingPass(const Passes& passes) {
    // Once the given indices no longer matter, each condition that holds in a pass holds in all
    // later ones.
    constexpr Count regular = 4;
    for (Count i = 1; i < regular; ++i) {
        if (passes.ends(i)) return i;
    }
    Count low = regular;
    Count high = std::numeric_limits<Count>::max();
    while (low < high) {
        const Count middle = low + (high - low) / 2;
        if (passes.ends(middle))
            high = middle;
        else
            low = middle + 1;
    }
    return low;
}

}  // namespace

Width::Width(const Selection& selection)
    : negative(selection.last < selection.first),
      magnitude(negative ? distance(selection.last, selection.first)
                         : distance(selection.first, selection.last)) {}

bool operator==(const Width& a, const Width& b) {
    return a.negative == b.negative && a.magnitude == b.magnitude;
}

bool operator<(const Width& a, const Width& b) {
    if (a.negative != b.negative) return a.negative;
    return a.negative ? a.magnitude > b.magnitude : a.magnitude < b.magnitude;
}

bool widen(Selection& selection, const Width& wanted, __int64 total) {
    const Passes passes(selection, wanted, total);
    const Count i = endingPass(passes);
    if (passes.wideAfterFirst(i)) {
        selection = {passes.first(i), passes.last(i - 1)};
        return true;
    }
    selection = {passes.first(i), passes.last(i)};
    return !passes.stuck(i);
}

}  // namespace cxc
