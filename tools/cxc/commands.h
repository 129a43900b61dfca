// The commands: each adds itself to the parser and runs when it was chosen.
#pragma once

#include "tools/cxc/console.h"

#include <CLI/CLI.hpp>

#include <string>
#include <vector>

namespace tool {

/// The exit code that the chosen command leaves where nothing was thrown.
struct Outcome {
    int code = done;
};

void addInfo(CLI::App& app, const Console& console);
void addVerify(CLI::App& app, const Console& console, Outcome& outcome);
void addExport(CLI::App& app, const Console& console);
void addConvert(CLI::App& app, const Console& console);
void addUpgrade(CLI::App& app, const Console& console);
void addCombine(CLI::App& app, const Console& console);
void addAverage(CLI::App& app, const Console& console);
void addSummary(CLI::App& app, const Console& console);
void addSelect(CLI::App& app, const Console& console);
void addPack(CLI::App& app, const Console& console);
void addUnpack(CLI::App& app, const Console& console);
void addCompletion(CLI::App& app, const Console& console);

/// Gives a command the option that says which dataset of a package or group is meant.
void addMember(CLI::App* command, std::string& member);

/// Refuses an empty text, which a variable of a script that is not set gives.
const CLI::Validator& notEmpty();

/// Runs the command line `arguments` (without the program's name) and returns the exit code.
/// `bars`: a person watches err.
int run(const std::vector<std::string>& arguments, std::ostream& out, std::ostream& err, bool bars);

}  // namespace tool
