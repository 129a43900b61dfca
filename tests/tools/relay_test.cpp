// Work on several files at once whose rows are taken in order.
#include "tools/cxc/relay.h"

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <mutex>
#include <random>
#include <stdexcept>
#include <string>
#include <thread>
#include <utility>
#include <vector>

namespace {

using tool::Relay;
using tool::Turn;

void nothing(std::size_t) {}

// Now and then gives way to the other threads, so that they come in many orders.
void dawdle(std::mt19937& random) {
    if (random() % 4 == 0) std::this_thread::sleep_for(std::chrono::microseconds(random() % 200));
}

// Takes so many rows of each file on so many threads; returns for each row the files in the order
// in which they took it.
std::vector<std::vector<std::size_t>> order(const std::vector<__int64>& rows, unsigned threads) {
    std::vector<std::vector<std::size_t>> taken(64);
    Relay relay(rows.size(), [&](Turn& turn) {
        std::mt19937 random(static_cast<unsigned>(turn.file()));
        for (__int64 r = 0; r < rows[turn.file()]; ++r) {
            dawdle(random);
            turn.beginRow(r);
            taken[static_cast<std::size_t>(r)].push_back(turn.file());
        }
    });
    EXPECT_EQ(relay.run(threads, nothing), rows.size());
    relay.rethrow();
    return taken;
}

TEST(Relay, EveryRowIsTakenInTheOrderOfTheFilesOnAnyNumberOfThreads) {
    const std::vector<__int64> rows = {20, 3, 0, 60, 7, 1, 40, 40, 5, 64, 20, 20};
    for (const unsigned threads : {1u, 2u, 3u, 4u, 20u}) {
        const auto taken = order(rows, threads);
        for (std::size_t r = 0; r < taken.size(); ++r) {
            std::vector<std::size_t> expected;
            for (std::size_t file = 0; file < rows.size(); ++file) {
                if (static_cast<__int64>(r) < rows[file]) expected.push_back(file);
            }
            EXPECT_EQ(taken[r], expected) << "row " << r << " on " << threads << " threads";
        }
    }
}

TEST(Relay, FilesAreWorkedOnAtTheSameTime) {
    // The second row of the first file waits for the first row of the second.
    std::atomic<bool> begun{false};
    Relay relay(2, [&](Turn& turn) {
        turn.beginRow(0);
        if (turn.file() == 1) {
            begun = true;
            return;
        }
        turn.beginRow(1);
        while (!begun)
            std::this_thread::yield();
    });
    EXPECT_EQ(relay.run(2, nothing), 2u);
}

TEST(Relay, FilesBeginInOrderAndOnce) {
    std::vector<std::size_t> begun;
    Relay relay(9, [](Turn&) {});
    relay.run(4, [&](std::size_t file) { begun.push_back(file); });
    EXPECT_EQ(begun, (std::vector<std::size_t>{0, 1, 2, 3, 4, 5, 6, 7, 8}));
}

TEST(Relay, NoFilesAreNoWork) {
    Relay relay(0, [](Turn&) { FAIL(); });
    EXPECT_EQ(relay.run(4, nothing), 0u);
    relay.rethrow();
}

TEST(Relay, TheFirstFailureInOrderIsTheOneToldAndFilesBeforeItAreFinished) {
    for (const unsigned threads : {1u, 2u, 4u}) {
        for (unsigned seed = 0; seed < 20; ++seed) {
            std::mutex mutex;
            std::vector<std::size_t> finished;
            Relay relay(8, [&](Turn& turn) {
                std::mt19937 random(static_cast<unsigned>(turn.file()) + 100 * seed);
                // A later file fails at once, an earlier one late.
                if (turn.file() == 5) throw std::runtime_error("5");
                for (__int64 r = 0; r < 5; ++r) {
                    dawdle(random);
                    turn.beginRow(r);
                }
                if (turn.file() == 3) throw std::runtime_error("3");
                const std::lock_guard<std::mutex> lock(mutex);
                finished.push_back(turn.file());
            });
            EXPECT_EQ(relay.run(threads, nothing), 3u);
            std::string told;
            try {
                relay.rethrow();
            } catch (const std::runtime_error& e) {
                told = e.what();
            }
            EXPECT_EQ(told, "3");
            EXPECT_EQ(finished, (std::vector<std::size_t>{0, 1, 2}));
        }
    }
}

TEST(Relay, AFileThatCannotBeginEndsTheWork) {
    Relay relay(4, [](Turn& turn) { turn.beginRow(0); });
    EXPECT_EQ(relay.run(2,
                        [](std::size_t file) {
                            if (file == 2) throw std::runtime_error("stop");
                        }),
              2u);
    EXPECT_THROW(relay.rethrow(), std::runtime_error);
}

TEST(Relay, AnEarlierFailureComesBeforeAFileThatCannotBegin) {
    std::atomic<bool> refused{false};
    Relay relay(3, [&](Turn& turn) {
        turn.beginRow(0);
        if (turn.file() != 0) return;
        // Where the system has no three threads, the third file never begins.
        for (int i = 0; i < 5000 && !refused; ++i)
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
        throw std::logic_error("the first");
    });
    EXPECT_EQ(relay.run(3,
                        [&](std::size_t file) {
                            if (file != 2) return;
                            refused = true;
                            throw std::runtime_error("the third");
                        }),
              0u);
    EXPECT_THROW(relay.rethrow(), std::logic_error);
}

}  // namespace
