#include "desk/host/Screen.h"

#include <gtest/gtest.h>

#include <chrono>
#include <future>

#include <fcntl.h>
#include <poll.h>
#include <unistd.h>

#include <regex>
#include <sstream>
#include <string>
#include <vector>

namespace desk {
namespace {

constexpr int kMinuteMs = 60000;

/// A pipe is the screen. The test may read it or not.
class Screen : public testing::Test {
protected:
    void SetUp() override { ASSERT_EQ(::pipe2(m_ends, O_CLOEXEC), 0); }
    void TearDown() override {
        closeReader();
        if (m_ends[1] >= 0) ::close(m_ends[1]);
    }

    int descriptor() const { return m_ends[1]; }
    void closeReader() {
        if (m_ends[0] >= 0) ::close(m_ends[0]);
        m_ends[0] = -1;
    }

    /// Reads until the line appears or the screen is closed. Returns all text that was read.
    std::string readUntil(const std::string& line) {
        std::string text;
        char bytes[4096];
        struct pollfd readable {
            m_ends[0], POLLIN, 0
        };
        while (text.find(line) == std::string::npos && ::poll(&readable, 1, kMinuteMs) > 0) {
            const ssize_t count = ::read(m_ends[0], bytes, sizeof bytes);
            if (count <= 0) break;
            text.append(bytes, static_cast<std::size_t>(count));
        }
        return text;
    }

    int m_ends[2] = {-1, -1};
};

std::string numbered(int number) {
    return "line " + std::to_string(number) + "\n";
}

TEST_F(Screen, ShowsLinesInTheirOrderAndTheLastBeforeItEnds) {
    std::string expected;
    {
        CScreen screen(descriptor(), CScreen::kQueueBytes, kMinuteMs);
        for (int i = 0; i < 100; ++i) {
            screen.stream() << "line " << i << '\n' << std::flush;
            expected += numbered(i);
        }
    }
    EXPECT_EQ(readUntil(numbered(99)), expected);
}

TEST_F(Screen, SeveralLinesMayBeFlushedTogether) {
    CScreen screen(descriptor());
    screen.stream() << "one\ntwo\nth" << std::flush << "ree\n" << std::flush;
    EXPECT_EQ(readUntil("three\n"), "one\ntwo\nthree\n");
}

TEST_F(Screen, UnreadScreenHoldsNobodyUpAndSaysHowManyLinesItDropped) {
    constexpr int kLines = 100000; // far more than the pipe and the queue can hold
    CScreen screen(descriptor(), 10000);
    for (int i = 0; i < kLines; ++i)
        screen.stream() << numbered(i) << std::flush;
    std::istringstream shown(readUntil(numbered(kLines - 1)));
    const std::regex notice(
        "\\((\\d+) lines? (are|is) missing here, because nobody read the screen; the journal has "
        "everything\\)");
    int next = 0;
    bool isAnyMissing = false;
    for (std::string line; std::getline(shown, line);) {
        std::smatch found;
        if (std::regex_match(line, found, notice)) {
            next += std::stoi(found[1]);
            isAnyMissing = true;
        } else {
            ASSERT_EQ(line + '\n', numbered(next));
            ++next;
        }
    }
    EXPECT_EQ(next, kLines);
    EXPECT_TRUE(isAnyMissing);
}

TEST_F(Screen, EndOfAnUnreadScreenIsNotWaitedForBeyondThePatience) {
    constexpr int kMoreThanThePipeHolds = 1 << 19;
    const auto ended = std::async(std::launch::async, [this] {
        CScreen screen(descriptor(), CScreen::kQueueBytes, 0);
        screen.stream() << std::string(kMoreThanThePipeHolds, 'x') << '\n' << std::flush;
    });
    EXPECT_EQ(ended.wait_for(std::chrono::minutes(1)), std::future_status::ready);
}

TEST_F(Screen, ClosedPipeEndsTheShowingAndNothingElse) {
    closeReader();
    CScreen screen(descriptor(), CScreen::kQueueBytes, kMinuteMs);
    for (int i = 0; i < 1000; ++i)
        screen.stream() << numbered(i) << std::flush;
    EXPECT_TRUE(screen.stream().good());
}

TEST_F(Screen, LineLargerThanTheQueueIsShown) {
    CScreen screen(descriptor(), 10);
    screen.stream() << std::string(100, 'x') << '\n' << std::flush;
    EXPECT_EQ(readUntil("\n").size(), 101u);
}

TEST_F(Screen, DescriptorThatDoesNotBlockIsWaitedFor) {
    constexpr std::size_t kMoreThanThePipeHolds = 1 << 19;
    ASSERT_EQ(::fcntl(descriptor(), F_SETFL, O_NONBLOCK), 0);
    CScreen screen(descriptor());
    screen.stream() << std::string(kMoreThanThePipeHolds, 'x') << '\n' << std::flush;
    EXPECT_EQ(readUntil("\n").size(), kMoreThanThePipeHolds + 1);
}

} // namespace
} // namespace desk
