#include "tests/trust/plain_steps.h"

#include <algorithm>

namespace plain {

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
