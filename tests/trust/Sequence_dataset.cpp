#include "tests/trust/Player.h"

#include "cxcdata/array_exchange.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <memory>

namespace test {

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
    equalOrNaN("getLatency4PtSecond", both.real->getLatency4PtSecond(t),
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
    if (status != 0) compareMatrices(given, model);
}

void Player::compareMatrices(CMMatrix2Dzq* real, const plain::Dataset& model) {
    for (Int t = 0; t < model.slices && m_wrong.empty(); ++t) {
        equal("rows of a matrix", real[t].getRow(), model.rows);
        equal("columns of a matrix", real[t].getCol(), model.rows);
        for (Int r = 0; r < model.rows && m_wrong.empty(); ++r) {
            for (Int c = 0; c < model.rows; ++c) {
                const plain::Vector* const vector = model.cell(r, c);
                const bool there = vector != nullptr && t < vector->size();
                const double wanted = there ? (*vector->data)[static_cast<std::size_t>(t)] : 0.0;
                equal("element of a matrix", real[t].getDataPP()[r][c], wanted);
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

void Player::labels() {
    const Both both = orNew();
    both.real->m_cxcName = label(both.model->name);
    both.real->m_cxcCmptInfo = label(both.model->note);
    both.real->m_chnlTypeID = both.model->channelType = m_in.below(7) - 1;
    equal("getChnlTypeIDname", both.real->getChnlTypeIDname(), both.model->channelTypeName());
    equal("getCxcCmptInfo", both.real->getCxcCmptInfo(), both.model->note);
    bool shown = !both.model->show;
    equal("getCohAnaDataTscsInfo", Int(both.real->getCohAnaDataTscsInfo(shown)), Int(1));
    equal("shown", Int(shown), Int(both.model->show));
    equal("getMCC4class", Int(both.real->getMCC4class() == both.real->m_mCC), Int(1));
}

void Player::copies() {
    const Both both = orNew();
    const Both other = orNew();
    Real copy(*both.real);
    compareDataset(&copy, both.model);
    copy.m_mCC = nullptr;
    if (other.real == both.real) return;
    equal("cleanSnsCohData", Int(other.real->cleanSnsCohData()), Int(1));
    *other.real = *both.real;
    *other.model = *both.model;
    compareDataset(other.real, other.model);
    // One of the two keeps the grid.
    const Both& without = m_in.flag() ? both : other;
    without.real->m_mCC = nullptr;
    without.model->grid.reset();
}

void Player::squareMatrix() {
    const int n = m_in.smallIndex(5);
    // No machine has the memory for the largest one.
    const bool tooLarge = n > 100;
    if (tooLarge) m_messages.push_back("Is memory enough?!");
    double** const made = Real::s_newCohData(n);
    equal("s_newCohData", Int(made != nullptr), Int(n > 0 && !tooLarge));
    for (int r = 0; made != nullptr && r < n; ++r) {
        for (int c = 0; c < n; ++c) {
            equal("element", made[r][c], 0.0);
            made[r][c] = 1.0;
        }
    }
    equal("s_freeCohData", Int(Real::s_freeCohData(n, made)), Int(made != nullptr));
}

}  // namespace test
