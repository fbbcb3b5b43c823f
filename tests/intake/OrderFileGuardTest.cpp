// The switch "mdl_order_file_guard": damaged files are refused as a whole and kept.
#include "orderservice/intake/FileService.h"
#include "tests/support/Builders.h"
#include "tests/support/DoorFakes.h"
#include "tests/support/FakeClock.h"
#include "tests/support/FakeHost.h"
#include "tests/support/TempFolder.h"

#include <gtest/gtest.h>

#include <unistd.h>

#include <fstream>
#include <stdexcept>

namespace {

using namespace TC;

class OrderFileGuard : public testing::Test {
protected:
    void SetUp() override {
        host.switches.on.insert("mdl_order_file_guard");
        host.audit.rejected = QString::fromStdString(folder.path("rejected"));
        addStrategy("a.txt");
    }
    void addStrategy(const std::string& file) {
        registry.strategies.insert(3, CStrategyBuilder().channel(3).file(folder.path(file)));
    }
    const TC::CIntakeReport& report(std::size_t index = 0) const { return host.audit.reports.at(index); }

    static constexpr const char* kTime = "20260105-093000-000";
    static constexpr const char* kKept = "rejected/a.txt.20260105-093000-000";
    static constexpr const char* kKeptCut = "rejected/a.txt.cut.20260105-093000-000";
    static constexpr const char* kKeptLeftOver = "rejected/a.txt.tmp.20260105-093000-000";

