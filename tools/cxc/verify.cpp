#include "tools/cxc/app.h"
#include "tools/cxc/commands.h"
#include "tools/cxc/describe.h"
#include "tools/cxc/records.h"

#include <cmath>

namespace tool {
namespace {

using Found = std::vector<std::string>;

std::string count(__int64 n, const char* what) {
    return std::to_string(n) + ' ' + what + (n == 1 ? "" : "s");
}

// Pairs that are not as the dataset says, counted; the first is named.
class Pairs {
public:
    void note(bool odd, __int64 r, __int64 c) {
        if (!odd) return;
        if (m_count++ == 0) m_first = std::to_string(r + 1) + ", " + std::to_string(c + 1);
    }
    void tell(const char* what, Found& found) const {
        if (m_count > 0)
            found.push_back(count(m_count, "pair") + ' ' + what + ", first " + m_first);
    }

private:
    __int64 m_count = 0;
    std::string m_first;
};

void checkPairs(const CSnsCohDatazq& dataset, Found& found) {
    const Shape shape = shapeOf(dataset);
    const Traits traits(dataset);
    Pairs lengths;
    Pairs empty;
    Pairs channels;
    Pairs infinite;
    Pairs backups;
    for (__int64 r = 0; r < shape.rows; ++r) {
        for (__int64 c = 0; c < shape.columns; ++c) {
            const CWavChnlChnlDatazq& pair = pairOf(dataset, r, c);
            const bool hasValues = pair.m_data != nullptr && pair.m_size > 0;
            lengths.note(hasValues && pair.m_size != dataset.m_cohTimTotal, r, c);
            empty.note(!hasValues, r, c);
            channels.note(pair.m_chnlA != traits.channels.rows[static_cast<std::size_t>(r)] ||
                              pair.m_chnlB != traits.channels.columns[static_cast<std::size_t>(c)],
                          r, c);
            backups.note(pair.m_bkData != nullptr && pair.m_bkSize != pair.m_size, r, c);
            bool finite = true;
            for (__int64 t = 0; hasValues && t < pair.m_size; ++t)
                finite = finite && std::isfinite(pair.m_data[t]);
            infinite.note(!finite, r, c);
        }
    }
    lengths.tell("of another length than the dataset", found);
    empty.tell("without values", found);
    channels.tell("with other channel numbers than their row and column", found);
    infinite.tell("with infinite or undefined values", found);
    backups.tell("with a backup of another length than the values", found);
}

void checkRanges(CSnsCohDatazq& dataset, Found& found) {
    const double stored[] = {dataset.m_dataMin, dataset.m_dataMax};
    // All zeros: never determined.
    if (stored[0] == 0.0 && stored[1] == 0.0 && dataset.m_dataMean == 0.0) return;
    if (dataset.checkDataRange() == 0) return;
    if (stored[0] != dataset.m_dataMin || stored[1] != dataset.m_dataMax)
        found.push_back("the stored range is " + shortest(stored[0]) + " to " +
                        shortest(stored[1]) + ", the values lie from " +
                        shortest(dataset.m_dataMin) + " to " + shortest(dataset.m_dataMax));
}

void checkIndices(const CSnsCohDatazq& dataset, Found& found) {
    const __int64 slices = dataset.m_cohTimTotal;
    if (dataset.m_selectBegin < 0 || dataset.m_selectEnd >= slices ||
        dataset.m_selectBegin > dataset.m_selectEnd)
        found.push_back("the selection " + std::to_string(dataset.m_selectBegin) + " to " +
                        std::to_string(dataset.m_selectEnd) + " is not inside the " +
                        count(slices, "slice"));
    if (dataset.m_rowCrt < 0 || dataset.m_rowCrt >= dataset.m_snsRowTotal ||
        dataset.m_columnCrt < 0 || dataset.m_columnCrt >= dataset.m_snsColTotal)
        found.push_back("the current pair " + std::to_string(dataset.m_rowCrt + 1) + ", " +
                        std::to_string(dataset.m_columnCrt + 1) + " is outside the grid");
    if (dataset.m_headerReal0 > dataset.m_headerReal1)
        found.push_back("the band ends below its begin");
    if (dataset.m_showRangeMin > dataset.m_showRangeMax)
        found.push_back("the display range ends below its begin");
}

void check(CSnsCohDatazq& dataset, Found& found) {
    if (dataset.m_mCC == nullptr) {
        found.push_back("there are no values, but the sizes are " + sizeOf(dataset));
        if (dataset.m_snsRowTotal == 0 && dataset.m_snsColTotal == 0 && dataset.m_cohTimTotal == 0)
            found.back() = "there are no values";
        return;
    }
    if (dataset.m_snsRowTotal != dataset.m_snsColTotal)
        found.push_back("rows and columns differ: " + sizeOf(dataset));
    checkIndices(dataset, found);
    checkPairs(dataset, found);
    checkRanges(dataset, found);
}

Found check(const Record& record) {
    Found found;
    const std::vector<Member> members = record.members();
    if (record.trailing() > 0)
        found.push_back(std::to_string(record.trailing()) + " bytes follow the record");
    if (members.empty()) found.push_back("there are no datasets");
    const int current = record.package() != nullptr ? record.package()->m_curntCohDataSetID
                        : record.group() != nullptr ? record.group()->m_curntCohDataSetID
                                                    : -1;
    const int most = record.package() != nullptr ? 3 : static_cast<int>(members.size());
    if (current < -1 || current >= most)
        found.push_back("the current dataset " + std::to_string(current) + " is not there");
    for (const Member& member : members) {
        Found inside;
        check(*member.dataset, inside);
        for (const std::string& text : inside)
            found.push_back(member.label.empty() ? text : member.label + ": " + text);
    }
    return found;
}

// Whether the file could be read and nothing disagrees.
int verify(const std::string& path, const Console& console) {
    try {
        const Record record(path);
        const Found found = check(record);
        for (const std::string& text : found)
            console.out << printable(path + ": " + text) << '\n';
        if (found.empty())
            console.out << printable(path) << ": a whole " << nameOf(record.heading().kind)
                        << ", version " << record.heading().version << '\n';
        return found.empty() ? done : disagrees;
    } catch (const Error& e) {
        console.err << "cxc: " << printable(e.what()) << '\n';
        return failed;
    }
}

}  // namespace

void addVerify(CLI::App& app, const Console& console, Outcome& outcome) {
    auto files = std::make_shared<std::vector<std::string>>();
    CLI::App* const command = app.add_subcommand(
        "verify", "Read everything and say what disagrees inside (exit code 3), or cannot be read");
    command->add_option("FILE", *files, "Files")->required();
    command->callback([files, &console, &outcome] {
        Progress progress(console, files->size());
        for (const std::string& path : *files) {
            progress.next(path);
            const int code = verify(path, console);
            // What cannot be read weighs more than what disagrees.
            if (code == failed || outcome.code == done) outcome.code = code;
        }
    });
}

}  // namespace tool
