#pragma once

#include "orderservice/base/Export.h"
#include "orderservice/platform/TradingRules.h"

#include <vector>

namespace kit {

/// The rules of a host that trades stocks only, with display words for all families. A stock host need not
/// override anything. A host with more families derives from CFamilyTradingRulesBase. Any thread; no state.
class ORDERSERVICE_EXPORT CTradingRulesBase : public TC::CTradingRules {
public:
    /// The market followed by the code: "SH600000".
    QString qdStockKey(const QString& market, const QString& code) override { return market + code; }
    /// The account kind of the family (records/Families.h). For a number without a family it is the stock
    /// kind.
    TC::EQDBrokerType orderStrategyTradeTypeToBrokerType(TC::EOrderStrategyTradeType tradeType) override;

    /// An order cannot name an account: the key is empty, so the order is refused.
    QString getAccountFromOrderParam(const QString&, const QString&) override { return {}; }
    /// This host does not read trade parameters. An order must not be sent without the parameters that its
    /// file contains. So the record gets an account that does not exist, the check refuses the order, and a
    /// message gives the reason. Always returns true.
    bool parserOrderTradeParam(const std::string& text, TC::COrderTradeParam& param) override;
    /// This host does not read setting texts. An order must not be sent at a price that differs from its
    /// text. So a text that is not empty unsets the price type, and the check refuses the order.
    void orderSettingFromString(TC::COrderSetting& setting, const QString& text) override;
    /// Copies price type, order kind (plain if not set) and price without change.
    void orderSettingToParam(const TC::COrderSetting& setting, TC::CCodeOrderParam& record,
                             TC::EOperationType operation, int volume, double price,
                             const TC::CPriceDataPtr& quote) override;
    /// Records have no time range.
    void fixTimeRange(TC::CCodeOrderParam&) override {}

    /// True only for buying stock.
    bool isBuy(TC::EOperationType operation) override { return operation == TC::EOperationType::Buy; }
    /// Always false: stocks are sold, not closed.
    bool isClose(TC::EOperationType) override { return false; }
    /// True for the operations of the order numbers 32 and 39, which repay an amount of money.
    bool isDirectRepay(TC::EOperationType operation) override;
    /// Not set, since there is no margin trading.
    TC::EEntrustTypes operationTypeToEntrustType(TC::EOperationType operation) override;

    /// There are no market prices, and every order kind is plain.
    bool isMarketPrice(TC::EPriceType) override { return false; }
    bool isAlgoOrderType(TC::EOrderType) override { return false; }
    TC::ETradePlatform getPlatformTypeByOrderType(TC::EOrderType) override {
        return TC::ETradePlatform::Plain;
    }

    /// Removes the records whose m_nVolume is 0 and whose m_dQuantity is not above zero.
    void filterZeroStock(std::vector<TC::CCodeOrderParam>& records) override;
    /// There is no limit of frequency: the records stay as they are.
    void fillOverFreqOrderMode(std::vector<TC::CCodeOrderParam>&) override {}

    /// The words of TradingWords.h. The title is the source's word in square brackets.
    QString orderStrategyTypeToOrderTitle(TC::EOrderStrategyType type) override;
    QString orderStrategyTypeToString(TC::EOrderStrategyType type) override;
    QString orderStrategyOrderTypeToString(int orderType) override;
    QString orderStrategyTradeTypeToString(TC::EOrderStrategyTradeType tradeType) override;
    QString knPriceTypeToString(TC::EPriceType priceType, const std::string& code, bool shortForm) override;
};

} // namespace kit
