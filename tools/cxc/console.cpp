#include "tools/cxc/console.h"

#include <atomic>
#include <csignal>
#include <cstdio>

namespace tool {
namespace {

// Set by a signal, looked at by every thread.
std::atomic<bool> g_interrupted{false};
static_assert(std::atomic<bool>::is_always_lock_free, "a signal may not wait");

void noteInterrupt(int) {
    g_interrupted = true;
}

}  // namespace

void Console::warn(const std::string& text) const {
    err << "cxc: warning: " << printable(text) << '\n';
}

std::string printable(const std::string& text) {
    std::string safe;
    for (const char c : text) {
        const auto byte = static_cast<unsigned char>(c);
        if (byte >= 0x20 && byte != 0x7f) {
            safe += c;
            continue;
        }
        char code[5];
        static_cast<void>(std::snprintf(code, sizeof(code), "\\x%02x", byte));
        safe += code;
    }
    return safe;
}

Progress::Progress(const Console& console, std::size_t total)
    : m_console(console), m_total(total) {}

Progress::~Progress() {
    if (m_shown > 0) m_console.err << '\r' << std::string(m_shown, ' ') << '\r' << std::flush;
}

void Progress::next(const std::string& name) {
    checkInterrupted();
    ++m_begun;
    if (!m_console.bars || m_total < 2) return;
    constexpr std::size_t width = 30;
    const std::size_t full = (m_begun - 1) * width / m_total;
    std::string line = '[' + std::string(full, '#') + std::string(width - full, ' ') + "] " +
                       std::to_string(m_begun) + '/' + std::to_string(m_total) + ' ' +
                       printable(name);
    constexpr std::size_t longest = 79;
    if (line.size() > longest) line.resize(longest);
    const std::size_t shown = line.size();
    if (shown < m_shown) line.append(m_shown - shown, ' ');
    m_shown = shown;
    m_console.err << '\r' << line << std::flush;
}

void watchInterrupts() {
    // What cannot be watched ends the program as it always does.
    static_cast<void>(std::signal(SIGINT, noteInterrupt));
    static_cast<void>(std::signal(SIGTERM, noteInterrupt));
#if defined(SIGHUP)
    // The terminal is gone; under nohup that is no reason to end.
    if (std::signal(SIGHUP, noteInterrupt) == SIG_IGN)
        static_cast<void>(std::signal(SIGHUP, SIG_IGN));
#endif
}

void checkInterrupted() {
    if (g_interrupted) throw Interrupted();
}

void setInterrupted(bool value) {
    g_interrupted = value;
}

}  // namespace tool
