// What a test does with the next file or colour dialog, and what it has seen of the last one.
//
// Headless, the script is asked by the application's policy. On Windows a thread of the test
// program works the real dialogs as a user would: it reads what they show, types and presses
// buttons. The facts are the same on both.
#pragma once

#include "framework.h"

#include <deque>
#include <filesystem>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

namespace test {

struct FileDialogFacts {
    bool open = false;                 // to open, otherwise to save
    std::string proposed;              // file name at the start, UTF-8
    std::vector<std::string> filters;  // texts to choose from
    int filter = -1;                   // index of the chosen one, from 0; -1: none
    bool askedToReplace = false;       // whether it asked before replacing a file
    bool refused = false;              // whether it did not take the typed name
};

struct FileDialogAnswer {
    bool accept = false;
    std::optional<std::filesystem::path> path;  // none: the proposed name stays
    bool replace = true;                        // answer to the question of an existing file
};

class FileDialogScript {
public:
    /// Types the path and presses OK; an existing file may be replaced.
    void choose(const std::filesystem::path& path);
    /// The same, but an existing file may not be replaced: the dialog is cancelled then.
    void chooseUnlessItExists(const std::filesystem::path& path);
    void acceptProposed();
    void cancel();

    /// The last dialog. Requires that one was shown.
    FileDialogFacts last() const;
    std::string lastProposed() const { return last().proposed; }
    /// Dialogs seen, and those among them that no answer was given for; they are cancelled.
    int shown() const;
    int unexpected() const;
    /// Answers that no dialog has taken.
    int unused() const;

    // For the side that works the dialogs.
    FileDialogAnswer take();
    void report(const FileDialogFacts& facts);
    void amendLast(const FileDialogFacts& facts);

private:
    void add(const FileDialogAnswer& answer);

    mutable std::mutex m_mutex;
    std::deque<FileDialogAnswer> m_answers;
    std::vector<FileDialogFacts> m_facts;
    int m_unexpected = 0;
};

struct ColorDialogFacts {
    COLORREF initial = 0;   // colour at the start
    bool fullOpen = false;  // whether the part for custom colours was open
};

class ColorDialogScript {
public:
    void choose(COLORREF color);
    /// Presses OK without a choice.
    void acceptInitial();
    void cancel();

    /// The last dialog. Requires that one was shown.
    ColorDialogFacts last() const;
    int shown() const;
    int unexpected() const;
    int unused() const;

    struct Answer {
        bool accept = false;
        std::optional<COLORREF> color;
    };
    // For the side that works the dialogs.
    Answer take();
    void report(const ColorDialogFacts& facts);

private:
    void add(const Answer& answer);

    mutable std::mutex m_mutex;
    std::deque<Answer> m_answers;
    std::vector<ColorDialogFacts> m_facts;
    int m_unexpected = 0;
};

}  // namespace test
