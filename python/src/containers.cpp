#include "containers.h"

#include "records.h"

#include <pybind11/stl.h>

#include <array>
#include <memory>
#include <vector>

namespace py = pybind11;

namespace binding {
namespace {

using Dataset = CSnsCohDatazq;
using Shared = std::shared_ptr<Dataset>;

// The library's containers own their datasets alone. Python shares them, so the datasets live
// here, and the library's container gets the bare pointers for the length of one call: whatever
// it makes is taken over, and it never releases one.
class Package {
public:
    CSnsCohFacezq fields;  // between calls its slots are empty
    std::array<Shared, 3> slots;

    Shared get(int cls) const { return slots[index(cls)]; }
    void set(int cls, Shared dataset) { slots[index(cls)] = std::move(dataset); }

    template <class Call>
    void with(Call call) {
        const Exclusive here;  // nobody else may find the slots lent
        const Lent lent(*this);
        call();
    }

    void load(const std::string& path) {
        // Loading releases what the slots hold, so they are lent empty; what a failed load has
        // left goes with them.
        auto fresh = std::make_unique<CSnsCohFacezq>();
        fresh->m_actCtlOperation = fields.m_actCtlOperation;
        loadRecord(*fresh, path);
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

    static Shared take(Dataset*& slot) {
        Shared taken(slot);
        slot = nullptr;
        return taken;
    }

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

    /// Calls the library with the list lent; entries that it appends become members.
    template <class Call>
    void with(Call call) {
        const Exclusive here;
        const Returned returned(*this);
        for (const Shared& member : members)
            fields.m_cohDatasets.Add(member.get());
        call();
    }

    void load(const std::string& path) {
        auto fresh = std::make_unique<CGroupMeegCxcFacezq>();
        // A group does not release its datasets when it ends.
        struct Cleaner {
            CGroupMeegCxcFacezq& group;
            ~Cleaner() { group.cleanSnsCohPkg(); }
        } cleaner{*fresh};
        loadRecord(*fresh, path);
        std::vector<Shared> loaded;
        while (fresh->m_cohDatasets.GetSize() > 0) {
            loaded.emplace_back(static_cast<Dataset*>(fresh->m_cohDatasets.GetAt(0)));
            fresh->m_cohDatasets.RemoveAt(0);
        }
        members = std::move(loaded);
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

void combine(Package& p, int operation, bool reduceControl) {
    Answers answers;
    answers.question = reduceControl ? IDYES : IDNO;
    p.fields.m_actCtlOperation = operation;
    p.with([&] {
        const Outcome outcome = run([&] { return p.fields.doAct_Ctl_operation(); }, "", answers);
        if (outcome.result == 0)
            fail(outcome.messages.empty() ? "there is not enough memory" : outcome.message());
    });
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

void average(Group& g) {
    g.with([&] {
        require([&] { return g.fields.averageAll(); }, "",
                "there is nothing to average, or not enough memory");
    });
}

void summarise(Group& g) {
    g.with([&] {
        require([&] { return g.fields.summaryAll(); }, "",
                "there is nothing to summarise, or not enough memory");
    });
}

// What the two families have in common: the fields that their records store.
template <class Container>
void defineFields(py::class_<Container>& c) {
    c.def_property(
         "id", [](const Container& k) { return k.fields.m_pkgID; },
         [](Container& k, int id) { k.fields.m_pkgID = id; })
        .def_property(
            "name", [](const Container& k) { return toPython(k.fields.m_pkgName); },
            [](Container& k, const py::str& text) { k.fields.m_pkgName = fromPython(text); })
        .def_property(
            "info", [](const Container& k) { return toPython(k.fields.m_pkgInfo); },
            [](Container& k, const py::str& text) { k.fields.m_pkgInfo = fromPython(text); })
        .def_property(
            "show", [](const Container& k) { return k.fields.m_pkgShow; },
            [](Container& k, bool show) { k.fields.m_pkgShow = show; })
        .def_property(
            "current", [](const Container& k) { return k.fields.m_curntCohDataSetID; },
            [](Container& k, int current) { k.fields.m_curntCohDataSetID = current; })
        .def("save",
             [](Container& k, const std::string& path) {
                 k.with([&] { saveRecord(k.fields, path, "a dataset could not be stored"); });
             })
        .def("load", &Container::load);
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
        .def_readwrite("members", &Group::members)
        .def("average", average)
        .def("summarise", summarise);
    defineFields(group);
}

}  // namespace binding
