#pragma once

#include "kit/FamilyTradingRulesBase.h"

namespace desk {

/// The desk's rules; its words, keys, kinds of account and answers about operations are the kit's. Any
/// thread; no state.
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
class CDeskTradingRules : public kit::CFamilyTradingRulesBase {
public:
    /// The account is named by its key in the first part; the second part says which of several it is and is
    /// put behind the first with an underscore, unless it is "-".
    QString getAccountFromOrderParam(const QString& part1, const QString& part2) override;
    bool parserOrderTradeParam(const std::string& text, TC::COrderTradeParam& param) override;
    void orderSettingFromString(TC::COrderSetting& setting, const QString& text) override;
    void orderSettingToParam(const TC::COrderSetting& setting, TC::CCodeOrderParam& record,
                             TC::EOperationType operation, int volume, double price,
                             const TC::CPriceDataPtr& quote) override;
};

} // namespace desk
