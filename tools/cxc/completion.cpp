#include "tools/cxc/commands.h"

#include <memory>

namespace tool {
namespace {

std::string optionsOf(const CLI::App& command) {
    std::string words;
    for (const CLI::Option* const option : command.get_options()) {
        for (const std::string& name : option->get_lnames())
            words += (words.empty() ? "--" : " --") + name;
    }
    return words;
}

// Bash completes commands and options by itself and files in its own way.
void printBash(const CLI::App& app, std::ostream& out) {
    std::string commands;
    std::string cases;
    for (const CLI::App* const command : app.get_subcommands({})) {
        commands += (commands.empty() ? "" : " ") + command->get_name();
        cases += "    " + command->get_name() + ") words=\"" + optionsOf(*command) + "\" ;;\n";
    }
    out << "# Completion of cxc; in ~/.bashrc: eval \"$(cxc completion bash)\"\n"
           "_cxc() {\n"
           "  local current=${COMP_WORDS[COMP_CWORD]} words=\"\"\n"
           "  COMPREPLY=()\n"
           "  if [ \"$COMP_CWORD\" -eq 1 ]; then\n"
           "    words=\""
        << commands << ' ' << optionsOf(app)
        << "\"\n"
           "  elif [[ $current == -* ]]; then\n"
           "    case ${COMP_WORDS[1]} in\n"
        << cases
        << "    esac\n"
           "  fi\n"
           "  [ -n \"$words\" ] && mapfile -t COMPREPLY < <(compgen -W \"$words\" -- "
           "\"$current\")\n"
           "}\n"
           "complete -o default -F _cxc cxc\n";
}

void print(const CLI::App& app, const std::string& shell, std::ostream& out) {
    // Zsh takes bash's completions.
    if (shell == "zsh")
        out << "autoload -U +X bashcompinit && bashcompinit\n"
               "autoload -U +X compinit && compinit\n";
    printBash(app, out);
}

}  // namespace

void addCompletion(CLI::App& app, const Console& console) {
    auto shell = std::make_shared<std::string>();
    CLI::App* const command =
        app.add_subcommand("completion", "Completion of this program's words for a shell");
    command->add_option("SHELL", *shell, "bash or zsh")
        ->required()
        ->check(CLI::IsMember({"bash", "zsh"}));
    command->callback([shell, &app, &console] { print(app, *shell, console.out); });
}

}  // namespace tool
