#pragma once

// The minimum that a stock host must implement: one user with one account, one stock with a fixed price, and
// an order client that prints the commands. All other services use the defaults of the kit.

#include <orderservice/kit/DefaultServices.h>
#include <orderservice/kit/ExchangeClientBase.h>
#include <orderservice/kit/InstrumentTypesBase.h>
#include <orderservice/kit/QuoteBases.h>
#include <orderservice/kit/TableData.h>
#include <orderservice/kit/TradeClientBase.h>
#include <orderservice/kit/TraderCenterBase.h>
#include <orderservice/kit/UserConfigBase.h>
#include <orderservice/platform/MsgService.h>
#include <orderservice/platform/OrderClient.h>

#include <boost/make_shared.hpp>

#include <atomic>
#include <cmath>
#include <future>
#include <mutex>
#include <ostream>
#include <string>
#include <utility>
#include <vector>

namespace minimal {

inline const QString kAccount = QStringLiteral("A1");
inline const QString kStockKey = QStringLiteral("SH600000"); // full key: market and code
inline constexpr double kPrice = 10.5;
inline constexpr double kMoney = 100000; // of the account, in currency units

/// Prints whole lines from any thread.
class CScreen {
public:
    explicit CScreen(std::ostream& out) : m_out(out) {}
    void print(const QString& line) {
        const std::lock_guard lock(m_mutex);
        m_out << line.toStdString() << std::endl;
    }

private:
    std::ostream& m_out;
    std::mutex m_mutex;
};

class CUser : public kit::CUserConfigBase, public TC::CUserManager {
public:
    TC::CUserConfig* getUserConfig() override { return this; } // the user is always logged in
    bool hasOrderService() const override { return true; }
    std::string getUserName() const override { return "demo"; }
    int getUserKind() const override { return 100; } // may issue commands
    int getMaxOrderServerNum() const override { return 10; }
    TC::CAccountPtr getAccountData(const QString& key) const override {
        if (key != kAccount) return nullptr;
        return boost::make_shared<kit::CPlainAccount>(key.toStdString(), TC::EQDBrokerType::Stock);
    }
    // For function calls: they name their account by its text.
    std::vector<TC::CAccountPtr> getAccounts() const override { return {getAccountData(kAccount)}; }
};

/// Prints commands. A real host sends them to its trading layer here. `ordered` is set by the first call:
/// true for a command, false for a refusal.
class COrders : public TC::COrderClient {
public:
    explicit COrders(CScreen& screen) : m_screen(screen) {}

    void orderCommands(const TC::COrderComandParamPtr& command) override {
        for (const TC::CCodeOrderParam& record : command->m_codes) {
            const std::string account = record.m_account ? record.m_account->getKey() : "none";
            m_screen.print(
                QStringLiteral("command: account %1, %2, operation %3, volume %4, price %5")
                    .arg(QString::fromStdString(account))
                    .arg(QString::fromStdString(record.m_stock.m_strMarket + record.m_stock.m_strCode))
                    .arg(static_cast<int>(record.m_eOperationType))
                    .arg(record.m_nVolume)
                    .arg(record.m_dPrice));
        }
        answer(true);
    }
    void showTradeError(const QString& text, const QString& title) override {
        m_screen.print(title + QStringLiteral(": ") + text);
        answer(false);
    }

    std::promise<bool> ordered;
    std::atomic<int> commands{0};

private:
    void answer(bool isCommand) {
        if (isCommand) ++commands;
        std::call_once(m_first, [&] { ordered.set_value(isCommand); });
    }

