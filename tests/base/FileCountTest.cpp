#include "orderservice/base/FileCount.h"

#include "tests/support/TempFolder.h"

#include <gtest/gtest.h>

#include <sys/stat.h>

#include <filesystem>

namespace {

struct CCase {
    const char* name;
    std::string bytes;
    long long lines;
};

class FileCount : public testing::TestWithParam<CCase> {};

TEST_P(FileCount, CountsBytesAndLines) {
    const CTempFolder folder;
    folder.write("file", GetParam().bytes);
    const auto count = utils::countFile(folder.path("file"));
    ASSERT_TRUE(count);
    EXPECT_EQ(count->bytes, static_cast<long long>(GetParam().bytes.size()));
    EXPECT_EQ(count->lines, GetParam().lines);
}

INSTANTIATE_TEST_SUITE_P(Files, FileCount,
                         testing::Values(CCase{"Empty", "", 0}, CCase{"OneLine", "a\n", 1},
                                         CCase{"HalfLine", "a", 1}, CCase{"LastLineIsHalf", "a\n\nb", 3},
                                         CCase{"LargerThanABuffer", std::string(200000, '\n') + "x", 200001}),
                         [](const auto& row) { return std::string(row.param.name); });

TEST(FileCount, OnlyRegularFilesAreCounted) {
    const CTempFolder folder;
    ASSERT_EQ(::mkfifo(folder.path("pipe").c_str(), 0600), 0);
    EXPECT_FALSE(utils::countFile(folder.path("pipe")));
    EXPECT_FALSE(utils::countFile(folder.path()));
    EXPECT_FALSE(utils::countFile(folder.path("missing")));
}

} // namespace
