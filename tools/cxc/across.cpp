#include "cxcpkg/across_datasets.h"

#include "tools/cxc/app.h"
#include "tools/cxc/commands.h"
#include "tools/cxc/describe.h"
#include "tools/cxc/records.h"

#include <algorithm>
#include <memory>

namespace tool {
namespace {

struct Options {
    std::vector<std::string> files;
    std::string member;
    std::string out;
    bool force = false;
};

// The shape of the results: the largest of each size, as the files claim.
Sizes largest(const Options& options) {
    Sizes most = {0, 0, 0};
    for (const std::string& path : options.files) {
        checkInterrupted();
        const Sizes sizes = claimedSizes(path, options.member);
        if (sizes.slices < 1 || sizes.rows < 1 || sizes.columns < 1)
            throw Error(path + ": holds no values");
        requireBacked(path, sizes);
        most.slices = std::max(most.slices, sizes.slices);
        most.rows = std::max(most.rows, sizes.rows);
        most.columns = std::max(most.columns, sizes.columns);
    }
    return most;
}

// One result over all files, or three.
class Results {
public:
    Results(const Options& options, bool extremes) : m_extremes(extremes) {
        const Sizes sizes = largest(options);
        size(m_mean, sizes);
        if (!extremes) return;
        size(m_minimum, sizes);
        size(m_maximum, sizes);
    }

    Results(const Results&) = delete;
    Results& operator=(const Results&) = delete;

    void take(const CSnsCohDatazq& dataset) {
        if (m_count == 0) describeAll(dataset);
        cxc::addToSums(m_mean, dataset);
        if (m_extremes) cxc::takeExtremes(m_minimum, m_maximum, dataset, m_count == 0);
        ++m_count;
    }

    void finish(const std::string& note) {
        cxc::sumsToMeans(m_mean, m_count);
        if (m_extremes) {
            name(m_minimum, _T("Cxc%d Minimum"), "Minimum", note);
            name(m_mean, _T("Cxc%d Mean"), "Mean", note);
            name(m_maximum, _T("Cxc%d Max"), "Maximum", note);
        } else {
            name(m_mean, _T("Average%d Result"), "Mean", note);
        }
    }

    CSnsCohDatazq& minimum() { return m_minimum; }
    CSnsCohDatazq& mean() { return m_mean; }
    CSnsCohDatazq& maximum() { return m_maximum; }

private:
    static void size(CSnsCohDatazq& result, const Sizes& sizes) {
        if (result.checkInitSnsCohData(sizes.rows, sizes.columns, sizes.slices, true) == 0)
            throw Error("not enough memory for results of " + std::to_string(sizes.slices) +
                        " slices of " + std::to_string(sizes.rows) + " x " +
                        std::to_string(sizes.columns) + " sensors");
    }

    void describeAll(const CSnsCohDatazq& first) {
        describeLike(m_mean, first);
        if (!m_extremes) return;
        describeLike(m_minimum, first);
        describeLike(m_maximum, first);
    }

    void name(CSnsCohDatazq& result, LPCTSTR format, const char* what, const std::string& note) {
        result.m_cxcName.Format(format, m_count);
        result.m_cxcCmptInfo = utf16(std::string(what) + " of " + std::to_string(m_count) +
                                     " datasets, value by value\n" + note);
        result.checkDataRange();
    }

    bool m_extremes;
    int m_count = 0;
    CSnsCohDatazq m_minimum;
    CSnsCohDatazq m_mean;
    CSnsCohDatazq m_maximum;
};

// Says once for each file in what it differs from the first, and what the rule makes of it.
class Comparison {
public:
    explicit Comparison(const Console& console) : m_console(console) {}

    void take(const std::string& path, const CSnsCohDatazq& dataset) {
        const Traits traits(dataset);
        if (m_first == nullptr) {
            m_first = std::make_unique<Traits>(traits);
            m_path = path;
            return;
        }
        bool smaller = false;
        for (const std::string& text : differences(traits, *m_first)) {
            m_console.warn(path + " differs from " + m_path + " in " + text);
            smaller = smaller || text.rfind("length", 0) == 0 || text.rfind("rows", 0) == 0 ||
                      text.rfind("columns", 0) == 0;
            m_any = true;
        }
        m_uneven = m_uneven || smaller;
    }

    void finish(int count) const {
        if (m_any)
            m_console.warn(
                "pairs and slices are taken by position; the results carry the "
                "description of " +
                m_path);
        if (m_uneven)
            m_console.warn("the result has the largest sizes, and every sum is divided by " +
                           std::to_string(count) +
                           ": where a smaller dataset has no value it counts as 0");
    }

private:
    const Console& m_console;
    std::unique_ptr<Traits> m_first;
    std::string m_path;
    bool m_any = false;
    bool m_uneven = false;
};

void takeAll(const Options& options, Results& results, const Console& console) {
    Comparison comparison(console);
    std::string note;
    {
        Progress progress(console, options.files.size());
        for (const std::string& path : options.files) {
            progress.next(path);
            const auto dataset = openDataset(path, options.member);
            comparison.take(path, *dataset);
            if (note.empty()) note = "\nThe first: " + utf8(dataset->m_cxcCmptInfo);
            results.take(*dataset);
        }
    }
    comparison.finish(static_cast<int>(options.files.size()));
    std::string list;
    for (const std::string& path : options.files)
        list += (list.empty() ? "" : "\n") + path;
    results.finish(list + note);
}

void average(const Options& options, const Console& console) {
    requireFree(options.out, options.force);
    Results results(options, false);
    takeAll(options, results, console);
    saveRecord(results.mean(), options.out, options.force);
    console.out << printable(options.out) << ": " << sizeOf(results.mean()) << '\n';
}

// "group.cxc" becomes "group_min.cxc" and so on.
std::string outputOf(const std::string& out, const std::string& what) {
    const std::string ending = ".cxc";
    const bool ends = endingOf(out) == ending;
    return (ends ? out.substr(0, out.size() - ending.size()) : out) + "_" + what + ending;
}

void summary(const Options& options, const Console& console) {
    const std::string paths[] = {outputOf(options.out, "min"), outputOf(options.out, "mean"),
                                 outputOf(options.out, "max")};
    for (const std::string& path : paths)
        requireFree(path, options.force);
    Results results(options, true);
    takeAll(options, results, console);
    saveAll({{&results.minimum(), paths[0]},
             {&results.mean(), paths[1]},
             {&results.maximum(), paths[2]}},
            options.force);
    for (const std::string& path : paths)
        console.out << printable(path) << ": " << sizeOf(results.mean()) << '\n';
}

void addCommon(CLI::App* command, Options& options, const char* output) {
    command->add_option("FILE", options.files, "Datasets, taken in this order")->required();
    addMember(command, options.member);
    command->add_option("-o,--output", options.out, output)->required();
    command->add_flag("--force", options.force, "Replace existing outputs");
}

}  // namespace

void addAverage(CLI::App& app, const Console& console) {
    auto options = std::make_shared<Options>();
    CLI::App* const command =
        app.add_subcommand("average", "Mean of any number of datasets, read one at a time");
    addCommon(command, *options, "The result");
    command->callback([options, &console] { average(*options, console); });
}

void addSummary(CLI::App& app, const Console& console) {
    auto options = std::make_shared<Options>();
    CLI::App* const command = app.add_subcommand(
        "summary", "Minimum, mean and maximum of any number of datasets, read one at a time");
    addCommon(command, *options, "NAME.cxc gives NAME_min.cxc, NAME_mean.cxc and NAME_max.cxc");
    command->callback([options, &console] { summary(*options, console); });
}

}  // namespace tool
