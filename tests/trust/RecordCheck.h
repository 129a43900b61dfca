// What must hold when any bytes are read as a record: the result, the messages and what is left
// are those of the reference reader, memory stays within what the record may claim, and every
// operation of the object works afterwards, twice with the same results.
#pragma once

#include "tests/trust/HeapWatch.h"
#include "tests/trust/QuietApp.h"
#include "tests/trust/ReferenceRecords.h"
#include "tests/trust/RoughFile.h"
#include "tests/trust/every_operation.h"

#include <cstdint>
#include <string>

namespace test {

/// A group that owns its datasets.
struct CleanGroup : CGroupMeegCxcFacezq {
    ~CleanGroup() { cleanSnsCohPkg(); }
};

template <class Record, class Model>
class RecordCheck {
public:
    /// before: a record that the object is read from first; empty: it is new.
    explicit RecordCheck(const std::string& before = {}) : m_before(before) {}

    /// Returns "", or what is wrong.
    std::string operator()(const std::string& bytes) {
        Model model;
        reference::Reader prior(m_before);
        if (!m_before.empty()) reference::outcomeOfReading(model, prior);
        reference::Reader in(bytes);
        const Outcome expected = reference::outcomeOfReading(model, in);

        Record record;
        if (!m_before.empty()) loadFrom(m_before, record);
        m_app.forget();
        unsigned long long peak = 0;
        m_outcome = load(bytes, record, peak);
        if (m_outcome != expected)
            return std::string(name(m_outcome)) + " instead of " + name(expected);
        if (peak > 16384 + 8 * bytes.size() + 2 * in.claimed)
            return "takes " + std::to_string(peak) + " bytes of memory";
        if (m_app.takeMessages() != in.messages) return "other messages";
        const std::string stored = model.stored();
        if (bytesOf(record, stored.size() + 4096) != stored) return "something else is left";
        if (in.claimed < costly && digestOf(record) != digestOfSame(bytes))
            return "the same state behaves differently";
        return "";
    }

    /// Of the last reading.
    Outcome outcome() const { return m_outcome; }

private:
    // The largest of the blocks that are claimed without bytes behind them is cleared byte by
    // byte; beyond this one look at what a program does with it is enough.
    static constexpr unsigned long long costly = 1 << 15;

    static Outcome load(const std::string& bytes, Record& record, unsigned long long& peak) {
        RoughFile file(bytes);
        const HeapWatch watch;
        const Outcome outcome = passThrough(file, CArchive::load, record);
        peak = static_cast<unsigned long long>(watch.peak());
        return outcome;
    }

    static std::uint64_t digestOf(Record& record) {
        Digest digest;
        const MemoryBudget budget;
        useEverything(record, digest);
        return digest.value();
    }

    std::uint64_t digestOfSame(const std::string& bytes) const {
        Record record;
        if (!m_before.empty()) loadFrom(m_before, record);
        loadFrom(bytes, record);
        return digestOf(record);
    }

    QuietApp m_app;
    const std::string m_before;
    Outcome m_outcome = Outcome::accepted;
};

}  // namespace test
