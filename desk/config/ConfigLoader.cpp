#include "desk/config/ConfigLoader.h"

#include "desk/config/DeskToml.h"
#include "desk/config/MarketTables.h"
#include "desk/config/SettingsFile.h"
#include "desk/config/StrategyFile.h"

#include <filesystem>
#include <fstream>

namespace desk {

CLoadedConfig loadDeskConfig(const std::string& folder) {
    CLoadedConfig loaded;
    CDiagnostics diagnostics;
    std::error_code unreadable;
    if (!std::filesystem::is_directory(folder, unreadable)) {
        diagnostics.add(folder, 0, "is no folder; make one with: orderdesk new " + folder);
    } else {
        const CInstrumentLines instruments = readInstruments(folder, loaded.config, diagnostics);
        readDeskToml(folder, loaded.config, diagnostics);
        readMarketTables(folder, instruments, loaded.config, diagnostics);
        readStrategies(folder, loaded.config, diagnostics);
        readSettings(folder, loaded.config, diagnostics);
    }
    loaded.mistakes = diagnostics.take();
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
                problems.push_back(path.string() + ": is no file; expected a place for an order file");
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
