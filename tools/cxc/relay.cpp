#include "tools/cxc/relay.h"

#include <limits>
#include <thread>
#include <utility>

namespace tool {
namespace {

constexpr __int64 allRows = std::numeric_limits<__int64>::max();

}  // namespace

void Turn::beginRow(__int64 row) {
    m_relay.pass(m_file, row);
    m_relay.waitBehind(m_file, row + 1);
}

Relay::Relay(std::size_t files, Work work)
    : m_work(std::move(work)), m_passed(files, 0), m_failed(files) {}

std::size_t Relay::run(unsigned threads, const std::function<void(std::size_t file)>& begin) {
    std::vector<std::thread> others;
    try {
        for (unsigned i = 1; i < threads && i < m_passed.size(); ++i)
            others.emplace_back([&] { work(begin); });
    } catch (const std::exception&) {
        // The threads that could be had are enough.
    }
    work(begin);
    for (std::thread& other : others)
        other.join();
    return m_failed;
}

void Relay::rethrow() const {
    if (m_failure != nullptr) std::rethrow_exception(m_failure);
}

void Relay::work(const std::function<void(std::size_t file)>& begin) {
    for (std::size_t file = 0; next(begin, file);) {
        try {
            Turn turn(*this, file);
            m_work(turn);
            waitBehind(file, allRows);
            pass(file, allRows);
        } catch (const Ended&) {
            return;
        } catch (...) {
            const std::lock_guard<std::mutex> lock(m_mutex);
            noteFailure(file);
            return;
        }
    }
}

bool Relay::next(const std::function<void(std::size_t file)>& begin, std::size_t& file) {
    const std::lock_guard<std::mutex> lock(m_mutex);
    if (m_begun >= m_failed) return false;
    file = m_begun++;
    try {
        begin(file);
    } catch (...) {
        noteFailure(file);
        return false;
    }
    return true;
}

void Relay::pass(std::size_t file, __int64 rows) {
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_passed[file] = rows;
    m_changed.notify_all();
}

void Relay::waitBehind(std::size_t file, __int64 row) {
    if (file == 0) return;
    std::unique_lock<std::mutex> lock(m_mutex);
    m_changed.wait(lock, [&] { return m_passed[file - 1] >= row || m_failed < file; });
    if (m_failed < file) throw Ended();
}

void Relay::noteFailure(std::size_t file) {
    if (file > m_failed) return;
    m_failed = file;
    m_failure = std::current_exception();
    m_changed.notify_all();
}

}  // namespace tool
