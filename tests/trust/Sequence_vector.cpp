#include "tests/trust/Player.h"

#include <algorithm>
#include <memory>

namespace test {

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
    equalOrNaN("polynmlEval", real->polynmlEval(x), model->polynomial(x));
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

void Player::vectorOwnArrays() {
    plain::Vector* model = nullptr;
    const Both both = orNew();
    RealVector* const real = vectorOf(both, model);
    if (real == nullptr) return;
    const Int from = m_in.below(static_cast<int>(model->size()) + 1);
    const Int n = m_in.below(static_cast<int>(model->size() - from) + 1);
    std::vector<double> values;
    switch (m_in.below(4)) {
        case 0:
            if (!model->data) return;
            values.assign(model->data->begin(), model->data->begin() + n);
            equal("setData", Int(real->setData(real->m_data, n)), Int(model->adopt(values)));
            break;
        case 1:
            // What is adopted must not be longer than the dataset.
            if (!model->backup || real->m_bkSize > both.model->slices) return;
            equal("setData", Int(real->setData(real->m_bkData, real->m_bkSize)),
                  Int(model->adopt(*model->backup)));
            model->cleanBackup();
            break;
        case 2:
            if (!model->data) return;
            values.assign(model->data->begin() + from, model->data->begin() + from + n);
            equal("copy2Mtx", Int(real->copy2Mtx(real->m_data + from, n)),
                  Int(model->copyFrom(values)));
            break;
        default:
            equal("copy2Mtx", Int(real->copy2Mtx(nullptr, n)), Int(0));
    }
}

void Player::vectorPieces() {
    plain::Vector* model = nullptr;
    RealVector* const real = vectorOf(orNew(), model);
    if (real == nullptr) return;
    equal("getSize", real->getSize(), model->size());
    equal("getData", Int(real->getData() == real->m_data), Int(1));
    const int size = static_cast<int>(model->size());
    const int from = m_in.below(size + 1);
    const int to = m_in.below(size + 1);
    const double value = m_in.value();
    if (size < 1) return;
    if (m_in.flag()) {
        // The value may be one of those that are written.
        const bool own = m_in.flag();
        const double written = own ? (*model->data)[0] : value;
        real->set_(real->m_data + from, real->m_data + to, own ? real->m_data[0] : value);
        for (int t = from; t < to; ++t)
            (*model->data)[static_cast<std::size_t>(t)] = written;
        real->set_(nullptr, nullptr, value);
        return;
    }
    const int n = m_in.below(size - std::max(from, to) + 2) - 1;
    real->copy_(real->m_data + to, real->m_data + from, n);
    real->copy_(nullptr, real->m_data, n);
    real->copy_(real->m_data, nullptr, n);
    const std::vector<double> before = *model->data;
    for (int t = 0; t < n; ++t)
        (*model->data)[static_cast<std::size_t>(to + t)] =
            before[static_cast<std::size_t>(from + t)];
}

void Player::vectorFields() {
    plain::Vector* model = nullptr;
    RealVector* const real = vectorOf(orNew(), model);
    if (real == nullptr) return;
    const int number = m_in.below(256);
    real->m_curIdx = model->curIdx = number - 100;
    real->m_chnlA = model->chnlA = Int(number) << 34;
    real->m_chnlB = model->chnlB = -number;
    model->pairFlag = 257 * number;
    real->m_pairFlag = static_cast<unsigned short>(257 * number);
}

void Player::vectorCopies() {
    plain::Vector* model = nullptr;
    RealVector* const real = vectorOf(orNew(), model);
    if (real == nullptr) return;
    RealVector copy(*real);
    compareVector(copy, *model, 0, 0);
    copy.deRefData();
    copy.m_bkData = nullptr;
    copy = *real;
    compareVector(copy, *model, 0, 0);
    copy.deRefData();
    copy.m_bkData = nullptr;
}

}  // namespace test
