#pragma once

#include "orderservice/base/Export.h"
#include "orderservice/platform/Quote.h"
#include "orderservice/records/CommandParam.h"
#include "orderservice/records/Enums.h"
#include "orderservice/records/OrderParam.h"
#include "orderservice/records/OrderSetting.h"

#include <QString>

#include <string>

namespace TC {

class CTradingRules;

/// The trading layer's rules for keys, for the texts of an order, and for the records made from them. A part
/// of CTradingRules, whose comment says when the operations are called.
class ORDERSERVICE_EXPORT COrderTexts {
public:
    using CService = CTradingRules; ///< reports show these operations under its name

    /// Market and code as one instrument key, such as "SH600000". Stock codes are also looked up under the
    /// market directly followed by the code.
    virtual QString qdStockKey(const QString& market, const QString& code) = 0;
    /// The kind of account that a family trades on, as in records/Families.h.
    virtual EQDBrokerType orderStrategyTradeTypeToBrokerType(EOrderStrategyTradeType tradeType) = 0;
    /// The account key that the two key parts of the trade parameters name. If it is empty, the order is
    /// refused.
    virtual QString getAccountFromOrderParam(const QString& part1, const QString& part2) = 0;

    /// Reads the text after `orderParam=` in an order file, in GBK, and sets every field of the record. The
    /// remark stays in GBK. Returns false if the text is not understood. Then the record must be unchanged,
    /// and the orders are sent without these parameters. To refuse the orders instead, return true and set
    /// the two account key parts to an account that does not exist. File thread, with the registry locked.
    virtual bool parserOrderTradeParam(const std::string& text, COrderTradeParam& param) = 0;
    /// Reads the setting text of an order and changes the fields of the setting that the text names. It
    /// cannot report a failure. If the text is not understood, set the price type to not set; then the order
    /// is refused.
    virtual void orderSettingFromString(COrderSetting& setting, const QString& text) = 0;
    /// Copies the setting into a record: price type, price, order type and any further fields that the host
    /// uses. volume: shares or lots. price: currency units, may be unset. quote: may be empty. May be called
    /// while the lock of an account's data is held.
    virtual void orderSettingToParam(const COrderSetting& setting, CCodeOrderParam& record,
                                     EOperationType operation, int volume, double price,
                                     const CPriceDataPtr& quote) = 0;
    /// Moves the record's time range into the trading day, if the host uses time ranges.
    virtual void fixTimeRange(CCodeOrderParam& record) = 0;

protected:
    virtual ~COrderTexts() = default;
};

} // namespace TC
