#include "cxcdata/dataset_part.h"
#include "tools/cxc/app.h"
#include "tools/cxc/commands.h"
#include "tools/cxc/describe.h"
#include "tools/cxc/records.h"

#include <algorithm>
#include <charconv>
#include <memory>
#include <numeric>
#include <system_error>

namespace tool {
namespace {

struct Options {
    std::string in;
    std::string member;
    std::string out;
    std::string slices;
    std::string sensors;
    std::string rows;
    std::string columns;
    bool force = false;
};

struct Span {
    __int64 first;
    __int64 last;
};

__int64 numberIn(const std::string& text, const std::string& whole) {
    __int64 number = 0;
    const auto end = std::from_chars(text.data(), text.data() + text.size(), number);
    if (end.ec != std::errc() || end.ptr != text.data() + text.size())
        throw CLI::ValidationError("\"" + whole + "\" is no list such as 1,3,5-8");
    return number;
}

Span spanIn(const std::string& text, const std::string& whole) {
    const std::size_t dash = text.find('-');
    if (dash == std::string::npos) {
        const __int64 only = numberIn(text, whole);
        return {only, only};
    }
    return {numberIn(text.substr(0, dash), whole), numberIn(text.substr(dash + 1), whole)};
}

// "1,3,5-8", all inside first..last, each once. Without a text all of them.
std::vector<__int64> listOf(const std::string& text, const char* what, __int64 first,
                            __int64 last) {
    std::vector<__int64> list;
    std::size_t begin = 0;
    while (!text.empty() && begin <= text.size()) {
        const std::size_t end = std::min(text.find(',', begin), text.size());
        const Span span = spanIn(text.substr(begin, end - begin), text);
        if (span.first < first || span.last > last || span.first > span.last)
            throw Error(std::string(what) + " " + text + ": there are " + std::to_string(first) +
                        " to " + std::to_string(last));
        for (__int64 i = span.first; i <= span.last; ++i) {
            if (std::find(list.begin(), list.end(), i) != list.end())
                throw Error(std::string(what) + " " + text + ": " + std::to_string(i) + " twice");
            list.push_back(i);
        }
        begin = end + 1;
    }
    for (__int64 i = first; text.empty() && i <= last; ++i)
        list.push_back(i);
    return list;
}

std::vector<__int64> allOf(const Span& span) {
    std::vector<__int64> list(static_cast<std::size_t>(span.last - span.first + 1));
    std::iota(list.begin(), list.end(), span.first);
    return list;
}

std::vector<__int64> fromZero(std::vector<__int64> list) {
    for (__int64& number : list)
        --number;
    return list;
}

void describe(CSnsCohDatazq& made, CSnsCohDatazq& source, const Span& slices,
              const Options& options) {
    if (source.m_samplingRate > 0.0) {
        made.m_anaLatencyBegin = source.getLatency4PtSecond(slices.first);
        made.m_anaLatencyEnd -=
            static_cast<double>(source.m_cohTimTotal - 1 - slices.last) / source.m_samplingRate;
    }
    std::string text = "Selected from " + options.in + ": slices " + std::to_string(slices.first) +
                       " to " + std::to_string(slices.last);
    if (!options.sensors.empty()) text += ", sensors " + options.sensors;
    if (!options.rows.empty()) text += ", rows " + options.rows;
    if (!options.columns.empty()) text += ", columns " + options.columns;
    addToNote(made, text);
}

void select(const Options& options, const Console& console) {
    requireFree(options.out, options.force);
    const auto source = openBacked(options.in, options.member);
    const Shape shape = shapeOf(*source);
    if (shape.slices < 1 || shape.rows < 1 || shape.columns < 1)
        throw Error(options.in + ": holds no values");
    Span slices = {0, shape.slices - 1};
    if (!options.slices.empty()) slices = spanIn(options.slices, options.slices);
    if (slices.first < 0 || slices.last >= shape.slices || slices.first > slices.last)
        throw Error(options.in + ": slices " + options.slices + ": there are 0 to " +
                    std::to_string(shape.slices - 1));
    const std::string& rowText = options.rows.empty() ? options.sensors : options.rows;
    const std::string& columnText = options.columns.empty() ? options.sensors : options.columns;
    const auto rows = listOf(rowText, "rows", 1, shape.rows);
    const auto columns = listOf(columnText, "columns", 1, shape.columns);

    CSnsCohDatazq made;
    if (cxc::makePart(made, *source, allOf(slices), fromZero(rows), fromZero(columns)) == 0)
        throw Error(options.out + ": not enough memory");
    describe(made, *source, slices, options);
    saveRecord(made, options.out, options.force);
    console.out << printable(options.out) << ": " << sizeOf(made) << '\n';
}

}  // namespace

void addSelect(CLI::App& app, const Console& console) {
    auto options = std::make_shared<Options>();
    CLI::App* const command =
        app.add_subcommand("select", "Some slices and pairs of a dataset, as a dataset");
    command->add_option("FILE", options->in, "Dataset")->required();
    addMember(command, options->member);
    command->add_option("-o,--output", options->out, "The result")->required()->check(notEmpty());
    command->add_option("--slices", options->slices, "FIRST-LAST, both included, from 0")
        ->check(notEmpty());
    command
        ->add_option("--sensors", options->sensors,
                     "Rows and columns, from 1, such as 1,3,5-8, in this order")
        ->check(notEmpty());
    command->add_option("--rows", options->rows, "Row sensors, where they are not the columns'")
        ->check(notEmpty());
    command->add_option("--columns", options->columns, "Column sensors")->check(notEmpty());
    command->add_flag("--force", options->force, "Replace an existing output");
    command->callback([options, &console] { select(*options, console); });
}

}  // namespace tool
