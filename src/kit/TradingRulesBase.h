#pragma once

#include "platform/TradingRules.h"

namespace kit {

/// The rules of a host that trades stocks only, and words for all families. A stock host need not override
/// anything. A host with more families derives from CFamilyTradingRulesBase.
/// Any thread; no state.
class CTradingRulesBase : public TC::CTradingRules {
public:
    /// The market, and the code behind it: "SH600000".
    QString qdStockKey(const QString& market, const QString& code) override { return market + code; }
    /// The account kind of the family (records/Families.h); stock for a number without a family.
    TC::EQDBrokerType orderStrategyTradeTypeToBrokerType(TC::EOrderStrategyTradeType tradeType) override;

    /// No account can be named in an order: an empty key, so that the order is refused.
    QString getAccountFromOrderParam(const QString&, const QString&) override { return {}; }
    /// This host reads no trade parameters. An order must not go out without those that its file asks for:
    /// the record gets an account that does not exist, so that the check refuses the order, and a message
    /// names the reason. Always true.
    bool parserOrderTradeParam(const std::string& text, TC::COrderTradeParam& param) override;
    /// This host reads no setting texts. An order must not go out at a price that its text does not name: a
    /// text that is not empty takes the price type away, and the check refuses the order.
    void orderSettingFromString(TC::COrderSetting& setting, const QString& text) override;
    /// Price type, order kind (plain if unset) and price, as they come.
    void orderSettingToParam(const TC::COrderSetting& setting, TC::CCodeOrderParam& record,
                             TC::EOperationType operation, int volume, double price,
                             const TC::CPriceDataPtr& quote) override;
    /// Records have no time range.
    void fixTimeRange(TC::CCodeOrderParam&) override {}

    /// A purchase of stock and nothing else.
    bool isBuy(TC::EOperationType operation) override { return operation == TC::EOperationType::Buy; }
    /// Stocks are sold, not closed: never.
    bool isClose(TC::EOperationType) override { return false; }
    /// The operations of the order numbers 32 and 39, which repay an amount of money.
    bool isDirectRepay(TC::EOperationType operation) override;
    /// No margin trading: unset.
    TC::EEntrustTypes operationTypeToEntrustType(TC::EOperationType operation) override;

    /// Every price is a number, and every order kind is a plain one.
    bool isMarketPrice(TC::EPriceType) override { return false; }
    bool isAlgoOrderType(TC::EOrderType) override { return false; }
    TC::ETradePlatform getPlatformTypeByOrderType(TC::EOrderType) override {
        return TC::ETradePlatform::Plain;
    }

    /// The words of TradingWords.h; the title is the source's word in square brackets.
    QString orderStrategyTypeToOrderTitle(TC::EOrderStrategyType type) override;
    QString orderStrategyTypeToString(TC::EOrderStrategyType type) override;
    QString orderStrategyOrderTypeToString(int orderType) override;
    QString orderStrategyTradeTypeToString(TC::EOrderStrategyTradeType tradeType) override;
    QString knPriceTypeToString(TC::EPriceType priceType, const std::string& code, bool shortForm) override;
};

} // namespace kit
