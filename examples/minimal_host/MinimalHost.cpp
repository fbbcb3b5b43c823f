#include "MinimalHost.h"

#include <boost/make_shared.hpp>

#include <ctime>
#include <iostream>

namespace minimal {

const char* const kAccount = "A1";
const char* const kMarket = "SH";
const char* const kCode = "600000";
const double kPrice = 10.5;

namespace {

class CFixedPrice : public TC::CPriceData {
public:
    double getOriginPrice(TC::EPriceType, TC::EOperationType) const override { return kPrice; }
    double getPriceForCalc(TC::EPriceType, TC::EOperationType, int,
                           const boost::shared_ptr<TC::CAutoPriceParam>&) const override {
        return kPrice;
    }
    double getPriceForOrder(TC::EPriceType, TC::EOperationType, int,
                            const boost::shared_ptr<TC::CAutoPriceParam>&) const override {
        return kPrice;
    }
};

class COurAccount : public TC::CAccount {
public:
    explicit COurAccount(TC::EQDBrokerType broker) : m_info(boost::make_shared<TC::CAccountInfo>()) {
        m_info->m_nBrokerType = static_cast<int>(broker);
        m_info->m_strKey = kAccount;
    }
    TC::CAccountInfoPtr toInfo() const override { return m_info; }

private:
    TC::CAccountInfoPtr m_info;
};

bool isOurStock(const QString& stockKey) {
    return stockKey == QLatin1String(kMarket) + QLatin1String(kCode);
}

} // namespace

void CUser::getAccountsWeights(TC::EQDBrokerType broker, TC::ESelectedAccountType, const QString& name,
                               std::vector<TC::CAccountInfoPtr>& accounts, std::vector<double>& ratios,
                               bool) const {
    if (!hasAccount(name)) return;
    accounts.push_back(COurAccount(broker).toInfo());
    ratios.push_back(1.0);
}

TC::CAccountPtr CUser::getAccountData(const QString& key) const {
    return hasAccount(key) ? boost::make_shared<COurAccount>(TC::EQDBrokerType::Stock) : nullptr;
}

void COrders::orderCommands(const TC::COrderComandParamPtr& command) {
    for (const TC::CCodeOrderParam& code : command->m_codes) {
        std::cout << "command: account " << code.m_account->getKey() << ", " << code.m_stock.m_strMarket
                  << code.m_stock.m_strCode << ", operation " << static_cast<int>(code.m_eOperationType)
                  << ", volume " << code.m_nVolume << ", price " << code.m_dPrice << std::endl;
    }
    answer(true);
}

void COrders::showTradeError(const QString& text, const QString& title) {
    std::cout << title.toStdString() << ": " << text.toStdString() << std::endl;
    answer(false);
}

void COrders::answer(bool ordered) {
    if (!m_bAnswered) arrived.set_value(ordered);
    m_bAnswered = true;
}

std::vector<int> CTrading::splitEntrusts(int volume, double, TC::EPriceType,
                                         const std::vector<TC::CAccountInfoPtr>& accounts,
                                         const std::vector<double>&, TC::EPositionType, const std::string&,
                                         const std::string&, TC::EOperationType, TC::EHedge_Flag_Type,
                                         const boost::shared_ptr<utils::KNError>& error) {
    if (volume == TC::kUnsetInt) {
        *error = utils::KNError(1, "no volume");
        return {};
    }
    std::vector<int> volumes(accounts.size(), 0);
    if (!volumes.empty()) volumes.front() = volume;
    return volumes;
}

std::vector<double> CTrading::splitMoney(double amount, const std::vector<TC::CAccountInfoPtr>& accounts,
                                         const std::vector<double>&, TC::EPositionType, TC::EOperationType,
                                         const boost::shared_ptr<utils::KNError>&) {
    std::vector<double> amounts(accounts.size(), 0.0);
    if (!amounts.empty()) amounts.front() = amount;
    return amounts;
}

bool CExchange::hasStock(const QString& stockKey) {
    return isOurStock(stockKey);
}

TC::CInstrumentDetailPtr CExchange::getCodeInfo(const QString& stockKey) {
    if (!isOurStock(stockKey)) return {};
    const auto detail = boost::make_shared<TC::CInstrumentDetail>();
    detail->m_strMarket = kMarket;
    detail->m_strCode = kCode;
    return detail;
}

TC::CPriceDataPtr CQuotes::getStockPrice(const QString& stockKey) {
    if (!isOurStock(stockKey)) return {};
    return boost::make_shared<CFixedPrice>();
}

boost::shared_ptr<TC::CQuoteRequest> CQuotes::subscribe(const QString&, const TC::CQuoteRequest::CCallback&,
                                                        TC::ESubscribeType) {
    return boost::make_shared<TC::CQuoteRequest>();
}

void CMessages::showMsg(const QString& text, TC::EMsgTypeDef, TC::MsgLevel, bool, bool, const QString&) {
    std::cout << "message: " << text.toStdString() << std::endl;
}

void CRules::orderSettingToParam(const TC::COrderSetting& setting, TC::CCodeOrderParam& record,
                                 TC::EOperationType, int, double price, const TC::CPriceDataPtr&) {
    record.m_ePriceType = setting.m_ePriceType;
    record.m_eOrderType = setting.m_eOrderType;
    record.m_dPrice = price;
}

std::int64_t CTime::currentTime() {
    return std::time(nullptr);
}

TC::CHost CMinimalHost::services() {
    TC::CHost host;
    host.userManager = &user;
    host.orderClient = &orders;
    host.tradeClient = &trading;
    host.quoteClient = &quotes;
    host.exchangeClient = &exchange;
    host.msgService = &messages;
    host.timeService = &time;
    host.tradingRules = &rules;
    host.algorithmTradeHelper = &algorithms;
    host.intakeAudit = &audit;
    host.instrumentTypes = &types;
    host.traderCenter = &tasks;
    host.tradeFrameworkSource = &framework;
    host.luaModuleCtrl = &switches;
    return host;
}

} // namespace minimal
