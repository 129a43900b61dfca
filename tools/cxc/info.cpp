#include "tools/cxc/app.h"
#include "tools/cxc/commands.h"
#include "tools/cxc/describe.h"
#include "tools/cxc/records.h"

#include <nlohmann/json.hpp>

#include <cmath>
#include <sstream>

namespace tool {
namespace {

using Json = nlohmann::ordered_json;

// JSON knows no infinities and no NaN.
Json number(double value) {
    return std::isfinite(value) ? Json(value) : Json(nullptr);
}

Json describe(CSnsCohDatazq& dataset) {
    Json json;
    json["name"] = utf8(dataset.m_cxcName);
    json["slices"] = dataset.m_cohTimTotal;
    json["rows"] = dataset.m_snsRowTotal;
    json["columns"] = dataset.m_snsColTotal;
    json["band_hz"] = {number(dataset.m_headerReal0), number(dataset.m_headerReal1)};
    json["slices_per_second"] = number(dataset.m_samplingRate);
    json["latency"] = {number(dataset.m_anaLatencyBegin), number(dataset.m_anaLatencyEnd)};
    json["channel_type"] = utf8(dataset.getChnlTypeIDname());
    json["selected_slices"] = {dataset.m_selectBegin, dataset.m_selectEnd};
    json["shown"] = dataset.m_tscsInfo;
    json["rms_normalized"] = dataset.m_rmsNormalized != 0;
    json["values"] = nullptr;
    if (dataset.m_mCC != nullptr && dataset.checkDataRange() != 0) {
        json["values"] = {{"min", number(dataset.m_dataMin)},
                          {"max", number(dataset.m_dataMax)},
                          {"mean", number(dataset.m_dataMean)}};
    }
    const Traits traits(dataset);
    json["row_channels"] = traits.channels.rows;
    json["column_channels"] = traits.channels.columns;
    json["pair_order"] = "row-major: row sensor first, column sensor second";
    json["computation"] = utf8(dataset.m_cxcCmptInfo);
    return json;
}

Json describe(const Record& record) {
    Json json;
    json["file"] = record.path();
    json["kind"] = nameOf(record.heading().kind);
    json["version"] = record.heading().version;
    json["bytes_after_the_record"] = record.trailing();
    if (const CSnsCohFacezq* const package = record.package()) {
        json["name"] = utf8(package->m_pkgName);
        json["info"] = utf8(package->m_pkgInfo);
        json["current"] = package->m_curntCohDataSetID;
    }
    if (const CGroupMeegCxcFacezq* const group = record.group()) {
        json["name"] = utf8(group->m_pkgName);
        json["info"] = utf8(group->m_pkgInfo);
        json["current"] = group->m_curntCohDataSetID;
    }
    json["datasets"] = Json::array();
    for (const Member& member : record.members()) {
        Json dataset = describe(*member.dataset);
        if (!member.label.empty()) dataset["member"] = member.label;
        json["datasets"].push_back(dataset);
    }
    return json;
}

void print(std::ostream& out, CSnsCohDatazq& dataset, const std::string& indent) {
    const auto line = [&](const std::string& text) { out << indent << printable(text) << '\n'; };
    line("name: " + utf8(dataset.m_cxcName));
    line("band: " + shortest(dataset.m_headerReal0) + " to " + shortest(dataset.m_headerReal1) +
         " Hz");
    line("slices per second: " + shortest(dataset.m_samplingRate));
    line("latency: " + shortest(dataset.m_anaLatencyBegin) + " to " +
         shortest(dataset.m_anaLatencyEnd));
    line("sensors: " + utf8(dataset.getChnlTypeIDname()));
    line("selected slices: " + std::to_string(dataset.m_selectBegin) + " to " +
         std::to_string(dataset.m_selectEnd));
    if (dataset.m_mCC != nullptr && dataset.checkDataRange() != 0)
        line("values: " + shortest(dataset.m_dataMin) + " to " + shortest(dataset.m_dataMax) +
             ", mean " + shortest(dataset.m_dataMean));
    line("computation:");
    std::istringstream note(utf8(dataset.m_cxcCmptInfo));
    for (std::string text; std::getline(note, text);)
        line("  " + text);
}

void print(std::ostream& out, const Record& record) {
    const std::vector<Member> members = record.members();
    out << printable(record.path()) << ": ";
    if (record.dataset() != nullptr) {
        out << sizeOf(*record.dataset()) << '\n';
        return print(out, *record.dataset(), "");
    }
    out << nameOf(record.heading().kind) << " of " << members.size()
        << (members.size() == 1 ? " dataset\n" : " datasets\n");
    const CString& name =
        record.package() != nullptr ? record.package()->m_pkgName : record.group()->m_pkgName;
    out << "name: " << printable(utf8(name)) << '\n';
    for (const Member& member : members) {
        out << member.label << ": " << sizeOf(*member.dataset) << '\n';
        print(out, *member.dataset, "  ");
    }
}

struct Options {
    std::vector<std::string> files;
    bool json = false;
};

void info(const Options& options, const Console& console) {
    Json all = Json::array();
    for (const std::string& path : options.files) {
        checkInterrupted();
        const Record record(path);
        if (options.json)
            all.push_back(describe(record));
        else
            print(console.out, record);
        if (record.trailing() > 0)
            console.warn(path + ": " + std::to_string(record.trailing()) +
                         " bytes follow the record");
    }
    // Texts of files may hold what is no UTF-8.
    const auto replace = Json::error_handler_t::replace;
    if (options.json) console.out << all.dump(2, ' ', false, replace) << '\n';
}

}  // namespace

void addInfo(CLI::App& app, const Console& console) {
    auto options = std::make_shared<Options>();
    CLI::App* const command = app.add_subcommand("info", "What files hold");
    command->add_option("FILE", options->files, "Files")->required();
    command->add_flag("--json", options->json, "A JSON array, one object for each file");
    command->callback([options, &console] { info(*options, console); });
}

}  // namespace tool
