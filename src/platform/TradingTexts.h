#pragma once

#include "orderservice/base/Export.h"
#include "orderservice/records/Account.h"
#include "orderservice/records/Enums.h"

#include <QString>

#include <string>

namespace TC {

class CTradingRules;

/// Display texts for the user. A part of CTradingRules, whose comment says when the operations are called.
class ORDERSERVICE_EXPORT CTradingTexts {
public:
    using CService = CTradingRules; ///< reports show these operations under its name

    /// Display texts for the user: the title of messages about a source, then the names of a source, an order
    /// number, a family and a price type. Never empty. The host chooses the text for an unknown number.
    virtual QString orderStrategyTypeToOrderTitle(EOrderStrategyType type) = 0;
    virtual QString orderStrategyTypeToString(EOrderStrategyType type) = 0;
    virtual QString orderStrategyOrderTypeToString(int orderType) = 0;
    virtual QString orderStrategyTradeTypeToString(EOrderStrategyTradeType tradeType) = 0;
    virtual QString knPriceTypeToString(EPriceType priceType, const std::string& code, bool shortForm) = 0;
    /// The text by which the user knows an account. Function calls name accounts by it, and messages show it.
    /// By default the account's key.
    virtual QString accountDisplayIDQs(const CAccountInfo& account) {
        return QString::fromStdString(account.getKey());
    }

protected:
    virtual ~CTradingTexts() = default;
};

} // namespace TC
