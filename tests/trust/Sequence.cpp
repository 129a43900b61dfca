#include "tests/trust/Sequence.h"

#include "cxcdata/array_exchange.h"
#include "cxcpkg/CGroupMeegCxcFacezq.h"
#include "cxcpkg/CSnsCohFacezq.h"
#include "siblings/matrix/CMMatrix2Dzq.h"
#include "tests/trust/PlainDataset.h"
#include "tests/trust/QuietApp.h"
#include "tests/trust/every_operation.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <limits>
#include <memory>
#include <sstream>

namespace test {
namespace {

using plain::Int;
using Real = CSnsCohDatazq;
using RealVector = CWavChnlChnlDatazq;

constexpr int mostEntries = 6;
constexpr std::size_t mostCalls = 400;

std::string textOf(const CString& text) {
    std::string made;
    for (int i = 0; i < text.GetLength(); ++i)
        made += static_cast<char>(text[i]);
    return made;
}

bool same(double a, double b) {
    return (std::isnan(a) && std::isnan(b)) || std::memcmp(&a, &b, sizeof(a)) == 0;
}

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
        constexpr double values[] = {0.0,  -0.0,   1.0,    -1.0,
                                     0.1,  2.0,    -3.5,   1e300,
                                     inf,  -inf,   5e-324, std::numeric_limits<double>::quiet_NaN(),
                                     1e-9, 12345.0};
        constexpr int count = sizeof(values) / sizeof(values[0]);
        const unsigned chosen = byte();
        if (chosen < 2 * count) return values[chosen % count];
        return (static_cast<double>(chosen) - 140.0) * 0.37 + static_cast<double>(byte()) * 1e-3;
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
    void equal(const char* what, const CString& real, const std::string& model);
    void compareVector(const RealVector& real, const plain::Vector& model, Int r, Int c);
    void compareDataset(const Real* real, const plain::Dataset* model);
    void compareAll();

    // --- choosing
    Both chosen();
    Both orNew();
    RealVector* vectorOf(const Both& both, plain::Vector*& model);
    CSnsCohDatazq* makeReal(plain::Dataset& model);
    void fill(const Both& both);
    plain::Matrix matrix(CMMatrix2Dzq& real, Int n);

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
    void vectorSizes();
    void vectorBackup();
    void vectorFigures();
    void vectorOwnership();
    void packageCounts();
    void packageGet();
    void packageDelete();
    void packageCombine();
    void packageMatch();
    void packageSizes();
    void packageOne();
    void packageSums();
    void packageNames();
    void groupCounts();
    void groupGet();
    void groupDelete();
    void groupSized();
    void groupAverage();
    void groupSummary();
    void groupSums();
    void groupSizes();

