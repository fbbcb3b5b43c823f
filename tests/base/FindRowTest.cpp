#include "orderservice/base/FindRow.h"

#include <gtest/gtest.h>

namespace {

struct CRow {
    int key;
    const char* text;
};

constexpr CRow kTable[] = {{1, "one"}, {2, "two"}, {2, "another two"}};

constexpr const CRow* find(int key) {
    return utils::findRow(kTable, [key](const CRow& row) { return row.key == key; });
}

TEST(FindRow, FirstRowThatFitsIsFound) {
    static_assert(find(1) == kTable);
    EXPECT_STREQ(find(2)->text, "two");
}

TEST(FindRow, WithoutAFittingRowTheResultIsNull) {
    EXPECT_EQ(find(3), nullptr);
}

} // namespace
