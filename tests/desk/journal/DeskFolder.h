#pragma once

#include "orderservice/base/Clock.h"

#include <gtest/gtest.h>

#include <sys/resource.h>

#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iterator>
#include <string>
#include <vector>

namespace desk::test {

/// A new folder for one test, removed at its end.
class CDeskFolder {
public:
    CDeskFolder() {
        std::string pattern = (std::filesystem::temp_directory_path() / "desk-test-XXXXXX").string();
        if (::mkdtemp(pattern.data()) == nullptr) ADD_FAILURE() << "no folder for the test";
        m_strPath = pattern;
    }
    ~CDeskFolder() {
        std::error_code ignored;
        std::filesystem::remove_all(m_strPath, ignored);
    }
    CDeskFolder(const CDeskFolder&) = delete;
    CDeskFolder& operator=(const CDeskFolder&) = delete;

    const std::string& path() const { return m_strPath; }
    std::string file(const std::string& name) const { return m_strPath + '/' + name; }

    std::string read(const std::string& name) const {
        std::ifstream stream(file(name), std::ios::binary);
        return {std::istreambuf_iterator<char>(stream), {}};
    }
    void append(const std::string& name, const std::string& text) const {
        std::ofstream(file(name), std::ios::binary | std::ios::app) << text;
    }
    std::vector<std::string> lines(const std::string& name) const {
        std::ifstream stream(file(name), std::ios::binary);
        std::vector<std::string> lines;
        for (std::string line; std::getline(stream, line);)
            lines.push_back(line);
        return lines;
    }

private:
    std::string m_strPath;
};

/// A clock that always shows 2026-01-05 09:30:00.123 unless a test changes m_dNow. Instead of sleeping it
/// calls a hook.
class CStillClock : public utils::IClock {
public:
    CStillClock() { utils::installClock(this); }
    ~CStillClock() override { utils::installClock(nullptr); }

    double time() override { return m_dNow; }
    void sleep(double) override {
        if (m_onSleep) m_onSleep();
    }
    QDateTime currentDateTime() override { return {QDate(2026, 1, 5), QTime(9, 30, 0, 123)}; }

    std::function<void()> m_onSleep;
    double m_dNow = 0;
};

/// Simulates a full disk: while it lives, no file of this process can grow beyond this number of bytes. A
/// write that crosses the limit is cut short. A write that starts beyond the limit fails.
class CFullDisk {
public:
    explicit CFullDisk(std::uintmax_t bytes) {
        m_pfnOldHandler = std::signal(SIGXFSZ, SIG_IGN);
        ::getrlimit(RLIMIT_FSIZE, &m_old);
        const rlimit limit{static_cast<rlim_t>(bytes), m_old.rlim_max};
        ::setrlimit(RLIMIT_FSIZE, &limit);
    }
    ~CFullDisk() {
        ::setrlimit(RLIMIT_FSIZE, &m_old);
        std::signal(SIGXFSZ, m_pfnOldHandler);
    }
    CFullDisk(const CFullDisk&) = delete;
    CFullDisk& operator=(const CFullDisk&) = delete;

private:
    rlimit m_old{};
    void (*m_pfnOldHandler)(int) = nullptr;
};

} // namespace desk::test
