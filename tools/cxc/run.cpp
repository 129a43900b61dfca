#include "tools/cxc/app.h"
#include "tools/cxc/commands.h"

#include <new>

namespace tool {
namespace {

void describe(CLI::App& app) {
    app.description("Datasets of channel-by-channel coherence: looked at, checked, combined.");
    app.footer(
        "Files may be datasets (.cxc), packages (.cxcpkg) and groups (.cxcgrp) of any version; "
        "what "
        "a file is\nis found out from its first bytes. Slices are counted from 0, sensors from 1, "
        "as in the text export.\nOutputs are complete or not there; existing files are kept unless "
        "--force is given.\n\nExit codes: 0 done, 1 failed (one line on standard error), 2 wrong "
        "usage, 3 verify found something,\n130 interrupted.\n\nRecordings become datasets, and "
        "datasets pictures and other formats, with python -m cxc.");
    app.require_subcommand(1);
    app.set_version_flag("--version", CXC_VERSION);
    app.set_help_all_flag("--help-all", "Print the help of every command");
}

int complain(std::ostream& err, const std::string& text, int code) {
    err << "cxc: " << printable(text) << '\n';
    return code;
}

}  // namespace

void addMember(CLI::App* command, std::string& member) {
    command->add_option("--member", member,
                        "Of a package: active, control, act-ctl; of a group: 0, 1, ...");
}

const CLI::Validator& notEmpty() {
    static const CLI::Validator check(
        [](std::string& text) { return std::string(text.empty() ? "is empty" : ""); }, "");
    return check;
}

int run(const std::vector<std::string>& arguments, std::ostream& out, std::ostream& err,
        bool bars) {
    App application;
    const Console console{out, err, bars};
    Outcome outcome;
    CLI::App app("", "cxc");
    describe(app);
    addInfo(app, console);
    addVerify(app, console, outcome);
    addExport(app, console);
    addConvert(app, console);
    addUpgrade(app, console);
    addCombine(app, console);
    addAverage(app, console);
    addSummary(app, console);
    addSelect(app, console);
    addPack(app, console);
    addUnpack(app, console);
    addCompletion(app, console);
    try {
        // The parser takes them from the back.
        std::vector<std::string> reversed(arguments.rbegin(), arguments.rend());
        app.parse(reversed);
        out.flush();
        return outcome.code;
    } catch (const CLI::ParseError& e) {
        return app.exit(e, out, err) == 0 ? done : wrongUsage;
    } catch (const Error& e) {
        return complain(err, e.what(), failed);
    } catch (const Interrupted&) {
        return complain(err, "interrupted", interrupted);
    } catch (const std::bad_alloc&) {
        return complain(err, "not enough memory", failed);
    } catch (CException* e) {
        e->Delete();
        return complain(err, lastMessage("not enough memory"), failed);
    }
}

}  // namespace tool