    CTempFolder folder;
    CFakeClock clock;
    CFakeHost host;
    CRecordingGate gate;
    CPlainRegistry registry;
    CFileService service{gate, registry};
};

TEST_F(OrderFileGuard, GoodFileIsReadAndDeleted) {
    folder.write("a.txt", "23,0,10.5,600000,100\r\n24,0,10.6,000001,200\n");
    service.tryOrder();
    EXPECT_EQ(gate.batches.at(0).size(), 2);
    EXPECT_EQ(report().m_nLines, 2);
    EXPECT_FALSE(report().m_bRejected);
    EXPECT_TRUE(report().m_strKeptAs.isEmpty());
    EXPECT_FALSE(folder.exists("a.txt.tmp"));
    EXPECT_FALSE(folder.exists("rejected"));
}

TEST_F(OrderFileGuard, DamagedFileIsRefusedWholeReportedAndKept) {
    const std::string bytes = "cancel 42\ncancel_order A1 1\n23,0,10.5,600000,1\r23,0,10.6,600000,2\n";
    host.tasks.tasks[42] = 1;
    folder.write("a.txt", bytes);
    service.tryOrder();
    EXPECT_TRUE(gate.batches.empty());
    EXPECT_TRUE(gate.cancelled.empty());
    EXPECT_TRUE(host.tasks.operations.empty());
    ASSERT_EQ(host.audit.reports.size(), 1u);
    EXPECT_TRUE(report().m_bRejected);
    EXPECT_EQ(report().m_nOrders, 0);
    EXPECT_EQ(report().m_strSource, QString::fromStdString(folder.path("a.txt")));
    EXPECT_EQ(report().m_strCause, QStringLiteral("line 3: a carriage return without a line feed"));
    EXPECT_EQ(report().m_strKeptAs, QString::fromStdString(folder.path(kKept)));
    EXPECT_EQ(folder.read(kKept), bytes);
    EXPECT_FALSE(folder.exists("a.txt"));
    EXPECT_FALSE(folder.exists("a.txt.tmp"));
}

TEST_F(OrderFileGuard, WithoutTheSwitchDamagedFilesAreReadAsEver) {
    host.switches.on.erase("mdl_order_file_guard");
    folder.write("a.txt", "23,0,10.5,600000,1\r23,0,10.6,600000,2");
    service.tryOrder();
    EXPECT_EQ(gate.batches.at(0).size(), 1);
    EXPECT_FALSE(report().m_bRejected);
    EXPECT_FALSE(folder.exists("rejected"));
}

TEST_F(OrderFileGuard, BytesThatASlowWriterAddsAreInTheKeptFile) {
    std::ofstream writer(folder.path("a.txt"), std::ios::binary);
    service.tryOrder(); // before the first byte is written
    writer << "23,0,10.5,600000,100\n" << std::flush;
    writer.close();
    service.tryOrder();
    EXPECT_TRUE(gate.batches.empty());
    EXPECT_EQ(report().m_strCause, QStringLiteral("line 1: the file is empty"));
    EXPECT_EQ(folder.read(kKept), "23,0,10.5,600000,100\n");
}

TEST_F(OrderFileGuard, FileThatGrowsWhileItIsReadIsKept) {
    folder.write("a.txt", "23,0,10.5,600000,100\ncancel_order A1 1\n");
    gate.onCancel = [this] {
        std::ofstream(folder.path("a.txt.tmp"), std::ios::app) << "23,0,10.6,600000,200\n";
    };
    service.tryOrder();
    EXPECT_EQ(gate.batches.at(0).size(), 1); // only the line that was checked
    EXPECT_EQ(report().m_nLines, 2);
    EXPECT_TRUE(report().m_bCutShort);
    EXPECT_EQ(report().m_strCause, QStringLiteral("line 2: it was still being written while it was read"));
    EXPECT_EQ(report().m_strKeptAs, QString::fromStdString(folder.path(kKeptCut)));
    EXPECT_EQ(folder.read(kKeptCut), "23,0,10.5,600000,100\ncancel_order A1 1\n23,0,10.6,600000,200\n");
}

TEST_F(OrderFileGuard, ErrorWhileReadingRefusesTheFile) {
    std::filesystem::create_symlink("/proc/self/mem", folder.path("a.txt"));
    service.tryOrder();
    EXPECT_TRUE(gate.batches.empty());
    EXPECT_TRUE(report().m_bRejected);
    EXPECT_EQ(report().m_strCause, QStringLiteral("it cannot be read"));
    EXPECT_TRUE(std::filesystem::is_symlink(folder.path(kKept)));
}

TEST_F(OrderFileGuard, FileThatCannotBeOpenedAnyMoreIsKept) {
    folder.write("b.txt", "");
    addStrategy("a.txt");
    // The .tmp file, which is the link's target, is kept first. Then the link points to itself.
    folder.write("a.txt.tmp", "23,0\n");
    std::filesystem::create_symlink("a.txt.tmp", folder.path("a.txt"));
    service.tryOrder();
    ASSERT_EQ(host.audit.reports.size(), 2u);
    EXPECT_EQ(report(1).m_strCause, QStringLiteral("it cannot be opened: Too many levels of symbolic links"));
    EXPECT_EQ(report(1).m_strKeptAs, QString::fromStdString(folder.path(kKept)));
    EXPECT_TRUE(std::filesystem::is_symlink(folder.path(kKept)));
}

TEST_F(OrderFileGuard, FileOfARunThatWasCutOffIsKeptUnread) {
    folder.write("a.txt.tmp", "23,0,10.5,600000,100\n");
    folder.write("a.txt", "24,0,10.5,600000,100\n");
    service.tryOrder();
    ASSERT_EQ(gate.batches.size(), 1u);
    EXPECT_EQ(gate.batches[0].at(0).m_nOrderType, 24);
    ASSERT_EQ(host.audit.reports.size(), 2u);
    EXPECT_FALSE(report().m_bRejected);
    EXPECT_TRUE(report().m_bLeftOver);
    EXPECT_EQ(report().m_strSource, QString::fromStdString(folder.path("a.txt.tmp")));
    EXPECT_EQ(report().m_strKeptAs, QString::fromStdString(folder.path(kKeptLeftOver)));
    EXPECT_EQ(folder.read(kKeptLeftOver), "23,0,10.5,600000,100\n");
}

/// The name of a kept file shows whether its orders may have gone out, even if the process ends before it has
/// reported the file.
class OrderFileGuardDeathTest : public OrderFileGuard {
protected:
    /// Runs a pass in another process, which ends at its first report.
    void endAtTheReport() {
        host.audit.onRecord = [] { ::_exit(7); };
        EXPECT_EXIT(service.tryOrder(), testing::ExitedWithCode(7), "");
        EXPECT_FALSE(folder.exists("a.txt.tmp"));
    }
};

TEST_F(OrderFileGuardDeathTest, RefusedFileHasItsOwnName) {
    folder.write("a.txt", "23,0");
    endAtTheReport();
    EXPECT_EQ(folder.read(kKept), "23,0");
}

TEST_F(OrderFileGuardDeathTest, LeftOverFileHasTmpInItsName) {
    folder.write("a.txt.tmp", "23,0,10.5,600000,100\n");
    folder.write("a.txt", "24,0,10.5,600000,100\n");
    endAtTheReport();
    EXPECT_EQ(folder.read(kKeptLeftOver), "23,0,10.5,600000,100\n");
    EXPECT_FALSE(folder.exists(kKept));
}

TEST_F(OrderFileGuardDeathTest, FileThatWasCarriedOutInPartHasCutInItsName) {
    folder.write("a.txt", "23,0,10.5,600000,100\ncancel_order A1 1\n");
    gate.onCancel = [this] { std::ofstream(folder.path("a.txt.tmp"), std::ios::app) << "23,0\n"; };
    endAtTheReport();
    EXPECT_EQ(folder.read(kKeptCut), "23,0,10.5,600000,100\ncancel_order A1 1\n23,0\n");
    EXPECT_FALSE(folder.exists(kKept));
}

TEST_F(OrderFileGuard, HostWithoutAFolderKeepsTheFileBesideItsPath) {
    host.audit.rejected.clear();
    folder.write("a.txt", "23,0");
    service.tryOrder();
    const std::string kept = std::string("a.txt.rejected-") + kTime;
    EXPECT_EQ(report().m_strKeptAs, QString::fromStdString(folder.path(kept)));
    EXPECT_EQ(report().m_strCause, QStringLiteral("line 1: no line end at the end of the file"));
    EXPECT_EQ(folder.read(kept), "23,0");
}

TEST_F(OrderFileGuard, HostThatThrowsKeepsTheFileBesideItsPath) {
    host.audit.onRejectedFolder = [] { throw std::runtime_error("no folder"); };
    folder.write("a.txt", "23,0");
    service.tryOrder();
    EXPECT_EQ(folder.read(std::string("a.txt.rejected-") + kTime), "23,0");
    EXPECT_EQ(host.audit.reports.size(), 1u);
}

TEST_F(OrderFileGuard, FolderThatCannotBeUsedIsNamed) {
    folder.write("rejected", "a file");
    folder.write("a.txt", "23,0");
    service.tryOrder();
    EXPECT_EQ(folder.read(std::string("a.txt.rejected-") + kTime), "23,0");
    EXPECT_EQ(report().m_strCause.toStdString(),
              "line 1: no line end at the end of the file; it cannot be moved to " + folder.path("rejected") +
                  ": Not a directory");
}

/// The worst case: the refused file cannot be moved at all. It keeps its .tmp name. Later files wait until a
/// person acts.
TEST_F(OrderFileGuard, RefusedFileThatCannotBeMovedHoldsTheNextOnes) {
    const std::string name(240, 'a');
    addStrategy(name);
    folder.write(name, "23,0");
    service.tryOrder();
    EXPECT_TRUE(report().m_bRejected);
    EXPECT_EQ(report().m_strKeptAs, QString::fromStdString(folder.path(name + ".tmp")));
    EXPECT_EQ(folder.read(name + ".tmp"), "23,0");

    folder.write(name, "24,0\n");
    service.tryOrder();
    service.tryOrder();
    EXPECT_TRUE(gate.batches.empty());
    ASSERT_EQ(host.audit.reports.size(), 2u); // reported once
    EXPECT_TRUE(report(1).m_bLeftWaiting);
    EXPECT_TRUE(report(1).m_strCause.startsWith(
        QStringLiteral("a file is left under its .tmp name, and it cannot be moved to ")));
    EXPECT_EQ(folder.read(name + ".tmp"), "23,0");

    std::filesystem::remove(folder.path(name + ".tmp"));
    service.tryOrder();
    EXPECT_EQ(gate.batches.size(), 1u);
}

/// If a file of this run can only be moved later, it must not be treated as a file of an earlier run.
class OrderFileGuardUnmoved : public OrderFileGuard {
protected:
    OrderFileGuardUnmoved() { folder.write("rejected", "a file"); }

