#include "desk/config/StrategyChecks.h"

#include "desk/config/Kinds.h"
#include "records/Families.h"

#include <arpa/inet.h>

#include <algorithm>
#include <charconv>
#include <cstdint>
#include <string>
#include <utility>
#include <vector>

namespace desk {
namespace {

/// Whether the family trades on accounts of that kind.
bool tradesOn(TC::EOrderStrategyTradeType tradeType, TC::EQDBrokerType broker) {
    const TC::CFamily* family = TC::findFamily(tradeType);
    const bool isBasket = tradeType == TC::EOrderStrategyTradeType::Basket;
    return (family != nullptr && broker == family->m_eBrokerType) ||
           (isBasket && broker == TC::EQDBrokerType::Credit);
}

void checkAccount(const CTomlSection& section, const CDeskConfig& config,
                  const TC::COrderStrategyParam& strategy, const std::string& name) {
    const auto account = std::find_if(config.accounts.begin(), config.accounts.end(),
                                      [&](const CAccountEntry& entry) { return entry.key == name; });
    if (account == config.accounts.end()) {
        section.mistake("account \"" + name + "\" is unknown; expected the key of an [[account]]");
    } else if (!tradesOn(strategy.m_eTradeType, account->broker)) {
        section.mistake("account \"" + name + "\" is of a broker type that the family does not trade on");
    }
}

void checkGroup(const CTomlSection& section, const CDeskConfig& config,
                const TC::COrderStrategyParam& strategy, const std::string& name) {
    const bool known = std::any_of(config.groups.begin(), config.groups.end(), [&](const CGroupEntry& group) {
        return group.name == name && tradesOn(strategy.m_eTradeType, group.broker);
    });
    if (!known)
        section.mistake("group \"" + name + "\" is unknown among the groups that the family trades on");
}

/// A strategy's code is taken as it stands: a key such as "SH600000", or the plain code of a derivative.
void checkCode(const CTomlSection& section, const CDeskConfig& config,
               const TC::COrderStrategyParam& strategy) {
    const std::string code = strategy.m_strCode.toStdString();
    if (code.empty()) return;
    bool known = false;
    bool tradable = false;
    for (const CInstrumentEntry& instrument : config.instruments) {
        const std::vector<std::string> names = instrument.names();
        if (std::find(names.begin(), names.end(), code) == names.end()) continue;
        known = true;
        const TC::CFamily* family = TC::findFamily(strategy.m_eTradeType);
        tradable = tradable || (family != nullptr && tradesKind(family->m_eBrokerType, instrument.kind));
    }
    if (!known)
        section.mistake(
            "code \"" + code +
            "\" is unknown; expected an instrument of instruments.csv, with its market unless it is "
            "a derivative");
    else if (!tradable)
        section.mistake("code \"" + code + "\" is of a kind that the family does not trade");
}

/// The port behind the last colon; 0 where there is none.
std::uint16_t portOf(const std::string& address) {
    const std::size_t colon = address.rfind(':');
    if (colon == std::string::npos || colon == 0) return 0;
    std::uint16_t port = 0;
    const char* end = address.data() + address.size();
    const auto parsed = std::from_chars(address.data() + colon + 1, end, port);
    return parsed.ec == std::errc() && parsed.ptr == end ? port : 0;
}

/// 127.0.0.0/8 reaches no further than this machine.
bool isLoopback(const std::string& address) {
    constexpr std::uint32_t kLoopbackNet = 127;
    constexpr int kNetShift = 24;
    in_addr ip{};
    const std::string host = address.substr(0, address.rfind(':'));
    return ::inet_pton(AF_INET, host.c_str(), &ip) == 1 && ntohl(ip.s_addr) >> kNetShift == kLoopbackNet;
}

/// The order socket's address: a host and a port. Logins cross the net in the clear, so other machines get in
/// only where the folder says so.
void checkAddress(const CTomlSection& section, const CDeskConfig& config, const std::string& address) {
    if (portOf(address) == 0) {
        section.mistake("path \"" + address +
                        "\" is no address; expected \"ip:port\" with a port of 1 to 65535");
    } else if (!config.allowRemoteSocket && !isLoopback(address)) {
        section.mistake("path \"" + address +
                        "\" is open to other machines; expected an address of 127.0.0.0/8, or "
                        "allow_remote = true under [socket] in desk.toml");
    }
}

/// A listener without a login would trade for everybody who reaches its port; one without a password almost
/// so.
void checkLogin(const CTomlSection& section, const TC::COrderStrategyParam& strategy) {
    for (const auto& [key, text] : {std::pair{"user", strategy.m_strUser}, {"pass", strategy.m_strPass}}) {
        if (text.isEmpty())
            section.mistake(std::string("key \"") + key +
                            "\" is missing or empty; a strategy of source \"signal\" needs a login");
    }
}

void checkSource(const CTomlSection& section, const CDeskConfig& config,
                 const TC::COrderStrategyParam& strategy, const std::string& path) {
    if (path.empty()) {
        if (strategy.isRunning()) section.mistake("key \"path\" is missing: where the orders come from");
        return;
    }
    if (strategy.m_eStrategyType == TC::EOrderStrategyType::Signal) {
        checkAddress(section, config, path);
        checkLogin(section, strategy);
    }
    if (!strategy.comesFromFile()) return;
    for (const TC::COrderStrategyParam& other : config.strategies) {
        if (other.m_strSignalSource == strategy.m_strSignalSource)
            section.mistake("path \"" + path + "\" is the path of channel " +
                            std::to_string(other.m_nChannel) + " too");
    }
}

/// Whether the number is still to be filled in.
bool isOpen(const TC::COrderStrategyParam& strategy, double number) {
    return TC::isInvalidPrice(number) && !strategy.isRunning();
}

void checkVolume(const CTomlSection& section, const TC::COrderStrategyParam& strategy) {
    const bool isAmount = strategy.m_dAmount > 0 && !TC::isInvalidPrice(strategy.m_dAmount);
    if (strategy.m_bUseAmount && !isAmount && !isOpen(strategy, strategy.m_dAmount))
        section.mistake("amount must be above 0");
    if (strategy.m_bByPercent)
        section.mistake("volumes by a percent of the account are not traded; expected volume or amount");
}

/// Families whose commands do not carry an algorithm would trade such orders at once, as plain ones.
void checkOrderType(const CTomlSection& section, const TC::COrderStrategyParam& strategy) {
    if (TC::isUnset(strategy.m_eOrderType) || strategy.m_eOrderType == TC::EOrderType::Plain) return;
    section.mistake("order_type is " + std::to_string(static_cast<int>(strategy.m_eOrderType)) +
                    "; the desk trades plain orders (0) only");
}

} // namespace

void checkStrategy(const CTomlSection& section, const CDeskConfig& config,
                   const TC::COrderStrategyParam& strategy, const std::string& path) {
    if (config.strategies.contains(strategy.m_nChannel))
        section.mistake("channel " + std::to_string(strategy.m_nChannel) + " stands twice");
    const std::string account = strategy.m_strSelectedAccount.toStdString();
    const bool isAccount = strategy.m_eSelectedAccountType == TC::ESelectedAccountType::Account;
    if (!account.empty()) (isAccount ? checkAccount : checkGroup)(section, config, strategy, account);
    checkCode(section, config, strategy);
    checkSource(section, config, strategy, path);
    checkVolume(section, strategy);
    checkOrderType(section, strategy);
}

} // namespace desk
