#include "containers.h"

#include "cxcpkg/across_datasets.h"
#include "records.h"

#include <pybind11/stl.h>

#include <array>
#include <memory>
#include <numeric>
#include <utility>
#include <vector>

namespace py = pybind11;

namespace binding {
namespace {

using Dataset = CSnsCohDatazq;
using Shared = std::shared_ptr<Dataset>;

// One call of a container at a time. Other threads wait, so that nobody replaces what is lent;
// what comes from the calling thread itself, as from a finalizer, is refused.
class Use {
public:
    explicit Use(bool& used) : m_used(used) {
        if (used) fail("the container is in use");
        used = true;
    }
    ~Use() { m_used = false; }
    Use(const Use&) = delete;
    Use& operator=(const Use&) = delete;

private:
    const Exclusive m_here{Exclusive::For::changing};  // before the flag is looked at
    bool& m_used;
};

template <class At>
double bytesOf(At begin, At end) {
    return std::accumulate(begin, end, 0.0, [](double sum, const Shared& dataset) {
        return sum + (dataset == nullptr ? 0.0 : storedBytes(*dataset));
    });
}

// The library's containers own their datasets alone. Python shares them, so the datasets live
// here, and the library's container gets the bare pointers for the length of one call: whatever
// it makes is taken over, and it never releases one.
class Package {
public:
    CSnsCohFacezq fields;  // between calls its slots are empty
    std::array<Shared, 3> slots;
    bool used = false;

    Shared get(int cls) const { return slots[index(cls)]; }
    void set(int cls, Shared dataset) {
        const std::size_t i = index(cls);
        const Use use(used);
        slots[i].swap(dataset);
    }

    template <class Call>
    void with(Call call) {
        const Use use(used);
        const Lent lent(*this);
        call();
    }

    double bytes() const { return bytesOf(slots.begin(), slots.end()); }

    void load(const std::string& path, py::object progress) {
        Watch watch(std::move(progress));
        // Loading releases what the slots hold, so they are lent empty; what a failed load has
        // left goes with them.
        auto fresh = std::make_unique<CSnsCohFacezq>();
        loadRecord(*fresh, path, watch);
        const Use use(used);
        slots = {take(fresh->m_cohActive), take(fresh->m_cohControl), take(fresh->m_cohActCtl)};
        fields.m_pkgID = fresh->m_pkgID;
        fields.m_pkgName = fresh->m_pkgName;
        fields.m_pkgInfo = fresh->m_pkgInfo;
        fields.m_pkgShow = fresh->m_pkgShow;
        fields.m_curntCohDataSetID = fresh->m_curntCohDataSetID;
    }

private:
    static std::size_t index(int cls) {
        if (cls < 0 || cls > 2) throw py::index_error("classes are 0, 1 and 2");
        return static_cast<std::size_t>(cls);
    }

    static Shared take(Dataset*& slot) { return Shared(std::exchange(slot, nullptr)); }

    // The slots hold the datasets while this lives, exceptions included.
    class Lent {
    public:
        explicit Lent(Package& owner) : m_owner(owner) {
            for (std::size_t i = 0; i < 3; ++i)
                *slot(i) = owner.slots[i].get();
        }
        ~Lent() {
            for (std::size_t i = 0; i < 3; ++i) {
                if (*slot(i) != m_owner.slots[i].get()) m_owner.slots[i].reset(*slot(i));
                *slot(i) = nullptr;
            }
        }
        Lent(const Lent&) = delete;
        Lent& operator=(const Lent&) = delete;

    private:
        Dataset** slot(std::size_t i) {
            CSnsCohFacezq& fields = m_owner.fields;
            return i == 0   ? &fields.m_cohActive
                   : i == 1 ? &fields.m_cohControl
                            : &fields.m_cohActCtl;
        }

        Package& m_owner;
    };
};

class Group {
public:
    CGroupMeegCxcFacezq fields;  // between calls its list is empty
    std::vector<Shared> members;
    bool used = false;

    void replace(std::vector<Shared> datasets) {
        const Use use(used);
        members.swap(datasets);
    }

    void extend(const std::vector<Shared>& datasets) {
        const Use use(used);
        members.insert(members.end(), datasets.begin(), datasets.end());
    }

    /// Calls the library with the list lent; entries that it appends become members.
    template <class Call>
    void with(Call call) {
        const Use use(used);
        const Returned returned(*this);
        for (const Shared& member : members)
            fields.m_cohDatasets.Add(member.get());
        call();
    }

    double bytes() const { return bytesOf(members.begin(), members.end()); }

