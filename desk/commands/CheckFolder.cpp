#include "desk/commands/CheckFolder.h"

#include "desk/market/Market.h"
#include "desk/paper/PaperStore.h"
#include "desk/paper/TakeIn.h"

#include <functional>
#include <optional>
#include <set>

namespace desk {
namespace {

/// Adds the mistakes of chosen accounts that the paper broker would make of their funds and positions.
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

} // namespace

void printMistakes(const std::vector<CDiagnostic>& mistakes, std::ostream& out) {
    for (const CDiagnostic& mistake : mistakes) {
        out << mistake.file << ':';
        if (mistake.line > 0) out << mistake.line << ':';
        out << ' ' << mistake.message << '\n';
    }
}

CLoadedConfig readDeskFolder(const std::string& folder) {
    CLoadedConfig loaded = loadDeskConfig(folder);
    if (!loaded.mistakes.empty()) return loaded;
    const std::optional<std::set<std::string>> stored = storedAccounts(folder);
    // Without a readable store nobody knows whom the broker would take in; it says itself why it cannot read
    // it.
    if (!stored) return loaded;
    tryTakeIn(loaded, [&](const CAccountEntry& account) { return stored->count(account.key) == 0; });
    return loaded;
}

int runCheck(const std::string& folder, std::ostream& out) {
    constexpr int kGood = 0;
    constexpr int kMistakes = 2;
    CLoadedConfig loaded = loadDeskConfig(folder);
    if (loaded.mistakes.empty()) tryTakeIn(loaded, [](const CAccountEntry&) { return true; });
    printMistakes(loaded.mistakes, out);
    if (!loaded.mistakes.empty()) {
        out << folder << ": " << loaded.mistakes.size() << " mistakes\n";
        return kMistakes;
    }
    out << folder << ": good; " << loaded.config.accounts.size() << " accounts, "
        << loaded.config.strategies.size() << " strategies, " << loaded.config.instruments.size()
        << " instruments\n";
    return kGood;
}

} // namespace desk
