#include "tools/cxc/app.h"
#include "tools/cxc/commands.h"
#include "tools/cxc/describe.h"
#include "tools/cxc/records.h"

#include <cstdio>
#include <iterator>

namespace tool {
namespace {

struct Options {
    std::vector<std::string> files;
    std::string classes[3];  // active, control, act-ctl
    std::string in;
    std::string out;
    std::string name;
    std::string info;
    bool force = false;
};

template <class Container>
void nameIt(Container& container, const Options& options) {
    container.m_pkgName = utf16(options.name.empty() ? stemOf(options.out) : options.name);
    container.m_pkgInfo = utf16(options.info);
}

void packPackage(const Options& options, const Console& console) {
    CSnsCohFacezq package;
    nameIt(package, options);
    for (int cls = 2; cls >= 0; --cls) {
        checkInterrupted();
        if (options.classes[cls].empty()) continue;
        package.setCohData(openDataset(options.classes[cls]).release(), cls);
        package.m_curntCohDataSetID = cls;
    }
    saveRecord(package, options.out, options.force);
    console.out << printable(options.out) << ": package of " << package.getTotalCohDataset()
                << '\n';
}

void packGroup(const Options& options, const Console& console) {
    const std::unique_ptr<CGroupMeegCxcFacezq, GroupReleaser> group(new CGroupMeegCxcFacezq);
    nameIt(*group, options);
    {
        Progress progress(console, options.files.size());
        for (const std::string& path : options.files) {
            progress.next(path);
            const int end = static_cast<int>(group->getTotalCohDataset());
            CSnsCohDatazq* const dataset = openDataset(path).release();
            if (group->setCohData(dataset, end) == 1) continue;
            delete dataset;
            throw Error(path + ": not enough memory");
        }
    }
    group->m_curntCohDataSetID = 0;
    saveRecord(*group, options.out, options.force);
    console.out << printable(options.out) << ": group of " << group->getTotalCohDataset() << '\n';
}

void pack(const Options& options, const Console& console) {
    const bool anyClass =
        !options.classes[0].empty() || !options.classes[1].empty() || !options.classes[2].empty();
    if (anyClass != options.files.empty())
        throw CLI::ValidationError(
            "either --active, --control and --act-ctl for a package, or files for a group");
    requireFree(options.out, options.force);
    if (anyClass)
        packPackage(options, console);
    else
        packGroup(options, console);
}

// "004" so that folders list them in order.
std::string padded(const std::string& label) {
    const std::size_t digits = 3;
    const bool isNumber = label.find_first_not_of("0123456789") == std::string::npos;
    return isNumber && label.size() < digits ? std::string(digits - label.size(), '0') + label
                                             : label;
}

void unpack(const Options& options, const Console& console) {
    const Record record(options.in);
    if (record.dataset() != nullptr) throw Error(options.in + ": is a dataset already");
    const std::vector<Member> members = record.members();
    if (members.empty()) throw Error(options.in + ": holds no dataset");
    std::vector<Output> outputs;
    for (const Member& member : members) {
        const std::string name = stemOf(options.in) + "_" + padded(member.label) + ".cxc";
        outputs.push_back({member.dataset, inFolder(options.out, name)});
        requireFree(outputs.back().path, options.force);
    }
    saveAll(outputs, options.force);
    for (const Output& output : outputs)
        console.out << printable(output.path) << ": " << sizeOf(*output.dataset) << '\n';
}

}  // namespace

void addPack(CLI::App& app, const Console& console) {
    auto options = std::make_shared<Options>();
    CLI::App* const command =
        app.add_subcommand("pack", "Datasets as a package of classes, or as a group in one file");
    command->add_option("FILE", options->files, "Datasets of a group, in this order");
    const char* const names[] = {"--active", "--control", "--act-ctl"};
    for (std::size_t cls = 0; cls < std::size(names); ++cls) {
        command->add_option(names[cls], options->classes[cls], "Dataset of a package")
            ->check(notEmpty());
    }
    command->add_option("-o,--output", options->out, "The package or group")
        ->required()
        ->check(notEmpty());
    command->add_option("--name", options->name, "Its name; default: that of the file");
    command->add_option("--info", options->info, "Its descriptive text");
    command->add_flag("--force", options->force, "Replace an existing output");
    command->callback([options, &console] { pack(*options, console); });
}

void addUnpack(CLI::App& app, const Console& console) {
    auto options = std::make_shared<Options>();
    options->out = ".";
    CLI::App* const command =
        app.add_subcommand("unpack", "The datasets of a package or group as files of their own");
    command->add_option("FILE", options->in, "Package or group")->required();
    command->add_option("-d,--directory", options->out, "An existing folder; default: this one")
        ->check(notEmpty());
    command->add_flag("--force", options->force, "Replace existing outputs");
    command->callback([options, &console] { unpack(*options, console); });
}

}  // namespace tool
