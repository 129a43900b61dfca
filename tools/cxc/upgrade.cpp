#include "tools/cxc/commands.h"
#include "tools/cxc/records.h"

namespace tool {
namespace {

struct Options {
    std::vector<std::string> files;
    std::string out;
    bool inPlace = false;
    bool force = false;
};

constexpr DWORD newest[] = {20160311, 20121016, 20180725};  // by kind

void upgrade(const std::string& in, const std::string& out, bool force, const Console& console) {
    requireFree(out, force);
    const Record record(in);
    const DWORD version = newest[static_cast<int>(record.heading().kind)];
    if (record.heading().version == version && in == out) {
        console.out << printable(in) << ": version " << version << " already\n";
        return;
    }
    if (record.trailing() > 0)
        throw Error(in + ": " + std::to_string(record.trailing()) +
                    " bytes follow the record and would be lost");
    if (record.dataset() != nullptr) saveRecord(*record.dataset(), out, force);
    if (record.package() != nullptr) saveRecord(*record.package(), out, force);
    if (record.group() != nullptr) saveRecord(*record.group(), out, force);
    console.out << printable(out) << ": version " << record.heading().version << " to " << version
                << '\n';
}

void upgradeAll(const Options& options, const Console& console) {
    if (options.inPlace == !options.out.empty() || (!options.inPlace && options.files.size() > 1))
        throw CLI::ValidationError("either one file and -o OUTPUT, or --in-place and files");
    if (!options.inPlace)
        return upgrade(options.files.front(), options.out, options.force, console);
    Progress progress(console, options.files.size());
    for (const std::string& path : options.files) {
        progress.next(path);
        upgrade(path, path, true, console);
    }
}

}  // namespace

void addUpgrade(CLI::App& app, const Console& console) {
    auto options = std::make_shared<Options>();
    CLI::App* const command =
        app.add_subcommand("upgrade", "Files of older versions as files of the newest one");
    command->add_option("FILE", options->files, "Files")->required();
    command->add_option("-o,--output", options->out, "The result, for one file")->check(notEmpty());
    command->add_flag("--in-place", options->inPlace, "Replace each file by its newer self");
    command->add_flag("--force", options->force, "Replace an existing output");
    command->callback([options, &console] { upgradeAll(*options, console); });
}

}  // namespace tool
