// Reads any bytes as the texts of a function call, on the tests' host. There must be no crash and no
// undefined behaviour, and the only exceptions are those that the service documents. A call sends at most one
// command, and then it has no failure that ends it. No record has a volume that no order can hold. With the
// command guard no record lacks a volume, and no command lacks records.
//
// The first byte selects the switches below: '0' is a passorder without any of them. The bytes after the last
// NUL are the settings of the algorithm. All others are the parameter text.
#include "orderservice/func/OrderFuncService.h"
#include "orderservice/platform/Switches.h"
#include "tests/func/AccountFakes.h"
#include "tests/support/FakeClock.h"
#include "tests/support/FakeHost.h"

#include <boost/lexical_cast/bad_lexical_cast.hpp>
#include <boost/make_shared.hpp>

#include <algorithm>
#include <cfloat>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <map>
#include <string>
#include <vector>

namespace {

using namespace TC;

constexpr int kCommandUser = 90; ///< a kind of user who may send commands
constexpr double kLimit = 150;   ///< the usable volume of an account with a limit

/// One call. `switches` is the first byte; its bits are counted from '0'.
struct CCall {
    CCall(const std::uint8_t* data, std::size_t size)
        : switches(size > 0 ? data[0] ^ unsigned{'0'} : 0), param(reinterpret_cast<const char*>(data), size) {
        param.erase(0, 1);
        const std::size_t end = param.rfind('\0');
        if (end == std::string::npos) return;
        algorithm = param.substr(end + 1);
        param.resize(end);
    }
    bool has(unsigned bit) const { return (switches & bit) != 0; }
    bool isGuarded() const { return has(1); }
    const char* function() const {
        static constexpr const char* kFunctions[] = {"passorder", "SMARTALGOPYPASSORDER", "cancel",
                                                     "smartAlgoPyPassOrder"};
        return kFunctions[switches >> 1 & 3];
    }
    bool isCancel() const { return function() == std::string("cancel"); }
    bool isSmart() const { return function() != std::string("passorder") && !isCancel(); }
    bool isHedgeOn() const { return has(8); }
    bool hasLimit() const { return has(16); }
    bool hasUnit() const { return !has(32); }
    bool hasPrices() const { return !has(64); }
    bool hasPhase() const { return has(128); }

