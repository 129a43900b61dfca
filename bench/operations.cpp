#include "bench/operations.h"

#include "bench/data.h"
#include "cxcdata/array_exchange.h"
#include "cxcfile/fixed_decimal.h"
#include "cxcfile/text_export.h"

#include <algorithm>
#include <cstdlib>
#include <memory>
#include <vector>

namespace bench {
namespace {

// A figure of something that did not happen is none.
void must(bool done) {
    if (!done) std::abort();
}

// A dataset that an operation makes, until it is put back.
using Made = std::shared_ptr<std::unique_ptr<CSnsCohDatazq>>;

Made nothingMade() {
    return std::make_shared<std::unique_ptr<CSnsCohDatazq>>();
}

template <class Record>
void save(Record& record, const CString& path, bool toDisk) {
    CFile file(path, CFile::modeCreate | CFile::modeWrite);
    CArchive archive(&file, CArchive::store);
    must(record.serialize(archive) == 1);
    archive.Close();
    if (toDisk) file.Flush();
    file.Close();
}

template <class Record>
void open(Record& record, const CString& path) {
    CFile file(path, CFile::modeRead);
    CArchive archive(&file, CArchive::load);
    must(record.serialize(archive) == 1);
    archive.Close();
}

// `fresh` makes the object that is read into.
template <class Record, class Fresh>
void addFiles(std::vector<Operation>& all, const std::shared_ptr<Record>& one, Fresh fresh) {
    const auto made = std::make_shared<std::shared_ptr<Record>>();
    const std::string name = fileIn("save.cxc");
    const CString saved(name.c_str());
    const auto forgotten = [name] { forget(name); };
    save(*one, CString(recordFile().c_str()), false);
    all.push_back({"open",
                   [made, fresh] {
                       *made = fresh();
                       open(**made, CString(recordFile().c_str()));
                   },
                   [made] { made->reset(); }});
    all.push_back({"save", [one, saved] { save(*one, saved, false); }, forgotten});
    all.push_back({"save, flushed", [one, saved] { save(*one, saved, true); }, forgotten});
}

// For the text once, whose size the limits need: flushes take as long as all the rest.
class UnflushedFile : public CFile {
public:
    using CFile::CFile;
    void Flush() override {}
};

void addText(std::vector<Operation>& all, const Shared& one) {
    UnflushedFile first(CString(textFile().c_str()), CFile::modeCreate | CFile::modeWrite);
    must(cxc::writeText(first, *one));
    first.Close();
    const auto text = std::make_shared<std::vector<TCHAR>>(
        static_cast<std::size_t>(one->m_snsColTotal * one->m_cohTimTotal * cxc::mostFixedDecimal));
    all.push_back({"format", [one, text] {
                       for (__int64 r = 0; r < one->m_snsRowTotal; ++r) {
                           TCHAR* to = text->data();
                           for (__int64 c = 0; c < one->m_snsColTotal; ++c) {
                               const CWavChnlChnlDatazq& pair = one->m_mCC[r][c];
                               for (__int64 t = 0; t < pair.m_size; ++t)
                                   to = cxc::writeFixedDecimal(to, pair.m_data[t]);
                           }
                       }
                   }});
    all.push_back({"text export", [one] {
                       CFile file(CString(textFile().c_str()),
                                  CFile::modeCreate | CFile::modeWrite);
                       must(cxc::writeText(file, *one));
                       file.Flush();
                       file.Close();
                   }});
}

void addProcessing(std::vector<Operation>& all, const Shared& target, const Shared& other) {
    all.push_back({"sum", [target, other] { must(target->sumDatSetSns(*other) == 1); }});
    all.push_back({"range", [other] {
                       double lo = 0.0;
                       double hi = 0.0;
                       must(other->getSnsCohRange(lo, hi, false, 0, 0, 0) == 1);
                   }});
    all.push_back({"absolute range", [other] {
                       double lo = 0.0;
                       double hi = 0.0;
                       must(other->getCxcAbsRange(lo, hi, false, false, 0, 0) == 1);
                   }});
    all.push_back({"data range", [other] { must(other->checkDataRange() == 1); }});
    all.push_back({"statistics", [other] { must(!other->getStatistics().IsEmpty()); }});
    all.push_back({"normalise", [target] { must(target->normRMS() == 1); }});
    all.push_back({"zero diagonal", [target] { must(target->zeroDiagonal() == 1); },
                   [target] { target->m_cxcCmptInfo.Empty(); }});
}

void addCombination(std::vector<Operation>& all, const Shape& shape) {
    const auto package = std::make_shared<CSnsCohFacezq>();
    package->setCohData(makeDataset(shape.n, shape.nTim, 1).release(), 0);
    package->setCohData(makeDataset(shape.n, 1, 2).release(), 1);
    // The first one makes the dataset; those that are measured find it there.
    must(package->doAct_Ctl_operation() == 1);
    all.push_back({"Act-Ctl", [package] { must(package->doAct_Ctl_operation() == 1); }});
}

void addExchange(std::vector<Operation>& all, const Shape& shape, const Shared& one,
                 const Shared& target) {
    // More matrices than slices, as the library demands of those that it is given.
    const auto count = static_cast<std::size_t>(shape.nTim + 1);
    const std::shared_ptr<CMMatrix2Dzq[]> matrices(new CMMatrix2Dzq[count]);
    const auto read = [one, matrices, shape] {
        CMMatrix2Dzq* to = matrices.get();
        __int64 there = shape.nTim + 1;
        must(one->getData2MCohTimSnsSns(to, there) == 1);
    };
    read();
    all.push_back({"matrices from dataset", read});
    all.push_back({"dataset from matrices", [target, matrices, shape] {
                       must(target->setData4MCohTimSnsSns(matrices.get(), shape.nTim) == 1);
                   }});

    const auto values = std::make_shared<std::vector<double>>(shape.values());
    cxc::arrayFromDataset(*one, values->data());
    const Made made = nothingMade();
    all.push_back(
        {"from_array",
         [made, values, shape] {
             *made = std::make_unique<CSnsCohDatazq>();
             must(cxc::datasetFromArray(**made, values->data(), shape.nTim, shape.n, shape.n) == 1);
         },
         [made] { made->reset(); }});
    const auto array = std::make_shared<std::unique_ptr<double[]>>();
    all.push_back({"to_array",
                   [array, one, shape] {
                       array->reset(new double[shape.values()]);
                       cxc::arrayFromDataset(*one, array->get());
                   },
                   [array] { array->reset(); }});
}

std::vector<Operation> ofDataset(const Shape& shape) {
    const Shared one = makeDataset(shape.n, shape.nTim, 1);
    const Shared other = makeDataset(shape.n, shape.nTim, 2);
    // The one that operations write to.
    const Shared target = makeDataset(shape.n, shape.nTim, 3);
    std::vector<Operation> all;
    addFiles(all, one, [] { return std::make_shared<CSnsCohDatazq>(); });
    addText(all, one);
    addProcessing(all, target, other);
    addCombination(all, shape);
    addExchange(all, shape, one, target);
    return all;
}

// An empty one, whose members go with it.
std::shared_ptr<CGroupMeegCxcFacezq> makeGroup() {
    return {new CGroupMeegCxcFacezq, [](CGroupMeegCxcFacezq* done) {
                done->cleanSnsCohPkg();
                delete done;
            }};
}

std::vector<Operation> ofGroup(const Shape& shape) {
    const std::shared_ptr<CGroupMeegCxcFacezq> group = makeGroup();
    for (int k = 0; k < shape.members; ++k) {
        const auto seed = static_cast<unsigned>(k + 1);
        group->setCohData(makeDataset(shape.n, shape.nTim, seed).release(), shape.members);
    }
    group->setCurntCohDataSetID(0);
    const auto shorten = [group, shape](int results) {
        for (int k = 0; k < results; ++k)
            group->deleteCohDataset(shape.members);
    };
    std::vector<Operation> all;
    addFiles(all, group, makeGroup);
    all.push_back({"average", [group, shape] { must(group->averageAll() == shape.members + 1); },
                   [shorten] { shorten(1); }});
    all.push_back({"summary", [group, shape] { must(group->summaryAll() == shape.members + 3); },
                   [shorten] { shorten(3); }});
    return all;
}

}  // namespace

std::vector<Operation> operations(const Shape& shape) {
    return shape.members > 0 ? ofGroup(shape) : ofDataset(shape);
}

std::size_t datasetBytes(const Shape& shape) {
    const std::size_t one = static_cast<std::size_t>(shape.pairs()) * sizeof(CWavChnlChnlDatazq) +
                            shape.values() * sizeof(double) +
                            static_cast<std::size_t>(shape.n) * sizeof(void*);
    return one * static_cast<std::size_t>(std::max(1, shape.members));
}

}  // namespace bench
