#include "desk/commands/CheckFolder.h"

#include "desk/config/ConfigLoader.h"

namespace desk {

void printMistakes(const std::vector<CDiagnostic>& mistakes, std::ostream& out) {
    for (const CDiagnostic& mistake : mistakes) {
        out << mistake.file << ':';
        if (mistake.line > 0) out << mistake.line << ':';
        out << ' ' << mistake.message << '\n';
    }
}

int runCheck(const std::string& folder, std::ostream& out) {
    constexpr int kGood = 0;
    constexpr int kMistakes = 2;
    const CLoadedConfig loaded = loadDeskConfig(folder);
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
