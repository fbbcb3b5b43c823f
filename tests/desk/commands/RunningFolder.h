#pragma once

#include "desk/commands/NewFolder.h"
#include "desk/commands/RunDesk.h"
#include "tests/support/TempFolder.h"
#include "tests/support/TestSocket.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <chrono>
#include <filesystem>
#include <functional>
#include <optional>
#include <regex>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

namespace desk {

/// A copy of the demo folder, run in this process. The main loop calls the steps of a test.
class CRunningFolder : public testing::Test {
protected:
    void SetUp() override {
        ASSERT_EQ(runNew(folder.path("desk"), false, out, out), 0);
        // Another test may use the demo's port at the same time.
        const std::string strategies = folder.read("desk/strategies.toml");
        ASSERT_NE(strategies.find(":15150"), std::string::npos);
        static const std::regex kPort(":15150");
        folder.write("desk/strategies.toml",
                     std::regex_replace(strategies, kPort, ":" + std::to_string(socketPort)));
    }

    /// Replaces the first occurrence of a text in a file.
    void change(const char* file, const std::string& from, const std::string& to) const {
        std::string text = folder.read(file);
        ASSERT_NE(text.find(from), std::string::npos) << file;
        folder.write(file, text.replace(text.find(from), from.size(), to));
    }

    /// Creates a pipe at an order file's path. No check refuses it, but no strategy can start with it.
    void block(const char* name) const {
        std::filesystem::create_directories(std::filesystem::path(folder.path(name)).parent_path());
        ASSERT_EQ(::mkfifo(folder.path(name).c_str(), 0600), 0);
    }

    std::string journal() const { return folder.read("desk/journal.jsonl"); }
    bool has(const std::string& text) const { return journal().find(text) != std::string::npos; }

    /// Runs the desk. Each step is called until it returns true; then the next step follows. Ends after one
    /// minute at the latest, so that a step that never succeeds makes the test fail instead of hang.
    int run(std::vector<std::function<bool()>> steps) {
        const auto end = std::chrono::steady_clock::now() + std::chrono::minutes(1);
        std::size_t next = 0;
        bool isStarting = true;
        return runDesk(folder.path("desk"), std::nullopt, out, [&] {
            if (std::exchange(isStarting, false)) return true; // the desk asks once before it trades
            if (next < steps.size() && steps[next]()) ++next;
            return next < steps.size() && std::chrono::steady_clock::now() < end;
        });
    }

    const unsigned short socketPort = freePort();
    CTempFolder folder;
    std::ostringstream out;
};

} // namespace desk
