// Sends the order files and conversations of each transcript through the real service: file or socket, queue,
// check, command.
#include "tests/acceptance/Transcript.h"
#include "tests/acceptance/ServiceRun.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <map>

namespace {

std::vector<std::string> transcriptNames() {
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(TRANSCRIPTS)) {
        if (entry.path().extension() == ".txt") names.push_back(entry.path().stem().string());
    }
    std::sort(names.begin(), names.end());
    return names;
}

/// The actual and the expected results of a transcript's steps.
struct CPlayed {
    std::vector<std::string> came;
    std::vector<std::string> expected;
};

std::string joined(const std::vector<std::string>& lines) {
    std::string text;
    for (const std::string& line : lines)
        text += line + "\n";
    return text;
}

CPlayed play(CServiceRun& run, const std::string& name) {
    CPlayed played;
    for (const CTranscript::CStep& step :
         readTranscript(std::string(TRANSCRIPTS) + "/" + name + ".txt").steps) {
        for (const CStatement& statement : step.statements)
            run.apply(statement);
        played.came.push_back(joined(run.takeLog()));
        played.expected.push_back(joined(step.expected));
    }
    return played;
}

class Transcript : public testing::TestWithParam<std::string> {};

TEST_P(Transcript, ComesOutAsWritten) {
    CServiceRun run;
    const CPlayed played = play(run, GetParam());
    ASSERT_FALSE(played.came.empty());
    for (std::size_t i = 0; i < played.came.size(); ++i)
        EXPECT_EQ(played.came[i], played.expected[i]);
}

/// Transcripts with orders that the command guard refuses, and the reason.
const std::map<std::string, const char*>& refusedByTheGuard() {
    static const std::map<std::string, const char*> reasons{
        {"command_guard", "its first step has an order without a code, while the guard is off"},
        {"credit_contracts", "an end of a contract (37) that names neither contract nor instrument"},
        {"refused_credit", "shares bought back (29) at a price of 0"}};
    return reasons;
}

/// The guard must not change the result of a valid order.
TEST_P(Transcript, IsTheSameWithTheCommandGuard) {
    CServiceRun run;
    run.apply({"switch", "mdl_order_command_guard", {}, {}});
    const CPlayed played = play(run, GetParam());
    const auto refused = refusedByTheGuard().find(GetParam());
    const bool isListed = refused != refusedByTheGuard().end();
    int refusals = 0;
    for (std::size_t i = 0; i < played.came.size(); ++i) {
        if (played.came[i] == played.expected[i]) continue;
        const bool isRefusal = isListed && played.came[i].find("未发出!") != std::string::npos;
        EXPECT_TRUE(isRefusal) << "came:\n" << played.came[i] << "expected:\n" << played.expected[i];
        ++refusals;
    }
    EXPECT_EQ(refusals, isListed ? 1 : 0);
}

INSTANTIATE_TEST_SUITE_P(Doors, Transcript, testing::ValuesIn(transcriptNames()),
                         [](const auto& test) { return test.param; });

TEST(Transcripts, AreAllThere) {
    const std::vector<std::string> names = transcriptNames();
    EXPECT_GE(names.size(), 113u);
    for (const auto& refused : refusedByTheGuard())
        EXPECT_TRUE(std::binary_search(names.begin(), names.end(), refused.first)) << refused.first;
}

} // namespace
