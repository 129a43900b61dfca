// Every golden file cut at every byte, and with every byte replaced: the result, the messages and
// what is left are those of the reference reader, memory stays within what the record may claim,
// and every operation of the object works afterwards, twice with the same results.
#include "tests/trust/HeapWatch.h"
#include "tests/trust/QuietApp.h"
#include "tests/trust/ReferenceRecords.h"
#include "tests/trust/RoughFile.h"
#include "tests/trust/every_operation.h"
#include "tests/trust/golden_files.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>

namespace {

using golden::File;
using test::Outcome;

struct CleanGroup : CGroupMeegCxcFacezq {
    ~CleanGroup() { cleanSnsCohPkg(); }
};

// The largest of the blocks that are claimed without bytes behind them is cleared byte by byte;
// beyond this one look at what a program does with it is enough.
constexpr unsigned long long costly = 1 << 15;

template <class Record, class Model>
class Damage {
public:
    explicit Damage(const std::string& before) : m_before(before) {}

    void check(const std::string& bytes, const std::string& what) {
        ++cases;
        SCOPED_TRACE(what);
        Model model;
        reference::Reader prior(m_before);
        if (!m_before.empty()) reference::outcomeOfReading(model, prior);
        reference::Reader in(bytes);
        const Outcome expected = reference::outcomeOfReading(model, in);

        Record record;
        if (!m_before.empty()) test::loadFrom(m_before, record);
        m_app.forget();
        const Outcome outcome = load(bytes, record, in.claimed);
        ASSERT_EQ(outcome, expected) << name(outcome) << " instead of " << name(expected);
        ASSERT_EQ(m_app.takeMessages(), in.messages);
        const std::string stored = model.stored();
        ASSERT_TRUE(test::bytesOf(record, stored.size() + 4096) == stored) << "what is left";
        ++outcomes[static_cast<int>(outcome)];
        if (in.claimed < costly) use(bytes, record);
    }

    int cases = 0;
    int outcomes[6] = {};

private:
    Outcome load(const std::string& bytes, Record& record, unsigned long long claimed) {
        test::RoughFile file(bytes);
        const test::HeapWatch watch;
        const Outcome outcome = test::passThrough(file, CArchive::load, record);
        const auto peak = static_cast<unsigned long long>(watch.peak());
        EXPECT_LE(peak, 16384 + 8 * bytes.size() + 2 * claimed);
        return outcome;
    }

    void use(const std::string& bytes, Record& record) {
        test::Digest first;
        {
            const test::MemoryBudget budget;
            test::useEverything(record, first);
        }
        Record again;
        if (!m_before.empty()) test::loadFrom(m_before, again);
        test::loadFrom(bytes, again);
        test::Digest second;
        {
            const test::MemoryBudget budget;
            test::useEverything(again, second);
        }
        EXPECT_EQ(first.value(), second.value()) << "the same state behaves differently";
    }

    test::QuietApp m_app;
    const std::string m_before;  // what the object held before; empty: it is new
};

template <class Record, class Model>
int sweep(const std::vector<File>& files, const std::string& before = {}) {
    Damage<Record, Model> damage(before);
    for (const File& file : files) {
        for (std::size_t n = 0; n <= file.bytes.size(); ++n)
            damage.check(file.bytes.substr(0, n), file.name + " cut at " + std::to_string(n));
        for (std::size_t at = 0; at < file.bytes.size(); ++at) {
            const auto old = static_cast<unsigned char>(file.bytes[at]);
            for (const unsigned value : {0x00u, 0x7Fu, 0x80u, 0xFFu, old ^ 0xFFu, old ^ 1u}) {
                if (value == old) continue;
                std::string bytes = file.bytes;
                bytes[at] = static_cast<char>(value);
                damage.check(bytes, file.name + " with " + std::to_string(value) + " at " +
                                        std::to_string(at));
                if (testing::Test::HasFailure()) return damage.cases;
            }
        }
    }
    std::printf("%d cases:", damage.cases);
    for (int i = 0; i < 6; ++i)
        std::printf(" %s %d,", test::name(static_cast<Outcome>(i)), damage.outcomes[i]);
    std::printf("\n");
    return damage.cases;
}

TEST(Damage, VectorsEndAsTheFormatSays) {
    EXPECT_GT((sweep<CWavChnlChnlDatazq, reference::Vector>(golden::vectorFiles())), 1000);
}

TEST(Damage, VectorsWithABackupEndAsTheFormatSays) {
    const std::string before = golden::vectorFiles()[1].bytes;
    EXPECT_GT((sweep<CWavChnlChnlDatazq, reference::Vector>(golden::vectorFiles(), before)), 1000);
}

TEST(Damage, DatasetsEndAsTheFormatSays) {
    EXPECT_GT((sweep<CSnsCohDatazq, reference::Dataset>(golden::datasetFiles())), 10000);
}

TEST(Damage, DatasetsThatHeldDataEndAsTheFormatSays) {
    std::vector<File> files = golden::datasetFiles();
    files.erase(files.begin() + 1, files.begin() + 4);
    const std::string before = golden::record20160311().str();
    EXPECT_GT((sweep<CSnsCohDatazq, reference::Dataset>(files, before)), 5000);
}

TEST(Damage, PackagesEndAsTheFormatSays) {
    EXPECT_GT((sweep<CSnsCohFacezq, reference::Package>(golden::packageFiles())), 5000);
}

TEST(Damage, GroupsEndAsTheFormatSays) {
    EXPECT_GT((sweep<CleanGroup, reference::Group>(golden::groupFiles())), 3000);
}

}  // namespace
