#include "tests/trust/plain_steps.h"

#include <algorithm>
#include <cmath>

namespace plain {
namespace {

double sumOf(const std::vector<double>& values) {
    double sum = 0.0;
    for (const double value : values)
        addTo(sum, value);
    return sum;
}

}  // namespace

const Vector* Dataset::cell(Int r, Int c) const {
    if (r < 0 || c < 0 || r >= realRows() || c >= realCols()) return nullptr;
    return &(*grid)[static_cast<std::size_t>(r)][static_cast<std::size_t>(c)];
}

Vector* Dataset::cell(Int r, Int c) {
    return const_cast<Vector*>(static_cast<const Dataset*>(this)->cell(r, c));
}

bool Dataset::countersAreGood() const {
    return grid && slices >= 1 && rows >= 1 && cols >= 1;
}

bool Dataset::hasShape(Int wantedRows, Int wantedCols) const {
    return grid && realRows() == wantedRows && realCols() == wantedCols;
}

// The values of a pair inside the slices; none outside the real grid.
std::vector<double> Dataset::seen(Int r, Int c) const {
    const Vector* const vector = cell(r, c);
    if (vector == nullptr || !vector->data) return {};
    const auto count = static_cast<std::ptrdiff_t>(std::min(slices, vector->size()));
    return {vector->data->begin(), vector->data->begin() + std::max<std::ptrdiff_t>(count, 0)};
}

int Dataset::checkInit(Int newRows, Int newCols, Int newSlices, bool zero) {
    const bool counted = newRows == rows && newCols == cols && newSlices == slices;
    // A dataset that has nothing to clean keeps the end of its selection.
    const bool something = grid || rows != 0 || cols != 0 || slices != 0;
    if (something && (!counted || (grid && !hasShape(newRows, newCols)))) clean();
    if (newRows < 1 || newCols < 1 || newSlices < 1) return 0;
    if (!hasShape(newRows, newCols)) {
        grid.emplace(static_cast<std::size_t>(newRows),
                     std::vector<Vector>(static_cast<std::size_t>(newCols)));
        rows = newRows;
        cols = newCols;
        slices = newSlices;
        row = column = selectBegin = 0;
    }
    for (auto& line : *grid) {
        for (Vector& vector : line)
            vector.checkInit(newSlices, zero);
    }
    return 1;
}

int Dataset::clean() {
    grid.reset();
    slices = selectBegin = selectEnd = row = column = rows = cols = 0;
    return 1;
}

double Dataset::value(Int t, Int r, Int c) const {
    if (!grid) return 0.0;
    t = clampTo(t == -1 ? selectBegin : t, slices);
    const Vector* const vector = cell(r == -1 ? row : r, c == -1 ? column : c);
    if (vector == nullptr || t < 0 || t >= vector->size()) return 0.0;
    return (*vector->data)[static_cast<std::size_t>(t)];
}

double Dataset::selected(Int from, Int to, Int r, Int c) const {
    if (!grid) return 0.0;
    from = clampTo(from == -1 ? selectBegin : from, slices);
    to = clampTo(to == -1 ? selectEnd : to, slices);
    const Vector* const vector = cell(r == -1 ? row : r, c == -1 ? column : c);
    if (from > to || vector == nullptr) return 0.0;
    double sum = 0.0;
    Int count = 0;
    for (Int t = std::max<Int>(from, 0); t <= to && t < vector->size(); ++t, ++count)
        addTo(sum, (*vector->data)[static_cast<std::size_t>(t)]);
    return count < 1 ? 0.0 : sum / static_cast<double>(count);
}

Int Dataset::select(Int begin, Int end) {
    Int b = std::max<Int>(begin, 0);
    if (b >= slices) b = slices - 1;
    selectBegin = b;
    Int e = std::max({end, b, Int(0)});
    if (e >= slices) e = slices - 1;
    selectEnd = e;
    return e - b + 1;
}

int Dataset::checkSelect(Int begin, Int end) const {
    if (!grid || slices < 1 || begin < 0 || begin >= slices || end < 0) return 0;
    return end < slices ? 1 : 0;
}

int Dataset::resetSensors() {
    row = column = rows = 0;
    latencyBegin = latencyEnd = 0.0;
    return 1;
}

int Dataset::announce(Int newRows, Int newCols) {
    rows = newRows;
    cols = newCols;
    row = column = 0;
    return rows > 0 && cols > 0 ? 1 : 0;
}

int Dataset::setColumn(int col) {
    column = clampTo(col, cols);
    return static_cast<int>(column);
}

Int Dataset::next(int step, int wrap) {
    const Int high = std::max(selectEnd, selectBegin);
    const Int width = high - selectBegin;
    selectBegin += step;
    selectEnd = high + step;
    if (selectBegin < 0) {
        if (wrap != 0) {
            selectBegin = slices - width - 1;
            selectEnd = slices - 1;
        } else {
            selectBegin = 0;
            selectEnd = width >= slices ? slices - 1 : width;
        }
    }
    if (selectEnd >= slices) {
        if (wrap != 0) {
            selectBegin = 0;
            selectEnd = width;
        } else {
            selectEnd = slices - 1;
            selectBegin = slices - 1 - width;
            if (selectBegin >= 0) return selectBegin;
            selectBegin = 0;
        }
    }
    if (selectEnd < selectBegin) selectEnd = selectBegin;
    return selectBegin;
}

int Dataset::fromMatrices(const std::vector<Matrix>& matrices) {
    if (matrices.empty() || matrices[0].rows < 1) return 0;
    const Int n = matrices[0].rows;
    if (checkInit(n, n, static_cast<Int>(matrices.size()), false) == 0) return 0;
    for (std::size_t t = 0; t < matrices.size(); ++t) {
        const Matrix& matrix = matrices[t];
        if (matrix.rows < 1 || matrix.cols < 1) return 0;
        for (Int r = 0; r < std::min(matrix.rows, n); ++r) {
            for (Int c = 0; c < std::min(matrix.cols, n); ++c)
                (*cell(r, c)->data)[t] = matrix.at(r, c);
        }
    }
    return 1;
}

int Dataset::setSlice(const Matrix& matrix, Int t) {
    if (!grid || t < 0 || t >= slices) return 0;
    if (matrix.rows < 1 || matrix.rows != rows || matrix.cols < 1) return 0;
    for (Int r = 0; r < matrix.rows; ++r) {
        for (Int c = 0; c < matrix.cols; ++c) {
            Vector* const vector = cell(r, c);
            if (vector != nullptr && t < vector->size())
                (*vector->data)[static_cast<std::size_t>(t)] = matrix.at(r, c);
        }
    }
    return 1;
}

int Dataset::normaliseRms(Messages& messages) {
    if (!countersAreGood()) return 0;
    double mean = 0.0;
    for (Int r = 0; r < std::min(rows, realRows()); ++r) {
        double sum = 0.0;
        for (Int c = 0; c < std::min(cols, realCols()); ++c) {
            for (const double value : seen(r, c))
                addTo(sum, value * value);
        }
        addTo(mean, sum / (static_cast<double>(cols) * static_cast<double>(slices)));
    }
    const double root = std::sqrt(mean / static_cast<double>(rows));
    if (!(root > 0.0)) {
        messages.push_back("RMS value in leadfields is smaller than zero!?");
        return 0;
    }
    for (Int r = 0; r < std::min(rows, realRows()); ++r) {
        for (Int c = 0; c < std::min(cols, realCols()); ++c) {
            Vector& vector = *cell(r, c);
            for (Int t = 0; t < std::min(slices, vector.size()); ++t)
                (*vector.data)[static_cast<std::size_t>(t)] /= root;
        }
    }
    rms = root;
    normalised = 1;
    return 1;
}

int Dataset::checkRange() {
    if (!countersAreGood()) return 0;
    bool any = true;
    double low = value(0, 0, 0);
    double high = low;
    double total = 0.0;
    for (Int r = 0; r < rows && r < realRows(); ++r) {
        double sum = 0.0;
        for (Int c = 0; c < cols && c < realCols(); ++c) {
            for (const double value : seen(r, c)) {
                widen(value, any, low, high);
                addTo(sum, value);
            }
        }
        addTo(total, sum / (static_cast<double>(cols) * static_cast<double>(slices)));
    }
    least = low;
    most = high;
    mean = total / static_cast<double>(rows);
    return 1;
}

void Dataset::statistics(double (&five)[5]) {
    bool any = false;
    std::fill(five, five + 5, 0.0);
    for (Int r = 0; r < std::min(rows, realRows()); ++r) {
        double means = 0.0;
        double absolutes = 0.0;
        double squares = 0.0;
        for (Int c = 0; c < std::min(cols, realCols()); ++c) {
            double six[6] = {};
            cell(r, c)->statistic(six);
            widen(six[0], any, five[0], five[1]);
            if (six[2] > five[1]) five[1] = six[2];
            addTo(means, six[1]);
            addTo(absolutes, six[4]);
            addTo(squares, six[5] * six[5]);
        }
        addTo(five[2], means / static_cast<double>(cols));
        addTo(five[3], absolutes / static_cast<double>(cols));
        addTo(five[4], std::sqrt(squares / static_cast<double>(cols)));
    }
    five[2] /= static_cast<double>(rows);
    five[3] /= static_cast<double>(rows);
    five[4] = std::sqrt(five[4] / static_cast<double>(rows));
    least = five[0];
    most = five[1];
    mean = five[2];
}

int Dataset::zeroDiagonal() {
    if (!countersAreGood()) return 0;
    for (Int r = 0; r < std::min(rows, cols); ++r) {
        Vector* const vector = cell(r, r);
        for (Int t = 0; vector != nullptr && t < std::min(slices, vector->size()); ++t)
            (*vector->data)[static_cast<std::size_t>(t)] = 0.0;
    }
    note += "\nSet Diagonal value to 0";
    return 1;
}

int Dataset::signedRange(double& low, double& high, bool useTime, Int from, Int to,
                         bool noDiagonal) {
    low = high = 0.0;
    if (from == -1) from = selectBegin;
    if (to == -1) to = selectEnd;
    if (!grid || from < 0 || from >= slices || to < 0 || to >= slices) return 0;
    bool any = false;
    double means = 0.0;
    for (Int r = 0; r < rows && r < realRows(); ++r) {
        double line = 0.0;
        for (Int c = 0; c < cols && c < realCols(); ++c) {
            if (noDiagonal && r == c) continue;
            const Vector& vector = *cell(r, c);
            if (!useTime) {
                double low1 = 0.0;
                double mean1 = 0.0;
                double high1 = 0.0;
                vector.range(low1, mean1, high1);
                if (!any || low > low1) low = low1;
                if (!any || high1 > high) high = high1;
                any = true;
                addTo(line, mean1);
                continue;
            }
            for (Int t = from; t <= to && t < vector.size(); ++t)
                widen((*vector.data)[static_cast<std::size_t>(t)], any, low, high);
        }
        addTo(means, line / static_cast<double>(cols));
    }
    if (!useTime) {
        least = low;
        most = high;
        mean = means / static_cast<double>(rows);
    }
    return 1;
}

int Dataset::absoluteRange(double& low, double& high, bool useTime, Int from, Int to) {
    low = high = 0.0;
    if (!grid) return 0;
    if (useTime) {
        if (from == -1) from = selectBegin;
        if (to == -1) to = selectEnd;
        if (from < 0 || from >= slices || to < 0 || to >= slices) return 0;
    }
    bool any = false;
    for (Int r = 0; r < rows && r < realRows(); ++r) {
        for (Int c = 0; c < cols && c < realCols(); ++c) {
            const Vector& vector = *cell(r, c);
            const Int first = useTime ? from : 0;
            const Int end = useTime ? std::min(to + 1, vector.size()) : vector.size();
            for (Int t = first; t < end; ++t)
                widen(std::fabs((*vector.data)[static_cast<std::size_t>(t)]), any, low, high);
        }
    }
    showMost = high;
    showLeast = low;
    showMid = (low + high) * 0.5;
    return 1;
}

int Dataset::add(const Dataset& other) {
    if (!other.grid || other.rows < 1 || !grid || rows < 1 || slices != other.slices ||
        rows != other.rows)
        return 0;
    for (Int r = 0; r < rows; ++r) {
        for (Int c = 0; c < rows; ++c) {
            const Vector* const from = other.cell(r, c);
            Vector* const to = cell(r, c);
            if (from == nullptr || to == nullptr) continue;
            for (Int t = 0; t < from->size() && t < to->size(); ++t)
                addTo((*to->data)[static_cast<std::size_t>(t)],
                      (*from->data)[static_cast<std::size_t>(t)]);
        }
    }
    return 1;
}

int Dataset::accumulate() {
    if (rows < 1 || cols < 0 || slices < 1 || !grid) return 0;
    std::vector<std::vector<Vector>> made;
    for (Int r = 0; r < realRows(); ++r) {
        made.emplace_back(static_cast<std::size_t>(realCols()));
        for (Int c = 0; c < realCols(); ++c) {
            Vector& vector = made.back()[static_cast<std::size_t>(c)];
            vector.data.emplace(1, sumOf(seen(r, c)) / static_cast<double>(slices));
            vector.backup = vector.data;
            vector.chnlA = cell(r, c)->chnlA;
            vector.chnlB = cell(r, c)->chnlB;
            vector.pairFlag = cell(r, c)->pairFlag;
        }
    }
    grid = std::move(made);
    slices = 1;
    selectBegin = selectEnd = 0;
    return 1;
}

}  // namespace plain