    /// First a pass cannot move the file: the folder cannot be used, and the name next to the file is too
    /// long. Then a second pass can move it.
    void moveLate(const std::string& text) {
        addStrategy(name);
        folder.write(name, text);
        service.tryOrder();
        EXPECT_EQ(report().m_strKeptAs, QString::fromStdString(folder.path(name + ".tmp")));
        std::filesystem::remove(folder.path("rejected"));
        folder.write(name, "24,0\n");
        service.tryOrder();
        ASSERT_EQ(host.audit.reports.size(), 3u);
        EXPECT_EQ(report(1).m_strSource, QString::fromStdString(folder.path(name + ".tmp")));
    }
    const std::string name = std::string(230, 'a');
};

TEST_F(OrderFileGuardUnmoved, RefusedFileIsStillARefusedOne) {
    moveLate("23,0");
    EXPECT_TRUE(report(1).m_bRejected);
    EXPECT_FALSE(report(1).m_bLeftOver);
    EXPECT_EQ(report(1).m_strCause, QStringLiteral("it was refused before and could not be moved then"));
    EXPECT_EQ(folder.read("rejected/" + name + "." + kTime), "23,0");
}

TEST_F(OrderFileGuardUnmoved, FileThatWasCarriedOutInPartIsStillOne) {
    gate.onCancel = [this] { std::ofstream(folder.path(name + ".tmp"), std::ios::app) << "23,0\n"; };
    moveLate("23,0\ncancel_order A1 1\n");
    EXPECT_EQ(gate.batches.size(), 2u);
    EXPECT_FALSE(report(1).m_bRejected);
    EXPECT_TRUE(report(1).m_bLeftOver);
    EXPECT_EQ(report(1).m_strCause,
              QStringLiteral("a part of it was carried out before, and it could not be moved then"));
    EXPECT_EQ(folder.read("rejected/" + name + ".cut." + kTime), "23,0\ncancel_order A1 1\n23,0\n");
}

/// A later file at this path is a different file.
TEST_F(OrderFileGuardUnmoved, PathThatWasFreeInTheMeantimeIsForgotten) {
    addStrategy(name);
    folder.write(name, "23,0");
    service.tryOrder();
    std::filesystem::remove(folder.path(name + ".tmp"));
    std::filesystem::remove(folder.path("rejected"));
    folder.write(name, "24,0\n");
    service.tryOrder();
    folder.write(name + ".tmp", "23,0\n");
    folder.write(name, "24,0\n");
    service.tryOrder();
    EXPECT_TRUE(report(2).m_bLeftOver);
    EXPECT_EQ(folder.read("rejected/" + name + ".tmp." + kTime), "23,0\n");
}

/// The refused file was moved. So the next file with its .tmp name is a leftover.
TEST_F(OrderFileGuardUnmoved, AFileThatWasMovedLateIsForgotten) {
    moveLate("23,0");
    folder.write(name + ".tmp", "23,0\n");
    folder.write(name, "24,0\n");
    service.tryOrder();
    EXPECT_TRUE(report(3).m_bLeftOver);
    EXPECT_EQ(folder.read("rejected/" + name + ".tmp." + kTime), "23,0\n");
}

TEST_F(OrderFileGuard, FolderAtTheTemporaryPathLeavesTheFileWaiting) {
    std::filesystem::create_directory(folder.path("a.txt.tmp"));
    folder.write("a.txt", "23,0\n");
    service.tryOrder();
    ASSERT_EQ(host.audit.reports.size(), 1u);
    EXPECT_EQ(report().m_strCause, QStringLiteral("it cannot be renamed: Is a directory"));
    EXPECT_TRUE(folder.exists("a.txt"));
}

TEST_F(OrderFileGuard, AuditThatThrowsLosesNoRefusedFile) {
    host.audit.onRecord = [] { throw std::runtime_error("no room"); };
    folder.write("a.txt", "23,0");
    service.tryOrder();
    EXPECT_EQ(folder.read(kKept), "23,0");
}

} // namespace
