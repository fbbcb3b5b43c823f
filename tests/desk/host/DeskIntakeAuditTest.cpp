#include "desk/host/DeskIntakeAudit.h"
#include "tests/support/TempFolder.h"

#include <gtest/gtest.h>

#include <sstream>
#include <string>

namespace desk {
namespace {

/// An audit with a journal, and the lines that it shows.
class DeskIntakeAudit : public testing::Test {
protected:
    void SetUp() override { ASSERT_TRUE(m_journal.open(m_folder.path()).isSuccess()); }

    CTempFolder m_folder;
    CJournal m_journal;
    std::ostringstream m_shown;
    CTextSink m_sink{m_shown};
    CDeskIntakeAudit m_audit{m_journal, m_sink};
};

TEST_F(DeskIntakeAudit, FileThatGivesOrdersShowsNoLine) {
    TC::CIntakeReport report;
    report.m_strSource = QStringLiteral("a.txt");
    report.m_nLines = 2;
    report.m_nOrders = 1;
    m_audit.recordIntake(report);
    report.m_nOrders = 0;
    report.m_nCancels = 2;
    m_audit.recordIntake(report);
    EXPECT_EQ(m_shown.str(), "");
}

TEST_F(DeskIntakeAudit, FileWithoutOrdersShowsWhyInOneLine) {
    TC::CIntakeReport report;
    report.m_strSource = QStringLiteral("a.txt");
    m_audit.recordIntake(report);
    report.m_nLines = 3;
    m_audit.recordIntake(report);
    report.m_nIgnoredLines = 2;
    report.m_strFirstIgnored = QStringLiteral("line 2: x");
    report.m_ignoredReasons = {{QStringLiteral("x"), 2}};
    m_audit.recordIntake(report);
    report.m_nLines = 9;
    report.m_nIgnoredLines = 9;
    report.m_ignoredReasons = {{QStringLiteral("x"), 2}, {QStringLiteral("y"), 3}, {QString(), 4}};
    m_audit.recordIntake(report);
    EXPECT_EQ(
        m_shown.str(),
        "a.txt gave no order: the file is empty\n"
        "a.txt gave no order from 3 lines, which are blank or have only trade parameters\n"
        "a.txt gave no order from 3 lines, of which some are blank or have only trade parameters; 2 lines "
        "without effect, the first is line 2: x\n"
        "a.txt gave no order from 9 lines; 9 lines without effect: 2 x \"x\", 3 x \"y\", 4 x other "
        "reasons, the first is line 2: x\n");
}

TEST_F(DeskIntakeAudit, LinesThatAreLeftOutAreShownBesideTheOrders) {
    TC::CIntakeReport report;
    report.m_strSource = QStringLiteral("a.txt");
    report.m_nLines = 6;
    report.m_nOrders = 2;
    report.m_nCancels = 1;
    report.m_nUnreadTradeParams = 1;
    report.m_nIgnoredLines = 1;
    report.m_strFirstIgnored = QStringLiteral("line 3: it is for channel 5");
    report.m_ignoredReasons = {{QStringLiteral("it is for channel 5"), 1}};
    m_audit.recordIntake(report);
    EXPECT_EQ(
        m_shown.str(),
        "a.txt gave 2 orders and 1 cancel from 6 lines; 1 line without effect, the first is line 3: it is "
        "for channel 5; 1 orderParam line is not understood, and its orders go out without it\n");
}

TEST_F(DeskIntakeAudit, FilesWithALossAreWarnings) {
    ESeverity severity = ESeverity::Note;
    m_sink.setListener([&](const EFloodLine*, ESeverity written, const std::string&) { severity = written; });
    const auto severityOf = [&](void (*change)(TC::CIntakeReport&)) {
        TC::CIntakeReport report;
        report.m_nLines = 2;
        change(report);
        severity = ESeverity::Note;
        m_audit.recordIntake(report);
        return severity;
    };
    EXPECT_EQ(severityOf([](TC::CIntakeReport&) {}), ESeverity::Note);
    EXPECT_EQ(severityOf([](TC::CIntakeReport& report) { report.m_bRejected = true; }), ESeverity::Warning);
    EXPECT_EQ(severityOf([](TC::CIntakeReport& report) { report.m_bCutShort = true; }), ESeverity::Warning);
    EXPECT_EQ(severityOf([](TC::CIntakeReport& report) { report.m_bLeftOver = true; }), ESeverity::Warning);
    EXPECT_EQ(severityOf([](TC::CIntakeReport& report) { report.m_bLeftWaiting = true; }),
              ESeverity::Warning);
    EXPECT_EQ(severityOf([](TC::CIntakeReport& report) { report.m_nIgnoredLines = 1; }), ESeverity::Warning);
    EXPECT_EQ(severityOf([](TC::CIntakeReport& report) { report.m_nUnreadTradeParams = 1; }),
              ESeverity::Warning);
}

TEST_F(DeskIntakeAudit, AListenerThatNoLongerAnswersIsAWarning) {
    ESeverity severity = ESeverity::Note;
    m_sink.setListener([&](const EFloodLine*, ESeverity written, const std::string&) { severity = written; });
    TC::CDoorReport report;
    report.m_eEvent = TC::EDoorEvent::Stuck;
    m_audit.recordDoor(report);
    EXPECT_EQ(severity, ESeverity::Warning);
}

} // namespace
} // namespace desk