    QuietApp& m_app;
    Choices m_in;
    CSnsCohFacezq m_package;
    CGroupMeegCxcFacezq m_group;
    plain::Package m_plainPackage;
    plain::Group m_plainGroup;
    plain::Messages m_messages;
    std::string m_played;
    std::string m_wrong;
};

const Player::Call Player::s_calls[] = {
    {"new in slot", &Player::newInSlot},
    {"new in group", &Player::newInGroup},
    {"fill", &Player::fillValues},
    {"size", &Player::sizeDataset},
    {"null in group", &Player::nullInGroup},
    {"fields", &Player::writeFields},
    {"clean", &Player::cleanDataset},
    {"value", &Player::readValue},
    {"selected", &Player::readSelected},
    {"setSelect", &Player::setSelection},
    {"checkSelect", &Player::checkSelection},
    {"nextSelect", &Player::nextSelection},
    {"setColumnCrt", &Player::setColumn},
    {"resetSnsCoh", &Player::resetSensors},
    {"setChnlRowCol", &Player::announce},
    {"latencies", &Player::latencies},
    {"accessors", &Player::smallAccessors},
    {"to matrices", &Player::toMatrices},
    {"from matrices", &Player::fromMatrices},
    {"one slice", &Player::oneSlice},
    {"array in", &Player::arrayIn},
    {"array out", &Player::arrayOut},
    {"normRMS", &Player::normalise},
    {"checkDataRange", &Player::dataRange},
    {"statistics", &Player::statistics},
    {"zeroDiagonal", &Player::diagonal},
    {"signed range", &Player::signedRange},
    {"absolute range", &Player::absoluteRange},
    {"sum", &Player::add},
    {"accumulate", &Player::accumulate},
    {"vector sizes", &Player::vectorSizes},
    {"vector backup", &Player::vectorBackup},
    {"vector figures", &Player::vectorFigures},
    {"vector ownership", &Player::vectorOwnership},
    {"package counts", &Player::packageCounts},
    {"package get", &Player::packageGet},
    {"package delete", &Player::packageDelete},
    {"combine", &Player::packageCombine},
    {"match", &Player::packageMatch},
    {"package sizes", &Player::packageSizes},
    {"package one class", &Player::packageOne},
    {"package sums", &Player::packageSums},
    {"package names", &Player::packageNames},
    {"group counts", &Player::groupCounts},
    {"group get", &Player::groupGet},
    {"group delete", &Player::groupDelete},
    {"group sized", &Player::groupSized},
    {"average", &Player::groupAverage},
    {"summary", &Player::groupSummary},
    {"group sums", &Player::groupSums},
    {"group sizes", &Player::groupSizes},
};

std::string Player::play() {
    constexpr int count = sizeof(s_calls) / sizeof(s_calls[0]);
    for (std::size_t i = 0; i < mostCalls && m_in.left() && m_wrong.empty(); ++i) {
        const Call& call = s_calls[m_in.below(count)];
        m_played += std::string(m_played.empty() ? "" : ", ") + call.name;
        m_app.forget();
        m_messages.clear();
        (this->*call.make)();
        const std::vector<std::string> said = m_app.takeMessages();
        if (said != m_messages) differ("the messages");
        compareAll();
    }
    return m_wrong;
}

// --- comparing -----------------------------------------------------------------------------------

void Player::differ(const std::string& what) {
    if (m_wrong.empty()) m_wrong = what + " after: " + m_played;
}

void Player::equal(const char* what, Int real, Int model) {
    if (real == model) return;
    differ(std::string(what) + ": " + std::to_string(real) + " instead of " +
           std::to_string(model));
}

void Player::equal(const char* what, double real, double model) {
    if (same(real, model)) return;
    std::ostringstream text;
    text.precision(17);
    text << what << ": " << real << " instead of " << model;
    differ(text.str());
}

void Player::equal(const char* what, const CString& real, const std::string& model) {
    if (textOf(real) != model) differ(std::string(what) + ": " + textOf(real) + " not " + model);
}

void Player::compareVector(const RealVector& real, const plain::Vector& model, Int r, Int c) {
    const std::string where = " of pair " + std::to_string(r) + ", " + std::to_string(c);
    equal(("size" + where).c_str(), real.m_size, model.size());
    equal(("values" + where).c_str(), Int(real.m_data != nullptr), Int(model.data.has_value()));
    equal(("backup" + where).c_str(), Int(real.m_bkData != nullptr), Int(model.backup.has_value()));
    const Int backups = model.backup ? static_cast<Int>(model.backup->size()) : 0;
    equal(("backup size" + where).c_str(), real.m_bkSize, backups);
    equal(("m_curIdx" + where).c_str(), real.m_curIdx, model.curIdx);
    equal(("m_chnlA" + where).c_str(), real.m_chnlA, model.chnlA);
    equal(("m_chnlB" + where).c_str(), real.m_chnlB, model.chnlB);
    if (!m_wrong.empty()) return;
    for (Int t = 0; t < model.size(); ++t) {
        const std::string one = "value " + std::to_string(t) + where;
        equal(one.c_str(), real.m_data[t], (*model.data)[static_cast<std::size_t>(t)]);
    }
    for (Int t = 0; t < backups; ++t) {
        const std::string one = "backup " + std::to_string(t) + where;
        equal(one.c_str(), real.m_bkData[t], (*model.backup)[static_cast<std::size_t>(t)]);
    }
}

void Player::compareDataset(const Real* real, const plain::Dataset* model) {
    if (real == nullptr || model == nullptr) {
        equal("there", Int(real != nullptr), Int(model != nullptr));
        return;
    }
    equal("m_cohTimTotal", real->m_cohTimTotal, model->slices);
    equal("m_selectBegin", real->m_selectBegin, model->selectBegin);
    equal("m_selectEnd", real->m_selectEnd, model->selectEnd);
    equal("m_rowCrt", real->m_rowCrt, model->row);
    equal("m_columnCrt", real->m_columnCrt, model->column);
    equal("m_snsRowTotal", real->m_snsRowTotal, model->rows);
    equal("m_snsColTotal", real->m_snsColTotal, model->cols);
    equal("m_samplingRate", real->m_samplingRate, model->samplingRate);
    equal("m_anaLatencyBegin", real->m_anaLatencyBegin, model->latencyBegin);
    equal("m_anaLatencyEnd", real->m_anaLatencyEnd, model->latencyEnd);
    equal("m_headerLong2", real->m_headerLong2, model->longest);
    equal("m_headerInt9", Int(real->m_headerInt9), Int(model->listItem));
    equal("m_tscsInfo", Int(real->m_tscsInfo), Int(model->show));
    equal("m_dataMin", real->m_dataMin, model->least);
    equal("m_dataMax", real->m_dataMax, model->most);
    equal("m_dataMean", real->m_dataMean, model->mean);
    equal("m_rmsNormalized", Int(real->m_rmsNormalized), Int(model->normalised));
    equal("m_rmsValue", real->m_rmsValue, model->rms);
    equal("m_showRangeMin", real->m_showRangeMin, model->showLeast);
    equal("m_showRangeMax", real->m_showRangeMax, model->showMost);
    equal("m_showRangeMid", real->m_showRangeMid, model->showMid);
    equal("m_cxcName", real->m_cxcName, model->name);
    equal("m_cxcCmptInfo", real->m_cxcCmptInfo, model->note);
    equal("grid", Int(real->m_mCC != nullptr), Int(model->grid.has_value()));
    if (!m_wrong.empty()) return;
    for (Int r = 0; r < model->realRows(); ++r) {
        for (Int c = 0; c < model->realCols(); ++c)
            compareVector(real->m_mCC[r][c], *model->cell(r, c), r, c);
    }
}

void Player::compareAll() {
    Real* const slots[] = {m_package.m_cohActive, m_package.m_cohControl, m_package.m_cohActCtl};
    for (int cls = 0; cls < 3; ++cls) {
        plain::Slot& slot = m_plainPackage.slots[cls];
        compareDataset(slots[cls], slot ? &*slot : nullptr);
    }
    equal("current class", Int(m_package.m_curntCohDataSetID), Int(m_plainPackage.current));
    equal("entries", m_group.getTotalCohDataset(), Int(m_plainGroup.total()));
    equal("current entry", Int(m_group.m_curntCohDataSetID), Int(m_plainGroup.current));
    if (!m_wrong.empty()) return;
    for (int i = 0; i < m_plainGroup.total(); ++i)
        compareDataset(m_group.getCoherenceData(i), m_plainGroup.get(i));
}

// --- choosing ------------------------------------------------------------------------------------

// One of the slots and entries, in which there may be none.
Both Player::chosen() {
    const int which = m_in.below(3 + std::max(m_plainGroup.total(), 1));
    Both both;
    if (which < 3) {
        Real* const slots[] = {m_package.m_cohActive, m_package.m_cohControl,
                               m_package.m_cohActCtl};
        both.real = slots[which];
        plain::Slot& slot = m_plainPackage.slots[which];
        both.model = slot ? &*slot : nullptr;
    } else if (m_plainGroup.total() > 0) {
        both.real = m_group.getCoherenceData(which - 3);
        both.model = m_plainGroup.get(which - 3);
    }
    if (both.model == nullptr) both.real = nullptr;
    return both;
}

// One that is there; Active is made when there was none.
Both Player::orNew() {
    Both both = chosen();
    if (both.real != nullptr) return both;
    if (m_package.m_cohActive == nullptr) {
        m_package.setCohData(makeReal(m_plainPackage.slots[0].emplace()), 0);
    }
    return {m_package.m_cohActive, &*m_plainPackage.slots[0]};
}

RealVector* Player::vectorOf(const Both& both, plain::Vector*& model) {
    model = nullptr;
    if (both.real == nullptr || both.model->realRows() < 1) return nullptr;
    const Int r = m_in.below(static_cast<int>(both.model->realRows()));
    const Int c = m_in.below(static_cast<int>(both.model->realCols()));
    model = both.model->cell(r, c);
    return &both.real->m_mCC[r][c];
}

CSnsCohDatazq* Player::makeReal(plain::Dataset& model) {
    auto made = std::make_unique<CSnsCohDatazq>();
    const Int rows = m_in.below(4);
    const Int cols = m_in.below(4);
    const Int slices = m_in.below(5);
    equal("sized", Int(made->checkInitSnsCohData(rows, cols, slices, true)),
          Int(model.checkInit(rows, cols, slices, true)));
    fill({made.get(), &model});
    return made.release();
}

void Player::fill(const Both& both) {
    for (Int r = 0; r < both.model->realRows(); ++r) {
        for (Int c = 0; c < both.model->realCols(); ++c) {
            plain::Vector& model = *both.model->cell(r, c);
            RealVector& real = both.real->m_mCC[r][c];
            model.chnlA = real.m_chnlA = 1 + r;
            model.chnlB = real.m_chnlB = 101 + c;
            for (Int t = 0; t < model.size(); ++t)
                real.m_data[t] = (*model.data)[static_cast<std::size_t>(t)] = m_in.value();
        }
    }
}

plain::Matrix Player::matrix(CMMatrix2Dzq& real, Int n) {
    plain::Matrix model;
    model.rows = m_in.below(8) == 0 ? m_in.below(4) : n;
    model.cols = m_in.below(8) == 0 ? m_in.below(4) : n;
    if (real.checkInit(model.rows, model.cols, true) == nullptr) {
        model.rows = model.cols = 0;
        return model;
    }
    model.values.resize(static_cast<std::size_t>(model.rows * model.cols));
    for (Int r = 0; r < model.rows; ++r) {
        for (Int c = 0; c < model.cols; ++c)
            real.getDataPP()[r][c] = model.at(r, c) = m_in.value();
    }
    return model;
}

// --- calls of datasets ---------------------------------------------------------------------------

void Player::newInSlot() {
    const int cls = m_in.smallIndex(3);
    plain::Dataset made;
    std::unique_ptr<Real> real(makeReal(made));
    const int resolved = cls == -1 ? m_plainPackage.current : cls;
    const bool taken = resolved >= 0 && resolved <= 2;
    equal("setCohData", Int(m_package.setCohData(real.get(), cls)), Int(taken));
    if (!taken) return;
    real.release();
    m_plainPackage.slots[resolved] = std::move(made);
}

void Player::newInGroup() {
    if (m_plainGroup.total() >= mostEntries) return;
    const int index = m_in.smallIndex(m_plainGroup.total());
    plain::Dataset made;
    Real* const real = makeReal(made);
    equal("setCohData", Int(m_group.setCohData(real, index)), Int(1));
    m_plainGroup.insert(std::move(made), index);
}

void Player::nullInGroup() {
    if (m_plainGroup.total() >= mostEntries) return;
    const int index = m_in.smallIndex(m_plainGroup.total());
    equal("setCohData", Int(m_group.setCohData(nullptr, index)), Int(1));
    m_plainGroup.insert(std::nullopt, index);
}

void Player::sizeDataset() {
    const Both both = orNew();
    const Int rows = m_in.below(5) - 1;
    const Int cols = m_in.below(5) - 1;
    const Int slices = m_in.below(6) - 1;
    const bool zero = m_in.flag();
    equal("checkInitSnsCohData", Int(both.real->checkInitSnsCohData(rows, cols, slices, zero)),
          Int(both.model->checkInit(rows, cols, slices, zero)));
    if (!zero) fill(both);
}

void Player::fillValues() {
    const Both both = orNew();
    fill(both);
}

void Player::writeFields() {
    const Both both = orNew();
    both.real->m_samplingRate = both.model->samplingRate = m_in.value();
    both.real->m_headerInt9 = both.model->listItem = m_in.below(3);
    both.real->m_headerLong2 = both.model->longest = m_in.below(9);
    both.real->m_rowCrt = both.model->row = m_in.below(6) - 2;
    both.real->m_selectBegin = both.model->selectBegin = m_in.below(9) - 3;
    both.real->m_selectEnd = both.model->selectEnd = m_in.below(9) - 3;
}

void Player::cleanDataset() {
    const Both both = orNew();
    equal("cleanSnsCohData", Int(both.real->cleanSnsCohData()), Int(both.model->clean()));
}

void Player::readValue() {
    const Both both = orNew();
    const Int t = m_in.index(both.model->slices);
    const Int r = m_in.index(both.model->rows);
    const Int c = m_in.index(both.model->cols);
    equal("getValue", both.real->getValue(t, r, c), both.model->value(t, r, c));
}

void Player::readSelected() {
    const Both both = orNew();
    const Int from = m_in.index(both.model->slices);
    const Int to = m_in.index(both.model->slices);
    const Int r = m_in.index(both.model->rows);
    const Int c = m_in.index(both.model->cols);
    equal("getValueSelect", both.real->getValueSelect(from, to, r, c),
          both.model->selected(from, to, r, c));
}

void Player::setSelection() {
    const Both both = orNew();
    const Int begin = m_in.index(both.model->slices);
    const Int end = m_in.index(both.model->slices);
    equal("setSelect", both.real->setSelect(begin, end), both.model->select(begin, end));
    Int first = 0;
    Int last = 0;
    equal("getSelect", both.real->getSelect(first, last),
          both.model->selectEnd - both.model->selectBegin + 1);
    equal("begin", first, both.model->selectBegin);
    equal("end", last, both.model->selectEnd);
}

void Player::checkSelection() {
    const Both both = orNew();
    const Int begin = m_in.index(both.model->slices);
    const Int end = m_in.index(both.model->slices);
    equal("checkSelect", Int(both.real->checkSelect(begin, end)),
          Int(both.model->checkSelect(begin, end)));
}

void Player::nextSelection() {
    const Both both = orNew();
    const int step = m_in.smallIndex(6);
    const int wrap = m_in.below(3) - 1;
    equal("nextSelect", both.real->nextSelect(step, wrap), both.model->next(step, wrap));
}

void Player::setColumn() {
    const Both both = orNew();
    const int column = m_in.smallIndex(static_cast<int>(both.model->cols));
    equal("setColumnCrt", Int(both.real->setColumnCrt(column)), Int(both.model->setColumn(column)));
}

void Player::resetSensors() {
    const Both both = orNew();
    equal("resetSnsCoh", Int(both.real->resetSnsCoh()), Int(both.model->resetSensors()));
}

void Player::announce() {
    const Both both = orNew();
    const Int rows = m_in.below(7) - 1;
    const Int cols = m_in.below(7) - 1;
    equal("setChnlRowCol", Int(both.real->setChnlRowCol(rows, cols)),
          Int(both.model->announce(rows, cols)));
}

void Player::latencies() {
    const Both both = orNew();
    const double begin = m_in.value();
    const double end = m_in.value();
    equal("setAnaLatency", Int(both.real->setAnaLatency(begin, end)), Int(1));
    both.model->latencyBegin = begin;
    both.model->latencyEnd = end;
    double first = 0.0;
    double last = 0.0;
    equal("getAnaLatency", Int(both.real->getAnaLatency(first, last)), Int(1));
    equal("begin", first, begin);
    equal("end", last, end);
    const Int t = m_in.below(9) - 2;
    equal("getLatency4PtSecond", both.real->getLatency4PtSecond(t),
          static_cast<double>(t) / both.model->samplingRate + begin);
    const Int points = m_in.below(40);
    const Int step = 1 + m_in.below(7);
    const Int window = m_in.below(20);
    Int count = 1;
    for (Int at = 0; at < points - window; at += step)
        ++count;
    equal("getCohTim", Real::getCohTim(points, step, window), count);
}

void Player::smallAccessors() {
    const Both both = orNew();
    const plain::Dataset& model = *both.model;
    Int rows = 0;
    Int cols = 0;
    equal("getChnlRowCol", Int(both.real->getChnlRowCol(rows, cols)),
          Int(model.rows >= 1 && model.cols >= 1));
    equal("rows", rows, model.rows);
    equal("cols", cols, model.cols);
    equal("getSnsCohTimTotal", both.real->getSnsCohTimTotal(), model.slices);
    equal("getSnsCohSnsTotal", both.real->getSnsCohSnsTotal(), model.grid ? model.rows : 0);
    const Int sensors = m_in.below(4);
    equal("verifyWavCohDataSize", Int(both.real->verifyWavCohDataSize(sensors, model.slices)),
          Int(sensors == model.rows));
    const bool show = m_in.flag();
    equal("setCohAnaDataTscsInfo", Int(both.real->setCohAnaDataTscsInfo(show)), Int(1));
    both.model->show = show;
    equal("resetCohTimeInfo", Int(both.real->resetCohTimeInfo()), Int(0));
    equal("findSelectCxC", Int(both.real->findSelectCxC(1)), Int(0));
    equal("getCxcCmptInfo", both.real->getCxcCmptInfo(), model.note);
}

void Player::toMatrices() {
    const Both both = orNew();
    CMMatrix2Dzq offered[5];
    const bool own = m_in.flag();
    CMMatrix2Dzq* given = own ? nullptr : offered;
    Int count = own ? 0 : m_in.below(6);
    const int status = both.real->getData2MCohTimSnsSns(given, count);
    const std::unique_ptr<CMMatrix2Dzq[]> made(own ? given : nullptr);
    const plain::Dataset& model = *both.model;
    const bool possible = model.grid && (own || count > model.slices) &&
                          (model.rows >= 1 || (own ? model.slices : count) < 1);
    equal("getData2MCohTimSnsSns", Int(status), Int(possible));
    if (status == 0 || !m_wrong.empty()) return;
    for (Int t = 0; t < model.slices; ++t) {
        equal("rows of a matrix", given[t].getRow(), model.rows);
        equal("columns of a matrix", given[t].getCol(), model.rows);
        for (Int r = 0; r < model.rows && m_wrong.empty(); ++r) {
            for (Int c = 0; c < model.rows; ++c) {
                const plain::Vector* const vector = model.cell(r, c);
                const bool there = vector != nullptr && t < vector->size();
                const double wanted = there ? (*vector->data)[static_cast<std::size_t>(t)] : 0.0;
                equal("element of a matrix", given[t].getDataPP()[r][c], wanted);
            }
        }
    }
}

void Player::fromMatrices() {
    const Both both = orNew();
    CMMatrix2Dzq real[3];
    std::vector<plain::Matrix> model;
    const Int n = 1 + m_in.below(3);
    const int count = m_in.below(4);
    for (int t = 0; t < count; ++t)
        model.push_back(matrix(real[t], n));
    equal("setData4MCohTimSnsSns", Int(both.real->setData4MCohTimSnsSns(real, count)),
          Int(both.model->fromMatrices(model)));
}

void Player::oneSlice() {
    const Both both = orNew();
    CMMatrix2Dzq real;
    const plain::Matrix model = matrix(real, std::max<Int>(both.model->rows, 1));
    const Int t = m_in.index(both.model->slices);
    equal("addMSnsSnsTimID", Int(both.real->addMSnsSnsTimID(&real, t)),
          Int(both.model->setSlice(model, t)));
}

void Player::arrayIn() {
    const Both both = orNew();
    const Int slices = m_in.below(4);
    const Int rows = m_in.below(4);
    const Int cols = m_in.below(4);
    std::vector<double> values(27);
    for (double& value : values)
        value = m_in.value();
    const int status = cxc::datasetFromArray(*both.real, values.data(), slices, rows, cols);
    equal("datasetFromArray", Int(status), Int(slices > 0 && rows > 0 && cols > 0));
    both.model->clean();
    if (status == 0) return;
    both.model->checkInit(rows, cols, slices, true);
    both.model->selectEnd = slices - 1;
    for (Int t = 0; t < slices; ++t) {
        for (Int r = 0; r < rows; ++r) {
            for (Int c = 0; c < cols; ++c)
                (*both.model->cell(r, c)->data)[static_cast<std::size_t>(t)] =
                    values[static_cast<std::size_t>((t * rows + r) * cols + c)];
        }
    }
}

void Player::arrayOut() {
    const Both both = orNew();
    const plain::Dataset& model = *both.model;
    if (model.slices < 1 || model.rows < 1 || model.cols < 1) return;
    std::vector<double> values(static_cast<std::size_t>(model.slices * model.rows * model.cols),
                               -7.0);
    if (both.real->m_mCC == nullptr) return;
    cxc::arrayFromDataset(*both.real, values.data());
    for (Int t = 0; t < model.slices; ++t) {
        for (Int r = 0; r < model.rows; ++r) {
            for (Int c = 0; c < model.cols; ++c) {
                const plain::Vector* const vector = model.cell(r, c);
                const bool there = vector != nullptr && t < vector->size();
                equal("element of the array",
                      values[static_cast<std::size_t>((t * model.rows + r) * model.cols + c)],
                      there ? (*vector->data)[static_cast<std::size_t>(t)] : 0.0);
            }
        }
    }
}

void Player::normalise() {
    const Both both = orNew();
    equal("normRMS", Int(both.real->normRMS()), Int(both.model->normaliseRms(m_messages)));
}

void Player::dataRange() {
    const Both both = orNew();
    equal("checkDataRange", Int(both.real->checkDataRange()), Int(both.model->checkRange()));
}

void Player::statistics() {
    const Both both = orNew();
    const plain::Dataset& model = *both.model;
    if (!model.grid || model.rows < 1 || model.cols < 1) return;
    const CString text = both.real->getStatistics();
    double five[5] = {};
    both.model->statistics(five);
    char wanted[2048];
    for (const double figure : five) {
        if (!std::isfinite(figure)) return;  // how those are spelled is the platform's
    }
    std::snprintf(wanted, sizeof(wanted), "%s Min: %f\tMean: %f Max: %f AbsSum: %f RmsSum: %f \n",
                  model.name.c_str(), five[0], five[2], five[1], five[3], five[4]);
    equal("getStatistics", text, wanted);
}

void Player::diagonal() {
    const Both both = orNew();
    equal("zeroDiagonal", Int(both.real->zeroDiagonal()), Int(both.model->zeroDiagonal()));
}

void Player::signedRange() {
    const Both both = orNew();
    double ends[4] = {7.0, 7.0, 0.0, 0.0};
    const bool useTime = m_in.flag();
    const int noDiagonal = m_in.below(2);
    const Int from = m_in.index(both.model->slices);
    const Int to = m_in.index(both.model->slices);
    equal("getSnsCohRange",
          Int(both.real->getSnsCohRange(ends[0], ends[1], useTime, from, to, noDiagonal)),
          Int(both.model->signedRange(ends[2], ends[3], useTime, from, to, noDiagonal != 0)));
    equal("min", ends[0], ends[2]);
    equal("max", ends[1], ends[3]);
}

void Player::absoluteRange() {
    const Both both = orNew();
    double ends[4] = {7.0, 7.0, 0.0, 0.0};
    const bool useTime = m_in.flag();
    const Int from = m_in.index(both.model->slices);
    const Int to = m_in.index(both.model->slices);
    equal("getCxcAbsRange",
          Int(both.real->getCxcAbsRange(ends[0], ends[1], m_in.flag(), useTime, from, to)),
          Int(both.model->absoluteRange(ends[2], ends[3], useTime, from, to)));
    equal("min", ends[0], ends[2]);
    equal("max", ends[1], ends[3]);
}

void Player::add() {
    const Both both = orNew();
    const Both other = orNew();
    equal("sumDatSetSns", Int(both.real->sumDatSetSns(*other.real)),
          Int(both.model->add(*other.model)));
}

void Player::accumulate() {
    const Both both = orNew();
    equal("accumulateTime1", Int(both.real->accumulateTime1()), Int(both.model->accumulate()));
}

// --- calls of vectors ----------------------------------------------------------------------------

void Player::vectorSizes() {
    plain::Vector* model = nullptr;
    const Both both = orNew();
    RealVector* const real = vectorOf(both, model);
    if (real == nullptr) return;
    // A vector of a dataset is at most as long as the dataset.
    const Int n = m_in.below(static_cast<int>(std::max<Int>(both.model->slices, 0)) + 2) - 1;
    std::vector<double> values(static_cast<std::size_t>(std::max<Int>(n, 0)));
    switch (m_in.below(4)) {
        case 0:
            equal("resize", Int(real->resize(n)), Int(model->resize(n)));
            break;
        case 1:
            equal("checkInitData", Int(real->checkInitData(n, true) != nullptr),
                  Int(model->checkInit(n, true)));
            break;
        case 2:
            equal("cleanData", Int(real->cleanData()), Int(model->clean()));
            break;
        default:
            if (n < 1) return;
            for (double& value : values)
                value = m_in.value();
            equal("copy2Mtx", Int(real->copy2Mtx(values.data(), n)), Int(model->copyFrom(values)));
    }
}

void Player::vectorBackup() {
    plain::Vector* model = nullptr;
    const Both both = orNew();
    RealVector* const real = vectorOf(both, model);
    if (real == nullptr) return;
    switch (m_in.below(4)) {
        case 0:
            equal("bkDataIn", Int(real->bkDataIn()), Int(model->backupIn()));
            break;
        case 1:
            // What comes back must not be longer than the dataset by now.
            if (real->m_bkSize > both.model->slices) return;
            equal("bkDataInOut", Int(real->bkDataInOut()), Int(model->backupOut()));
            break;
        case 2:
            equal("cleanbkData", Int(real->cleanbkData()), Int(model->cleanBackup()));
            break;
        default:
            real->m_curIdx = model->curIdx = m_in.below(9) - 3;
    }
}

void Player::vectorFigures() {
    plain::Vector* model = nullptr;
    RealVector* const real = vectorOf(orNew(), model);
    if (real == nullptr) return;
    double found[6] = {7, 7, 7, 7, 7, 7};
    double wanted[6] = {};
    equal("getStatistic",
          Int(real->getStatistic(found[0], found[1], found[2], found[3], found[4], found[5])),
          Int(model->statistic(wanted)));
    for (int i = 0; i < 6; ++i)
        equal("figure", found[i], wanted[i]);
    equal("getDataRange", Int(real->getDataRange(found[0], found[1], found[2])),
          Int(model->range(wanted[0], wanted[1], wanted[2])));
    for (int i = 0; i < 3; ++i)
        equal("range", found[i], wanted[i]);
    equal("getValueMax", real->getValueMax(), model->largest());
    equal("allValueNonZero", Int(real->allValueNonZero()), Int(model->allNonZero()));
    const double x = m_in.value();
    equal("polynmlEval", real->polynmlEval(x), model->polynomial(x));
    const Int from = m_in.index(model->size());
    const Int to = m_in.index(model->size());
    const int mode = m_in.below(4) - 1;
    equal("getSelectDataMean", real->getSelectDataMean(from, to, mode),
          model->selected(from, to, mode));
    if (m_in.flag()) equal("normSumSqrt", Int(real->normSumSqrt()), Int(model->normalise()));
}

void Player::vectorOwnership() {
    plain::Vector* model = nullptr;
    const Both both = orNew();
    RealVector* const real = vectorOf(both, model);
    if (real == nullptr || both.model->slices < 1) return;
    if (m_in.flag()) {
        const std::unique_ptr<double[]> held(real->m_data);
        equal("deRefData", Int(real->deRefData()), Int(model->forget()));
        return;
    }
    const int n = m_in.below(static_cast<int>(both.model->slices) + 1);
    std::vector<double> values(static_cast<std::size_t>(n));
    auto* const array = new double[static_cast<std::size_t>(n)];
    for (int i = 0; i < n; ++i)
        array[i] = values[static_cast<std::size_t>(i)] = m_in.value();
    equal("setData", Int(real->setData(array, n)), Int(model->adopt(values)));
}

// --- calls of the package ------------------------------------------------------------------------

void Player::packageCounts() {
    const int id = m_in.smallIndex(3);
    equal("getTotalCohDataset", m_package.getTotalCohDataset(), m_plainPackage.total());
    equal("getCohDatasetListID", Int(m_package.getCohDatasetListID(id)),
          Int(m_plainPackage.clampList(id)));
    switch (m_in.below(3)) {
        case 0:
            equal("setCurrentCohDataset", Int(m_package.setCurrentCohDataset(id)),
                  Int(m_plainPackage.setCurrent(id)));
            break;
        case 1:
            equal("setCurntCohDataSetID", Int(m_package.setCurntCohDataSetID(id)),
                  Int(m_plainPackage.setCurrentId(id)));
            break;
        default:
            equal("setTrlCxcClass", Int(m_package.setTrlCxcClass(id)),
                  Int(m_plainPackage.setClass(id, m_messages)));
    }
    equal("hasCohTimeData4Show", Int(m_package.hasCohTimeData4Show()),
          Int(m_plainPackage.total() > 0));
}

void Player::packageGet() {
    const int cls = m_in.smallIndex(3);
    const Real* const real = m_package.getCoherenceData(cls);
    compareDataset(real, m_plainPackage.get(cls, m_messages));
    const int item = m_in.below(4);
    const Real* const listed = m_package.actCohDataset2ListID(item);
    plain::Dataset* found = nullptr;
    for (int i = 0; i < 3 && found == nullptr; ++i) {
        plain::Slot& slot = m_plainPackage.slots[i];
        if (!slot || slot->listItem != item) continue;
        found = &*slot;
        m_plainPackage.current = i;
    }
    compareDataset(listed, found);
    if (m_in.flag()) return;
    const Real* const any = m_package.getTrlCohDataAny();
    found = nullptr;
    for (int i = 0; i < 3 && found == nullptr; ++i) {
        if (!m_plainPackage.slots[i]) continue;
        found = &*m_plainPackage.slots[i];
        m_plainPackage.current = i;
    }
    compareDataset(any, found);
}

void Player::packageDelete() {
    const int cls = m_in.smallIndex(3);
    const int resolved = cls == -1 ? m_plainPackage.current : cls;
    const bool known = resolved >= 0 && resolved <= 2;
    equal("deleteCohDataset", Int(m_package.deleteCohDataset(cls)), Int(known));
    if (known) m_plainPackage.slots[resolved].reset();
}

void Player::packageCombine() {
    m_package.m_actCtlOperation = m_plainPackage.operation = m_in.below(5);
    const bool yes = m_in.below(4) != 0;
    m_app.question = yes ? IDYES : IDNO;
    // What an unknown operation leaves is open.
    if (m_plainPackage.operation > 3 && m_plainPackage.slots[2]) return;
    equal("doAct_Ctl_operation", Int(m_package.doAct_Ctl_operation()),
          Int(m_plainPackage.combine(yes, m_messages)));
}

void Player::packageMatch() {
    Int real[4] = {};
    Int model[4] = {};
    for (int i = 0; i < 4; ++i)
        real[i] = model[i] = m_in.below(60) - 20;
    equal("matchAtiveControl", Int(m_package.matchAtiveControl(real[0], real[1], real[2], real[3])),
          Int(m_plainPackage.match(model, m_messages)));
    for (int i = 0; i < 4; ++i)
        equal("matched", real[i], model[i]);
    const int cls = m_in.smallIndex(3);
    equal("checkSelect4Class", Int(m_package.checkSelect4Class(real[0], real[1], cls)),
          Int(m_plainPackage.checkSelect(real[0], real[1], cls, m_messages)));
}

void Player::packageSizes() {
    const int sensors = m_in.below(4);
    const Int active = m_in.below(4);
    const Int control = m_in.below(4) - 1;
    const Int mixed = m_in.below(4) - 1;
    const bool flag = m_in.flag();
    equal("checkInitSnsCohPkg", Int(sizePackage(m_package, sensors, active, control, mixed, flag)),
          Int(m_plainPackage.sizeAll(sensors, active, control, mixed, flag)));
}

void Player::packageOne() {
    const int sensors = m_in.below(4);
    const Int slices = m_in.below(4);
    const int cls = m_in.smallIndex(3);
    const bool flag = m_in.flag();
    const Real* const real = m_package.checkInitSnsCoh4Class(sensors, slices, cls, flag);
    compareDataset(real, m_plainPackage.sizeOne(sensors, slices, cls, flag, m_messages));
}

void Player::packageSums() {
    const Both both = orNew();
    const int cls = m_in.smallIndex(3);
    equal("sumPkg", Int(m_package.sumPkg(*both.real, cls)),
          Int(m_plainPackage.sumPackage(*both.model, cls)));
    if (m_in.flag()) return;
    equal("sumFace", Int(m_package.sumFace(m_package)),
          Int(m_plainPackage.sumFirstOf(m_plainPackage)));
}

void Player::packageNames() {
    const int cls = m_in.smallIndex(3);
    equal("getCxcDataName4Class", m_package.getCxcDataName4Class(cls),
          m_plainPackage.className(cls));
    const plain::Slot& active = m_plainPackage.slots[0];
    equal("getCohTimSlcMax", m_package.getCohTimSlcMax(), active ? active->longest : 1);
    const int asked = m_in.smallIndex(3);
    double ends[4] = {7.0, 7.0, 0.0, 0.0};
    const bool useTime = m_in.flag();
    const int noDiagonal = m_in.below(2);
    int wanted = 0;
    if (asked >= 0 && asked <= 2 && m_plainPackage.slots[asked])
        wanted = m_plainPackage.slots[asked]->signedRange(ends[2], ends[3], useTime, -1, -1,
                                                          noDiagonal != 0);
    equal("getSnsCohRange",
          Int(m_package.getSnsCohRange(asked, ends[0], ends[1], useTime, noDiagonal)), Int(wanted));
    equal("min", ends[0], ends[2]);
    equal("max", ends[1], ends[3]);
}

// --- calls of the group --------------------------------------------------------------------------

void Player::groupCounts() {
    const int id = m_in.smallIndex(m_plainGroup.total());
    equal("getCohDatasetListID", Int(m_group.getCohDatasetListID(id)),
          Int(m_plainGroup.total() == 0 ? -1 : m_plainGroup.clamp(id)));
    if (m_in.flag())
        equal("setCurrentCohDataset", Int(m_group.setCurrentCohDataset(id)),
              Int(m_plainGroup.setCurrent(id)));
    else
        equal("setCurntCohDataSetID", Int(m_group.setCurntCohDataSetID(id)),
              Int(m_plainGroup.setCurrentId(id)));
}

void Player::groupGet() {
    const int id = m_in.smallIndex(m_plainGroup.total());
    compareDataset(m_group.getCoherenceData(id), m_plainGroup.get(id));
    plain::Dataset* any = nullptr;
    if (m_plainGroup.total() > 0) any = m_plainGroup.get(m_plainGroup.clamp(m_plainGroup.current));
    compareDataset(m_group.getTrlCohDataAny(), any);
    equal("getCohTimSlcMax", m_group.getCohTimSlcMax(), any == nullptr ? 1 : any->longest);
}

void Player::groupDelete() {
    const int id = m_in.smallIndex(m_plainGroup.total());
    if (m_in.below(16) == 0) {
        equal("cleanSnsCohPkg", Int(m_group.cleanSnsCohPkg()), Int(1));
        m_plainGroup = plain::Group();
        return;
    }
    equal("deleteCohDataset", Int(m_group.deleteCohDataset(id)), Int(m_plainGroup.erase(id)));
}

void Player::groupSized() {
    if (m_plainGroup.total() >= mostEntries) return;
    const int sensors = m_in.below(4);
    const Int slices = m_in.below(4);
    const bool flag = m_in.flag();
    equal("checkInitSnsCohPkg", Int(m_group.checkInitSnsCohPkg(sensors, slices, flag)),
          Int(m_plainGroup.addSized(sensors, slices, flag)));
}

void Player::groupAverage() {
    if (m_plainGroup.total() >= mostEntries) return;
    equal("averageAll", Int(m_group.averageAll()), Int(m_plainGroup.average()));
}

void Player::groupSummary() {
    if (m_plainGroup.total() >= mostEntries) return;
    equal("summaryAll", Int(m_group.summaryAll()), Int(m_plainGroup.summary()));
}

void Player::groupSums() {
    const Both both = orNew();
    const int id = m_in.smallIndex(m_plainGroup.total());
    plain::Dataset* const entry = m_plainGroup.get(id);
    equal("sumPkg", Int(m_group.sumPkg(*both.real, id)),
          Int(entry == nullptr ? 0 : entry->add(*both.model)));
}

void Player::groupSizes() {
    Int least[3] = {};
    Int most[3] = {};
    int count = 0;
    for (const plain::Slot& entry : m_plainGroup.entries) {
        if (!entry) continue;
        const Int sizes[3] = {entry->slices, entry->rows, entry->cols};
        for (int i = 0; i < 3; ++i) {
            least[i] = count == 0 ? sizes[i] : std::min(least[i], sizes[i]);
            most[i] = count == 0 ? sizes[i] : std::max(most[i], sizes[i]);
        }
        ++count;
    }
    Int rows = 7;
    Int cols = 7;
    equal("getTimeSliceMax", m_group.getTimeSliceMax(), most[0]);
    equal("getTimeSliceMin", m_group.getTimeSliceMin(), least[0]);
    equal("getCxcSizeMin", Int(m_group.getCxcSizeMin(rows, cols)), Int(count));
    equal("rows", rows, least[1]);
    equal("columns", cols, least[2]);
    equal("getCxcSizeMax", Int(m_group.getCxcSizeMax(rows, cols)), Int(count));
    equal("rows", rows, most[1]);
    equal("columns", cols, most[2]);
    const int show = m_in.below(3);
    equal("setShowAllCxc", Int(m_group.setShowAllCxc(show)), Int(m_plainGroup.total()));
    for (plain::Slot& entry : m_plainGroup.entries) {
        if (entry) entry->show = show != 0;
    }
}

}  // namespace

std::string playSequence(QuietApp& app, const std::uint8_t* bytes, std::size_t count) {
    Player player(app, bytes, count);
    return player.play();
}

}  // namespace test
