// Plays a sequence of calls on a package and a group and on their plain counterparts at once. A
// kind of call is one short function; they stand in Sequence_*.cpp.
#pragma once

#include "cxcpkg/CGroupMeegCxcFacezq.h"
#include "cxcpkg/CSnsCohFacezq.h"
#include "siblings/matrix/CMMatrix2Dzq.h"
#include "tests/trust/PlainDataset.h"
#include "tests/trust/QuietApp.h"

#include <cstddef>
#include <cstdint>
#include <limits>
#include <string>

namespace test {

using plain::Int;
using Real = CSnsCohDatazq;
using RealVector = CWavChnlChnlDatazq;

inline constexpr int mostEntries = 6;

// The bytes as choices; 0 when they are used up.
class Choices {
public:
    Choices(const std::uint8_t* bytes, std::size_t count) : m_bytes(bytes), m_left(count) {}

    bool left() const { return m_left > 0; }
    unsigned byte() {
        if (m_left == 0) return 0;
        --m_left;
        return *m_bytes++;
    }
    int below(int n) { return static_cast<int>(byte()) % n; }
    bool flag() { return byte() % 2 == 1; }

    double value() {
        constexpr double inf = std::numeric_limits<double>::infinity();
        constexpr double nan = std::numeric_limits<double>::quiet_NaN();
        constexpr double values[] = {0.0, -0.0, 1.0,    -1.0, 0.1,  2.0,  -3.5,   1e300,
                                     inf, -inf, 5e-324, nan,  -nan, 1e-9, 12345.0};
        constexpr int count = sizeof(values) / sizeof(values[0]);
        const unsigned chosen = byte();
        if (chosen < 2 * count) return values[chosen % count];
        return (static_cast<double>(chosen) - 140.0) * 0.37 + static_cast<double>(byte()) * 1e-3;
    }
    double valueOrNaN() {
        constexpr double nan = std::numeric_limits<double>::quiet_NaN();
        if (below(4) != 0) return value();
        return flag() ? -nan : nan;
    }
    // Around the ends of a range of `count`, and far beyond.
    Int index(Int count) {
        const int chosen = static_cast<int>(byte());
        if (chosen < 200) return chosen % (count + 5) - 3;
        constexpr Int beyond[] = {std::numeric_limits<Int>::min(), -1000000, 1000000,
                                  std::numeric_limits<Int>::max()};
        return beyond[chosen % 4];
    }
    int smallIndex(int count) {
        const int chosen = static_cast<int>(byte());
        if (chosen < 240) return chosen % (count + 4) - 2;
        return chosen % 2 == 0 ? std::numeric_limits<int>::min() : std::numeric_limits<int>::max();
    }

private:
    const std::uint8_t* m_bytes;
    std::size_t m_left;
};

// A dataset of the library and its plain counterpart.
struct Both {
    Real* real = nullptr;
    plain::Dataset* model = nullptr;
};

class Player {
public:
    Player(QuietApp& app, const std::uint8_t* bytes, std::size_t count)
        : m_app(app), m_in(bytes, count) {}
    ~Player() { m_group.cleanSnsCohPkg(); }

    std::string play();

private:
    struct Call {
        const char* name;
        void (Player::*make)();
    };
    static const Call s_calls[];

    // --- comparing
    void differ(const std::string& what);
    void equal(const char* what, Int real, Int model);
    void equal(const char* what, double real, double model);
    void equalOrNaN(const char* what, double real, double model);
    void equal(const char* what, const CString& real, const std::string& model);
    void compareVector(const RealVector& real, const plain::Vector& model, Int r, Int c);
    void compareDataset(const Real* real, const plain::Dataset* model);
    template <class Holder>
    void compareLabels(const Holder& real, const plain::Labels& model);
    void compareMatrices(CMMatrix2Dzq* real, const plain::Dataset& model);
    void compareAll();

    // --- choosing
    Both chosen();
    Both orNew();
    RealVector* vectorOf(const Both& both, plain::Vector*& model);
    CSnsCohDatazq* makeReal(plain::Dataset& model);
    void fill(const Both& both);
    plain::Matrix matrix(CMMatrix2Dzq& real, Int n);
    void makeActiveAndControl();
    void takeNaNsOfProducts();
    CString label(std::string& model);
    template <class Holder>
    void playViewers(Holder& real, std::vector<int>& model);
    template <class Holder>
    void writeLabels(Holder& real, plain::Labels& model);
    template <class Record>
    void load(const std::string& bytes, Record& record);

    // --- calls
    void sizeDataset();
    void newInSlot();
    void newInGroup();
    void nullInGroup();
    void fillValues();
    void writeFields();
    void cleanDataset();
    void readValue();
    void readSelected();
    void setSelection();
    void checkSelection();
    void nextSelection();
    void setColumn();
    void resetSensors();
    void announce();
    void latencies();
    void smallAccessors();
    void toMatrices();
    void fromMatrices();
    void oneSlice();
    void arrayIn();
    void arrayOut();
    void normalise();
    void dataRange();
    void statistics();
    void diagonal();
    void signedRange();
    void absoluteRange();
    void add();
    void accumulate();
    void labels();
    void carriedFields();
    void copies();
    void squareMatrix();
    void record();
    void eachPair();
    void text();
    void vectorSizes();
    void vectorBackup();
    void vectorFigures();
    void vectorOwnership();
    void vectorOwnArrays();
    void vectorPieces();
    void vectorFields();
    void vectorCopies();
    void vectorRecord();
    void packageCounts();
    void packageGet();
    void packageDelete();
    void packageCombine();
    void packageMatch();
    void packageSizes();
    void packageOne();
    void packageSums();
    void packageNames();
    void packageLabels();
    void packageViews();
    void packageAccumulate();
    void packageEmpty();
    void packageOther();
    void packageViewers();
    void packageRecord();
    void groupCounts();
    void groupGet();
    void groupDelete();
    void groupSized();
    void groupAverage();
    void groupSummary();
    void groupSums();
    void groupSizes();
    void groupLabels();
    void groupViews();
    void groupRanges();
    void groupAccumulate();
    void groupOneByOne();
    void groupWatched();
    void groupViewers();
    void groupRecord();

    QuietApp& m_app;
    Choices m_in;
    CSnsCohFacezq m_package;
    CGroupMeegCxcFacezq m_group;
    plain::Package m_plainPackage;
    plain::Group m_plainGroup;
    plain::Messages m_messages;
    CWnd m_windows[2];  // without windows of the system
    std::string m_played;
    std::string m_wrong;
};

}  // namespace test
