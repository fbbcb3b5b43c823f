#include "desk/config/StrategyFile.h"

#include "desk/config/StrategyChecks.h"
#include "desk/config/StrategyCompare.h"
#include "desk/config/StrategyKeys.h"
#include "desk/config/TextFile.h"
#include "desk/config/TomlFile.h"

#include <algorithm>
#include <filesystem>
#include <sstream>

namespace desk {
namespace {

constexpr const char* kHeading =
    "# The strategies of this desk folder. Edit it while the desk is off; the desk rewrites it when a\n"
    "# strategy is added, changed, started, stopped or removed at run time.\n";

std::filesystem::path rootOf(const std::string& folder) {
    return std::filesystem::absolute(folder).lexically_normal();
}

/// Reads the strategies into the configuration. Each strategy is checked against those before it.
void readTables(const std::filesystem::path& folder, const toml::table& root, CDeskConfig& config,
                CDiagnostics& diagnostics) {
    const CTomlSection top(kStrategyFile, root, kStrategyFile, diagnostics);
    top.read({{"strategy", top.tables([&](const toml::table& table) {
                   const CTomlSection section = top.below(table, "strategy");
                   const TC::COrderStrategyParam strategy = readStrategyKeys(folder, config, table, section);
                   const auto path = table["path"].value_or(std::string());
                   checkStrategy(section, config, folder, strategy, path);
                   warnOfStrategy(section, config, strategy, path);
                   config.strategies.insert(strategy.m_nChannel, strategy);
               })}});
}

std::string fileText(const std::filesystem::path& folder, const CDeskConfig& config,
                     const TC::COrderStrategyMap& strategies) {
    toml::array array;
    for (const TC::COrderStrategyParam& strategy : strategies)
        array.push_back(strategyTable(folder, config, strategy));
    toml::table file;
    file.insert("strategy", std::move(array));
    std::ostringstream text;
    text << kHeading << file << '\n';
    return text.str();
}

/// Other users must not have access to the file: a user who can read the password of an order socket can
/// trade, and a user who can write the file can set the password.
void checkSecrecy(const std::filesystem::path& folder, const CDeskConfig& config, CDiagnostics& diagnostics) {
    using std::filesystem::perms;
    const bool hasPass =
        std::any_of(config.strategies.begin(), config.strategies.end(),
                    [](const TC::COrderStrategyParam& strategy) { return !strategy.m_strPass.isEmpty(); });
    std::error_code unreadable;
    const perms rights = std::filesystem::status(folder / kStrategyFile, unreadable).permissions();
    if (hasPass && (rights & (perms::group_all | perms::others_all)) != perms::none)
        diagnostics.add(
            kStrategyFile, 0,
            "contains a password, but other users have access to it; expected a file for its owner alone: "
            "chmod 600 strategies.toml");
}

} // namespace

void readStrategies(const std::string& folder, CDeskConfig& config, CDiagnostics& diagnostics) {
    const auto root = readTomlFile(folder, kStrategyFile, diagnostics);
    if (!root) return;
    readTables(rootOf(folder), *root, config, diagnostics);
    checkSecrecy(rootOf(folder), config, diagnostics);
}

CStrategyFile::CStrategyFile(std::string folder, CDeskConfig config)
    : m_strFolder(std::move(folder)), m_config(std::move(config)) {
    m_config.strategies.clear();
}

std::string CStrategyFile::whyRefused(const TC::COrderStrategyParam& strategy,
                                      const TC::COrderStrategyMap& others) const {
    return desk::whyRefused(m_config, rootOf(m_strFolder), strategy, others);
}

std::string CStrategyFile::whyNotKept(const TC::COrderStrategyParam& strategy,
                                      const TC::COrderStrategyMap& others) const {
    if (strategy.m_algoSetting != nullptr) return "it has an algorithm setting, which the file cannot hold";
    const std::filesystem::path root = rootOf(m_strFolder);
    CDeskConfig again = m_config;
    again.strategies = others;
    again.strategies.remove(strategy.m_nChannel);
    CDiagnostics diagnostics;
    try {
        const toml::table table = toml::parse(fileText(root, m_config, {{strategy.m_nChannel, strategy}}),
                                              std::string(kStrategyFile));
        readTables(root, table, again, diagnostics);
    } catch (const toml::parse_error&) {
        // The parser's message is not shown because it may quote a password.
        return "it has a text that the file cannot hold";
    }
    const std::vector<CDiagnostic> mistakes = diagnostics.take();
    if (!mistakes.empty()) return mistakes.front().message;
    const char* different = firstDifference(strategy, again.strategies.value(strategy.m_nChannel));
    return different == nullptr ? "" : std::string(different) + " would be read back as something else";
}

utils::KNError CStrategyFile::save(const TC::COrderStrategyMap& strategies) const {
    const std::filesystem::path root = rootOf(m_strFolder);
    return replaceTextFile(root.string(), kStrategyFile, fileText(root, m_config, strategies));
}

} // namespace desk
