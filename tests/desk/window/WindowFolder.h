#pragma once

#include "desk/commands/NewFolder.h"
#include "desk/window/WindowProgram.h"
#include "orderservice/gates/IntakePause.h"
#include "tests/support/TempFolder.h"
#include "tests/support/TestSocket.h"

#include <QAction>
#include <QSettings>
#include <QTimer>

#include <gtest/gtest.h>

#include <chrono>
#include <functional>
#include <regex>
#include <sstream>
#include <string>
#include <vector>

namespace desk {

/// A copy of the demo folder, run with the real window. The steps of a test also run in the event loops of
/// questions and dialogs, and while the desk ends.
class CWindowFolder : public testing::Test {
protected:
    using CStep = std::function<bool(CMainWindow&)>;

    /// The pause of a closed dialog belongs to the process.
    void TearDown() override { TC::setConfirmationPause(false); }

    /// `confirms`: the user of the folder confirms his orders.
    void makeFolder(bool confirms) {
        ASSERT_EQ(runNew(folder.path("desk"), confirms, out, out), 0);
        const std::string port = ":" + std::to_string(freePort());
        folder.write("desk/strategies.toml",
                     std::regex_replace(folder.read("desk/strategies.toml"), std::regex(":15150"), port));
    }

    /// Each step is called until it returns true; then the next one follows. The run ends after the last step
    /// of `steps`, but the steps of `atEnd` follow while the desk ends. The test fails after one minute.
    int run(const std::vector<CStep>& steps, const std::vector<CStep>& atEnd = {}) {
        std::vector<CStep> all = steps;
        all.insert(all.end(), atEnd.begin(), atEnd.end());
        const auto end = std::chrono::steady_clock::now() + std::chrono::minutes(1);
        std::size_t next = 0;
        QSettings settings(QString::fromStdString(folder.path("layout.ini")), QSettings::IniFormat);
        const auto keepGoing = [&] { return next < steps.size() && std::chrono::steady_clock::now() < end; };
        CProgram program(QString::fromStdString(folder.path("desk")), settings, keepGoing);
        program.onMade = onMade;
        QTimer timer;
        program.setOnClosed([&] { wasClosed = true; });
        program.setOnWindow([&](CMainWindow& window) {
            if (onWindow) onWindow(window);
            if (asksReally) return startSteps(timer, window, all, next);
            window.setAsk([this](const QString& title, const QString& text, const QString&) {
                questions.append(title + QStringLiteral(": ") + text);
                return answer;
            });
            startSteps(timer, window, all, next);
        });
        const int result = runDesk(folder.path("desk"), out, program, keepGoing);
        EXPECT_EQ(next, all.size()) << "the step did not succeed within a minute\n" << out.str() << journal();
        return result;
    }

    CStep handOver(const std::string& lines, const char* name = "group.txt") {
        return [this, lines, name](CMainWindow&) {
            folder.handOver((std::string("desk/orders/") + name).c_str(), lines);
            return true;
        };
    }
    static CStep hasRows(const char* table, int count) {
        return [table, count](CMainWindow& window) { return window.model(table).rowCount() >= count; };
    }
    static CStep hasState(EDeskState state) {
        return [state](CMainWindow& window) { return window.stateBar().state() == state; };
    }
    static CStep trigger(const char* action) {
        return [action](CMainWindow& window) {
            window.action(action).trigger();
            return true;
        };
    }
    static QString cell(CMainWindow& window, const char* table, const char* key, const char* column) {
        const CRow* row = window.model(table).find(QString::fromLatin1(key));
        const int place = columnOf(window.model(table).spec(), column);
        return row == nullptr ? QString() : row->m_cells.value(place).toString();
    }
    std::string journal() const { return folder.read("desk/journal.jsonl"); }
    bool hasInJournal(const std::string& text) const { return journal().find(text) != std::string::npos; }

    CTempFolder folder;
    std::ostringstream out;
    QStringList questions;
    bool answer = true;                         ///< to each question
    bool asksReally = false;                    ///< the window shows its question boxes
    bool wasClosed = false;                     ///< the user has closed the window
    std::function<void(CMainWindow&)> onWindow; ///< is called before trading starts
    std::function<void(CDesk&)> onMade;         ///< is called before the desk is opened

private:
    class CProgram : public CWindowProgram {
    public:
        using CWindowProgram::CWindowProgram;
        void made(CDesk& desk) override {
            CWindowProgram::made(desk);
            if (onMade) onMade(desk);
        }
        std::function<void(CDesk&)> onMade;
    };
    static void startSteps(QTimer& timer, CMainWindow& window, const std::vector<CStep>& steps,
                           std::size_t& next) {
        QObject::connect(&timer, &QTimer::timeout, &window, [&] {
            if (next >= steps.size()) return;
            const std::size_t mine = next;
            // A step that opens a box returns after it was answered, and later steps run inside the box.
            if (steps[mine](window) && next == mine) ++next;
        });
        timer.start(5);
    }
};

} // namespace desk
