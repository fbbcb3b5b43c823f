#include "desk/commands/CommandLine.h"

#include <gtest/gtest.h>

#include <sys/wait.h>

#include <cstdio>
#include <optional>
#include <string>
#include <utility>
#include <variant>
#include <vector>

namespace desk {
namespace {

std::variant<CCommandLine, CLineEnd> readWords(std::vector<const char*> words) {
    words.insert(words.begin(), "orderdesk");
    return readCommandLine(static_cast<int>(words.size()), words.data());
}

std::string textOf(const std::vector<const char*>& words) {
    std::string text = "orderdesk";
    for (const char* word : words)
        text += std::string(" ") + word;
    return text;
}

/// The standard output of the shell command and its exit code.
std::pair<std::string, int> runInShell(const std::string& command) {
    FILE* output = ::popen(command.c_str(), "r");
    if (output == nullptr) return {"no shell", -1};
    std::string text;
    char bytes[4096];
    for (std::size_t count; (count = std::fread(bytes, 1, sizeof bytes, output)) > 0;)
        text.append(bytes, count);
    const int status = ::pclose(output);
    return {text, WIFEXITED(status) ? WEXITSTATUS(status) : -1};
}

struct CReadLine {
    std::vector<const char*> words;
    ECommand command;
    const char* folder;
    std::optional<double> exitWhenIdle;
    bool follow;
};

TEST(CommandLine, ReadsEveryCommand) {
    const std::vector<CReadLine> lines = {
        {{"new", "desk"}, ECommand::New, "desk", std::nullopt, false},
        {{"check", "desk"}, ECommand::Check, "desk", std::nullopt, false},
        {{"run", "desk"}, ECommand::Run, "desk", std::nullopt, false},
        {{"run", "desk", "--exit-when-idle", "0"}, ECommand::Run, "desk", 0.0, false},
        {{"run", "desk", "--exit-when-idle", "1.5"}, ECommand::Run, "desk", 1.5, false},
        {{"run", "--exit-when-idle", "2", "desk"}, ECommand::Run, "desk", 2.0, false},
        {{"journal", "desk"}, ECommand::Journal, "desk", std::nullopt, false},
        {{"journal", "desk", "--follow"}, ECommand::Journal, "desk", std::nullopt, true},
        {{"journal", "--follow", "desk"}, ECommand::Journal, "desk", std::nullopt, true},
    };
    for (const CReadLine& expected : lines) {
        const auto read = readWords(expected.words);
        const auto* line = std::get_if<CCommandLine>(&read);
        ASSERT_NE(line, nullptr) << textOf(expected.words);
        EXPECT_EQ(line->m_eCommand, expected.command) << textOf(expected.words);
        EXPECT_EQ(line->m_strFolder, expected.folder) << textOf(expected.words);
        EXPECT_EQ(line->m_exitWhenIdle, expected.exitWhenIdle) << textOf(expected.words);
        EXPECT_EQ(line->m_bFollow, expected.follow) << textOf(expected.words);
    }
}

TEST(CommandLine, NewMayHaveConfirmation) {
    const auto plain = readWords({"new", "desk"});
    const auto confirming = readWords({"new", "desk", "--confirm"});
    EXPECT_FALSE(std::get<CCommandLine>(plain).m_bConfirm);
    EXPECT_TRUE(std::get<CCommandLine>(confirming).m_bConfirm);
}

TEST(CommandLine, TakesTheNameOfAFolderAsItIs) {
    for (const char* folder :
         {"new", "run", "[a,b]", "\"a b\"", "两个 字", "a=b", "/run", "@file", "%a", ""}) {
        const auto read = readWords({"run", folder});
        const auto* line = std::get_if<CCommandLine>(&read);
        ASSERT_NE(line, nullptr) << folder;
        EXPECT_EQ(line->m_strFolder, folder);
    }
}

TEST(CommandLine, TwoDashesComeBeforeAFolderThatBeginsWithADash) {
    const auto read = readWords({"new", "--", "-desk"});
    const auto* line = std::get_if<CCommandLine>(&read);
    ASSERT_NE(line, nullptr);
    EXPECT_EQ(line->m_strFolder, "-desk");
}

TEST(CommandLine, TextsOfACallAreTakenAsTheyAre) {
    for (const char* json :
         {"{\"note\":\"备注\"}", "[1,2]", "{}", "%{a}", "\"a b\"", "a=b", "{\"a\":[1,2]}"}) {
        const auto read = readWords({"call", "desk", "passorder", json});
        const auto* line = std::get_if<CCommandLine>(&read);
        ASSERT_NE(line, nullptr) << json;
        EXPECT_EQ(line->m_eCommand, ECommand::Call);
        EXPECT_EQ(line->m_strFolder, "desk");
        EXPECT_EQ(line->m_call.m_strFunction, "passorder");
        EXPECT_EQ(line->m_call.m_strParam, json);
        EXPECT_EQ(line->m_call.m_algo, std::nullopt);
        const auto withAlgorithm = readWords({"call", "--algo", json, "desk", "买入", "{}"});
        line = std::get_if<CCommandLine>(&withAlgorithm);
        ASSERT_NE(line, nullptr) << json;
        EXPECT_EQ(line->m_call.m_strFunction, "买入");
        EXPECT_EQ(line->m_call.m_algo, json);
    }
}

TEST(CommandLine, EmptySettingsOfACallAreNotForgotten) {
    const auto read = readWords({"call", "desk", "passorder", "{}", "--algo", ""});
    const auto* line = std::get_if<CCommandLine>(&read);
    ASSERT_NE(line, nullptr);
    EXPECT_EQ(line->m_call.m_algo, "");
}

TEST(CommandLine, HelpOfEachLevelIsNoMistake) {
    const std::vector<std::pair<std::vector<const char*>, const char*>> lines = {
        {{"--help"}, "orderdesk [OPTIONS] SUBCOMMAND"},
        {{"-h"}, "orderdesk [OPTIONS] SUBCOMMAND"},
        {{"new", "--help"}, "orderdesk new [OPTIONS] FOLDER"},
        {{"check", "--help"}, "orderdesk check [OPTIONS] FOLDER"},
        {{"run", "--help"}, "orderdesk run [OPTIONS] FOLDER"},
        {{"run", "desk", "--help"}, "--exit-when-idle SECONDS"},
        {{"journal", "--help"}, "--follow"},
        {{"call", "--help"}, "orderdesk call [OPTIONS] FOLDER FUNCTION JSON"},
        {{"call", "--help"}, "--algo JSON"},
    };
    for (const auto& [words, text] : lines) {
        const auto read = readWords(words);
        const auto* end = std::get_if<CLineEnd>(&read);
        ASSERT_NE(end, nullptr) << textOf(words);
        EXPECT_EQ(end->m_nExitCode, 0) << textOf(words);
        EXPECT_FALSE(end->m_bToError) << textOf(words);
        EXPECT_NE(end->m_strText.find(text), std::string::npos) << end->m_strText;
    }
}

TEST(CommandLine, HelpNamesEveryCommand) {
    const auto read = readWords({"--help"});
    const auto* end = std::get_if<CLineEnd>(&read);
    ASSERT_NE(end, nullptr);
    for (const char* command : {"\n  new ", "\n  check ", "\n  run ", "\n  journal ", "\n  call "})
        EXPECT_NE(end->m_strText.find(command), std::string::npos) << end->m_strText;
}

TEST(CommandLine, VersionOfEachLevelIsTheSame) {
    const std::vector<std::vector<const char*>> lines = {
        {"--version"},        {"new", "--version"},     {"check", "--version"},
        {"run", "--version"}, {"journal", "--version"}, {"call", "--version"}};
    for (const auto& words : lines) {
        const auto read = readWords(words);
        const auto* end = std::get_if<CLineEnd>(&read);
        ASSERT_NE(end, nullptr) << textOf(words);
        EXPECT_EQ(end->m_nExitCode, 0) << textOf(words);
        EXPECT_FALSE(end->m_bToError) << textOf(words);
        EXPECT_EQ(end->m_strText, "orderdesk " ORDERDESK_VERSION "\n") << textOf(words);
    }
}

TEST(CommandLine, MistakesHaveCodeTwoAndBelongOnStandardError) {
    const std::vector<std::vector<const char*>> lines = {
        {},
        {"bogus"},
        {"bogus", "desk"},
        {"help"},
        {"new"},
        {"check"},
        {"run"},
        {"journal"},
        {"call"},
        {"call", "desk"},
        {"call", "desk", "cancel"},
        {"call", "desk", "cancel", "{}", "more"},
        {"call", "desk", "cancel", "{}", "--algo"},
        {"new", "desk", "other"},
        {"new", "-desk"},
        {"run", "new", "desk"},
        {"run", "desk", "--follow"},
        {"journal", "desk", "--exit-when-idle", "1"},
        {"journal", "desk", "--fol"},
        {"--follow", "journal", "desk"},
        {"run", "desk", "--exit-when-idle"},
        {"run", "desk", "--exit-when-idle", ""},
        {"run", "desk", "--exit-when-idle", "-1"},
        {"run", "desk", "--exit-when-idle", "nan"},
        {"run", "desk", "--exit-when-idle", "1x"},
        {"run", "desk", "--exit-when-idle", "1,5"},
        {"run", "desk", "--exit-when-idle", "1", "--exit-when-idle", "2"},
    };
    for (const auto& words : lines) {
        const auto read = readWords(words);
        const auto* end = std::get_if<CLineEnd>(&read);
        ASSERT_NE(end, nullptr) << textOf(words);
        EXPECT_EQ(end->m_nExitCode, 2) << textOf(words);
        EXPECT_TRUE(end->m_bToError) << textOf(words);
        EXPECT_NE(end->m_strText, "") << textOf(words);
    }
}

TEST(CommandLine, SecondsThatAreNoneAreNamed) {
    const auto read = readWords({"run", "desk", "--exit-when-idle", "soon"});
    const auto* end = std::get_if<CLineEnd>(&read);
    ASSERT_NE(end, nullptr);
    EXPECT_EQ(end->m_strText.rfind("--exit-when-idle: soon is not a number of seconds, 0 or more\n", 0), 0U)
        << end->m_strText;
}

TEST(CommandLine, WithoutACommandTheCommandsAreListed) {
    const auto read = readWords({});
    const auto* end = std::get_if<CLineEnd>(&read);
    ASSERT_NE(end, nullptr);
    EXPECT_NE(end->m_strText.find("\n  journal "), std::string::npos) << end->m_strText;
}

TEST(CommandLine, TheProgramPrintsHelpOnStandardOutputAndMistakesOnStandardError) {
    const std::string program = ORDERDESK_PROGRAM;
    const auto [version, versionCode] = runInShell(program + " --version 2>/dev/null");
    EXPECT_EQ(versionCode, 0);
    EXPECT_EQ(version, "orderdesk " ORDERDESK_VERSION "\n");
    const auto [help, helpCode] = runInShell(program + " run --help 2>/dev/null");
    EXPECT_EQ(helpCode, 0);
    EXPECT_NE(help.find("--exit-when-idle SECONDS"), std::string::npos) << help;
    const auto [call, callCode] = runInShell(program + " call / cancel '{}' 2>&1 >/dev/null");
    EXPECT_EQ(callCode, 3);
    EXPECT_EQ(call, "/: this is not a desk folder: it has no desk.toml\n");
    const auto [output, outputCode] = runInShell(program + " run 2>/dev/null");
    EXPECT_EQ(outputCode, 2);
    EXPECT_EQ(output, "");
    const auto [error, errorCode] = runInShell(program + " run 2>&1 >/dev/null");
    EXPECT_EQ(errorCode, 2);
    EXPECT_EQ(error.rfind("FOLDER is required\n", 0), 0U) << error;
}

} // namespace
} // namespace desk
