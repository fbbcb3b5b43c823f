#pragma once

#include <gtest/gtest.h>

#include <fcntl.h>
#include <poll.h>
#include <sys/ioctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <csignal>
#include <cstdlib>
#include <functional>
#include <string>
#include <thread>
#include <utility>

namespace desk {

/// Waits for the condition for up to a minute. Returns whether it became true.
inline bool waitUntil(const std::function<bool()>& condition) {
    const auto end = std::chrono::steady_clock::now() + std::chrono::minutes(1);
    while (!condition()) {
        if (std::chrono::steady_clock::now() > end) return false;
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
    return true;
}

/// The desk's output, which the test reads: a pipe or a terminal.
class CDeskOutput {
public:
    /// A pipe of one page, which the desk fills quickly.
    static CDeskOutput pipe() {
        int ends[2] = {-1, -1};
        EXPECT_EQ(::pipe2(ends, O_CLOEXEC), 0);
        ::fcntl(ends[1], F_SETPIPE_SZ, 4096);
        return {ends[0], ends[1], false};
    }
    static CDeskOutput terminal() {
        const int master = ::posix_openpt(O_RDWR | O_NOCTTY | O_CLOEXEC);
        EXPECT_EQ(::grantpt(master), 0);
        EXPECT_EQ(::unlockpt(master), 0);
        return {master, ::open(::ptsname(master), O_RDWR | O_NOCTTY | O_CLOEXEC), true};
    }
    ~CDeskOutput() {
        closeTestSide();
        closeDeskSide();
    }
    CDeskOutput(CDeskOutput&& other) noexcept
        : m_nTestSide(std::exchange(other.m_nTestSide, -1)),
          m_nDeskSide(std::exchange(other.m_nDeskSide, -1)), m_bTerminal(other.m_bTerminal) {}

    int deskSide() const { return m_nDeskSide; }
    bool isTerminal() const { return m_bTerminal; }
    void closeDeskSide() { close(m_nDeskSide); }
    /// Acts like a user who closes the window or ends the program that reads.
    void closeTestSide() { close(m_nTestSide); }
    /// Types keys, like a user.
    void type(const std::string& keys) const {
        EXPECT_EQ(::write(m_nTestSide, keys.data(), keys.size()), static_cast<ssize_t>(keys.size()));
    }
    /// Reads what is available. Returns whether the desk has printed the text so far.
    bool hasShown(const std::string& text) {
        struct pollfd readable {
            m_nTestSide, POLLIN, 0
        };
        char bytes[4096];
        while (::poll(&readable, 1, 0) > 0) {
            const ssize_t count = ::read(m_nTestSide, bytes, sizeof bytes);
            if (count <= 0) break;
            m_strShown.append(bytes, static_cast<std::size_t>(count));
        }
        return m_strShown.find(text) != std::string::npos;
    }
    const std::string& shown() const { return m_strShown; }

private:
    CDeskOutput(int testSide, int deskSide, bool isTerminal)
        : m_nTestSide(testSide), m_nDeskSide(deskSide), m_bTerminal(isTerminal) {}
    static void close(int& descriptor) {
        if (descriptor >= 0) ::close(descriptor);
        descriptor = -1;
    }

    int m_nTestSide, m_nDeskSide;
    bool m_bTerminal;
    std::string m_strShown;
};

/// `orderdesk run` as a separate process.
class CDeskProcess {
public:
    /// The state in which the process starts.
    enum class EStart { Plain, IgnoringHangup, WithoutStandardDescriptors };

    CDeskProcess(const std::string& folder, CDeskOutput& output, EStart start = EStart::Plain) {
        m_nPid = ::fork();
        if (m_nPid == 0) runChild(folder, output, start);
        EXPECT_GT(m_nPid, 0);
        output.closeDeskSide();
    }
    ~CDeskProcess() {
        if (m_nPid <= 0 || m_bEnded) return;
        ::kill(m_nPid, SIGKILL);
        ::waitpid(m_nPid, nullptr, 0);
    }
    CDeskProcess(const CDeskProcess&) = delete;
    CDeskProcess& operator=(const CDeskProcess&) = delete;

    pid_t id() const { return m_nPid; }
    void send(int signal) const { EXPECT_EQ(::kill(m_nPid, signal), 0); }
    bool hasEnded() {
        m_bEnded = m_bEnded || ::waitpid(m_nPid, &m_nStatus, WNOHANG) == m_nPid;
        return m_bEnded;
    }
    /// Returns the exit code, or -1 if a signal ended the process or if it does not end.
    int wait() {
        if (!waitUntil([this] { return hasEnded(); })) return -1;
        return WIFEXITED(m_nStatus) ? WEXITSTATUS(m_nStatus) : -1;
    }

    /// Whether this signal ended the process.
    bool wasEndedBy(int signal) {
        return hasEnded() && WIFSIGNALED(m_nStatus) && WTERMSIG(m_nStatus) == signal;
    }

private:
    [[noreturn]] static void runChild(const std::string& folder, const CDeskOutput& output, EStart start) {
        if (output.isTerminal()) {
            ::setsid();
            ::ioctl(output.deskSide(), TIOCSCTTY, 0);
        }
        if (start == EStart::IgnoringHangup) ::signal(SIGHUP, SIG_IGN);
        for (const int standard : {STDOUT_FILENO, STDERR_FILENO})
            ::dup2(output.deskSide(), standard);
        for (const int standard : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
            if (start == EStart::WithoutStandardDescriptors) ::close(standard);
        }
        ::execl(ORDERDESK_PROGRAM, "orderdesk", "run", folder.c_str(), nullptr);
        ::_exit(127);
    }

    pid_t m_nPid = -1;
    bool m_bEnded = false;
    int m_nStatus = 0;
};

} // namespace desk
