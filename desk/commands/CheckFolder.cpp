#include "desk/commands/CheckFolder.h"

#include "desk/market/Market.h"
#include "desk/paper/TakeIn.h"

namespace desk {

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
    const CMarket market(loaded.config.instruments, loaded.config.quotes, loaded.config.quoteChanges);
    for (const CAccountEntry& account : loaded.config.accounts) {
        CPaperBook book;
        const utils::KNError taken = takeInAccount(book, market, account);
        constexpr int kNoLine = 0;
        if (!taken.isSuccess()) loaded.mistakes.push_back({"positions.csv", kNoLine, taken.errorMsg()});
    }
    return loaded;
}

int runCheck(const std::string& folder, std::ostream& out) {
    constexpr int kGood = 0;
    constexpr int kMistakes = 2;
    const CLoadedConfig loaded = readDeskFolder(folder);
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
