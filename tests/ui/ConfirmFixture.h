#pragma once

#include "orderservice/records/CommandParam.h"
#include "orderservice/ui/BatchTraderType.h"
#include "orderservice/ui/OrderParamTable.h"
#include "orderservice/ui/OrdersConfirmWidget.h"
#include "tests/support/FakeHost.h"

#include <boost/make_shared.hpp>

#include <string>
#include <vector>

/// A record of the fake host's stock SH600000 for the account A1: buy 600 at 9.50.
inline TC::CCodeOrderParam makeRecord(int volume = 600, const std::string& code = "600000") {
    TC::CCodeOrderParam record;
    const auto account = boost::make_shared<TC::CAccountInfo>();
    account->m_strKey = "A1";
    record.m_account = account;
    record.m_eOperationType = TC::EOperationType::Buy;
    record.m_ePriceType = TC::EPriceType::Specified;
    record.m_dPrice = 9.5;
    record.m_nVolume = volume;
    record.m_stock.m_strMarket = "SH";
    record.m_stock.m_strCode = code;
    record.m_stock.m_strName = "name";
    return record;
}

inline boost::shared_ptr<fake::CQuote> makeQuote(double price) {
    const auto quote = boost::make_shared<fake::CQuote>();
    quote->all(price);
    return quote;
}

/// The confirmation table on the fake host.
class CConfirmTable {
public:
    explicit CConfirmTable(TC::EQdTraderType traderType = TC::EQdTraderType::Stock, int mode = 0)
        : widget(mode, nullptr) {
        TC::setBatchTraderType(traderType);
        widget.prepare();
    }
    QString cell(int row, int column) const { return widget.table()->itemText(row, column); }
    QString sum(int column) const { return widget.table()->statText(column); }

    TC::COrdersConfirmWidget widget;
};