    void load(const std::string& path, py::object progress) {
        Watch watch(std::move(progress));
        auto fresh = std::make_unique<CGroupMeegCxcFacezq>();
        // A group does not release its datasets when it ends.
        struct Cleaner {
            CGroupMeegCxcFacezq& group;
            ~Cleaner() { group.cleanSnsCohPkg(); }
        } cleaner{*fresh};
        loadRecord(*fresh, path, watch);
        std::vector<Shared> loaded;
        CPtrArray& list = fresh->m_cohDatasets;
        for (INT_PTR i = 0; i < list.GetSize(); ++i) {
            auto* const dataset = static_cast<Dataset*>(list.GetAt(i));
            list.SetAt(i, nullptr);
            loaded.push_back(Shared(dataset));
        }
        const Use use(used);
        members.swap(loaded);
        fields.m_pkgID = fresh->m_pkgID;
        fields.m_pkgName = fresh->m_pkgName;
        fields.m_pkgInfo = fresh->m_pkgInfo;
        fields.m_pkgShow = fresh->m_pkgShow;
        fields.m_actCtlOperation = fresh->m_actCtlOperation;
        fields.m_curntCohDataSetID = fresh->m_curntCohDataSetID;
    }

private:
    class Returned {
    public:
        explicit Returned(Group& owner) : m_owner(owner) {}
        ~Returned() {
            CPtrArray& list = m_owner.fields.m_cohDatasets;
            for (auto i = static_cast<INT_PTR>(m_owner.members.size()); i < list.GetSize(); ++i)
                m_owner.members.emplace_back(static_cast<Dataset*>(list.GetAt(i)));
            list.RemoveAll();
        }
        Returned(const Returned&) = delete;
        Returned& operator=(const Returned&) = delete;

    private:
        Group& m_owner;
    };
};

Shared combine(Package& p, int operation, bool reduceControl) {
    Answers answers;
    answers.question = reduceControl ? IDYES : IDNO;
    p.with([&] {
        p.fields.m_actCtlOperation = operation;
        const Outcome outcome = run([&] { return p.fields.doAct_Ctl_operation(); }, "", answers);
        if (outcome.result == 0)
            fail(outcome.messages.empty() ? "there is not enough memory" : outcome.message());
    });
    return p.slots[2];
}

py::tuple matchSelections(Package& p, std::pair<__int64, __int64> active,
                          std::pair<__int64, __int64> control) {
    p.with([&] {
        require(
            [&] {
                return p.fields.matchAtiveControl(active.first, active.second, control.first,
                                                  control.second);
            },
            "", "the selections cannot be matched");
    });
    return py::make_tuple(active, control);
}

// Tells a watch of the rows of results while it lives.
class WatchedRows {
public:
    explicit WatchedRows(Watch& watch) {
        cxc::watchRows([&watch](__int64 done, __int64 rows) {
            return (done < rows && !watch.due()) || watch.goesOn(done, rows);
        });
    }
    ~WatchedRows() { cxc::watchRows({}); }
    WatchedRows(const WatchedRows&) = delete;
    WatchedRows& operator=(const WatchedRows&) = delete;
};

// Calls an operation of the group that appends results, all or none.
template <class Operation>
void takeTogether(Group& g, py::object progress, const char* otherwise, Operation operation) {
    Watch watch(std::move(progress));
    g.with([&] {
        require(
            [&] {
                const WatchedRows rows(watch);
                return operation();
            },
            "", otherwise, {}, &watch);
    });
}

Shared average(Group& g, py::object progress) {
    takeTogether(g, std::move(progress), "there is nothing to average, or not enough memory",
                 [&] { return g.fields.averageAll(); });
    return g.members.back();
}

// Minimum, mean and maximum.
std::vector<Shared> summarise(Group& g, py::object progress) {
    takeTogether(g, std::move(progress), "there is nothing to summarise, or not enough memory",
                 [&] { return g.fields.summaryAll(); });
    return {g.members.end() - 3, g.members.end()};
}

// What the two families have in common: the fields that their records store.
template <class Container>
void defineFields(py::class_<Container>& c) {
    c.def_property(
         "id", [](const Container& k) { return k.fields.m_pkgID; },
         [](Container& k, int id) {
             const Use use(k.used);
             k.fields.m_pkgID = id;
         })
        .def_property(
            "name", [](const Container& k) { return toPython(k.fields.m_pkgName); },
            [](Container& k, const py::str& text) {
                const Use use(k.used);
                k.fields.m_pkgName = fromPython(text);
            })
        .def_property(
            "info", [](const Container& k) { return toPython(k.fields.m_pkgInfo); },
            [](Container& k, const py::str& text) {
                const Use use(k.used);
                k.fields.m_pkgInfo = fromPython(text);
            })
        .def_property(
            "show", [](const Container& k) { return k.fields.m_pkgShow; },
            [](Container& k, bool show) {
                const Use use(k.used);
                k.fields.m_pkgShow = show;
            })
        .def_property(
            "current", [](const Container& k) { return k.fields.m_curntCohDataSetID; },
            [](Container& k, int current) {
                const Use use(k.used);
                k.fields.m_curntCohDataSetID = current;
            })
        .def(
            "save",
            [](Container& k, const std::string& path, py::object progress) {
                Watch watch(std::move(progress));
                const double bytes = k.bytes();
                k.with([&] {
                    saveRecord(k.fields, path, bytes, watch, "a dataset could not be stored");
                });
            },
            py::arg("path"), py::arg("progress") = py::none())
        .def("load", &Container::load, py::arg("path"), py::arg("progress") = py::none());
}

}  // namespace

void registerContainers(py::module_& m) {
    py::class_<Package> package(m, "Package");
    package.def(py::init<>())
        .def("get", &Package::get)
        .def("set", &Package::set)
        .def("combine", combine)
        .def("match_selections", matchSelections);
    defineFields(package);

    py::class_<Group> group(m, "Group");
    group.def(py::init<>())
        .def_property(
            "members", [](const Group& g) { return g.members; }, &Group::replace)
        .def("extend", &Group::extend)
        .def("average", average, py::arg("progress") = py::none())
        .def("summarise", summarise, py::arg("progress") = py::none());
    defineFields(group);
}

}  // namespace binding
