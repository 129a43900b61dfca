// What must hold when any bytes are read pair by pair: the outcome, the messages and what else is
// left are those of reading the whole dataset, and where it is accepted the pairs are those of its
// grid, in order.
#pragma once

#include "cxcfile/each_pair.h"
#include "tests/trust/QuietApp.h"
#include "tests/trust/RoughFile.h"

#include <string>
#include <utility>
#include <vector>

namespace test {

class PairsCheck {
public:
    /// Returns "", or what is wrong.
    std::string operator()(const std::string& bytes) {
        CSnsCohDatazq whole;
        m_app.forget();
        m_outcome = loadFrom(bytes, whole);
        const bool accepted = m_outcome == Outcome::accepted;
        const std::vector<std::string> messages = m_app.takeMessages();

        CSnsCohDatazq dataset;
        std::string wrong;
        __int64 count = 0;
        const cxc::PairTaker take = [&](const CSnsCohDatazq& from, __int64 r, __int64 c,
                                        const CWavChnlChnlDatazq& pair) {
            if (&from != &dataset || r * from.m_snsColTotal + c != count) wrong = "another place";
            ++count;
            if (accepted && !same(pair, whole.m_mCC[r][c])) wrong = "another pair";
        };
        cxc::EachPair pairs{dataset, take};
        const Outcome outcome = loadFrom(bytes, pairs);
        if (outcome != m_outcome)
            return std::string(name(outcome)) + " instead of " + name(m_outcome);
        if (m_app.takeMessages() != messages) return "other messages";
        if (dataset.m_mCC != nullptr) return "the grid is kept";
        if (accepted && count != pairsOf(whole)) return std::to_string(count) + " pairs";
        // Without its grid the whole one must be the other.
        CSnsCohDatazq keeper;
        std::swap(keeper.m_mCC, whole.m_mCC);
        return bytesOf(whole) == bytesOf(dataset) ? wrong : "something else is left";
    }

    /// Of the reading of the whole.
    Outcome outcome() const { return m_outcome; }

private:
    static bool same(const CWavChnlChnlDatazq& one, CWavChnlChnlDatazq& other) {
        CWavChnlChnlDatazq sharing(one);
        const std::string bytes = bytesOf(sharing);
        sharing.m_data = nullptr;
        sharing.m_bkData = nullptr;
        return bytes == bytesOf(other);
    }

    static __int64 pairsOf(const CSnsCohDatazq& dataset) {
        return dataset.m_mCC == nullptr ? 0 : dataset.m_snsRowTotal * dataset.m_snsColTotal;
    }

    QuietApp m_app;
    Outcome m_outcome = Outcome::accepted;
};

}  // namespace test
