#include "desk/config/ConfigLoader.h"

#include "desk/config/DeskToml.h"
#include "desk/config/FolderWarnings.h"
#include "desk/config/MarketTables.h"
#include "desk/config/SettingsFile.h"
#include "desk/config/StrategyFile.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <set>

namespace desk {

namespace {

/// Returns the warnings that do not depend on a mistake. A warning about a file with a mistake, or about a
/// file that depends on such a file, may only be a result of the mistake.
std::vector<CDiagnostic> soundWarnings(const std::vector<CDiagnostic>& warnings,
                                       const std::vector<CDiagnostic>& mistakes) {
    std::set<std::string> spoiled;
    for (const CDiagnostic& mistake : mistakes)
        spoiled.insert(mistake.file);
    const bool isBaseSpoiled = spoiled.count(kInstrumentFile) != 0 || spoiled.count(kDeskFile) != 0;
    std::vector<CDiagnostic> sound;
    std::copy_if(
        warnings.begin(), warnings.end(), std::back_inserter(sound),
        [&](const CDiagnostic& warning) { return !isBaseSpoiled && spoiled.count(warning.file) == 0; });
    return sound;
}

} // namespace

CLoadedConfig loadDeskConfig(const std::string& folder) {
    CLoadedConfig loaded;
    CDiagnostics diagnostics;
    std::error_code unreadable;
    if (!std::filesystem::is_directory(folder, unreadable)) {
        diagnostics.add(folder, 0, "is not a folder; make one with: orderdesk new " + folder);
    } else {
        const CInstrumentLines instruments = readInstruments(folder, loaded.config, diagnostics);
        const CDeskLines lines = readDeskToml(folder, loaded.config, diagnostics);
        readMarketTables(folder, instruments, loaded.config, diagnostics);
        readStrategies(folder, loaded.config, diagnostics);
        readSettings(folder, loaded.config, diagnostics);
        if (diagnostics.count() == 0) warnOfFolder(loaded.config, lines, instruments, diagnostics);
    }
    loaded.mistakes = diagnostics.take();
    loaded.warnings = soundWarnings(diagnostics.takeWarnings(), loaded.mistakes);
    return loaded;
}

std::vector<std::string> prepareOrderFiles(const CDeskConfig& config) {
    std::vector<std::string> problems;
    for (const TC::COrderStrategyParam& strategy : config.strategies) {
        if (!strategy.isRunning() || strategy.m_eStrategyType != TC::EOrderStrategyType::File) continue;
        const std::filesystem::path path = strategy.m_strSignalSource.toStdString();
        try {
            std::filesystem::create_directories(path.parent_path());
            const std::filesystem::file_status status = std::filesystem::status(path);
            if (std::filesystem::is_regular_file(status)) continue;
            if (std::filesystem::exists(status)) {
                problems.push_back(path.string() + ": is not a file; expected a place for an order file");
            } else if (!std::ofstream(path, std::ios::app)) {
                problems.push_back(path.string() + ": cannot be made");
            }
        } catch (const std::filesystem::filesystem_error& error) {
            problems.push_back(path.string() + ": " + error.code().message());
        }
    }
    return problems;
}

} // namespace desk