    CScreen& m_screen;
    std::once_flag m_first;
};

class CTrading : public kit::CTradeClientBase {
public:
    explicit CTrading(CScreen& screen) : m_screen(screen) {}
    TC::EBROKER_LOGIN_STATUS getLoginStatus(const std::string&) override {
        return TC::EBROKER_LOGIN_STATUS::LoggedIn;
    }
    void cancelTask(int taskId, int, const std::string&, const std::string&, const std::string&,
                    const CCancelCallback& callback, int) override {
        m_screen.print(QStringLiteral("cancel of the unknown task %1").arg(taskId));
        if (callback) callback(utils::KNError(1, "unknown task"));
    }
    // For the cancel by a function call.
    void cancelOrder(const boost::shared_ptr<knservice::COrderDetail>& order) override {
        m_screen.print(QStringLiteral("cancel of the unknown order %1")
                           .arg(QString::fromStdString(order->m_strOrderSysID)));
    }

private:
    CScreen& m_screen;
};

/// What function calls ask about the account. It has money and no positions. A real host subtracts the money
/// of open orders, and has a table of its orders for cancels.
class CAccountData : public kit::CTableData {
public:
    explicit CAccountData(TC::CAccountInfoPtr info)
        : kit::CTableData(knservice::kPositionTable, {}), m_info(std::move(info)) {}
    double getUsableVolume(const std::string& market, const std::string& code, TC::EOperationType operation,
                           TC::EHedge_Flag_Type, double price) override {
        const bool isKnown = QString::fromStdString(market + code) == kStockKey;
        const bool isPurchase = operation == TC::EOperationType::Buy;
        return isKnown && isPurchase && price > 0 ? std::floor(kMoney / price) : 0;
    }
    TC::CAccountInfoPtr getAccountInfo() override { return m_info; }
    knservice::CAccountDetailPtr getAccountDetail() override {
        const auto detail = boost::make_shared<knservice::CAccountDetail>();
        detail->m_dAssetForRatio = detail->m_dAssetCheck = detail->m_dBasketAsset = kMoney;
        return detail;
    }

private:
    const TC::CAccountInfoPtr m_info;
};

class CCenter : public kit::CTraderCenterBase {
public:
    explicit CCenter(const CUser& user) : m_user(user) {}
    boost::shared_ptr<knservice::CAccountData> getAccountData(const std::string& key) override {
        const TC::CAccountPtr account = m_user.getAccountData(QString::fromStdString(key));
        return account ? boost::make_shared<CAccountData>(account->toInfo()) : nullptr;
    }
    std::string getAccountKey(const std::string& id, int brokerType) override {
        const bool isStock = brokerType == static_cast<int>(TC::EQDBrokerType::Stock);
        return isStock && id == kAccount.toStdString() ? id : std::string();
    }

private:
    const CUser& m_user;
};

class CExchange : public kit::CExchangeClientBase {
public:
    TC::CInstrumentDetailPtr getCodeInfo(const QString& stockKey) override {
        if (stockKey != kStockKey) return nullptr;
        const auto detail = boost::make_shared<TC::CInstrumentDetail>();
        detail->m_strMarket = "SH";
        detail->m_strCode = "600000";
        return detail;
    }
    std::string getMaxTradingDay() override { return "20260102"; }
};

class CQuote : public kit::CPriceDataBase {
public:
    CQuote() {
        m_dLastPrice = m_dFallbackPrice = kPrice;
        m_nDayCount = 1; // not suspended
    }
    double getOriginPrice(TC::EPriceType, TC::EOperationType) const override { return kPrice; }
};

class CQuotes : public kit::CQuoteClientBase {
public:
    TC::CPriceDataPtr getStockPrice(const QString& stockKey) override {
        return stockKey == kStockKey ? boost::make_shared<CQuote>() : nullptr;
    }
};

class CTypes : public kit::CInstrumentTypesBase {
public:
    bool isTypedStock(int type, const std::string& market, const std::string& code) override {
        return type == knservice::kTypeTradableStock && QString::fromStdString(market + code) == kStockKey;
    }
    int getTradeMinUnit(const std::string&, const std::string&, TC::EOperationType) override { return 100; }
};

class CMessages : public TC::CMsgService {
public:
    explicit CMessages(CScreen& screen) : m_screen(screen) {}
    void showMsg(const QString& text, TC::EMsgTypeDef, TC::MsgLevel, bool, bool, const QString&) override {
        m_screen.print(QStringLiteral("message: ") + text);
    }

private:
    CScreen& m_screen;
};

/// All services together, ready for TC::installHost. Must live until TC::releaseHost.
struct CMinimalHost {
    explicit CMinimalHost(std::ostream& out) : screen(out) {}

    TC::CHost services() {
        TC::CHost host = defaults.services();
        host.userManager = &user;
        host.orderClient = &orders;
        host.tradeClient = &trading;
        host.exchangeClient = &exchange;
        host.quoteClient = &quotes;
        host.instrumentTypes = &types;
        host.msgService = &messages;
        host.traderCenter = &center;
        return host;
    }

    CScreen screen;
    kit::CDefaultServices defaults;
    CUser user;
    COrders orders{screen};
    CTrading trading{screen};
    CCenter center{user};
    CExchange exchange;
    CQuotes quotes;
    CTypes types;
    CMessages messages{screen};
};

} // namespace minimal
