#include "desk/config/StrategyFile.h"

#include "desk/config/TomlFile.h"
#include "desk/config/TomlSection.h"
#include "desk/config/Words.h"
#include "records/Families.h"

#include <algorithm>
#include <charconv>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <sstream>

namespace desk {
namespace {

constexpr const char* kHeading =
    "# The strategies of this desk folder. Edit it while the desk is off; the desk writes it anew when a\n"
    "# strategy is added, changed, started, stopped or removed at run time.\n";

/// The slot that a strategy's own settings go to.
TC::COrderSetting& ownSetting(TC::COrderStrategyParam& strategy) {
    const TC::CFamily* family = TC::findFamily(strategy.m_eTradeType);
    return strategy.setting(family != nullptr ? family->m_eSlot : TC::ESettingSlot::Stock);
}

void copyDefaults(const CDeskConfig& config, TC::COrderStrategyParam& strategy) {
    for (int slot = 0; slot < TC::kSettingSlots; ++slot) {
        const auto found =
            config.defaultSettings.find(TC::defaultForSlot(static_cast<TC::ESettingSlot>(slot)));
        if (found != config.defaultSettings.end())
            strategy.setting(static_cast<TC::ESettingSlot>(slot)) = found->second;
    }
}

/// The keys of one strategy as the file has them.
struct CStrategyKeys {
    int channel = 0;
    std::string name;
    int source = static_cast<int>(TC::EOrderStrategyType::File);
    std::string path, user, pass, group, account, code;
    std::optional<std::string> remark; ///< an empty remark is not the default's
    int family = 0;
    int volume = 1;
    double amount = TC::kUnsetDouble;
    int priceType = -1;
    int orderType = -1;
    int positionType = 0;
    bool running = false;
};

void readKeys(const CTomlSection& section, CStrategyKeys& keys) {
    section.read(
        {
            {"channel", section.integer(keys.channel, 1)},
            {"name", section.text(keys.name)},
            {"source", section.choice(keys.source, sourceWords(), false)},
            {"path", section.text(keys.path)},
            {"user", section.text(keys.user)},
            {"pass", section.text(keys.pass)},
            {"group", section.text(keys.group)},
            {"account", section.text(keys.account)},
            {"family", section.choice(keys.family, familyWords(), false)},
            {"code", section.text(keys.code)},
            {"volume", section.integer(keys.volume, 0)},
            {"amount", section.number(keys.amount)},
            {"price_type", section.choice(keys.priceType, priceTypeWords(), true)},
            {"order_type", section.integer(keys.orderType, 0)},
            {"position_type", section.integer(keys.positionType, 0)},
            {"remark", [&](const toml::node& node) { section.text(keys.remark.emplace())(node); }},
            {"running", section.flag(keys.running)},
        },
        {"channel", "source", "family"});
}

TC::COrderStrategyParam makeStrategy(const std::string& folder, const CDeskConfig& config,
                                     const CStrategyKeys& keys) {
    TC::COrderStrategyParam strategy;
    copyDefaults(config, strategy);
    strategy.m_nChannel = keys.channel;
    strategy.m_strName =
        keys.name.empty() ? QStringLiteral("策略%1").arg(keys.channel) : QString::fromStdString(keys.name);
    strategy.m_eStrategyType = static_cast<TC::EOrderStrategyType>(keys.source);
    strategy.m_eTradeType = static_cast<TC::EOrderStrategyTradeType>(keys.family);
    const bool isFile = strategy.comesFromFile() && !keys.path.empty();
    const std::string source =
        isFile ? (std::filesystem::absolute(folder) / keys.path).lexically_normal().string() : keys.path;
    strategy.m_strSignalSource = QString::fromStdString(source);
    strategy.m_strUser = QString::fromStdString(keys.user);
    strategy.m_strPass = QString::fromStdString(keys.pass);
    strategy.m_eSelectedAccountType =
        keys.account.empty() ? TC::ESelectedAccountType::Group : TC::ESelectedAccountType::Account;
    strategy.m_strSelectedAccount = QString::fromStdString(keys.account.empty() ? keys.group : keys.account);
    strategy.m_strCode = QString::fromStdString(keys.code);
    strategy.m_nVolume = keys.volume;
    strategy.m_bUseAmount = !TC::isInvalidPrice(keys.amount);
    strategy.m_dAmount = keys.amount;
    strategy.m_ePositionType = static_cast<TC::EPositionType>(keys.positionType);
    TC::COrderSetting& setting = ownSetting(strategy);
    if (keys.priceType != -1) setting.m_ePriceType = static_cast<TC::EPriceType>(keys.priceType);
    if (keys.orderType != -1) strategy.m_eOrderType = static_cast<TC::EOrderType>(keys.orderType);
    if (keys.remark) setting.m_strCmdLog = *keys.remark;
    strategy.m_nStatus = keys.running ? TC::COrderStrategyParam::kRunning : TC::COrderStrategyParam::kStopped;
    return strategy;
}

/// Whether the family trades on accounts of that kind.
bool tradesOn(TC::EOrderStrategyTradeType tradeType, TC::EQDBrokerType broker) {
    const TC::CFamily* family = TC::findFamily(tradeType);
    const bool isBasket = tradeType == TC::EOrderStrategyTradeType::Basket;
    return (family != nullptr && broker == family->m_eBrokerType) ||
           (isBasket && broker == TC::EQDBrokerType::Credit);
}

void checkAccounts(const CTomlSection& section, const CDeskConfig& config, const CStrategyKeys& keys,
                   TC::EOrderStrategyTradeType tradeType) {
    const bool isOpen = keys.account.empty() && keys.group.empty();
    const bool isDouble = !keys.account.empty() && !keys.group.empty();
    if (isDouble || (isOpen && keys.running)) section.mistake("expected either \"group\" or \"account\"");
    const auto account = std::find_if(config.accounts.begin(), config.accounts.end(),
                                      [&](const CAccountEntry& entry) { return entry.key == keys.account; });
    if (!keys.account.empty() && account == config.accounts.end()) {
        section.mistake("account \"" + keys.account + "\" is unknown; expected the key of an [[account]]");
    } else if (!keys.account.empty() && !tradesOn(tradeType, account->broker)) {
        section.mistake("account \"" + keys.account +
                        "\" is of a broker type that the family does not trade on");
    }
    const bool knownGroup =
        std::any_of(config.groups.begin(), config.groups.end(), [&](const CGroupEntry& group) {
            return group.name == keys.group && tradesOn(tradeType, group.broker);
        });
    if (!keys.group.empty() && !knownGroup) {
        section.mistake("group \"" + keys.group + "\" is unknown among the groups that the family trades on");
    }
}

/// A strategy's code is a key such as "SH600000", or a code alone.
void checkCode(const CTomlSection& section, const CDeskConfig& config, const std::string& code) {
    const bool known = std::any_of(config.instruments.begin(), config.instruments.end(),
                                   [&](const CInstrumentEntry& instrument) {
                                       return instrument.key() == code || instrument.code == code;
                                   });
    if (!code.empty() && !known)
        section.mistake("code \"" + code + "\" is unknown; expected an instrument of instruments.csv");
}

/// The order socket's address: a host and a port.
void checkAddress(const CTomlSection& section, const CStrategyKeys& keys) {
    if (keys.source != static_cast<int>(TC::EOrderStrategyType::Signal) || keys.path.empty()) return;
    const std::size_t colon = keys.path.rfind(':');
    std::uint16_t port = 0;
    if (colon != std::string::npos && colon > 0) {
        const char* end = keys.path.data() + keys.path.size();
        const auto parsed = std::from_chars(keys.path.data() + colon + 1, end, port);
        if (parsed.ec != std::errc() || parsed.ptr != end) port = 0;
    }
    if (port == 0)
        section.mistake("path \"" + keys.path +
                        "\" is no address; expected \"ip:port\" with a port of 1 to 65535");
}

void checkStrategy(const CTomlSection& section, const CDeskConfig& config, const CStrategyKeys& keys,
                   const TC::COrderStrategyParam& strategy) {
    if (config.strategies.contains(keys.channel)) {
        section.mistake("channel " + std::to_string(keys.channel) + " stands twice");
    }
    checkAccounts(section, config, keys, strategy.m_eTradeType);
    checkCode(section, config, keys.code);
    checkAddress(section, keys);
    if (!(keys.amount > 0)) section.mistake("amount must be above 0");
    // A stopped strategy may be unfinished: one that was added at run time is saved before it is filled in.
    if (keys.path.empty() && keys.running)
        section.mistake("key \"path\" is missing: where the orders come from");
    for (const TC::COrderStrategyParam& other : config.strategies) {
        if (strategy.comesFromFile() && !keys.path.empty() &&
            other.m_strSignalSource == strategy.m_strSignalSource) {
            section.mistake("path \"" + keys.path + "\" is the path of channel " +
                            std::to_string(other.m_nChannel) + " too");
        }
    }
}

toml::table toTable(const std::filesystem::path& folder, TC::COrderStrategyParam strategy) {
    std::string path = strategy.m_strSignalSource.toStdString();
    if (strategy.comesFromFile()) {
        const auto relative = std::filesystem::path(path).lexically_relative(folder);
        if (!relative.empty() && *relative.begin() != "..") path = relative.string();
    }
    const TC::COrderSetting& setting = ownSetting(strategy);
    toml::table table;
    table.insert("channel", strategy.m_nChannel);
    table.insert("name", strategy.m_strName.toStdString());
    table.insert("source", wordFor(sourceWords(), static_cast<int>(strategy.m_eStrategyType)));
    table.insert("path", path);
    const auto insertText = [&](const char* key, const QString& text) {
        if (!text.isEmpty()) table.insert(key, text.toStdString());
    };
    insertText("user", strategy.m_strUser);
    insertText("pass", strategy.m_strPass);
    insertText(strategy.m_eSelectedAccountType == TC::ESelectedAccountType::Account ? "account" : "group",
               strategy.m_strSelectedAccount);
    table.insert("family", wordFor(familyWords(), static_cast<int>(strategy.m_eTradeType)));
    insertText("code", strategy.m_strCode);
    if (!TC::isUnset(strategy.m_nVolume)) table.insert("volume", strategy.m_nVolume);
    if (strategy.m_bUseAmount) table.insert("amount", strategy.m_dAmount);
    if (!TC::isUnset(setting.m_ePriceType))
        table.insert("price_type", static_cast<int>(setting.m_ePriceType));
    if (!TC::isUnset(strategy.m_eOrderType))
        table.insert("order_type", static_cast<int>(strategy.m_eOrderType));
    if (!TC::isUnset(strategy.m_ePositionType))
        table.insert("position_type", static_cast<int>(strategy.m_ePositionType));
    table.insert("remark", setting.m_strCmdLog);
    table.insert("running", strategy.isRunning());
    return table;
}

} // namespace

void readStrategies(const std::string& folder, CDeskConfig& config, CDiagnostics& diagnostics) {
    const auto root = readTomlFile(folder, kStrategyFile, diagnostics);
    if (!root) return;
    const CTomlSection top(kStrategyFile, *root, kStrategyFile, diagnostics);
    top.read({{"strategy", top.tables([&](const toml::table& table) {
                   const CTomlSection section(kStrategyFile, table, "strategy", diagnostics);
                   CStrategyKeys keys;
                   readKeys(section, keys);
                   const TC::COrderStrategyParam strategy = makeStrategy(folder, config, keys);
                   checkStrategy(section, config, keys, strategy);
                   config.strategies.insert(keys.channel, strategy);
               })}});
}

utils::KNError saveStrategies(const std::string& folder, const TC::COrderStrategyMap& strategies) {
    const std::filesystem::path root = std::filesystem::absolute(folder).lexically_normal();
    toml::array array;
    for (const TC::COrderStrategyParam& strategy : strategies)
        array.push_back(toTable(root, strategy));
    toml::table file;
    file.insert("strategy", array);
    std::ostringstream text;
    text << kHeading << file << '\n';
    return replaceTextFile(root.string(), kStrategyFile, text.str());
}

} // namespace desk
