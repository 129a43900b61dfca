#include "tests/trust/PlainDataset.h"

#include <algorithm>
#include <cmath>

namespace plain {
namespace {

Int clampTo(Int value, Int count) {
    return std::min(std::max<Int>(value, 0), count - 1);
}

void widen(double value, bool& any, double& low, double& high) {
    if (!any || low > value) low = value;
    if (!any || value > high) high = value;
    any = true;
}

// sum += value, where of two NaNs the older one stays. Which one an addition gives is otherwise the
// compiler's choice.
void addTo(double& sum, double value) {
    if (!std::isnan(sum)) sum += value;
}

double sumOf(const std::vector<double>& values) {
    double sum = 0.0;
    for (const double value : values)
        addTo(sum, value);
    return sum;
}

}  // namespace

// --- vector --------------------------------------------------------------------------------------

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

// --- dataset -------------------------------------------------------------------------------------

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

// --- package -------------------------------------------------------------------------------------

Int Package::total() const {
    return std::count_if(slots, slots + 3, [](const Slot& slot) { return slot.has_value(); });
}

int Package::clampList(int id) const {
    return total() == 0 ? -1 : static_cast<int>(clampTo(id, total()));
}

int Package::setCurrent(int id) {
    current = std::max(clampList(id), 0);
    return total() == 0 ? 0 : 1;
}

int Package::setCurrentId(int id) {
    current = clampList(id);
    return current;
}

Dataset* Package::get(int cls, Messages& messages) {
    if (cls == -1) {
        cls = current;
        if (cls == -1) {
            messages.push_back("This is no data!");
            return nullptr;
        }
    }
    if (cls < 0 || cls > 2) return nullptr;
    current = cls;
    return slots[cls] ? &*slots[cls] : nullptr;
}

int Package::combine(bool yes, Messages& messages) {
    if (!slots[0] || !slots[1]) {
        messages.push_back("This operation requires  both Active and Control datasets!");
        return 0;
    }
    Dataset& active = *slots[0];
    Dataset& control = *slots[1];
    if (active.rows != control.rows || active.cols != control.cols) {
        messages.push_back(
            "This operation requires Active and Control datasets have the same size");
        return 0;
    }
    if (control.slices > 1) {
        messages.push_back("This operation requires Control dataset has 1 slice");
        if (!yes) return 0;
        if (control.accumulate() == 0) {
            messages.push_back("Control dataset accumulating failed!");
            return 0;
        }
    }
    if (!slots[2]) slots[2].emplace();
    Dataset& made = *slots[2];
    if (made.checkInit(active.rows, active.cols, active.slices, true) == 0) return 0;
    for (Int r = 0; r < active.rows; ++r) {
        for (Int c = 0; c < active.cols; ++c) {
            const Vector* const from = active.cell(r, c);
            const Vector* const base = control.cell(r, c);
            if (from == nullptr || base == nullptr || base->size() < 1) continue;
            const double b = (*base->data)[0];
            Vector& to = *made.cell(r, c);
            for (Int t = 0; t < std::min(active.slices, from->size()); ++t) {
                const double a = (*from->data)[static_cast<std::size_t>(t)];
                double& result = (*to.data)[static_cast<std::size_t>(t)];
                if (operation == 0) result = a - b;
                if (operation == 1) addTo(result = a, b);
                if (operation == 2) result = a * b;
                if (operation == 3) result = b == 0.0 ? 0.0 : a / b;
            }
        }
    }
    return 1;
}

int Package::match(Int (&ends)[4], Messages& messages) const {
    if (!slots[0] || !slots[1]) {
        messages.push_back("There is no Active or Control data!?");
        return 0;
    }
    const Int widths[2] = {ends[1] - ends[0], ends[3] - ends[2]};
    if (widths[0] == widths[1]) return 1;
    if (widths[0] <= 0 && widths[1] <= 0) {
        messages.push_back("The selected data range is wrong!");
        return 0;
    }
    const int narrow = widths[0] > widths[1] ? 1 : 0;
    const Int wanted = widths[1 - narrow];
    const Int count = slots[narrow]->slices;
    Int& first = ends[2 * narrow];
    Int& last = ends[2 * narrow + 1];
    for (;;) {
        bool bound = false;
        --first;
        if (first < 0) {
            first = 0;
            bound = true;
        }
        if (last - first >= wanted) return 1;
        ++last;
        if (last >= count) {
            last = count - 1;
            if (bound) break;
        }
        if (last - first >= wanted) return 1;
    }
    messages.push_back("Can't match the active and control selections!");
    return 0;
}

int Package::checkSelect(Int first, Int last, int cls, Messages& messages) const {
    if (cls < 0 || cls > 2) {
        messages.push_back("Wrong wave selection class!");
        return 0;
    }
    return slots[cls] ? slots[cls]->checkSelect(first, last) : 0;
}

int Package::sizeAll(int sensors, Int active, Int control, Int mixed, bool flag) {
    if (sensors < 2 || active < 1) return 0;
    if (!slots[0]) slots[0].emplace().name = "Active CxC";
    if (slots[0]->checkInit(sensors, sensors, active, flag) == 0) return 0;
    if (control < 1) {
        slots[1].reset();
    } else if (!slots[1]) {
        slots[0].emplace();
        return 0;
    } else if (slots[1]->checkInit(sensors, sensors, control, flag) == 0) {
        return 0;
    }
    if (mixed < 1) {
        slots[2].reset();
        return 1;
    }
    if (!slots[2]) slots[2].emplace().name = "Act-Ctl CxC";
    return slots[2]->checkInit(sensors, sensors, mixed, flag);
}

Dataset* Package::sizeOne(int sensors, Int slices, int cls, bool flag, Messages& messages) {
    constexpr const char* names[] = {"Active CxC", "Control CxC", "Act-Ctl CxC"};
    if (sensors < 2 || slices < 1) return nullptr;
    if (cls == -1) cls = current;
    if (cls < 0 || cls > 2) {
        messages.push_back("Wrong wave selection class!");
        return nullptr;
    }
    current = cls;
    if (!slots[cls]) slots[cls].emplace().name = names[cls];
    return slots[cls]->checkInit(sensors, sensors, slices, flag) == 0 ? nullptr : &*slots[cls];
}

int Package::setClass(int cls, Messages& messages) {
    if (cls < 0 || cls > 2) {
        messages.push_back("The set class is wrong!?");
        return 0;
    }
    if (!slots[cls]) return 0;
    current = cls;
    return 1;
}

int Package::sumPackage(const Dataset& data, int cls) {
    if (cls == -1) cls = current;
    if (cls < 0 || cls > 2 || !slots[cls]) return 0;
    return slots[cls]->add(data);
}

int Package::sumFirstOf(const Package& other) {
    for (int cls = 0; cls < 3; ++cls) {
        if (slots[cls] && other.slots[cls]) return slots[cls]->add(*other.slots[cls]);
    }
    return 0;
}

std::string Package::className(int cls) {
    if (cls == -1) cls = current;
    if (cls < 0 || cls > 2) return "Unknown";
    current = cls;
    constexpr const char* names[] = {"Active", "Control", "Mix Act-Ctl"};
    return names[cls];
}

int Package::accumulate(Dataset* data) const {
    return data == nullptr || data->slices < 2 ? 0 : data->accumulate();
}

int Package::hasCurrent(Messages& messages) const {
    if (total() == 0) return 0;
    if (current == -1) messages.push_back("This is no data!");
    return current >= 0 && current <= 2 && slots[current] ? 1 : 0;
}

// --- group ---------------------------------------------------------------------------------------

int Group::clamp(int id) const {
    return static_cast<int>(clampTo(id, total()));
}

int Group::setCurrent(int id) {
    current = total() == 0 ? 0 : clamp(id);
    return total() == 0 ? 0 : 1;
}

int Group::setCurrentId(int id) {
    if (total() == 0) return 0;
    current = clamp(id);
    return current;
}

void Group::insert(Slot entry, int index) {
    if (index == -1) index = current;
    index = std::min(std::max(index, 0), total());
    entries.insert(entries.begin() + index, std::move(entry));
}

Dataset* Group::get(int index) {
    if (index == -1) index = current;
    if (index < 0 || index >= total()) return nullptr;
    Slot& entry = entries[static_cast<std::size_t>(index)];
    return entry ? &*entry : nullptr;
}

int Group::erase(int index) {
    if (total() == 0) return 0;
    entries.erase(entries.begin() + clamp(index == -1 ? current : index));
    return 1;
}

int Group::addSized(int sensors, Int slices, bool flag) {
    if (sensors < 2 || slices < 1) return 0;
    Dataset made;
    made.name = "CxcData" + std::to_string(total());
    if (made.checkInit(sensors, sensors, slices, flag) == 0) return 0;
    entries.emplace_back(std::move(made));
    return 1;
}

Group::Largest Group::largest() const {
    Largest sizes;
    for (const Slot& entry : entries) {
        if (!entry) continue;
        sizes.slices = std::max(sizes.slices, entry->slices);
        sizes.rows = std::max(sizes.rows, entry->rows);
        sizes.cols = std::max(sizes.cols, entry->cols);
    }
    return sizes;
}

bool Group::together(Largest& sizes) const {
    sizes = largest();
    return sizes.any() && entries[static_cast<std::size_t>(clamp(current))].has_value();
}

Dataset Group::resultOf(const Largest& sizes) const {
    const Dataset& reference = *entries[static_cast<std::size_t>(clamp(current))];
    Dataset made;
    made.checkInit(sizes.rows, sizes.cols, sizes.slices, true);
    for (Int r = 0; r < sizes.rows; ++r) {
        for (Int c = 0; c < sizes.cols; ++c) {
            const Vector* const from = reference.cell(r, c);
            if (from == nullptr) continue;
            made.cell(r, c)->chnlA = from->chnlA;
            made.cell(r, c)->chnlB = from->chnlB;
        }
    }
    return made;
}

// Calls take(k, r, c, t, value) in the order of the list; returns the number of datasets.
template <class Take>
int Group::each(const Largest& sizes, Take take) const {
    int k = 0;
    for (const Slot& entry : entries) {
        if (!entry) continue;
        for (Int r = 0; r < std::min(entry->rows, sizes.rows); ++r) {
            for (Int c = 0; c < std::min(entry->cols, sizes.cols); ++c) {
                const Vector* const vector = entry->cell(r, c);
                if (vector == nullptr || !vector->data) break;
                const Int end = std::min({entry->slices, sizes.slices, vector->size()});
                for (Int t = 0; t < end; ++t)
                    take(k, r, c, static_cast<std::size_t>(t),
                         (*vector->data)[static_cast<std::size_t>(t)]);
            }
        }
        ++k;
    }
    return k;
}

namespace {

void divideAll(Dataset& dataset, int k) {
    if (k < 2) return;
    for (auto& line : *dataset.grid) {
        for (Vector& vector : line) {
            for (double& value : *vector.data)
                value /= k;
        }
    }
}

}  // namespace

int Group::average() {
    Largest sizes;
    if (!together(sizes)) return 0;
    Dataset mean = resultOf(sizes);
    const int k = each(sizes, [&](int, Int r, Int c, std::size_t t, double value) {
        addTo((*mean.cell(r, c)->data)[t], value);
    });
    divideAll(mean, k);
    mean.name = "Average" + std::to_string(k) + " Result";
    entries.emplace_back(std::move(mean));
    return total();
}

int Group::summary() {
    Largest sizes;
    if (!together(sizes)) return 0;
    Dataset low = resultOf(sizes);
    Dataset mean = low;
    Dataset high = low;
    const int count = summarise(sizes, low, mean, high);
    const std::string begin = "Cxc" + std::to_string(count);
    low.name = begin + " Minimum";
    mean.name = begin + " Mean";
    high.name = begin + " Max";
    for (Dataset* const made : {&low, &mean, &high})
        entries.emplace_back(std::move(*made));
    return total();
}

int Group::summarise(const Largest& sizes, Dataset& low, Dataset& mean, Dataset& high) const {
    const int count = each(sizes, [&](int k, Int r, Int c, std::size_t t, double value) {
        double& least = (*low.cell(r, c)->data)[t];
        double& most = (*high.cell(r, c)->data)[t];
        if (k == 0 || least > value) least = value;
        if (k == 0 || value > most) most = value;
        addTo((*mean.cell(r, c)->data)[t], value);
    });
    divideAll(mean, count);
    return count;
}

}  // namespace plain
