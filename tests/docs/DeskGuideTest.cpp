// Does what docs/desk.md tells its reader to do, and compares the result with the page.
#include "desk/commands/CallDesk.h"
#include "desk/commands/CheckFolder.h"
#include "desk/commands/CommandLine.h"
#include "desk/commands/ShowJournal.h"
#include "tests/desk/commands/RunningFolder.h"
#include "tests/docs/FencedBlocks.h"
#include "tests/docs/PageTable.h"

#include <filesystem>
#include <fstream>
#include <future>
#include <iterator>
#include <optional>
#include <regex>
#include <set>
#include <sstream>
#include <string>
#include <variant>
#include <vector>

namespace desk {
namespace {

const std::string kGuide = std::string(SOURCE_DIR) + "/docs/desk.md";

std::vector<CFencedBlock> blocksOf(const std::string& info) {
    std::vector<CFencedBlock> found;
    for (const CFencedBlock& block : readFencedBlocks(kGuide)) {
        if (block.info == info) found.push_back(block);
    }
    return found;
}

std::vector<std::string> linesOf(const std::string& text) {
    std::vector<std::string> lines;
    std::istringstream stream(text);
    for (std::string line; std::getline(stream, line);)
        lines.push_back(line);
    return lines;
}

/// The words of a command, without the quotes of the shell. No word of the page has a blank.
std::vector<std::string> wordsOf(const std::string& command) {
    std::istringstream stream(replaced(command, "'", ""));
    return {std::istream_iterator<std::string>(stream), {}};
}

TEST(DeskGuideTexts, EveryCommandIsUnderstood) {
    std::set<ECommand> commands;
    for (const CFencedBlock& block : blocksOf("sh")) {
        for (const std::string& line : linesOf(replaced(block.text, "\\\n", ""))) {
            const std::vector<std::string> words = wordsOf(line);
            if (words.at(0) != "orderdesk") continue;
            std::vector<const char*> argv;
            for (const std::string& word : words)
                argv.push_back(word.c_str());
            const auto read = readCommandLine(static_cast<int>(argv.size()), argv.data());
            ASSERT_TRUE(std::holds_alternative<CCommandLine>(read)) << line;
            EXPECT_EQ(std::get<CCommandLine>(read).m_strFolder, "my-desk");
            commands.insert(std::get<CCommandLine>(read).m_eCommand);
        }
    }
    EXPECT_EQ(commands.size(), 5u) << "new, check, run, call and journal";
}

class DeskGuide : public CRunningFolder {
protected:
    void handOver(const std::string& lines) const { folder.handOver("desk/orders/group.txt", lines); }
    /// Carries out the call of the page and returns what it prints.
    std::string callOfThePage() const {
        for (const CFencedBlock& block : blocksOf("sh")) {
            const std::vector<std::string> words = wordsOf(replaced(block.text, "\\\n", ""));
            if (words.size() != 5 || words[1] != "call") continue;
            std::ostringstream printed;
            EXPECT_EQ(runCall(folder.path("desk"), {words[3], words[4], std::nullopt}, printed, printed), 0);
            return printed.str();
        }
        return "the page has no call";
    }
    /// Whether the screen has shown each line of the page.
    void expectShown(const CFencedBlock& block) const {
        for (const std::string& line : linesOf(block.text))
            EXPECT_NE(out.str().find(line + "\n"), std::string::npos) << line << "\n" << out.str();
    }
};

TEST_F(DeskGuide, FirstHourShowsTheLinesOfThePage) {
    std::ostringstream checked;
    EXPECT_EQ(runCheck(folder.path("desk"), checked), 0);
    EXPECT_EQ(checked.str().find(folder.path("desk") + ": good"), 0u) << checked.str();
    const std::vector<CFencedBlock> files = blocksOf("order-file"), screens = blocksOf("screen");
    ASSERT_EQ(files.size(), 2u);
    ASSERT_EQ(screens.size(), 2u);
    const auto isOrder = [this](int order, const std::string& status) {
        const std::regex line("\"order\":" + std::to_string(order) + ",[^\n]*\"status\":\"" + status + '"');
        return std::regex_search(journal(), line);
    };
    std::future<std::string> call;
    const int code = run({
        [this] { return has("\"action\":\"start\",\"channel\":16"); },
        [&] {
            handOver(files[0].text);
            return true;
        },
        [&] { return isOrder(5, "rejected"); },
        [&] {
            handOver(files[1].text);
            return true;
        },
        [&] { return isOrder(4, "cancelled"); },
        [&] {
            call = std::async(std::launch::async, [this] { return callOfThePage(); });
            return true;
        },
        [&] { return call.wait_for(std::chrono::seconds(0)) == std::future_status::ready; },
    });
    const std::vector<CFencedBlock> calls = blocksOf("call");
    ASSERT_EQ(calls.size(), 1u);
    EXPECT_EQ(call.get(), calls[0].text);
    EXPECT_EQ(code, 0);
    for (const CFencedBlock& screen : screens)
        expectShown(screen);
    EXPECT_NE(out.str().find("group: 启动成功"), std::string::npos);
    std::ostringstream shown;
    EXPECT_EQ(runJournal(folder.path("desk"), false, shown, shown, [] { return false; }), 0);
    EXPECT_NE(shown.str().find("rejected"), std::string::npos);
    // Daily work: it starts again, and a copy of the folder works too.
    EXPECT_EQ(runDesk(folder.path("desk"), 0.0, out, [] { return true; }), 0);
    std::filesystem::copy(folder.path("desk"), folder.path("copy"), std::filesystem::copy_options::recursive);
    EXPECT_EQ(runDesk(folder.path("copy"), 0.0, out, [] { return true; }), 0) << out.str();
}

/// The texts of the desk's sources, joined as the compiler joins them.
std::string textsOfTheDesk() {
    std::string texts;
    static const std::regex kJoined("\"\\s*\n\\s*\"");
    for (const auto& entry :
         std::filesystem::recursive_directory_iterator(std::string(SOURCE_DIR) + "/desk")) {
        if (entry.path().extension() != ".cpp") continue;
        std::ifstream file(entry.path());
        const std::string source{std::istreambuf_iterator<char>(file), {}};
        texts += std::regex_replace(source, kJoined, "");
    }
    return texts;
}

/// The fixed parts of a text such as "... is in use by process ...".
std::vector<std::string> fixedParts(const std::string& text) {
    std::vector<std::string> parts;
    for (const std::string& part : linesOf(replaced(text, "...", "\n"))) {
        // A colon between two parts is often a text of its own.
        std::string fixed = trimmed(part);
        while (!fixed.empty() && fixed.back() == ':')
            fixed.pop_back();
        if (!fixed.empty()) parts.push_back(fixed);
    }
    return parts;
}

TEST(DeskGuideTexts, EveryLineOfTheScreenIsATextOfTheDesk) {
    const std::string texts = textsOfTheDesk();
    int parts = 0;
    for (const CTableRow& row : readTable(kGuide, "## What to do when")) {
        for (const std::string& text : codeSpans(row.at("The screen says"))) {
            for (const std::string& part : fixedParts(text)) {
                EXPECT_NE(texts.find(part), std::string::npos) << part;
                ++parts;
            }
        }
        EXPECT_NE(row.at("It means"), "");
        EXPECT_NE(row.at("Do this"), "");
    }
    EXPECT_GT(parts, 25);
}

/// The texts that `check`, the screen or the journal shows for a danger: "`check`: `text`".
std::vector<std::string> textsSeenBy(const std::string& cell, const std::string& who) {
    std::vector<std::string> texts;
    for (const std::string& part : linesOf(replaced(cell, "; ", "\n"))) {
        if (part.compare(0, who.size(), who) != 0) continue;
        std::vector<std::string> spans = codeSpans(part.substr(who.size()));
        texts.insert(texts.end(), spans.begin(), spans.end());
    }
    return texts;
}

TEST(DeskGuideTexts, EveryDangerSaysWhatHappensWhoSeesItAndWhatToDo) {
    const std::string texts = textsOfTheDesk();
    const std::vector<CTableRow> rows = readTable(kGuide, "## Dangers");
    for (const CTableRow& row : rows) {
        for (const auto& [head, cell] : row)
            EXPECT_NE(cell, "") << row.at("Danger") << ": " << head;
        EXPECT_EQ(row.at("Danger").compare(0, 7, "<a id=\""), 0) << row.at("Danger");
        for (const std::string& text : textsSeenBy(row.at("Who sees it where"), "screen: "))
            EXPECT_NE(texts.find(text), std::string::npos) << text;
    }
    EXPECT_GE(rows.size(), 30u);
}

/// A change of the demo folder that makes `check` warn of a danger. If there is no text to replace, the file
/// is created.
struct CDangerousChange {
    const char* file;
    const char* what;
    const char* by;
};

const CDangerousChange kDangerousChanges[] = {
    {"orders/group.txt", "", "23,0\n"},
    {"desk.toml", "mdl_order_file_guard = true", "mdl_order_file_guard = false"},
    {"desk.toml", "volume = 100, weight = 2.0", "volume = 100"},
    {"desk.toml", "name = \"weighted\"", "name = \"all\""},
    {"desk.toml", "mdl_order_command_guard = true", "mdl_order_command_guard = false"},
    {"strategies.toml", "price_type = \"specified\"", "price_type = 29"},
    {"strategies.toml", "volume = 200\n", "volume = 200\nfirst_limit = 10.0\n"},
    {"strategies.toml", "volume = 200\n", "volume = 200\norder_kind = 1\n"},
    {"desk.toml", "kind = 100 ", "kind = 102 "},
    {"desk.toml", "order_service = true ", "order_service = false\nhint_bits = 32 #"},
    {"desk.toml", "allow_remote = false", "allow_remote = true"},
    {"desk.toml", "mdl_order_socket_guard = true", "mdl_order_socket_guard = false"},
    {"quotes.csv", "SZ300301,40,40,39.99", "SZ300301,40,40\n#"},
    {"journal.jsonl", "", "{\"kind\":\"order\",\"time\":\"t\",\"seq\":1,\"event\":1,\"order\":1}\n"},
};

/// Texts that need several changes. tests/desk/config/FolderWarningsTest.cpp has them.
const std::set<std::string> kTestedElsewhere = {"the bare code means SH", "has several credit accounts",
                                                "nobody is asked"};

TEST(DeskGuideTexts, CheckWarnsOfEveryDangerAsThePageSays) {
    std::string warnings;
    for (const CDangerousChange& change : kDangerousChanges) {
        const CTempFolder folder;
        std::ostringstream out;
        ASSERT_EQ(runNew(folder.path("desk"), false, out, out), 0);
        std::filesystem::create_directories(folder.path("desk/orders"));
        const std::string file = std::string("desk/") + change.file;
        const bool isNew = *change.what == '\0';
        std::string text = isNew ? change.by : folder.read(file);
        if (!isNew) {
            ASSERT_NE(text.find(change.what), std::string::npos) << change.what;
            text.replace(text.find(change.what), std::string(change.what).size(), change.by);
        }
        folder.write(file, text);
        std::ostringstream printed;
        EXPECT_EQ(runCheck(folder.path("desk"), printed), 0) << printed.str();
        warnings += printed.str();
    }
    int found = 0;
    for (const CTableRow& row : readTable(kGuide, "## Dangers")) {
        for (const std::string& text : textsSeenBy(row.at("Who sees it where"), "`check`")) {
            if (text == ": " || kTestedElsewhere.count(text) != 0) continue;
            EXPECT_NE(warnings.find(text), std::string::npos) << text;
            ++found;
        }
    }
    EXPECT_GE(found, static_cast<int>(std::size(kDangerousChanges)));
}

} // namespace
} // namespace desk
