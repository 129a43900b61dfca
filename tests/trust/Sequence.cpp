#include "tests/trust/Sequence.h"

#include "tests/trust/Player.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <memory>
#include <sstream>

namespace test {
namespace {

constexpr std::size_t mostCalls = 400;

std::string textOf(const CString& text) {
    std::string made;
    for (int i = 0; i < text.GetLength(); ++i)
        made += static_cast<char>(text[i]);
    return made;
}

bool same(double a, double b) {
    return std::memcmp(&a, &b, sizeof(a)) == 0;
}

}  // namespace

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
    {"labels", &Player::labels},
    {"carried fields", &Player::carriedFields},
    {"copies", &Player::copies},
    {"square matrix", &Player::squareMatrix},
    {"record", &Player::record},
    {"each pair", &Player::eachPair},
    {"text", &Player::text},
    {"vector sizes", &Player::vectorSizes},
    {"vector backup", &Player::vectorBackup},
    {"vector figures", &Player::vectorFigures},
    {"vector ownership", &Player::vectorOwnership},
    {"vector's own arrays", &Player::vectorOwnArrays},
    {"vector pieces", &Player::vectorPieces},
    {"vector fields", &Player::vectorFields},
    {"vector copies", &Player::vectorCopies},
    {"vector record", &Player::vectorRecord},
    {"package counts", &Player::packageCounts},
    {"package get", &Player::packageGet},
    {"package delete", &Player::packageDelete},
    {"combine", &Player::packageCombine},
    {"match", &Player::packageMatch},
    {"package sizes", &Player::packageSizes},
    {"package one class", &Player::packageOne},
    {"package sums", &Player::packageSums},
    {"package names", &Player::packageNames},
    {"package labels", &Player::packageLabels},
    {"package views", &Player::packageViews},
    {"package accumulate", &Player::packageAccumulate},
    {"package empty", &Player::packageEmpty},
    {"other package", &Player::packageOther},
    {"package viewers", &Player::packageViewers},
    {"package record", &Player::packageRecord},
    {"group counts", &Player::groupCounts},
    {"group get", &Player::groupGet},
    {"group delete", &Player::groupDelete},
    {"group sized", &Player::groupSized},
    {"average", &Player::groupAverage},
    {"summary", &Player::groupSummary},
    {"group sums", &Player::groupSums},
    {"group sizes", &Player::groupSizes},
    {"group labels", &Player::groupLabels},
    {"group views", &Player::groupViews},
    {"group ranges", &Player::groupRanges},
    {"group accumulate", &Player::groupAccumulate},
    {"one by one", &Player::groupOneByOne},
    {"watched", &Player::groupWatched},
    {"group viewers", &Player::groupViewers},
    {"group record", &Player::groupRecord},
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

// For what may have two NaNs to choose from and does not tell which one stays.
void Player::equalOrNaN(const char* what, double real, double model) {
    if (!std::isnan(real) || !std::isnan(model)) equal(what, real, model);
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
    equal(("m_pairFlag" + where).c_str(), Int(real.m_pairFlag), Int(model.pairFlag));
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

// The members that nothing interprets, in the order of the plain counterpart.
constexpr int CSnsCohData::*carriedInts[] = {
    &CSnsCohData::m_headerInt0,  &CSnsCohData::m_headerInt1,  &CSnsCohData::m_headerInt2,
    &CSnsCohData::m_headerInt3,  &CSnsCohData::m_headerInt5,  &CSnsCohData::m_headerInt6,
    &CSnsCohData::m_headerInt7,  &CSnsCohData::m_headerInt8,  &CSnsCohData::m_headerInt10,
    &CSnsCohData::m_headerInt11, &CSnsCohData::m_headerInt12, &CSnsCohData::m_headerInt13};
constexpr __int64 CSnsCohData::*carriedLongs[] = {
    &CSnsCohData::m_headerLong0, &CSnsCohData::m_headerLong1, &CSnsCohData::m_headerLong3,
    &CSnsCohData::m_headerLong4, &CSnsCohData::m_headerLong5};
constexpr double CSnsCohData::*carriedReals[] = {
    &CSnsCohData::m_headerReal0, &CSnsCohData::m_headerReal1, &CSnsCohData::m_headerReal2};
constexpr COLORREF CSnsCohData::*colours[] = {
    &CSnsCohData::m_basicColor, &CSnsCohData::m_activeColor, &CSnsCohData::m_suppressiveColor};

void Player::carriedFields() {
    const Both both = orNew();
    const int number = m_in.below(256);
    both.real->*carriedInts[number % 12] = both.model->ints[number % 12] = number - 99;
    both.real->*carriedLongs[number % 5] = both.model->longs[number % 5] = Int(number) << 33;
    both.real->*carriedReals[number % 3] = both.model->reals[number % 3] = m_in.value();
    both.model->colours[number % 3] = static_cast<unsigned>(number) << 8;
    both.real->*colours[number % 3] = static_cast<COLORREF>(number) << 8;
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
    equal("m_chnlTypeID", Int(real->m_chnlTypeID), Int(model->channelType));
    for (int i = 0; i < 12; ++i)
        equal("carried", Int(real->*carriedInts[i]), Int(model->ints[i]));
    for (int i = 0; i < 5; ++i)
        equal("carried", real->*carriedLongs[i], model->longs[i]);
    for (int i = 0; i < 3; ++i) {
        equal("carried", real->*carriedReals[i], model->reals[i]);
        equal("colour", Int(real->*colours[i]), Int(model->colours[i]));
    }
    equal("grid", Int(real->m_mCC != nullptr), Int(model->grid.has_value()));
    if (!m_wrong.empty()) return;
    for (Int r = 0; r < model->realRows(); ++r) {
        for (Int c = 0; c < model->realCols(); ++c)
            compareVector(real->m_mCC[r][c], *model->cell(r, c), r, c);
    }
}

template <class Holder>
void Player::compareLabels(const Holder& real, const plain::Labels& model) {
    equal("m_pkgID", Int(real.m_pkgID), Int(model.id));
    equal("m_pkgName", real.m_pkgName, model.name);
    equal("m_pkgInfo", real.m_pkgInfo, model.info);
    equal("m_pkgShow", Int(real.m_pkgShow), Int(model.show));
}

void Player::compareAll() {
    Real* const slots[] = {m_package.m_cohActive, m_package.m_cohControl, m_package.m_cohActCtl};
    for (int cls = 0; cls < 3; ++cls) {
        plain::Slot& slot = m_plainPackage.slots[cls];
        compareDataset(slots[cls], slot ? &*slot : nullptr);
    }
    equal("current class", Int(m_package.m_curntCohDataSetID), Int(m_plainPackage.current));
    compareLabels(m_package, m_plainPackage.labels);
    equal("package operation", Int(m_package.m_actCtlOperation), Int(m_plainPackage.operation));
    compareLabels(m_group, m_plainGroup.labels);
    equal("group operation", Int(m_group.m_actCtlOperation), Int(m_plainGroup.operation));
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
    // In some there are so many NaNs that they meet those of others.
    const bool manyNaNs = m_in.below(4) == 0;
    for (Int r = 0; r < both.model->realRows(); ++r) {
        for (Int c = 0; c < both.model->realCols(); ++c) {
            plain::Vector& model = *both.model->cell(r, c);
            RealVector& real = both.real->m_mCC[r][c];
            model.chnlA = real.m_chnlA = 1 + r;
            model.chnlB = real.m_chnlB = 101 + c;
            for (Int t = 0; t < model.size(); ++t)
                real.m_data[t] = (*model.data)[static_cast<std::size_t>(t)] =
                    manyNaNs ? m_in.valueOrNaN() : m_in.value();
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

std::string playSequence(QuietApp& app, const std::uint8_t* bytes, std::size_t count) {
    Player player(app, bytes, count);
    return player.play();
}

}  // namespace test
