#include "tests/breach/BreachHost.h"

#include "tests/support/HostServices.h"

#include <algorithm>
#include <stdexcept>

namespace breach {

CBreachHost::CBreachHost() {
    const auto account = boost::make_shared<CAccountInfo>(breaches);
    account->m_strKey = "A1";
    account->m_nBrokerType = static_cast<int>(TC::EQDBrokerType::Stock);
    user.accounts["A1"] = account;
    user.simple.insert("A1");
    using TC::EQDBrokerType;
    for (const auto kind : {EQDBrokerType::Future, EQDBrokerType::Stock, EQDBrokerType::Credit,
                            EQDBrokerType::Gold, EQDBrokerType::FutureOption, EQDBrokerType::StockOption,
                            EQDBrokerType::HGT, EQDBrokerType::Neeq, EQDBrokerType::SGT})
        user.addGroup(kind, "G", {{"A1", 1.0}});
    const auto detail = boost::make_shared<TC::CInstrumentDetail>();
    detail->m_strMarket = "SH";
    detail->m_strCode = "600000";
    exchange.stocks[QStringLiteral("SH600000")] = detail;
    types.types = {{knservice::kTypeTradableStock, "SH600000"}, {knservice::kBasketTypes[0], "SH600000"}};
    const auto quote = boost::make_shared<fake::CQuote>();
    quote->all(10.5);
    quotes.quotes[QStringLiteral("SH600000")] = quote;

    addFunctionData();

    TC::CHost services = fake::servicesOf(*this);
    services.formulaManager = &formulas;
    const utils::KNError installed = TC::installHost(services);
    if (!installed.isSuccess()) throw std::logic_error(installed.errorMsg());
}

void CBreachHost::addFunctionData() {
    CFuncRecords& data = tasks.account;
    data.info = user.accounts.at("A1");
    tasks.accountKeys[{"A1", static_cast<int>(TC::EQDBrokerType::Stock)}] = "A1";
    data.detail = boost::make_shared<knservice::CAccountDetail>();
    data.detail->m_dAssetForRatio = data.detail->m_dAssetCheck = 100000;
    data.detail->m_dBasketAsset = 100000;
    for (const char* number : {"1", "2"}) {
        const auto order = boost::make_shared<knservice::COrderDetail>();
        order->m_strOrderSysID = number;
        order->m_nStatus = 50;
        data.orders.push_back(order);
    }

    const QString future = QStringLiteral("CFFEXIF2609");
    const QString option = QStringLiteral("10005001");
    exchange.addOther("future", future);
    exchange.addOther("option", option);
    const auto contract = boost::make_shared<TC::CInstrumentDetail>();
    contract->m_strMarket = "CFFEX";
    contract->m_strCode = "IF2609";
    contract->m_dMultiplier = 300;
    exchange.others[future] = contract;
    const auto fee = boost::make_shared<knservice::CInstrumentFee>();
    fee->m_instrument = contract;
    data.fees[knservice::CInstrumentFee::genKey(*contract, *data.info)] = fee;
    quotes.quotes[future] = quotes.quotes[option] = quotes.quotes[QStringLiteral("SH600000")];

    const auto addBasket = [this](const QString& name, const QString& market, const QString& code) {
        TC::CBasketStockData row;
        row.m_strMarket = market;
        row.m_strCode = code;
        row.m_nVolume = 100;
        row.m_dWeight = 1;
        user.baskets[name].m_rows.append(row);
    };
    addBasket(QStringLiteral("stocks"), QStringLiteral("SH"), QStringLiteral("600000"));
    addBasket(QStringLiteral("futures"), QStringLiteral("CFFEX"), QStringLiteral("IF2609"));
}

CBreachHost::~CBreachHost() {
    TC::releaseHost();
}

/// The caller holds the mutex of the records.
std::vector<std::string> CBreachHost::collectReports() const {
    std::vector<std::string> texts;
    for (const fake::CMessage& message : messages.messages)
        texts.push_back(message.text.toStdString());
    for (const fake::CTradeError& error : orders.errors)
        texts.push_back(error.text.toStdString());
    for (const TC::CIntakeReport& report : audit.reports)
        texts.push_back(report.m_strCause.toStdString());
    for (const TC::CIncidentReport& report : audit.incidents)
        texts.push_back(report.m_strCause.toStdString());
    return texts;
}

std::vector<std::string> CBreachHost::reports() const {
    return records.snapshot([this] { return collectReports(); });
}

bool CBreachHost::waitForReport(const std::string& text) {
    return records.waitUntil([&] {
        const auto texts = collectReports();
        return std::any_of(texts.begin(), texts.end(),
                           [&](const std::string& report) { return report.find(text) != std::string::npos; });
    });
}

} // namespace breach
