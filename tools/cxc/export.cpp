#include "cxcfile/text_export.h"

#include "tools/cxc/app.h"
#include "tools/cxc/commands.h"
#include "tools/cxc/describe.h"
#include "tools/cxc/records.h"

#include <algorithm>
#include <charconv>

namespace tool {
namespace {

// Comma-separated values, one line for each slice of each pair.
class Lines {
public:
    explicit Lines(CFile& file) : m_file(file) { m_text.reserve(most + room); }

    void add(const char* text) { m_text += text; }
    template <class Number>
    void add(Number number, char after) {
        char text[32];
        const auto end = std::to_chars(text, text + sizeof(text), number);
        m_text.append(text, end.ptr);
        m_text += after;
    }
    void endLine() {
        if (m_text.size() >= most) flush();
    }
    void flush() {
        m_file.Write(m_text.data(), static_cast<UINT>(m_text.size()));
        m_text.clear();
    }

private:
    static constexpr std::size_t most = 1 << 20;
    static constexpr std::size_t room = 256;

    CFile& m_file;
    std::string m_text;
};

void writePair(Lines& lines, CSnsCohDatazq& dataset, __int64 r, __int64 c) {
    const CWavChnlChnlDatazq& pair = pairOf(dataset, r, c);
    const __int64 slices =
        pair.m_data == nullptr ? 0 : std::min(pair.m_size, dataset.m_cohTimTotal);
    for (__int64 t = 0; t < slices; ++t) {
        lines.add(t, ',');
        if (dataset.m_samplingRate > 0.0)
            lines.add(dataset.getLatency4PtSecond(t), ',');
        else
            lines.add(",");
        lines.add(r + 1, ',');
        lines.add(c + 1, ',');
        lines.add(pair.m_chnlA, ',');
        lines.add(pair.m_chnlB, ',');
        lines.add(pair.m_data[t], '\n');
        lines.endLine();
    }
}

void writeCsv(CFile& file, CSnsCohDatazq& dataset) {
    Lines lines(file);
    lines.add("slice,latency,row,column,row_channel,column_channel,value\n");
    const Shape shape = shapeOf(dataset);
    for (__int64 r = 0; r < shape.rows; ++r) {
        checkInterrupted();
        for (__int64 c = 0; c < shape.columns; ++c)
            writePair(lines, dataset, r, c);
    }
    lines.flush();
}

void writeTextOf(CFile& file, CSnsCohDatazq& dataset, const std::string& from) {
    if (dataset.m_cxcName.IsEmpty()) dataset.m_cxcName = _T("CxC Data");
    if (!cxc::writeText(file, dataset))
        throw Error(from + ": its sizes do not allow a text, or there is not enough memory");
}

struct Options {
    std::string in;
    std::string out;
    std::string format;
    std::string member;
    bool force = false;
};

void writeAs(const std::string& format, CSnsCohDatazq& dataset, const Options& options) {
    writeWhole(options.out, options.force, [&](CFile& file) {
        if (format == "csv")
            writeCsv(file, dataset);
        else
            writeTextOf(file, dataset, options.in);
    });
}

void exportText(Options options) {
    if (options.out.empty())
        options.out = stemOf(options.in) + (options.format == "text" ? ".txt" : ".csv");
    requireFree(options.out, options.force);
    const Record record(options.in);
    writeAs(options.format, record.chosen(options.member), options);
}

void convert(const Options& options) {
    const std::string ending = endingOf(options.out);
    if (ending != ".cxc" && ending != ".csv" && ending != ".txt")
        throw Error(options.out +
                    ": writes .cxc, .csv and .txt; python -m cxc convert writes others");
    requireFree(options.out, options.force);
    const Record record(options.in);
    CSnsCohDatazq& dataset = record.chosen(options.member);
    if (ending == ".cxc")
        saveRecord(dataset, options.out, options.force);
    else
        writeAs(ending == ".csv" ? "csv" : "text", dataset, options);
}

void addCommon(CLI::App* command, Options& options) {
    addMember(command, options.member);
    command->add_flag("--force", options.force, "Replace an existing output");
}

}  // namespace

void addExport(CLI::App& app, const Console&) {
    auto options = std::make_shared<Options>();
    options->format = "text";
    CLI::App* const command = app.add_subcommand(
        "export",
        "Values as text: the library's blocks (UTF-16, a block for each slice), or CSV, a line "
        "for each slice of each pair: pairs row by row, the row sensor first");
    command->add_option("FILE", options->in, "A file")->required();
    command->add_option("-o,--output", options->out, "Default: the file's name with .txt or .csv")
        ->check(notEmpty());
    command->add_option("--format", options->format, "text or csv; default: text")
        ->check(CLI::IsMember({"text", "csv"}));
    addCommon(command, *options);
    command->callback([options] { exportText(*options); });
}

void addConvert(CLI::App& app, const Console&) {
    auto options = std::make_shared<Options>();
    CLI::App* const command = app.add_subcommand(
        "convert",
        "A dataset, also one of a package or group, as .cxc, .csv or .txt, by the output's ending");
    command->add_option("IN", options->in, "A file")->required();
    command->add_option("OUT", options->out, "The output")->required()->check(notEmpty());
    addCommon(command, *options);
    command->callback([options] { convert(*options); });
}

}  // namespace tool
