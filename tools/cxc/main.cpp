#include "tools/cxc/app.h"
#include "tools/cxc/commands.h"

#include <iostream>
#include <string>
#include <vector>

#if defined(_WIN32)
#include <io.h>
#else
#include <unistd.h>
#endif

namespace {

int runWith(const std::vector<std::string>& arguments, bool bars) {
    tool::watchInterrupts();
    const int code = tool::run(arguments, std::cout, std::cerr, bars);
    std::cout.flush();
    if (std::cout) return code;
    std::cerr << "cxc: the output cannot be written\n";
    return tool::failed;
}

}  // namespace

#if defined(_WIN32)

int wmain(int count, wchar_t** values) {
    const tool::App application;
    if (!AfxWinInit(GetModuleHandle(nullptr), nullptr, GetCommandLine(), 0)) return tool::failed;
    SetConsoleOutputCP(CP_UTF8);
    std::vector<std::string> arguments;
    for (int i = 1; i < count; ++i)
        arguments.push_back(tool::utf8(values[i]));
    return runWith(arguments, _isatty(2) != 0);
}

#else

int main(int count, char** values) {
    const std::vector<std::string> arguments(values + (count > 0 ? 1 : 0), values + count);
    return runWith(arguments, isatty(STDERR_FILENO) != 0);
}

#endif