    unsigned switches;
    std::string param, algorithm;
};

/// The host of one call: two accounts of every kind and their group, instruments of every family, and two
/// baskets. Nothing is kept from call to call, so that an input behaves the same when it is run alone.
struct CWorld {
    explicit CWorld(const CCall& call) {
        host.user.kind = kCommandUser;
        host.switches.on.clear();
        if (call.isGuarded()) host.switches.on.insert(kCommandGuardSwitch);
        if (call.isHedgeOn()) host.switches.on.insert(kComposeHedgeSwitch);
        addAccounts(call);
        addInstruments(call);
        addBaskets();
        service.registOrderFailedCallback(
            [this](const int&, const std::string&, const utils::KNError& error) {
                failures.push_back(error.errorMsg());
            });
    }
    void addAccounts(const CCall& call) {
        for (const auto broker : {EQDBrokerType::Future, EQDBrokerType::Credit, EQDBrokerType::StockOption,
                                  EQDBrokerType::HGT, EQDBrokerType::SGT})
            host.user.addGroup(broker, "G", {{"A1", 0.6}, {"A2", 0.4}});
        for (const char* key : {"A1", "A2"}) {
            const auto account = boost::make_shared<CFakeFuncAccount>(host.user.accounts.at(key));
            account->m_dUsable = call.hasLimit() ? kLimit : DBL_MAX;
            account->m_detail = boost::make_shared<knservice::CAccountDetail>();
            account->m_detail->m_dAssetForRatio = account->m_detail->m_dAssetCheck = 1e6;
            account->m_detail->m_dBasketAsset = 1e6;
            host.tasks.accountData[key] = account;
            accounts[key] = account;
            addOrders(*account);
        }
        host.tasks.accountKeys[{"A1", 2}] = "A1";
    }
    static void addOrders(CFakeFuncAccount& account) {
        for (const int status : {0, 1, 52, 55, 56}) {
            const auto order = boost::make_shared<knservice::COrderDetail>();
            order->m_strOrderSysID = std::to_string(status);
            order->m_nStatus = status;
            account.m_orders.push_back(order);
        }
    }
    void addInstruments(const CCall& call) {
        for (const char* code : {"600000", "688001"})
            host.addStock("SH", code, 0, call.hasUnit() ? 100 : 1);
        host.types.types.insert({knservice::kTypeStarMarket, "SH688001"});
        host.types.types.insert({knservice::kBasketTypes[0], "SH600000"});
        addFuture();
        host.exchange.addOther("option", QStringLiteral("10005001"));
        addInstrument("hgt", "HGT", "00700");
        for (const char* key : {"SH600000", "SZ000001", "SH688001", "IF2609", "10005001", "HGT00700"})
            addQuote(QString::fromUtf8(key), call);
    }
    boost::shared_ptr<CInstrumentDetail> addInstrument(const char* list, const char* market,
                                                       const char* code) {
        const auto detail = boost::make_shared<CInstrumentDetail>();
        detail->m_strMarket = market;
        detail->m_strCode = code;
        const QString key = QString::fromUtf8(market) + QString::fromUtf8(code);
        host.exchange.others[key] = detail;
        host.exchange.lists.insert({list, key});
        return detail;
    }
    /// With a fee record on each account, which a basket of futures needs for an amount of money.
    void addFuture() {
        const auto detail = addInstrument("future", "IF", "2609");
        detail->m_dMultiplier = 300;
        const auto fee = boost::make_shared<knservice::CInstrumentFee>();
        fee->m_instrument = detail;
        for (const auto& [key, account] : accounts)
            account->m_fees[knservice::CInstrumentFee::genKey(*detail, *account->m_info)] = fee;
    }
    void addQuote(const QString& key, const CCall& call) {
        constexpr double kPhaseWithPrice = 22;
        const auto quote = boost::make_shared<fake::CQuote>();
        quote->all(call.hasPrices() ? 10.5 : kUnsetDouble);
        quote->m_dFallbackPrice = 9;
        quote->m_dUpperLimit = 11;
        quote->m_nDayCount = 1;
        quote->m_dPhase = call.hasPhase() ? kPhaseWithPrice : 0;
        host.quotes.quotes[key] = quote;
    }
    void addBaskets() {
        CBasketSetting stocks;
        stocks.m_rows.append({QStringLiteral("SH"), QStringLiteral("600000"), {}, 0.6, 100, 18, 0});
        stocks.m_rows.append({QStringLiteral("SZ"), QStringLiteral("000001"), {}, 0.4, 250, 19, 0});
        host.user.baskets[QStringLiteral("b")] = stocks;
        CBasketSetting others;
        others.m_rows.append({QStringLiteral("HGT"), QStringLiteral("00700"), {}, 1, 100, 18, 0});
        others.m_rows.append({{}, QStringLiteral("IF2609"), {}, 1, 2, 0, 0});
        host.user.baskets[QStringLiteral("蓝筹")] = others;
    }

