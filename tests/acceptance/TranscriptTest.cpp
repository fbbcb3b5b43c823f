// Takes the order files and conversations of each transcript down the real road: file or socket, queue,
// check, command.
#include "tests/acceptance/Transcript.h"
#include "tests/acceptance/Road.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>

namespace {

std::vector<std::string> transcriptNames() {
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(TRANSCRIPTS)) {
        if (entry.path().extension() == ".txt") names.push_back(entry.path().stem().string());
    }
    std::sort(names.begin(), names.end());
    return names;
}

class Transcript : public testing::TestWithParam<std::string> {};

TEST_P(Transcript, ComesOutAsWritten) {
    const CTranscript transcript = readTranscript(std::string(TRANSCRIPTS) + "/" + GetParam() + ".txt");
    ASSERT_FALSE(transcript.steps.empty());
    CRoad road;
    for (const CTranscript::CStep& step : transcript.steps) {
        for (const CStatement& statement : step.statements)
            road.apply(statement);
        std::string came, expected;
        for (const std::string& line : road.takeLog())
            came += line + "\n";
        for (const std::string& line : step.expected)
            expected += line + "\n";
        EXPECT_EQ(came, expected);
    }
}

INSTANTIATE_TEST_SUITE_P(Doors, Transcript, testing::ValuesIn(transcriptNames()),
                         [](const auto& test) { return test.param; });

TEST(Transcripts, AreAllThere) {
    EXPECT_GE(transcriptNames().size(), 95u);
}

} // namespace
