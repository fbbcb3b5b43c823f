#include "desk/config/CsvReader.h"

#include "tests/support/TempFolder.h"

#include <gtest/gtest.h>

namespace desk {
namespace {

class CsvReader : public testing::Test {
protected:
    std::vector<CCsvRow> read(const std::string& bytes) {
        m_folder.write("t.csv", bytes);
        return readCsv(m_folder.path(), "t.csv", {"a", "b", "c"}, {"a"}, true, m_diagnostics);
    }
    /// The mistakes so far, as "line: message".
    std::vector<std::string> mistakes() {
        std::vector<std::string> lines;
        for (const CDiagnostic& mistake : m_diagnostics.take())
            lines.push_back(std::to_string(mistake.line) + ": " + mistake.message);
        return lines;
    }

    CTempFolder m_folder;
    CDiagnostics m_diagnostics;
};

using Mistakes = std::vector<std::string>;

TEST_F(CsvReader, CellsAreFoundByTheNameOfTheirColumn) {
    const auto rows = read("b,a\n1,2\n3,4\n");
    ASSERT_EQ(rows.size(), 2U);
    EXPECT_EQ(rows[0].text("a"), "2");
    EXPECT_EQ(rows[0].text("b"), "1");
    EXPECT_EQ(rows[1].text("a"), "4");
    EXPECT_EQ(mistakes(), Mistakes{});
}

TEST_F(CsvReader, AMissingColumnAndAShortRowAreEmptyCells) {
    const auto rows = read("a,b\n1\n");
    ASSERT_EQ(rows.size(), 1U);
    EXPECT_EQ(rows[0].text("b"), "");
    EXPECT_EQ(rows[0].text("c"), "");
    EXPECT_EQ(mistakes(), Mistakes{});
}

TEST_F(CsvReader, ByteOrderMarkAndCarriageReturnsBelongToNoCell) {
    const auto rows = read("\xEF\xBB\xBF"
                           "a,b\r\n1,2\r\n");
    ASSERT_EQ(rows.size(), 1U);
    EXPECT_EQ(rows[0].text("a"), "1");
    EXPECT_EQ(rows[0].text("b"), "2");
    EXPECT_EQ(mistakes(), Mistakes{});
}

TEST_F(CsvReader, RemarksAndEmptyLinesArePassedOverButCounted) {
    const auto rows = read("# remark\n\na\n  # another\n7\n");
    ASSERT_EQ(rows.size(), 1U);
    EXPECT_EQ(rows[0].line, 5);
    EXPECT_EQ(rows[0].text("a"), "7");
}

TEST_F(CsvReader, LastLineCountsWithoutALineEnd) {
    const auto rows = read("a\n7");
    ASSERT_EQ(rows.size(), 1U);
    EXPECT_EQ(rows[0].text("a"), "7");
}

TEST_F(CsvReader, QuotedCellsHoldCommasAndQuotes) {
    EXPECT_EQ(splitCsvLine("\"a,b\",\"say \"\"hi\"\"\", c "),
              (std::vector<std::string>{"a,b", "say \"hi\"", "c"}));
    EXPECT_EQ(splitCsvLine(""), std::vector<std::string>{""});
    EXPECT_EQ(splitCsvLine(",\"\","), (std::vector<std::string>{"", "", ""}));
    EXPECT_EQ(splitCsvLine("\"open"), std::nullopt);
}

TEST_F(CsvReader, AnOpenQuoteIsReportedAndTheOtherRowsAreRead) {
    const auto rows = read("a\n\"open\n2\n");
    ASSERT_EQ(rows.size(), 1U);
    EXPECT_EQ(rows[0].text("a"), "2");
    EXPECT_EQ(mistakes(), Mistakes{"2: a quote is not closed; expected a second \" on the same line"});
}

TEST_F(CsvReader, ColumnsThatAreUnknownTwiceOrMissingAreAllReported) {
    read("b,x,b\n");
    EXPECT_EQ(mistakes(), (Mistakes{"1: unknown column \"x\"; expected one of a, b, c",
                                    "1: column \"b\" is defined twice", "1: column \"a\" is missing"}));
}

TEST_F(CsvReader, ARowWithMoreCellsThanColumnsIsReported) {
    EXPECT_TRUE(read("a,b\n1,2,3\n").empty());
    EXPECT_EQ(mistakes(), Mistakes{"2: 3 cells; expected at most 2, one for each column"});
}

TEST_F(CsvReader, BytesThatAreNotUtf8AreReported) {
    read("a\n\xC6\xD6\xBD\xAD\n");
    EXPECT_EQ(mistakes(), Mistakes{"2: is not UTF-8; expected the table saved as UTF-8"});
}

TEST_F(CsvReader, AFileWithoutColumnNamesIsReported) {
    EXPECT_TRUE(read("# nothing else\n").empty());
    EXPECT_EQ(mistakes(), Mistakes{"1: no line with column names; expected a"});
}

TEST_F(CsvReader, AMissingFileIsAMistakeOnlyWhereItIsMandatory) {
    EXPECT_TRUE(readCsv(m_folder.path(), "no.csv", {"a"}, {"a"}, false, m_diagnostics).empty());
    EXPECT_EQ(mistakes(), Mistakes{});
    EXPECT_TRUE(readCsv(m_folder.path(), "no.csv", {"a"}, {"a"}, true, m_diagnostics).empty());
    EXPECT_EQ(mistakes(), Mistakes{"0: cannot be read; expected a table with the columns a"});
}

TEST_F(CsvReader, AFileThatIsThereAndCannotBeReadIsAlwaysAMistake) {
    std::filesystem::create_directory(m_folder.path("d.csv"));
    EXPECT_TRUE(readCsv(m_folder.path(), "d.csv", {"a"}, {"a"}, false, m_diagnostics).empty());
    EXPECT_EQ(mistakes(), Mistakes{"0: cannot be read; expected a table with the columns a"});
}

TEST_F(CsvReader, AnEmptyFileIsReadAndHasNoColumns) {
    EXPECT_TRUE(read("").empty());
    EXPECT_EQ(mistakes(), Mistakes{"1: no line with column names; expected a"});
}

} // namespace
} // namespace desk