    CFakeClock clock; // a wait for a quote returns at once
    CFakeHost host;
    std::map<std::string, boost::shared_ptr<CFakeFuncAccount>> accounts;
    std::vector<std::string> failures;
    COrderFuncService service;
};

void require(bool condition) {
    if (!condition) std::abort();
}

/// How a call ended.
enum class EEnd { Returned, BadTradeKey, BadText };

EEnd perform(const CCall& call, COrderFuncService& service) {
    try {
        service.doParserOrder(call.function(), call.param, call.algorithm);
    } catch (const boost::bad_lexical_cast&) {
        return EEnd::BadTradeKey;
    } catch (const bson::CError&) {
        return EEnd::BadText;
    }
    return EEnd::Returned;
}

/// A repayment of money has an amount instead of a volume, which is only its whole part.
void checkRepayment(const CCodeOrderParam& record, bool isGuarded) {
    require(std::isfinite(record.m_dQuantity) && !isInvalidPrice(record.m_dQuantity));
    if (isGuarded) require(record.m_dQuantity > 0);
}

/// The families whose usable volume is checked for each record.
bool hasUsableVolume(const COrderComandParam& command) {
    return command.m_eTraderType != EQdTraderType::Basket && command.m_eTraderType != EQdTraderType::Option;
}

void checkRecord(const CCall& call, const COrderComandParam& command, const CCodeOrderParam& record) {
    require(record.m_account != nullptr);
    if (record.m_ePriceType == EPriceType::Specified)
        require(std::isfinite(record.m_dPrice) && record.m_dPrice > 0 && !isInvalidPrice(record.m_dPrice));
    if (record.m_eOperationType == EOperationType::RepayMoney)
        return checkRepayment(record, call.isGuarded());
    require(record.m_nVolume >= 0 && !isUnset(record.m_nVolume));
    if (call.hasLimit() && hasUsableVolume(command)) require(record.m_nVolume <= kLimit);
    if (!call.isGuarded()) return;
    require(record.m_nVolume > 0);
    require(!record.m_stock.m_strMarket.empty() && !record.m_stock.m_strCode.empty());
}

/// Only stock orders of the smart function are for the platform of algorithms. Their message has one group
/// for each record, or is empty because the settings cannot be read. A setting may contain the separator,
/// also as an escape.
void checkAlgorithm(const CCall& call, const COrderComandParam& command) {
    constexpr auto kAlgorithmPlatform = static_cast<ETradePlatform>(11);
    constexpr auto kAlgorithmOrder = static_cast<EOrderType>(13);
    if (command.m_ePlatform != kAlgorithmPlatform)
        return require(command.m_ePlatform == ETradePlatform::Plain);
    require(call.isSmart() && !call.algorithm.empty());
    const auto isOfAlgorithm = [](const auto& record) { return record.m_eOrderType == kAlgorithmOrder; };
    require(std::all_of(command.m_codes.begin(), command.m_codes.end(), isOfAlgorithm));
    const std::string& message = command.m_strAlgoParam;
    if (message.empty() || call.algorithm.find_first_of("@\\") != std::string::npos) return;
    const auto separators = std::count(message.begin(), message.end(), '@');
    require(static_cast<std::size_t>(separators) + 1 == command.m_codes.size());
}

/// Whether the failure leaves out an account or a row only.
bool isPartial(const std::string& failure) {
    return failure.find("自动过滤") != std::string::npos ||
           failure.find("修改下单量为0") != std::string::npos;
}

void checkOrder(const CCall& call, const CWorld& world, EEnd end) {
    require(end != EEnd::BadText && world.host.trade.cancelledOrders.empty());
    const std::vector<COrderComandParamPtr> commands = world.host.commands();
    require(commands.size() <= 1);
    if (end == EEnd::BadTradeKey) return require(commands.empty() && !world.host.messageTexts().empty());
    require(!commands.empty() || !world.failures.empty()); // the caller learns what came of the call
    if (commands.empty()) return;
    require(std::all_of(world.failures.begin(), world.failures.end(), isPartial));
    const COrderComandParam& command = *commands.front();
    if (call.isGuarded()) require(!command.m_codes.empty());
    for (const CCodeOrderParam& record : command.m_codes)
        checkRecord(call, command, record);
    checkAlgorithm(call, command);
}

/// A cancel sends no command. Without a number it cancels open orders only.
void checkCancel(const CWorld& world, EEnd end) {
    require(end != EEnd::BadTradeKey && world.host.commands().empty() && world.failures.empty());
    const auto& orders = world.host.trade.cancelledOrders;
    if (end == EEnd::BadText) require(orders.empty());
    const auto isOpen = [](const knservice::COrderDetailPtr& order) {
        return (order->m_nStatus >= 1 && order->m_nStatus <= 52) || order->m_nStatus == 55;
    };
    if (orders.size() > 1) require(std::all_of(orders.begin(), orders.end(), isOpen));
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const CCall call(data, size);
    CWorld world(call);
    const EEnd end = perform(call, world.service);
    if (call.isCancel())
        checkCancel(world, end);
    else
        checkOrder(call, world, end);
    require(world.host.quotes.liveSubscriptions == 0);
    return 0;
}
