#include "tests/trust/plain_steps.h"

#include <algorithm>

namespace plain {

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

}  // namespace plain
