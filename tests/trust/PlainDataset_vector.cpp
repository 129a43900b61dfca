#include "tests/trust/plain_steps.h"

#include <algorithm>
#include <cmath>

namespace plain {

int Vector::clean() {
    data.reset();
    curIdx = 0;
    return 1;
}

int Vector::cleanBackup() {
    backup.reset();
    return 1;
}

int Vector::backupIn() {
    if (backup && static_cast<Int>(backup->size()) != size()) backup.reset();
    if (size() < 1) return 0;
    backup = data;
    return 1;
}

int Vector::backupOut() {
    if (!backup || backup->empty()) return 0;
    if (size() != static_cast<Int>(backup->size())) curIdx = 0;
    data = backup;
    curIdx = std::max<Int>(std::min(curIdx, size() - 1), 0);
    return 1;
}

bool Vector::checkInit(Int n, bool zero) {
    if (n != size()) {
        clean();
        if (n < 0) return false;
    }
    if (!data) data.emplace(static_cast<std::size_t>(n), 0.0);
    if (zero) std::fill(data->begin(), data->end(), 0.0);
    return true;
}

double Vector::largest() const {
    if (size() < 1) return 0.0;
    double most = (*data)[0];
    for (const double value : *data) {
        if (value > most) most = value;
    }
    return most;
}

int Vector::allNonZero() const {
    if (size() < 1) return 0;
    return std::none_of(data->begin(), data->end(), [](double v) { return v == 0.0; }) ? 1 : 0;
}

int Vector::copyFrom(const std::vector<double>& source) {
    if (static_cast<Int>(source.size()) != size()) curIdx = 0;
    data = source;
    return 1;
}

int Vector::resize(Int n) {
    if (n <= 0) return clean();
    if (size() < 1) {
        checkInit(n, true);
        return 1;
    }
    data->resize(static_cast<std::size_t>(n), 0.0);
    curIdx = 0;
    return 1;
}

double Vector::polynomial(double x) const {
    if (size() < 1) return 0.0;
    double result = data->back();
    for (Int i = size() - 2; i >= 0; --i)
        result = result * x + (*data)[static_cast<std::size_t>(i)];
    return result;
}

int Vector::adopt(const std::vector<double>& values) {
    data = values;
    curIdx = 0;
    return 1;
}

int Vector::forget() {
    data.reset();
    return 1;
}

int Vector::normalise() {
    if (size() < 1) return 0;
    double sum = 0.0;
    for (const double value : *data)
        sum += std::fabs(value);
    const double mean = sum / static_cast<double>(size());
    if (!(mean > 0.0)) return 0;
    for (double& value : *data)
        value /= mean;
    return 1;
}

int Vector::range(double& least, double& mean, double& most) const {
    least = mean = most = 0.0;
    if (!data) return 0;
    if (data->empty()) return 1;
    bool any = false;
    double sum = 0.0;
    for (std::size_t i = 0; i < data->size(); ++i) {
        widen((*data)[i], any, least, most);
        if (i == 0)
            sum = (*data)[0];
        else
            addTo(sum, (*data)[i]);
    }
    mean = sum / static_cast<double>(size());
    return 1;
}

int Vector::statistic(double (&six)[6]) const {
    std::fill(six, six + 6, 0.0);
    if (!data) return 0;
    if (data->empty()) return 1;
    range(six[0], six[1], six[2]);
    double absolute = 0.0;
    double squares = 0.0;
    for (const double value : *data) {
        addTo(absolute, std::fabs(value));
        addTo(squares, value * value);
    }
    six[3] = six[1];
    six[4] = absolute / static_cast<double>(size());
    six[5] = std::sqrt(squares / static_cast<double>(size()));
    return 1;
}

double Vector::selected(Int from, Int to, int mode) const {
    if (size() < 1) return 0.0;
    from = clampTo(from, size());
    to = clampTo(to, size());
    if (mode == 0) {
        if (from > to) return 0.0;
        double sum = 0.0;
        for (Int i = from; i <= to; ++i)
            addTo(sum, (*data)[static_cast<std::size_t>(i)]);
        return sum / static_cast<double>(to - from + 1);
    }
    if (mode != 1) return 0.0;
    double low = (*data)[static_cast<std::size_t>(from)];
    double high = low;
    bool any = true;
    for (Int i = from + 1; i <= to; ++i)
        widen((*data)[static_cast<std::size_t>(i)], any, low, high);
    return std::fabs(high) > std::fabs(low) ? high : low;
}

}  // namespace plain
