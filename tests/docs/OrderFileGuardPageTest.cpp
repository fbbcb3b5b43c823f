// Does what docs/order-file.md says about damaged and incomplete files, with the real file service.
#include "orderservice/intake/FileService.h"
#include "tests/docs/FencedBlocks.h"
#include "tests/docs/Pages.h"
#include "tests/support/Builders.h"
#include "tests/support/DoorFakes.h"
#include "tests/support/FakeClock.h"
#include "tests/support/FakeHost.h"
#include "tests/support/TempFolder.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

namespace {

using namespace TC;

/// The bytes that a cell of the page's table describes.
std::string bytesOf(std::string text) {
    text = replaced(text, "x{65537}", std::string(65537, 'x'));
    text = replaced(text, "\\r", "\r");
    text = replaced(text, "\\n", "\n");
    text = replaced(text, "\\0", std::string(1, '\0'));
    return replaced(text, "\\x1A", "\x1A");
}

class OrderFileGuardPage : public testing::Test {
protected:
    void SetUp() override {
        host.switches.on.insert("mdl_order_file_guard");
        host.audit.rejected = QString::fromStdString(folder.path("rejected"));
        std::filesystem::create_directory(folder.path("orders"));
        registry.strategies.insert(3, CStrategyBuilder().channel(3).file(folder.path("orders/stock.txt")));
    }
    void give(const std::string& bytes) {
        folder.handOver("orders/stock.txt", bytes);
        service.tryOrder();
    }
    static std::string readPage() {
        std::ifstream stream(kOrderFilePage);
        return {std::istreambuf_iterator<char>(stream), {}};
    }
    /// Runs a block of the page in the folder that contains orders/.
    int runShell(const std::string& block) const {
        return std::system(("cd '" + folder.path() + "' && set -e\n" + block).c_str());
    }

    CTempFolder folder;
    CFakeClock clock;
    CFakeHost host;
    CRecordingGate gate;
    CPlainRegistry registry;
    CFileService service{gate, registry};
};

TEST_F(OrderFileGuardPage, EveryFileOfTheTableIsRefusedForItsReason) {
    const std::vector<CTableRow> rows = readTable(kOrderFilePage, "## Damaged and incomplete files");
    for (const CTableRow& row : rows) {
        const std::vector<std::string> spans = codeSpans(row.at("File"));
        const std::string bytes = spans.empty() ? "" : bytesOf(spans[0]);
        give(bytes);
        const TC::CIntakeReport& report = host.audit.reports.back();
        EXPECT_TRUE(report.m_bRejected) << row.at("File");
        EXPECT_EQ(report.m_strCause.toStdString(), row.at("Report"));
    }
    EXPECT_EQ(host.audit.reports.size(), rows.size());
    EXPECT_EQ(rows.size(), 6u); // one for each fault
    EXPECT_TRUE(gate.batches.empty());
}

TEST_F(OrderFileGuardPage, WithoutTheGuardTheFirstFileIsOneOrder) {
    host.switches.on.erase("mdl_order_file_guard");
    give(bytesOf(
        codeSpans(readTable(kOrderFilePage, "## Damaged and incomplete files").at(0).at("File")).at(0)));
    const QVector<COrderParam> orders = gate.batches.at(0);
    ASSERT_EQ(orders.size(), 1);
    EXPECT_EQ(orders[0].m_orders.at(0).m_nVolume, 10024);
}

/// The names show whether orders of a kept file may have gone out.
TEST_F(OrderFileGuardPage, KeptFilesHaveTheNamesOfThePage) {
    const std::string page = readPage();
    give("23,0");
    folder.write("orders/stock.txt.tmp", "23,0\n");
    give("23,0\ncancel_order A1 1\n");
    gate.onCancel = [this] { std::ofstream(folder.path("orders/stock.txt.tmp"), std::ios::app) << "23,0\n"; };
    give("23,0\ncancel_order A1 1\n");
    for (const char* mark : {"", ".tmp", ".cut"}) {
        const std::string kept = std::string("rejected/stock.txt") + mark + ".20260105-093000-000";
        EXPECT_TRUE(folder.exists(kept)) << kept;
        EXPECT_NE(page.find('`' + kept + '`'), std::string::npos) << kept;
    }
}

TEST_F(OrderFileGuardPage, SymbolicLinkIsMovedAndNotTheFileItLeadsTo) {
    folder.write("orders/target", "23,0");
    std::filesystem::create_symlink("target", folder.path("orders/stock.txt"));
    service.tryOrder();
    EXPECT_EQ(std::filesystem::read_symlink(folder.path("rejected/stock.txt.20260105-093000-000")), "target");
    EXPECT_EQ(folder.read("orders/target"), "23,0");
}

/// Runs each shell block of the page like a reader. The first block hands over a file. The second block hands
/// over a file that was refused and then corrected.
TEST_F(OrderFileGuardPage, ShellBlocksHandFilesOver) {
    std::vector<std::string> blocks;
    for (const CFencedBlock& block : readFencedBlocks(kOrderFilePage)) {
        if (block.info == "sh") blocks.push_back(block.text);
    }
    ASSERT_EQ(blocks.size(), 2u);
    ASSERT_EQ(runShell(blocks[0]), 0);
    service.tryOrder();
    ASSERT_EQ(gate.batches.size(), 1u);
    EXPECT_EQ(gate.batches[0].size(), 1);

    give("23,0,10.5,600000,100\r24,0,10.6,600000,200\n");
    ASSERT_EQ(gate.batches.size(), 1u);
    folder.write("editor", "#!/bin/sh\ntr '\\r' '\\n' <\"$1\" >\"$1.new\"\nmv \"$1.new\" \"$1\"\n");
    ASSERT_EQ(runShell("EDITOR='sh editor'\n" + blocks[1]), 0);
    service.tryOrder();
    ASSERT_EQ(gate.batches.size(), 2u);
    EXPECT_EQ(gate.batches[1].size(), 2);
    EXPECT_TRUE(folder.exists("rejected/stock.txt.20260105-093000-000")); // the copy was corrected
}

} // namespace
