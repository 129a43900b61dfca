#include "tools/cxc/app.h"
#include "tools/cxc/commands.h"
#include "tools/cxc/describe.h"
#include "tools/cxc/records.h"

#include <algorithm>
#include <array>

namespace tool {
namespace {

constexpr std::array<const char*, 4> operations = {"subtract", "add", "multiply", "divide"};

struct Options {
    std::string active;
    std::string control;
    std::string operation = operations.front();
    std::string out;
    bool force = false;
};

void warnOfDifferences(const Options& options, const CSnsCohFacezq& package,
                       const Console& console) {
    std::vector<std::string> found =
        differences(Traits(*package.m_cohControl), Traits(*package.m_cohActive));
    // Control becomes one slice, so that its length does not have to agree; that is told apart.
    const auto gone = std::remove_if(found.begin(), found.end(), [](const std::string& text) {
        return text.rfind("length", 0) == 0;
    });
    found.erase(gone, found.end());
    for (const std::string& text : found)
        console.warn(options.control + " differs from " + options.active + " in " + text +
                     "; pairs are taken by position, the result carries the description of Active");
}

// The library says the same, but after all that is told before.
void requireSameSize(const Options& options, const CSnsCohFacezq& package) {
    const CSnsCohDatazq& active = *package.m_cohActive;
    const CSnsCohDatazq& control = *package.m_cohControl;
    if (active.m_snsRowTotal == control.m_snsRowTotal &&
        active.m_snsColTotal == control.m_snsColTotal)
        return;
    throw Error(options.control + ": has " + sizeOf(control) + ", " + options.active + " has " +
                sizeOf(active) + "; the numbers of sensors must be the same");
}

void describe(CSnsCohFacezq& package, const Options& options, __int64 controlSlices) {
    CSnsCohDatazq& made = *package.m_cohActCtl;
    const CSnsCohDatazq& active = *package.m_cohActive;
    describeLike(made, active);
    made.m_cxcName = active.m_cxcName + _T(" Act-Ctl");
    made.m_cxcCmptInfo = _T("");
    std::string text = "Active " + options.operation + " Control";
    if (controlSlices > 1)
        text += ", Control being the mean of its " + std::to_string(controlSlices) + " slices";
    addToNote(made, text + "\nActive: " + options.active + "\nControl: " + options.control + "\n" +
                        utf8(active.m_cxcCmptInfo));
    made.checkDataRange();
}

void combine(const Options& options, const Console& console) {
    requireFree(options.out, options.force);
    CSnsCohFacezq package;
    package.setCohData(openBacked(options.active).release(), 0);
    checkInterrupted();
    package.setCohData(openBacked(options.control).release(), 1);
    requireSameSize(options, package);
    warnOfDifferences(options, package, console);
    const __int64 slices = package.m_cohControl->m_cohTimTotal;
    if (slices > 1)
        console.err << "cxc: " << printable(options.control) << ": its " << slices
                    << " slices are reduced to their mean, which every slice of Active meets\n";
    const auto chosen = std::find(operations.begin(), operations.end(), options.operation);
    package.m_actCtlOperation = static_cast<int>(chosen - operations.begin());
    if (package.doAct_Ctl_operation() == 0)
        throw Error(options.active + ", " + options.control + ": " +
                    lastMessage("not enough memory, or no values"));
    describe(package, options, slices);
    package.m_curntCohDataSetID = 2;
    package.m_pkgName = package.m_cohActive->m_cxcName;
    package.m_pkgInfo = utf16("Active " + options.active + ", Control " + options.control);
    if (endingOf(options.out) == ".cxcpkg")
        saveRecord(package, options.out, options.force);
    else
        saveRecord(*package.m_cohActCtl, options.out, options.force);
    console.out << printable(options.out) << ": " << sizeOf(*package.m_cohActCtl) << '\n';
}

}  // namespace

void addCombine(CLI::App& app, const Console& console) {
    auto options = std::make_shared<Options>();
    CLI::App* const command = app.add_subcommand(
        "combine",
        "Active with Control, value by value: every slice of Active with the one of Control, which "
        "is first reduced to its mean over time where it has several");
    command->add_option("ACTIVE", options->active, "Dataset")->required();
    command->add_option("CONTROL", options->control, "Dataset")->required();
    command
        ->add_option("-o,--output", options->out,
                     "The result, or with the ending .cxcpkg the package of all three")
        ->required()
        ->check(notEmpty());
    command
        ->add_option("--operation", options->operation,
                     "subtract, add, multiply or divide; default: subtract; a division by 0 "
                     "gives 0")
        ->check(CLI::IsMember(operations));
    command->add_flag("--force", options->force, "Replace an existing output");
    command->callback([options, &console] { combine(*options, console); });
}

}  // namespace tool
