#include "tests/support/DialogScript.h"

#include <stdexcept>

namespace test {
namespace {

using Lock = std::lock_guard<std::mutex>;

// A dialog without an answer is cancelled.
template <class Answer>
Answer takeFirst(std::deque<Answer>& answers, int& unexpected) {
    if (answers.empty()) {
        ++unexpected;
        return Answer();
    }
    const Answer first = answers.front();
    answers.pop_front();
    return first;
}

template <class Facts>
Facts lastOf(const std::vector<Facts>& facts) {
    if (facts.empty()) throw std::logic_error("no dialog has been shown");
    return facts.back();
}

}  // namespace

void FileDialogScript::add(const FileDialogAnswer& answer) {
    const Lock lock(m_mutex);
    m_answers.push_back(answer);
}

void FileDialogScript::choose(const std::filesystem::path& path) {
    add({true, path, true});
}

void FileDialogScript::chooseUnlessItExists(const std::filesystem::path& path) {
    add({true, path, false});
}

void FileDialogScript::acceptProposed() {
    add({true, std::nullopt, true});
}

void FileDialogScript::cancel() {
    add({});
}

FileDialogFacts FileDialogScript::last() const {
    const Lock lock(m_mutex);
    return lastOf(m_facts);
}

int FileDialogScript::shown() const {
    const Lock lock(m_mutex);
    return static_cast<int>(m_facts.size());
}

int FileDialogScript::unexpected() const {
    const Lock lock(m_mutex);
    return m_unexpected;
}

int FileDialogScript::unused() const {
    const Lock lock(m_mutex);
    return static_cast<int>(m_answers.size());
}

FileDialogAnswer FileDialogScript::take() {
    const Lock lock(m_mutex);
    return takeFirst(m_answers, m_unexpected);
}

void FileDialogScript::report(const FileDialogFacts& facts) {
    const Lock lock(m_mutex);
    m_facts.push_back(facts);
}

void FileDialogScript::amendLast(const FileDialogFacts& facts) {
    const Lock lock(m_mutex);
    m_facts.back() = facts;
}

void ColorDialogScript::add(const Answer& answer) {
    const Lock lock(m_mutex);
    m_answers.push_back(answer);
}

void ColorDialogScript::choose(COLORREF color) {
    add({true, color});
}

void ColorDialogScript::acceptInitial() {
    add({true, std::nullopt});
}

void ColorDialogScript::cancel() {
    add({});
}

ColorDialogFacts ColorDialogScript::last() const {
    const Lock lock(m_mutex);
    return lastOf(m_facts);
}

int ColorDialogScript::shown() const {
    const Lock lock(m_mutex);
    return static_cast<int>(m_facts.size());
}

int ColorDialogScript::unexpected() const {
    const Lock lock(m_mutex);
    return m_unexpected;
}

int ColorDialogScript::unused() const {
    const Lock lock(m_mutex);
    return static_cast<int>(m_answers.size());
}

ColorDialogScript::Answer ColorDialogScript::take() {
    const Lock lock(m_mutex);
    return takeFirst(m_answers, m_unexpected);
}

void ColorDialogScript::report(const ColorDialogFacts& facts) {
    const Lock lock(m_mutex);
    m_facts.push_back(facts);
}

}  // namespace test
