#include "desk/commands/CheckFolder.h"

#include "desk/commands/FolderState.h"
#include "desk/market/Market.h"
#include "desk/paper/PaperStore.h"
#include "desk/paper/TakeIn.h"

#include <functional>
#include <optional>
#include <set>

namespace desk {
namespace {

/// Adds a mistake for each chosen account whose funds or positions the paper broker would refuse.
void tryTakeIn(CLoadedConfig& loaded, const std::function<bool(const CAccountEntry&)>& isChosen) {
    constexpr int kNoLine = 0;
    const CDeskConfig& config = loaded.config;
    const CMarket market(config.instruments, config.quotes, config.quoteChanges);
    for (const CAccountEntry& account : config.accounts) {
        if (!isChosen(account)) continue;
        CPaperBook book;
        const utils::KNError taken = takeInAccount(book, market, account);
        const char* file = hasSoundFunds(account) ? "positions.csv" : "desk.toml";
        if (!taken.isSuccess()) loaded.mistakes.push_back({file, kNoLine, taken.errorMsg()});
    }
}

std::string placeOf(const CDiagnostic& diagnostic) {
    return diagnostic.file + ':' + (diagnostic.line > 0 ? std::to_string(diagnostic.line) + ':' : "") + ' ';
}

/// Returns "1 warning" or "2 warnings"; an empty text if there are none.
std::string countText(std::size_t count, const std::string& word) {
    return count == 0 ? std::string() : std::to_string(count) + ' ' + word + (count == 1 ? "" : "s");
}

} // namespace

void printMistakes(const std::vector<CDiagnostic>& mistakes, std::ostream& out) {
    for (const CDiagnostic& mistake : mistakes)
        out << placeOf(mistake) << mistake.message << '\n';
}

std::string warningText(const CDiagnostic& warning) {
    return placeOf(warning) + "warning: " + warning.message;
}

CLoadedConfig readDeskFolder(const std::string& folder) {
    CLoadedConfig loaded = loadDeskConfig(folder);
    if (!loaded.mistakes.empty()) return loaded;
    const std::optional<std::set<std::string>> stored = storedAccounts(folder);
    // If the store cannot be read, the accounts in its books are not known. The paper broker reports later
    // why it cannot read the store.
    if (!stored) return loaded;
    tryTakeIn(loaded, [&](const CAccountEntry& account) { return stored->count(account.key) == 0; });
    return loaded;
}

int runCheck(const std::string& folder, std::ostream& out) {
    constexpr int kGood = 0;
    constexpr int kMistakes = 2;
    CLoadedConfig loaded = loadDeskConfig(folder);
    if (loaded.mistakes.empty()) tryTakeIn(loaded, [](const CAccountEntry&) { return true; });
    if (loaded.mistakes.empty()) {
        const std::vector<CDiagnostic> found = stateWarnings(folder, loaded.config);
        loaded.warnings.insert(loaded.warnings.end(), found.begin(), found.end());
    }
    printMistakes(loaded.mistakes, out);
    for (const CDiagnostic& warning : loaded.warnings)
        out << warningText(warning) << '\n';
    const std::string warnings = countText(loaded.warnings.size(), "warning");
    const std::string further = warnings.empty() ? "" : ", " + warnings;
    if (!loaded.mistakes.empty()) {
        out << folder << ": " << countText(loaded.mistakes.size(), "mistake") << further << '\n';
        return kMistakes;
    }
    out << folder << ": good; " << loaded.config.accounts.size() << " accounts, "
        << loaded.config.strategies.size() << " strategies, " << loaded.config.instruments.size()
        << " instruments" << further << '\n';
    return kGood;
}

} // namespace desk
