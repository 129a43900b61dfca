// Every golden file cut at every byte, and with every byte replaced.
#include "tests/trust/PairsCheck.h"
#include "tests/trust/RecordCheck.h"
#include "tests/trust/golden_files.h"

#include <gtest/gtest.h>

#include <cstdio>

namespace {

using golden::File;
using test::Outcome;

template <class Check>
class Sweep {
public:
    explicit Sweep(Check& check) : m_check(check) {}

    void run(const File& file) {
        for (std::size_t n = 0; n <= file.bytes.size(); ++n)
            check(file.bytes.substr(0, n), file.name + " cut at ", n);
        for (std::size_t at = 0; at < file.bytes.size() && !testing::Test::HasFailure(); ++at) {
            const auto old = static_cast<unsigned char>(file.bytes[at]);
            for (const unsigned value : {0x00u, 0x7Fu, 0x80u, 0xFFu, old ^ 0xFFu, old ^ 1u}) {
                if (value == old) continue;
                std::string bytes = file.bytes;
                bytes[at] = static_cast<char>(value);
                check(bytes, file.name + " with " + std::to_string(value) + " at ", at);
            }
        }
    }

    int tell() const {
        int cases = 0;
        for (int i = 0; i < 6; ++i) {
            std::printf("%s %d, ", test::name(static_cast<Outcome>(i)), m_outcomes[i]);
            cases += m_outcomes[i];
        }
        std::printf("%d cases\n", cases);
        return cases;
    }

private:
    void check(const std::string& bytes, const std::string& what, std::size_t at) {
        EXPECT_EQ(m_check(bytes), "") << what << at;
        ++m_outcomes[static_cast<int>(m_check.outcome())];
    }

    Check& m_check;
    int m_outcomes[6] = {};
};

template <class Check>
int sweepWith(Check check, const std::vector<File>& files) {
    Sweep<Check> sweep(check);
    for (const File& file : files)
        sweep.run(file);
    return sweep.tell();
}

template <class Record, class Model>
int sweep(const std::vector<File>& files, const std::string& before = {}) {
    return sweepWith(test::RecordCheck<Record, Model>(before), files);
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
    const std::string before = golden::newestRecord().str();
    EXPECT_GT((sweep<CSnsCohDatazq, reference::Dataset>(files, before)), 5000);
}

TEST(Damage, DatasetsReadPairByPairEndAsThoseReadWhole) {
    EXPECT_GT(sweepWith(test::PairsCheck(), golden::datasetFiles()), 10000);
}

TEST(Damage, PackagesEndAsTheFormatSays) {
    EXPECT_GT((sweep<CSnsCohFacezq, reference::Package>(golden::packageFiles())), 5000);
}

TEST(Damage, GroupsEndAsTheFormatSays) {
    EXPECT_GT((sweep<test::CleanGroup, reference::Group>(golden::groupFiles())), 3000);
}

}  // namespace
