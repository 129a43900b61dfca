// What every command writes to, and how it ends early.
#pragma once

#include <ostream>
#include <stdexcept>
#include <string>

namespace tool {

/// Exit codes, for scripts.
enum Exit { done = 0, failed = 1, wrongUsage = 2, disagrees = 3, interrupted = 130 };

/// Ends a command with one line for the user; nothing is left half-written.
class Error : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// The user interrupted the command.
class Interrupted : public std::exception {};

/// Where a command writes: results to `out`, all else to `err`.
struct Console {
    std::ostream& out;
    std::ostream& err;
    bool bars;  // a person watches err

    void warn(const std::string& text) const;
};

/// Text of a file without what would steer the terminal.
std::string printable(const std::string& text);

/// A bar while `total` files are worked on, where somebody watches; gone with the object.
class Progress {
public:
    Progress(const Console& console, std::size_t total);
    ~Progress();
    Progress(const Progress&) = delete;
    Progress& operator=(const Progress&) = delete;

    /// The next file begins. Throws Interrupted after an interrupt.
    void next(const std::string& name);

private:
    const Console& m_console;
    std::size_t m_total;
    std::size_t m_begun = 0;
    std::size_t m_shown = 0;  // characters on the line
};

/// Notes an interrupt (Ctrl-C, a polite request to end, the loss of the terminal) from now on,
/// instead of dying of it.
void watchInterrupts();
/// Throws Interrupted after an interrupt.
void checkInterrupted();
/// For tests: as if the user had interrupted, or not.
void setInterrupted(bool value);

}  // namespace tool
