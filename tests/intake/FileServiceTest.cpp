#include "tests/intake/FileServiceFixture.h"

#include <sys/stat.h>

#include <functional>
#include <memory>
#include <stdexcept>

namespace {

using namespace TC;

class FileService : public CFileServiceFixture {};

TEST_F(FileService, FileIsTakenReadAndDeleted) {
    addStrategy(3, "a.txt");
    folder.write("a.txt", "23,0,10.5,600000,100\r\n24,0,10.6,000001,200");
    service.tryOrder();
    ASSERT_EQ(gate.batches.size(), 1u);
    EXPECT_EQ(gate.batches[0].size(), 2);
    EXPECT_FALSE(folder.exists("a.txt"));
    EXPECT_FALSE(folder.exists("a.txt.tmp"));
    EXPECT_EQ(report().m_nLines, 2);
    EXPECT_EQ(report().m_nOrders, 2);
    EXPECT_EQ(report().m_nChannel, 3);
    EXPECT_EQ(report().m_strSource, QString::fromStdString(folder.path("a.txt")));
    EXPECT_FALSE(report().m_bCutShort);
}

TEST_F(FileService, FileIsReportedThenHandedOverAndThenDeleted) {
    addStrategy(3, "a.txt");
    std::vector<std::string> steps;
    const auto note = [&](const std::string& step) {
        steps.push_back(step + (folder.exists("a.txt.tmp") ? " with the file" : " without the file"));
    };
    host.audit.onRecord = [&] { note("report"); };
    gate.onPlace = [&] { note("gate"); };
    folder.write("a.txt", "23,0,10.5,600000,100\n");
    service.tryOrder();
    EXPECT_EQ(steps, (std::vector<std::string>{"report with the file", "gate with the file"}));
    EXPECT_FALSE(folder.exists("a.txt.tmp"));
}

TEST_F(FileService, MissingFileIsSkippedSilently) {
    addStrategy(3, "a.txt");
    service.tryOrder();
    EXPECT_TRUE(gate.batches.empty());
    EXPECT_TRUE(host.audit.reports.empty());
    EXPECT_TRUE(host.messageTexts().empty());
}

TEST_F(FileService, EmptyFileGivesAnEmptyBatch) {
    addStrategy(3, "a.txt");
    folder.write("a.txt", "");
    service.tryOrder();
    ASSERT_EQ(gate.batches.size(), 1u);
    EXPECT_TRUE(gate.batches[0].isEmpty());
    EXPECT_FALSE(folder.exists("a.txt"));
}

TEST_F(FileService, StoppedAndOtherStrategiesAreLeftAlone) {
    addStrategy(3, "a.txt");
    addStrategy(4, "b.txt");
    registry.strategies[3].m_nStatus = COrderStrategyParam::kStopped;
    registry.strategies[4].m_eStrategyType = EOrderStrategyType::Signal;
    folder.write("a.txt", "23,0,10.5,600000,100");
    folder.write("b.txt", "23,0,10.5,600000,100");
    service.tryOrder();
    EXPECT_TRUE(gate.batches.empty());
    EXPECT_TRUE(folder.exists("a.txt"));
    EXPECT_TRUE(folder.exists("b.txt"));
}

TEST_F(FileService, BatchStrategiesWithoutATableReadLines) {
    addStrategy(3, "a.txt");
    registry.strategies[3].m_eStrategyType = EOrderStrategyType::BatchPending;
    folder.write("a.txt", "23,0,10.5,600000,100");
    service.tryOrder();
    ASSERT_EQ(gate.batches.size(), 1u);
    EXPECT_EQ(gate.batches[0][0].m_eStrategyType, EOrderStrategyType::File);
}

TEST_F(FileService, StrategyWithoutAPathIsSkipped) {
    registry.strategies.insert(3, CStrategyBuilder().file(""));
    service.tryOrder();
    EXPECT_TRUE(gate.batches.empty());
}

TEST_F(FileService, StrategiesAreServedInKeyOrder) {
    addStrategy(7, "b.txt");
    addStrategy(2, "a.txt");
    folder.write("a.txt", "23,0,10.5,600000,100");
    folder.write("b.txt", "23,0,10.5,600000,100");
    service.tryOrder();
    ASSERT_EQ(gate.batches.size(), 2u);
    EXPECT_EQ(gate.batches[0][0].m_nChannel, 2);
    EXPECT_EQ(gate.batches[1][0].m_nChannel, 7);
}

TEST_F(FileService, BadNumberLosesTheRestAndKeepsWhatStoodBefore) {
    addStrategy(3, "a.txt");
    folder.write("a.txt", "23,0,10.5,600000,100\n23,0,abc,600000,100\n23,0,10.5,600000,100\n");
    service.tryOrder();
    ASSERT_EQ(gate.batches.size(), 1u);
    EXPECT_EQ(gate.batches[0].size(), 1);
    EXPECT_FALSE(folder.exists("a.txt.tmp"));
    EXPECT_TRUE(host.messageTexts().empty());
    EXPECT_TRUE(report().m_bCutShort);
    EXPECT_EQ(report().m_nLines, 2);
    EXPECT_TRUE(report().m_strCause.startsWith(QStringLiteral("line 2: ")));
}

TEST_F(FileService, LeftOverTemporaryFileIsDeletedUnread) {
    addStrategy(3, "a.txt");
    folder.write("a.txt.tmp", "23,0,10.5,600000,100");
    folder.write("a.txt", "24,0,10.5,600000,100");
    service.tryOrder();
    ASSERT_EQ(gate.batches.size(), 1u);
    ASSERT_EQ(gate.batches[0].size(), 1);
    EXPECT_EQ(gate.batches[0][0].m_nOrderType, 24);
}

TEST_F(FileService, LeftOverTemporaryFileAloneIsNotRead) {
    addStrategy(3, "a.txt");
    folder.write("a.txt.tmp", "23,0,10.5,600000,100");
    service.tryOrder();
    EXPECT_TRUE(gate.batches.empty());
    EXPECT_TRUE(folder.exists("a.txt.tmp"));
}

TEST_F(FileService, FolderAtThePathStaysAndIsReportedOnce) {
    addStrategy(3, "a.txt");
    std::filesystem::create_directory(folder.path("a.txt"));
    service.tryOrder();
    service.tryOrder();
    EXPECT_TRUE(gate.batches.empty());
    EXPECT_TRUE(folder.exists("a.txt"));
    ASSERT_EQ(host.audit.reports.size(), 1u);
    EXPECT_TRUE(report().m_bLeftWaiting);
    EXPECT_EQ(report().m_strSource, QString::fromStdString(folder.path("a.txt")));
    EXPECT_EQ(report().m_strCause, QStringLiteral("it is a folder"));
}

TEST_F(FileService, AnObstacleThatReturnsToThePathIsReportedAgain) {
    addStrategy(3, "a.txt");
    std::filesystem::create_directory(folder.path("a.txt"));
    service.tryOrder();
    std::filesystem::remove(folder.path("a.txt"));
    service.tryOrder();
    std::filesystem::create_directory(folder.path("a.txt"));
    service.tryOrder();
    EXPECT_EQ(host.audit.reports.size(), 2u);
}

TEST_F(FileService, PipeAtThePathDoesNotBlockTheLoop) {
    addStrategy(3, "a.txt");
    ASSERT_EQ(::mkfifo(folder.path("a.txt").c_str(), 0600), 0);
    service.tryOrder();
    EXPECT_TRUE(gate.batches.empty());
    EXPECT_TRUE(folder.exists("a.txt"));
    EXPECT_EQ(report().m_strCause, QStringLiteral("it is not a regular file"));
}

/// A file that the service has no permission to read is treated in the same way.
TEST_F(FileService, FileThatCannotBeOpenedIsReportedOnce) {
    addStrategy(3, "a.txt");
    std::filesystem::create_symlink("a.txt", folder.path("a.txt"));
    service.tryOrder();
    service.tryOrder();
    ASSERT_EQ(host.audit.reports.size(), 1u);
    EXPECT_TRUE(report().m_bLeftWaiting);
    EXPECT_EQ(report().m_strCause, QStringLiteral("it cannot be opened: Too many levels of symbolic links"));
}

TEST_F(FileService, PathBelowAFileIsAMissingFile) {
    addStrategy(3, "a.txt/b.txt");
    folder.write("a.txt", "");
    service.tryOrder();
    EXPECT_TRUE(host.audit.reports.empty());
}

/// The link's target is the .tmp file itself. It no longer exists when the link is renamed to this name.
TEST_F(FileService, FileThatCannotBeOpenedAnyMoreIsReportedAndDeleted) {
    addStrategy(3, "a.txt");
    folder.write("a.txt.tmp", "23,0,10.5,600000,100\n");
    std::filesystem::create_symlink("a.txt.tmp", folder.path("a.txt"));
    service.tryOrder();
    EXPECT_TRUE(gate.batches.empty());
    EXPECT_TRUE(report().m_bRejected);
    EXPECT_EQ(report().m_strCause, QStringLiteral("it cannot be opened: Too many levels of symbolic links"));
    EXPECT_TRUE(report().m_strKeptAs.isEmpty());
    EXPECT_FALSE(std::filesystem::is_symlink(folder.path("a.txt.tmp")));
}

/// The system does not allow reading the start of this file.
TEST_F(FileService, ErrorWhileReadingCutsTheFileShort) {
    addStrategy(3, "a.txt");
    std::filesystem::create_symlink("/proc/self/mem", folder.path("a.txt"));
    service.tryOrder();
    EXPECT_EQ(gate.batches.at(0).size(), 0);
    EXPECT_TRUE(report().m_bCutShort);
    EXPECT_EQ(report().m_strCause, QStringLiteral("line 0: the file cannot be read further"));
}

TEST_F(FileService, FolderAtTheTemporaryPathLeavesTheFileWaiting) {
    addStrategy(3, "a.txt");
    std::filesystem::create_directory(folder.path("a.txt.tmp"));
    folder.write("a.txt", "23,0,10.5,600000,100");
    service.tryOrder();
    service.tryOrder();
    EXPECT_TRUE(gate.batches.empty());
    EXPECT_TRUE(folder.exists("a.txt"));
    EXPECT_TRUE(folder.exists("a.txt.tmp"));
    ASSERT_EQ(host.audit.reports.size(), 1u); // reported once
    EXPECT_TRUE(report().m_bLeftWaiting);
    EXPECT_EQ(report().m_strCause, QStringLiteral("it cannot be renamed: Is a directory"));

    std::filesystem::remove(folder.path("a.txt.tmp"));
    service.tryOrder();
    EXPECT_EQ(gate.batches.size(), 1u);
}

TEST_F(FileService, FileThatWaitsAgainAfterOneWasTakenIsReportedAgain) {
    addStrategy(3, "a.txt");
    for (int i = 0; i < 2; ++i) {
        std::filesystem::create_directory(folder.path("a.txt.tmp"));
        folder.write("a.txt", "23,0,10.5,600000,100");
        service.tryOrder();
        EXPECT_TRUE(host.audit.reports.back().m_bLeftWaiting);
        std::filesystem::remove(folder.path("a.txt.tmp"));
        service.tryOrder();
    }
    EXPECT_EQ(host.audit.reports.size(), 4u);
}

TEST_F(FileService, FileOfTheNextWriterWaitsForTheNextPass) {
    addStrategy(3, "a.txt");
    folder.write("a.txt", "23,0,10.5,600000,100");
    gate.onPlace = [this] { folder.write("a.txt", "24,0,10.5,600000,100"); };
    service.tryOrder();
    EXPECT_EQ(gate.batches.size(), 1u);
    EXPECT_TRUE(folder.exists("a.txt"));
    gate.onPlace = nullptr;
    service.tryOrder();
    ASSERT_EQ(gate.batches.size(), 2u);
    EXPECT_EQ(gate.batches[1][0].m_nOrderType, 24);
}

TEST_F(FileService, FileWithoutAnyLineEndIsReadInPieces) {
    addStrategy(3, "a.txt");
    folder.write("a.txt", std::string(100'000'000, 'x'));
    service.tryOrder();
    ASSERT_EQ(gate.batches.size(), 1u);
    EXPECT_TRUE(gate.batches[0].isEmpty());
    EXPECT_EQ(report().m_nLines, (100'000'000 + 2046) / 2047);
}

TEST_F(FileService, PathInChineseIsFound) {
    addStrategy(3, "下单.txt");
    folder.write("下单.txt", "23,0,10.5,600000,100");
    service.tryOrder();
    EXPECT_EQ(gate.batches.size(), 1u);
}

TEST_F(FileService, CancelsActThroughGateAndTaskCentre) {
    addStrategy(3, "a.txt");
    host.tasks.tasks[42] = 2;
    folder.write("a.txt", "cancel 42\ncancel 43\ncancel_order A1 77\n");
    service.tryOrder();
    ASSERT_EQ(host.tasks.operations.size(), 2u);
    const auto& [taskId, record] = host.tasks.operations[0];
    EXPECT_EQ(taskId, 42);
    EXPECT_EQ(record.m_nOperation, 3);
    EXPECT_EQ(record.m_nTime, 1767600000);
    EXPECT_EQ(record.m_strUserName, "tester");
    EXPECT_EQ(record.m_strRemark, "tester终止任务");
    EXPECT_EQ(gate.cancelled, (std::vector<std::vector<std::string>>{{"cancel_order", "A1", "77"}}));
}

TEST_F(FileService, TradeParametersGoThroughTheHost) {
    addStrategy(3, "a.txt");
    host.rules.tradeParams["known"] = COrderTradeParam();
    folder.write("a.txt", "23,0,10.5,600000,100\norderParam=known\n");
    service.tryOrder();
    EXPECT_EQ(gate.batches.at(0).at(0).m_strRemark, "default");
}

TEST_F(FileService, ExceptionOfACancelKeepsTheOrdersBeforeIt) {
    addStrategy(3, "a.txt");
    gate.onCancel = [] { throw std::runtime_error("refused"); };
    folder.write("a.txt", "23,0,10.5,600000,100\ncancel_order A1 77\n");
    service.tryOrder();
    EXPECT_EQ(gate.batches.at(0).size(), 1);
    EXPECT_FALSE(folder.exists("a.txt.tmp"));
    EXPECT_EQ(report().m_strCause, QStringLiteral("line 2: refused"));
}

TEST_F(FileService, RemarksAreClearedWhereTheSwitchIsOff) {
    addStrategy(3, "a.txt");
    host.switches.on.clear();
    host.rules.tradeParams["known"].m_strRemark = "given";
    folder.write("a.txt", "23,0,10.5,600000,100\norderParam=known\n");
    service.tryOrder();
    EXPECT_EQ(gate.batches.at(0).at(0).m_strRemark, "");
}

TEST_F(FileService, NamedBasketsAndAccountsComeFromTheUser) {
    addStrategy(3, "a.txt");
    addStrategy(4, "b.txt");
    CBasketStockData row;
    row.m_strCode = QStringLiteral("600000");
    host.user.baskets[QStringLiteral("蓝筹")].m_rows = {row};
    folder.write("a.txt", "33,0,蓝筹\n");
    folder.write("b.txt", "26,0,all\n");
    service.tryOrder();
    EXPECT_EQ(gate.batches.at(0).at(0).m_orders.size(), 1);
    EXPECT_TRUE(gate.batches.at(1).at(0).m_bAll);
}

TEST_F(FileService, SettledBasketReadsTheRestForTradeParametersOnly) {
    addStrategy(3, "a.txt");
    host.user.baskets[QStringLiteral("b")].m_rows = {CBasketStockData()};
    host.rules.tradeParams["known"].m_strRemark = "r";
    folder.write("a.txt", "33,0,b\n600000\t100\norderParam=known\ncancel 1\n");
    service.tryOrder();
    ASSERT_EQ(gate.batches.at(0).size(), 1);
    EXPECT_EQ(gate.batches[0][0].m_strRemark, "r");
    EXPECT_TRUE(host.tasks.operations.empty());
    EXPECT_EQ(report().m_nLines, 4);
}

TEST_F(FileService, WholeBasketEndsTheReading) {
    addStrategy(3, "a.txt");
    host.user.baskets[QStringLiteral("b")].m_rows = {CBasketStockData()};
    folder.write("a.txt", "34,0,b\n23,0,x,y,z\n");
    service.tryOrder();
    EXPECT_EQ(gate.batches.at(0).size(), 1);
    EXPECT_FALSE(report().m_bCutShort);
    EXPECT_FALSE(folder.exists("a.txt.tmp"));
}

TEST_F(FileService, EncipheredFilesAndTablesStayUntouched) {
    addStrategy(3, "a.txt");
    addStrategy(4, "b.txt");
    registry.strategies[4].m_nAccountMode = COrderStrategyParam::kTableMode;
    host.user.encryption = true;
    folder.write("a.txt", "23,0,10.5,600000,100");
    service.tryOrder();
    host.user.encryption = false;
    folder.write("b.txt", "23,0,10.5,600000,100");
    registry.strategies.remove(3);
    service.tryOrder();
    EXPECT_TRUE(gate.batches.empty());
    EXPECT_TRUE(folder.exists("a.txt"));
    EXPECT_TRUE(folder.exists("b.txt"));
}

TEST_F(FileService, AnExceptionEndsThePassForTheStrategiesAfterIt) {
    addStrategy(3, "a.txt");
    addStrategy(4, "b.txt");
    folder.write("a.txt", "");
    folder.write("b.txt", "");
    gate.onPlace = [] { throw std::runtime_error("refused"); };
    EXPECT_THROW(service.tryOrder(), std::runtime_error);
    EXPECT_EQ(gate.batches.size(), 1u);
    EXPECT_FALSE(folder.exists("a.txt.tmp")); // it must not be read twice
    EXPECT_TRUE(folder.exists("b.txt"));
}

TEST_F(FileService, AnAuditThatThrowsCostsNoOrders) {
    addStrategy(3, "a.txt");
    folder.write("a.txt", "23,0,10.5,600000,100");
    host.audit.onRecord = [] { throw std::runtime_error("no room"); };
    service.tryOrder();
    ASSERT_EQ(gate.batches.size(), 1u);
    EXPECT_EQ(gate.batches[0].size(), 1);
}

TEST_F(FileService, TradeParametersThatAreNotUnderstoodAreCountedForTheAudit) {
    addStrategy(3, "a.txt");
    folder.write("a.txt", "23,0,10.5,600000,100\norderParam=unknown\n");
    service.tryOrder();
    EXPECT_EQ(report().m_nUnreadTradeParams, 1);
    EXPECT_EQ(report().m_nOrders, 1);
}

TEST_F(FileService, LinesWithoutEffectAreCountedForTheAudit) {
    addStrategy(3, "a.txt");
    host.user.baskets[QStringLiteral("b")].m_rows = {CBasketStockData()};
    folder.write("a.txt", "\ncancel 1 2\n34,0,b\n23,0\n");
    service.tryOrder();
    EXPECT_EQ(report().m_nLines, 3); // reading ends at line 3
    EXPECT_EQ(report().m_nOrders, 1);
    EXPECT_EQ(report().m_nIgnoredLines, 2);
    EXPECT_EQ(report().m_strFirstIgnored,
              QStringLiteral("line 2: cancel takes one word, the number of the task"));
}

TEST_F(FileService, ReasonsOfIgnoredLinesAndCancelsAreCounted) {
    addStrategy(3, "a.txt");
    folder.write("a.txt", "cancel 1\ncancel_order A1 2\n23\n23,5,,600000\n24\n23,5,,600000\n");
    service.tryOrder();
    EXPECT_EQ(report().m_nCancels, 2);
    const QVector<std::pair<QString, int>> expected = {{QStringLiteral("it has fewer than two fields"), 2},
                                                       {QStringLiteral("it is for channel 5"), 2}};
    EXPECT_EQ(report().m_ignoredReasons, expected);
}

TEST_F(FileService, ManyReasonsOfIgnoredLinesAreCountedTogether) {
    std::string lines;
    for (int channel = 11; channel <= 22; ++channel)
        lines += "23," + std::to_string(channel) + ",,600000\n";
    addStrategy(3, "a.txt");
    folder.write("a.txt", lines);
    service.tryOrder();
    ASSERT_EQ(report().m_ignoredReasons.size(), 9);
    EXPECT_EQ(report().m_ignoredReasons.front(), std::make_pair(QStringLiteral("it is for channel 11"), 1));
    EXPECT_EQ(report().m_ignoredReasons.back(), std::make_pair(QString(), 4));
}

TEST_F(FileService, FileWithoutIgnoredLinesNamesNone) {
    addStrategy(3, "a.txt");
    folder.write("a.txt", "23,0\n");
    service.tryOrder();
    EXPECT_EQ(report().m_nIgnoredLines, 0);
    EXPECT_TRUE(report().m_strFirstIgnored.isEmpty());
}

TEST_F(FileService, FilesOfALoggedOutUserWait) {
    addStrategy(3, "a.txt");
    folder.write("a.txt", "23,0,10.5,600000,100");
    host.user.loggedIn = false;
    service.tryOrder();
    EXPECT_TRUE(gate.batches.empty());
    EXPECT_TRUE(folder.exists("a.txt"));
}

} // namespace
