// What is stored of the plain objects, and their text.
#include "tests/trust/PlainDataset.h"

#include <algorithm>
#include <cmath>
#include <cstdio>

namespace plain {
namespace {

std::string decimal(double value) {
    // Of the NaNs, sequences know the ordinary one and the one that arithmetic makes.
    if (std::isnan(value)) return std::signbit(value) ? "-nan(ind)" : "nan";
    if (std::isinf(value)) return value < 0 ? "-inf" : "inf";
    char digits[400];
    std::snprintf(digits, sizeof(digits), "%f", value);
    return digits;
}

// What a record brings into a new object.
template <class T>
T reloaded(const T& stored) {
    T made;
    made.load(stored);
    return made;
}

}  // namespace

void Vector::load(const Vector& stored) {
    const Vector from = stored;
    curIdx = from.curIdx;
    chnlA = from.chnlA;
    chnlB = from.chnlB;
    pairFlag = from.pairFlag;
    data.reset();
    if (from.size() > 0) data = from.data;
    // Without one in the record the array of an older backup stays.
    if (from.backup && !from.backup->empty())
        backup = from.backup;
    else if (backup)
        backup->clear();
}

std::string Dataset::channelTypeName() const {
    constexpr const char* names[] = {"All Type", "MEG Sensor", "EEG Sensor", "MEG EEG Sensor"};
    return channelType >= 0 && channelType <= 3 ? names[channelType] : "Unknown";
}

bool Dataset::storesGrid() const {
    return grid && rows >= 1 && cols >= 1 && rows <= realRows() && cols <= realCols();
}

void Dataset::load(const Dataset& stored) {
    const unsigned kept[3] = {colours[0], colours[1], colours[2]};
    const Dataset from = stored;
    *this = from;
    std::copy(kept, kept + 3, colours);
    grid.reset();
    if (!from.storesGrid()) return;
    grid.emplace();
    for (Int r = 0; r < rows; ++r) {
        grid->emplace_back();
        for (Int c = 0; c < cols; ++c)
            grid->back().push_back(reloaded(*from.cell(r, c)));
    }
}

bool Dataset::text(std::string& written) const {
    if (!grid && rows > 0) return false;
    written = name + " (" + std::to_string(rows) + " x " + std::to_string(cols) + "\n" + '\0';
    for (Int t = 0; t < slices; ++t) {
        written += "Time Slice: " + std::to_string(t) + "\n" + '\0';
        for (Int r = 0; r < rows; ++r) {
            written += std::to_string(r + 1) + " ";
            for (Int c = 0; c < cols; ++c) {
                const Vector* const vector = cell(r, c);
                if (vector == nullptr || t >= vector->size()) break;
                written += decimal((*vector->data)[static_cast<std::size_t>(t)]) + "  ";
            }
            written += "\n";
        }
        written += '\0';
    }
    return true;
}

void Package::load(const Package& stored) {
    labels = stored.labels;
    current = stored.current;
    for (int cls = 0; cls < 3; ++cls) {
        const Slot from = stored.slots[cls];
        slots[cls].reset();
        if (from) slots[cls] = reloaded(*from);
    }
}

void Group::load(const Group& stored) {
    labels = stored.labels;
    operation = stored.operation;
    current = stored.current;
    std::vector<Slot> made;
    for (const Slot& entry : stored.entries) {
        if (entry) made.emplace_back(reloaded(*entry));
    }
    entries = std::move(made);
}

}  // namespace plain
