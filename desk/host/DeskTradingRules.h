#pragma once

#include "kit/TradingRulesBase.h"

namespace desk {

/// The desk's rules; its words, keys and kinds of account are the kit's. Any thread; no state.
///
/// Both texts that order files may carry are pairs `key:value`, separated by semicolons, a value without
/// semicolons:
/// - behind `orderParam=`: remark, account, sub, order_type, setting, kind, text1, text2, text3;
/// - a setting text: price_type, order_type, remark; the pairs separated by commas, so that it can stand
/// behind `setting:`; price_type is a word of the desk's files or a number.
///
/// An account without a sub is that account. Orders must not go out otherwise than their texts say: those
/// with an unknown key, a key twice, a number that is none or an algorithm, of which the desk has none, get
/// an order kind that the broker rejects. A text without any pair is not understood at all.
class CDeskTradingRules : public kit::CTradingRulesBase {
public:
    /// The account is named by its key in the first part; the second part says which of several it is and is
    /// put behind the first with an underscore, unless it is "-".
    QString getAccountFromOrderParam(const QString& part1, const QString& part2) override;
    bool parserOrderTradeParam(const std::string& text, TC::COrderTradeParam& param) override;
    void orderSettingFromString(TC::COrderSetting& setting, const QString& text) override;
    void orderSettingToParam(const TC::COrderSetting& setting, TC::CCodeOrderParam& record,
                             TC::EOperationType operation, int volume, double price,
                             const TC::CPriceDataPtr& quote) override;
    /// The four follow the table of Operations.h; an operation that is not in it is none of them and booked
    /// as an account's own.
    bool isBuy(TC::EOperationType operation) override;
    bool isClose(TC::EOperationType operation) override;
    bool isDirectRepay(TC::EOperationType operation) override;
    TC::EEntrustTypes operationTypeToEntrustType(TC::EOperationType operation) override;
};

} // namespace desk
