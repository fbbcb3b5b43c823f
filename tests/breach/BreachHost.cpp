#include "tests/breach/BreachHost.h"

#include "tests/support/HostServices.h"

#include <algorithm>
#include <stdexcept>

namespace breach {

CBreachHost::CBreachHost() {
    const auto account = boost::make_shared<CAccountInfo>(breaches);
    account->m_strKey = "A1";
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

    const utils::KNError installed = TC::installHost(fake::servicesOf(*this));
    if (!installed.isSuccess()) throw std::logic_error(installed.errorMsg());
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
