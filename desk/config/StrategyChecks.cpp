#include "desk/config/StrategyChecks.h"

#include "desk/config/Kinds.h"
#include "desk/config/OrderPaths.h"
#include "orderservice/base/Address.h"
#include "orderservice/records/Families.h"

#include <algorithm>
#include <charconv>
#include <cstdint>
#include <string>
#include <utility>
#include <vector>

namespace desk {
namespace {

/// Whether the family trades on accounts of this kind.
bool tradesOn(TC::EOrderStrategyTradeType tradeType, TC::EQDBrokerType broker) {
    const TC::CFamily* family = TC::findFamily(tradeType);
    return family != nullptr && family->tradesOn(broker);
}

constexpr const char* kLoginNote = "; a strategy of source \"signal\" needs a login";

/// A mistake and the key that has it; an empty message means no mistake.
struct CFinding {
    const char* m_pszKey = "";
    std::string m_strMessage;
    ESubject m_eAbout = ESubject::None;

    bool isGood() const { return m_strMessage.empty(); }
};

void report(const CTomlSection& section, const CFinding& finding) {
    const std::string key = finding.m_pszKey;
    // A login value of a wrong type was already reported by its reader.
    const bool isLogin = key == "user" || key == "pass";
    if (finding.isGood() || (isLogin && section.has(key) && !section.isText(key))) return;
    if (isLogin && !section.has(key)) return section.reportMissing(key, kLoginNote);
    section.mistakeAt(key, finding.m_strMessage, finding.m_eAbout);
}

void checkAccount(const CTomlSection& section, const CDeskConfig& config,
                  const TC::COrderStrategyParam& strategy, const std::string& name) {
    const auto account = std::find_if(config.accounts.begin(), config.accounts.end(),
                                      [&](const CAccountEntry& entry) { return entry.key == name; });
    if (account == config.accounts.end()) {
        section.mistakeAt("account",
                          "account \"" + name + "\" is unknown; expected the key of an [[account]]",
                          ESubject::Accounts);
    } else if (!tradesOn(strategy.m_eTradeType, account->broker)) {
        section.mistakeAt("account",
                          "account \"" + name + "\" is of a broker type that the family does not trade on",
                          ESubject::Accounts);
    }
}

void checkGroup(const CTomlSection& section, const CDeskConfig& config,
                const TC::COrderStrategyParam& strategy, const std::string& name) {
    const bool known = std::any_of(config.groups.begin(), config.groups.end(), [&](const CGroupEntry& group) {
        return group.name == name && tradesOn(strategy.m_eTradeType, group.broker);
    });
    if (!known)
        section.mistakeAt("group",
                          "group \"" + name + "\" is unknown among the groups that the family trades on",
                          ESubject::Groups);
}

/// Returns the key of an instrument that a code without a market can mean. The key is empty if no such
/// instrument exists.
std::string keyOfBareCode(const CDeskConfig& config, const std::string& code) {
    const auto found = std::find_if(config.instruments.begin(), config.instruments.end(),
                                    [&](const CInstrumentEntry& entry) { return entry.code == code; });
    return found != config.instruments.end() ? found->key() : std::string();
}

CFinding unknownCode(const CDeskConfig& config, const std::string& code) {
    const std::string key = keyOfBareCode(config, code);
    const std::string reason =
        key.empty()
            ? "\" is unknown; expected an instrument of instruments.csv, with its market unless it is "
              "a derivative"
            : "\" has no market; expected \"" + key + "\"";
    return {"code", "code \"" + code + reason, ESubject::Instruments};
}

/// A strategy's code is used unchanged. It must be a key such as "SH600000", or the plain code of a
/// derivative.
CFinding findingOfCode(const CDeskConfig& config, const TC::COrderStrategyParam& strategy) {
    const std::string code = strategy.m_strCode.toStdString();
    if (code.empty()) return {};
    bool known = false;
    for (const CInstrumentEntry& instrument : config.instruments) {
        const std::vector<std::string> names = instrument.names();
        if (std::find(names.begin(), names.end(), code) == names.end()) continue;
        known = true;
        const TC::CFamily* family = TC::findFamily(strategy.m_eTradeType);
        if (family != nullptr && tradesKind(family->m_eBrokerType, instrument.kind)) return {};
    }
    if (!known) return unknownCode(config, code);
    return {"code", "code \"" + code + "\" is of a kind that the family does not trade",
            ESubject::Instruments};
}

/// Returns the port after the last colon, or 0 if the text has no port.
std::uint16_t portOf(const std::string& address) {
    const std::size_t colon = address.rfind(':');
    if (colon == std::string::npos || colon == 0) return 0;
    std::uint16_t port = 0;
    const char* end = address.data() + address.size();
    const auto parsed = std::from_chars(address.data() + colon + 1, end, port);
    return parsed.ec == std::errc() && parsed.ptr == end ? port : 0;
}

/// Checks the order socket's address: a host and a port. Logins are sent over the network without encryption,
/// so other machines may connect only if the folder allows it.
CFinding findingOfAddress(const CDeskConfig& config, const std::string& address) {
    if (portOf(address) == 0) {
        return {"path",
                "path \"" + address + "\" is not an address; expected \"ip:port\" with a port of 1 to 65535"};
    }
    if (config.allowRemoteSocket || utils::isLoopbackListener(address)) return {};
    return {"path",
            "path \"" + address +
                "\" is open to other machines; expected an address of 127.0.0.0/8, or "
                "allow_remote = true under [socket] in desk.toml",
            ESubject::Desk};
}

/// Checks that a login is set. A listener without a login would trade for everybody who can reach its port. A
/// listener without a password would be almost as open.
CFinding findingOfLogin(const char* key, const QString& text) {
    if (!text.isEmpty()) return {};
    return {key, std::string("key \"") + key + "\" is missing or empty" + kLoginNote};
}

CFinding findingOfPath(const std::filesystem::path& folder, const TC::COrderStrategyParam& strategy,
                       const TC::COrderStrategyMap& others, const std::string& shown) {
    const std::string path = strategy.m_strSignalSource.toStdString();
    std::string reason = whyNoOrderPath(folder, path, shown);
    for (const TC::COrderStrategyParam& other : others) {
        if (reason.empty() && other.m_nChannel != strategy.m_nChannel)
            reason = whyPathsMeet(path, shown, other);
    }
    return {"path", reason};
}

/// Returns all findings about the source of the orders. A source without a path has none.
std::vector<CFinding> findingsOfSource(const CDeskConfig& config, const std::filesystem::path& folder,
                                       const TC::COrderStrategyParam& strategy,
                                       const TC::COrderStrategyMap& others, const std::string& shown) {
    if (strategy.m_eStrategyType == TC::EOrderStrategyType::Signal) {
        return {findingOfAddress(config, shown), findingOfLogin("user", strategy.m_strUser),
                findingOfLogin("pass", strategy.m_strPass)};
    }
    if (strategy.comesFromFile()) return {findingOfPath(folder, strategy, others, shown)};
    return {};
}

void checkSource(const CTomlSection& section, const CDeskConfig& config, const std::filesystem::path& folder,
                 const TC::COrderStrategyParam& strategy, const std::string& path) {
    if (path.empty()) {
        if (strategy.isRunning() && section.isText("path"))
            section.mistakeAt("path", "path is empty; expected where the orders come from");
        if (strategy.isRunning() && !section.has("path"))
            section.reportMissing("path", ": where the orders come from");
        return;
    }
    for (const CFinding& finding : findingsOfSource(config, folder, strategy, config.strategies, path))
        report(section, finding);
}

/// Whether the number is not set yet, which is allowed while the strategy is stopped.
bool isOpen(const TC::COrderStrategyParam& strategy, double number) {
    return TC::isInvalidPrice(number) && !strategy.isRunning();
}

void checkVolume(const CTomlSection& section, const TC::COrderStrategyParam& strategy) {
    const bool isAmount = strategy.m_dAmount > 0 && !TC::isInvalidPrice(strategy.m_dAmount);
    if (strategy.m_bUseAmount && !isAmount && !isOpen(strategy, strategy.m_dAmount))
        section.mistakeAt(section.has("amount") ? "amount" : "use_amount", "amount must be above 0");
    if (strategy.m_bByPercent)
        section.mistakeAt(section.has("percent") ? "percent" : "by_percent",
                          "volumes by a percent of the account are not traded; expected volume or amount");
}

/// Other order types are refused: families whose commands do not carry an algorithm would trade such orders
/// at once, as plain orders.
void checkOrderType(const CTomlSection& section, const TC::COrderStrategyParam& strategy) {
    if (TC::isUnset(strategy.m_eOrderType) || strategy.m_eOrderType == TC::EOrderType::Plain) return;
    section.mistakeAt("order_type", "order_type is " +
                                        std::to_string(static_cast<int>(strategy.m_eOrderType)) +
                                        "; the desk trades plain orders (0) only");
}

} // namespace

void checkStrategy(const CTomlSection& section, const CDeskConfig& config,
                   const std::filesystem::path& folder, const TC::COrderStrategyParam& strategy,
                   const std::string& path) {
    if (config.strategies.contains(strategy.m_nChannel))
        section.mistakeAt("channel", "channel " + std::to_string(strategy.m_nChannel) + " is defined twice");
    const std::string account = strategy.m_strSelectedAccount.toStdString();
    const bool isAccount = strategy.m_eSelectedAccountType == TC::ESelectedAccountType::Account;
    if (!account.empty()) (isAccount ? checkAccount : checkGroup)(section, config, strategy, account);
    report(section, findingOfCode(config, strategy));
    checkSource(section, config, folder, strategy, path);
    checkVolume(section, strategy);
    checkOrderType(section, strategy);
}

std::string whyRefused(const CDeskConfig& config, const std::filesystem::path& folder,
                       const TC::COrderStrategyParam& strategy, const TC::COrderStrategyMap& others) {
    const CFinding code = findingOfCode(config, strategy);
    const std::string path = strategy.m_strSignalSource.toStdString();
    if (!code.isGood() || path.empty()) return code.m_strMessage;
    for (const CFinding& finding : findingsOfSource(config, folder, strategy, others, path)) {
        if (!finding.isGood()) return finding.m_strMessage;
    }
    return {};
}

} // namespace desk
