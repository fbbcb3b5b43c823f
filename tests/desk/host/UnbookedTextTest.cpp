#include "desk/host/Leftovers.h"

#include <gtest/gtest.h>

namespace {

TEST(UnbookedText, NamesTheTasksThatWereNotCarriedOut) {
    EXPECT_EQ(desk::unbookedText(41, 63),
              "Tasks 41 to 63 have a \"command\" line but were not carried out and have no orders. Send them "
              "again if you still want them.");
    EXPECT_EQ(desk::unbookedText(7, 7),
              "Task 7 has a \"command\" line but was not carried out and has no orders. "
              "Send it again if you still want it.");
}

} // namespace
