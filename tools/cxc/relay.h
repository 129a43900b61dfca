// Files that are read side by side and taken in order, row by row.
#pragma once

#include "framework.h"

#include <condition_variable>
#include <cstddef>
#include <exception>
#include <functional>
#include <mutex>
#include <vector>

namespace tool {

class Relay;

/// The place of one file in the order.
class Turn {
public:
    Turn(Relay& relay, std::size_t file) : m_relay(relay), m_file(file) {}

    std::size_t file() const { return m_file; }

    /// Before a row is taken, rows ascending: lets the next file have those below, and waits until
    /// the file before has passed this one. Ends the work where a file before has failed.
    void beginRow(__int64 row);

private:
    Relay& m_relay;
    std::size_t m_file;
};

/// Works on several files at the same time although each has to come after the one before. What
/// must be in order is a row: while one thread adds row 5 of the third file, another adds row 9 of
/// the second. So nothing is kept of any file, and results are those of one thread to the last bit.
class Relay {
public:
    /// Work on one file; called on several threads, for one file once.
    using Work = std::function<void(Turn& turn)>;

    Relay(std::size_t files, Work work);
    Relay(const Relay&) = delete;
    Relay& operator=(const Relay&) = delete;

    /// Works on all files on up to `threads` threads, this one among them. `begin` is called for
    /// each file in order, for one at a time.
    /// After a failure the files before it are finished still, and the number of the first file
    /// that failed is returned; else the number of files.
    std::size_t run(unsigned threads, const std::function<void(std::size_t file)>& begin);

    /// Throws what the first file that failed has thrown; returns where none has.
    void rethrow() const;

private:
    friend class Turn;

    class Ended {};  // a file before has failed

    void work(const std::function<void(std::size_t file)>& begin);
    bool next(const std::function<void(std::size_t file)>& begin, std::size_t& file);
    void pass(std::size_t file, __int64 rows);
    void waitBehind(std::size_t file, __int64 row);
    void noteFailure(std::size_t file);  // the mutex is held

    const Work m_work;
    std::mutex m_mutex;
    std::condition_variable m_changed;
    std::vector<__int64> m_passed;  // rows that the next file may take
    std::size_t m_begun = 0;
    std::size_t m_failed;
    std::exception_ptr m_failure;
};

}  // namespace tool
