#include "desk/config/FolderWarnings.h"

#include "desk/config/Kinds.h"
#include "orderservice/base/Unset.h"
#include "orderservice/platform/Switches.h"
#include "orderservice/records/Families.h"

#include <algorithm>
#include <functional>
#include <set>
#include <string>

namespace desk {
namespace {

using CStrategyTest = std::function<bool(const TC::COrderStrategyParam&)>;

CStrategyTest isOfType(TC::EOrderStrategyType type) {
    return [type](const TC::COrderStrategyParam& strategy) { return strategy.m_eStrategyType == type; };
}

/// Warns if there are more strategies than the limit. The order service does not load the extra ones, which
/// are those with the highest channels.
void warnOfLimit(const CDeskConfig& config, int most, int line, const char* key,
                 const CStrategyTest& isCounted, CDiagnostics& diagnostics) {
    const auto count = std::count_if(config.strategies.begin(), config.strategies.end(), isCounted);
    if (count <= most) return;
    diagnostics.warn(kDeskFile, line,
                     std::string(key) + " under [user] is " + std::to_string(most) +
                         ", but the limit is for " + std::to_string(count) +
                         " strategies; those with the highest channels are not loaded");
}

/// Without the order service, a user needs a right for each source of orders.
void warnOfRight(const CDeskConfig& config, TC::EUserAuth right, TC::EOrderStrategyType type,
                 const char* word, CDiagnostics& diagnostics) {
    const std::set<int>& rights = config.user.rights;
    if (rights.empty() || rights.count(static_cast<int>(right)) != 0)
        return; // no right at all: another warning
    const auto count = std::count_if(config.strategies.begin(), config.strategies.end(), isOfType(type));
    if (count == 0) return;
    diagnostics.warn(kDeskFile, 0,
                     "user: order_service is false and rights has no \"" + std::string(word) + "\", so " +
                         std::to_string(count) + " strategies of this source are not loaded");
}

void warnOfStrategies(const CDeskConfig& config, const CDeskLines& lines, CDiagnostics& diagnostics) {
    const auto isRunning = [](const TC::COrderStrategyParam& strategy) { return strategy.isRunning(); };
    if (std::none_of(config.strategies.begin(), config.strategies.end(), isRunning))
        diagnostics.warn(kStrategyFile, 0, "no strategy runs; expected running = true in one");
    const CUserEntry& user = config.user;
    if (!user.orderService) {
        warnOfRight(config, TC::EUserAuth::FileOrders, TC::EOrderStrategyType::File, "file_orders",
                    diagnostics);
        warnOfRight(config, TC::EUserAuth::SignalOrders, TC::EOrderStrategyType::Signal, "signal_orders",
                    diagnostics);
    } else if (config.switches.count(TC::kSplitOrderNumSwitch) == 0) {
        const auto any = [](const TC::COrderStrategyParam&) { return true; };
        return warnOfLimit(config, user.maxStrategies, lines.maxStrategies, "max_strategies", any,
                           diagnostics);
    }
    warnOfLimit(config, user.maxStrategies, lines.maxStrategies, "max_strategies",
                isOfType(TC::EOrderStrategyType::File), diagnostics);
    warnOfLimit(config, user.maxSocketStrategies, lines.maxSocketStrategies, "max_socket_strategies",
                isOfType(TC::EOrderStrategyType::Signal), diagnostics);
}

/// Warns of a guard that is off although a strategy needs it.
void warnOfGuard(const CDeskConfig& config, const CDeskLines& lines, const char* guard,
                 TC::EOrderStrategyType type, const char* effect, CDiagnostics& diagnostics) {
    const CStrategyTest isType = isOfType(type);
    const bool isNeeded = std::any_of(config.strategies.begin(), config.strategies.end(), isType);
    if (!isNeeded || config.switches.count(guard) != 0) return;
    const auto line = lines.switches.find(guard);
    diagnostics.warn(kDeskFile, line != lines.switches.end() ? line->second : 0,
                     std::string("switches: ") + guard + " is off: " + effect);
}

void warnOfGuards(const CDeskConfig& config, const CDeskLines& lines, CDiagnostics& diagnostics) {
    warnOfGuard(config, lines, TC::kFileGuardSwitch, TC::EOrderStrategyType::File,
                "a part of a damaged or incomplete order file is carried out, and the file is deleted",
                diagnostics);
    warnOfGuard(config, lines, TC::kSocketGuardSwitch, TC::EOrderStrategyType::Signal,
                "clients have no limits for connections, line lengths, logins and orders", diagnostics);
}

bool hasRemark(const TC::COrderStrategyParam& strategy) {
    const TC::CFamily* family = TC::findFamily(strategy.m_eTradeType);
    return family != nullptr && !strategy.setting(family->m_eSlot).m_strCmdLog.empty();
}

void warnOfRemarks(const CDeskConfig& config, CDiagnostics& diagnostics) {
    if (config.switches.count(TC::kCommandRemarkSwitch) != 0) return;
    if (std::any_of(config.strategies.begin(), config.strategies.end(), hasRemark))
        diagnostics.warn(kDeskFile, 0,
                         std::string("switches: ") + TC::kCommandRemarkSwitch +
                             " is off: the remarks of the settings do not reach the commands");
}

/// Volumes of credit orders are split over the accounts without the trading unit of the instrument. So the
/// parts may be any number of shares.
void warnOfCreditGroups(const CDeskConfig& config, CDiagnostics& diagnostics) {
    for (const TC::COrderStrategyParam& strategy : config.strategies) {
        if (strategy.m_eTradeType != TC::EOrderStrategyTradeType::Credit) continue;
        if (strategy.m_eSelectedAccountType == TC::ESelectedAccountType::Account) continue;
        const std::string name = strategy.m_strSelectedAccount.toStdString();
        for (const CGroupEntry& group : config.groups) {
            if (group.name != name || group.broker != TC::EQDBrokerType::Credit || group.members.size() < 2)
                continue;
            diagnostics.warn(
                kStrategyFile, 0,
                "channel " + std::to_string(strategy.m_nChannel) + ": group \"" + name +
                    "\" has several credit accounts: volumes are not divided in whole units, and "
                    "parts that are not multiples of the unit are rejected");
        }
    }
}

/// A bare code on an order's line means the instrument on SH if both markets have it.
void warnOfSharedCodes(const CDeskConfig& config, const CInstrumentLines& lines, CDiagnostics& diagnostics) {
    std::set<std::string> onShanghai;
    for (const CInstrumentEntry& instrument : config.instruments) {
        if (instrument.market == "SH" && tradesUnderItsCode(instrument)) onShanghai.insert(instrument.code);
    }
    for (const CInstrumentEntry& instrument : config.instruments) {
        if (instrument.market != "SZ" || !tradesUnderItsCode(instrument)) continue;
        if (onShanghai.count(instrument.code) == 0) continue;
        const auto line = lines.find(instrument.key());
        diagnostics.warn(kInstrumentFile, line != lines.end() ? line->second : 0,
                         "code " + instrument.code +
                             " is on SH too: an order's line with the bare code means SH" + instrument.code);
    }
}

bool isEmptyBook(const CQuoteEntry& quote) {
    const auto isEmpty = [](const CQuoteLevel& level) { return TC::isInvalidPrice(level.price); };
    return std::all_of(quote.buy.begin(), quote.buy.end(), isEmpty) &&
           std::all_of(quote.sell.begin(), quote.sell.end(), isEmpty);
}

/// Baskets leave out a stock that has an empty book.
void warnOfEmptyBooks(const CDeskConfig& config, CDiagnostics& diagnostics) {
    std::set<std::string> used;
    for (const TC::CBasketSetting& basket : config.baskets) {
        for (const TC::CBasketStockData& row : basket.m_rows)
            used.insert((row.m_strMarket + row.m_strCode).toStdString());
    }
    for (const CPortfolioEntry& portfolio : config.portfolios) {
        for (const CPortfolioEntry::CRow& row : portfolio.rows)
            used.insert(row.stockKey);
    }
    for (const CQuoteEntry& quote : config.quotes) {
        if (used.count(quote.stockKey) != 0 && isEmptyBook(quote))
            diagnostics.warn(kQuoteFile, 0,
                             "the book of " + quote.stockKey +
                                 " is empty at the start: baskets leave the stock out, and portfolios do not "
                                 "sell it");
    }
}

} // namespace

void warnOfFolder(const CDeskConfig& config, const CDeskLines& lines, const CInstrumentLines& instruments,
                  CDiagnostics& diagnostics) {
    warnOfStrategies(config, lines, diagnostics);
    warnOfGuards(config, lines, diagnostics);
    warnOfRemarks(config, diagnostics);
    warnOfCreditGroups(config, diagnostics);
    warnOfSharedCodes(config, instruments, diagnostics);
    warnOfEmptyBooks(config, diagnostics);
}

} // namespace desk
