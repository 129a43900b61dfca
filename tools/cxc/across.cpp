#include "cxcpkg/across_datasets.h"

#include "tools/cxc/app.h"
#include "tools/cxc/commands.h"
#include "tools/cxc/describe.h"
#include "tools/cxc/records.h"
#include "tools/cxc/relay.h"

#include <algorithm>
#include <memory>
#include <thread>
#include <utility>

namespace tool {
namespace {

struct Options {
    std::vector<std::string> files;
    std::string member;
    std::string out;
    bool force = false;
};

// The shape of the results: the largest of each size, as the files claim. The kind is that of a
// file that is no dataset, if there is one.
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
        if (sizes.kind != Kind::dataset) most.kind = sizes.kind;
    }
    return most;
}

// One result over all files, or three.
class Results {
public:
    Results(const Sizes& sizes, bool extremes) : m_extremes(extremes) {
        each([&](CSnsCohDatazq& result) { size(result, sizes); });
    }

    Results(const Results&) = delete;
    Results& operator=(const Results&) = delete;

    // For one dataset, whose pairs are given to it.
    cxc::Accumulation next(bool first) {
        return m_extremes ? cxc::Accumulation(m_minimum, m_mean, m_maximum, first)
                          : cxc::Accumulation(m_mean);
    }

    // Of the first dataset: its channel numbers, pair by pair, and what it says about itself.
    void describePair(__int64 r, __int64 c, const CWavChnlChnlDatazq& pair) {
        if (r >= m_mean.m_snsRowTotal || c >= m_mean.m_snsColTotal) return;
        each([&](CSnsCohDatazq& result) { describePairLike(result.m_mCC[r][c], pair); });
    }

    void describe(const CSnsCohDatazq& first) {
        each([&](CSnsCohDatazq& result) { describeLike(result, first); });
    }

    void finish(int count, const std::string& note) {
        cxc::sumsToMeans(m_mean, count);
        if (m_extremes) {
            name(m_minimum, _T("Cxc%d Minimum"), "Minimum", count, note);
            name(m_mean, _T("Cxc%d Mean"), "Mean", count, note);
            name(m_maximum, _T("Cxc%d Max"), "Maximum", count, note);
        } else {
            name(m_mean, _T("Average%d Result"), "Mean", count, note);
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

    template <class Work>
    void each(Work work) {
        work(m_mean);
        if (!m_extremes) return;
        work(m_minimum);
        work(m_maximum);
    }

    static void name(CSnsCohDatazq& result, LPCTSTR format, const char* what, int count,
                     const std::string& note) {
        result.m_cxcName.Format(format, count);
        result.m_cxcCmptInfo = utf16(std::string(what) + " of " + std::to_string(count) +
                                     " datasets, value by value\n" + note);
        result.checkDataRange();
    }

    bool m_extremes;
    CSnsCohDatazq m_minimum;
    CSnsCohDatazq m_mean;
    CSnsCohDatazq m_maximum;
};

// Says once for each file in what it differs from the first, and what the rule makes of it.
class Comparison {
public:
    explicit Comparison(const Console& console) : m_console(console) {}

    void take(const std::string& path, const Traits& traits) {
        if (m_first == nullptr) {
            m_first = &traits;
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
    const Traits* m_first = nullptr;
    std::string m_path;
    bool m_any = false;
    bool m_uneven = false;
};

// A package or group is in memory whole while it is read, so only one of them at a time.
unsigned threadsFor(Kind kind) {
    constexpr unsigned most = 4;  // more would only wait for the disk
    return kind == Kind::dataset ? std::min(std::thread::hardware_concurrency(), most) : 1;
}

class Across {
public:
    Across(const Options& options, bool extremes, const Console& console)
        : m_options(options),
          m_console(console),
          m_sizes(largest(options)),
          m_results(m_sizes, extremes) {}

    Results& takeAll() {
        const std::vector<std::string>& files = m_options.files;
        m_traits.resize(files.size());
        Relay relay(files.size(), [this](Turn& turn) { takeFile(turn); });
        std::size_t taken = 0;
        {
            Progress progress(m_console, files.size());
            taken = relay.run(threadsFor(m_sizes.kind),
                              [&](std::size_t file) { progress.next(files[file]); });
        }
        compare(taken);
        relay.rethrow();
        finish();
        return m_results;
    }

private:
    // On any thread: what it writes to belongs to its file, or waits for its turn.
    void takeFile(Turn& turn) {
        const bool first = turn.file() == 0;
        Channels channels;
        cxc::Accumulation into = m_results.next(first);
        const auto dataset = readPairs(
            m_options.files[turn.file()], m_options.member,
            [&](const CSnsCohDatazq& from, __int64 r, __int64 c, const CWavChnlChnlDatazq& pair) {
                channels.take(r, c, pair);
                if (c == 0) {
                    checkInterrupted();
                    turn.beginRow(r);
                }
                if (first) m_results.describePair(r, c, pair);
                into.takePair(r, c, pair, from.m_cohTimTotal);
            });
        m_traits[turn.file()] = std::make_unique<Traits>(*dataset, std::move(channels));
        if (!first) return;
        m_results.describe(*dataset);
        m_note = "\nThe first: " + utf8(dataset->m_cxcCmptInfo);
    }

    void compare(std::size_t taken) const {
        Comparison comparison(m_console);
        for (std::size_t i = 0; i < taken; ++i)
            comparison.take(m_options.files[i], *m_traits[i]);
        if (taken == m_traits.size()) comparison.finish(static_cast<int>(taken));
    }

    void finish() {
        std::string list;
        for (const std::string& path : m_options.files)
            list += (list.empty() ? "" : "\n") + path;
        m_results.finish(static_cast<int>(m_options.files.size()), list + m_note);
    }

    const Options& m_options;
    const Console& m_console;
    const Sizes m_sizes;
    Results m_results;
    std::vector<std::unique_ptr<Traits>> m_traits;  // of each file that was taken
    std::string m_note;
};

void average(const Options& options, const Console& console) {
    requireFree(options.out, options.force);
    Across across(options, false, console);
    Results& results = across.takeAll();
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
    Across across(options, true, console);
    Results& results = across.takeAll();
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
    command->add_option("-o,--output", options.out, output)->required()->check(notEmpty());
    command->add_flag("--force", options.force, "Replace existing outputs");
}

}  // namespace

void addAverage(CLI::App& app, const Console& console) {
    auto options = std::make_shared<Options>();
    CLI::App* const command =
        app.add_subcommand("average", "Mean of any number of datasets, never in memory together");
    addCommon(command, *options, "The result");
    command->callback([options, &console] { average(*options, console); });
}

void addSummary(CLI::App& app, const Console& console) {
    auto options = std::make_shared<Options>();
    CLI::App* const command = app.add_subcommand(
        "summary", "Minimum, mean and maximum of any number of datasets, never in memory together");
    addCommon(command, *options, "NAME.cxc gives NAME_min.cxc, NAME_mean.cxc and NAME_max.cxc");
    command->callback([options, &console] { summary(*options, console); });
}

}  // namespace tool
