#pragma once

#include "orderservice/kit/FamilyTradingRulesBase.h"

namespace desk {

/// The desk's trading rules. The kit provides words, keys, account kinds and the answers about operations.
/// Any thread; no state.
///
/// Order files may contain two texts. Both consist of pairs `key:value`:
/// - After `orderParam=`: pairs separated by semicolons, so a value has no semicolon. Keys: remark, account,
///   sub, order_type, setting, kind, text1, text2, text3.
/// - A setting text: pairs separated by commas, so that the text can be the value of `setting:`. Keys:
///   price_type (a word of the desk's files or a number), order_type, remark.
///
/// `account` without `sub` names the account itself. An order must not be sent if it differs from its text.
/// So an order gets an order type that the broker rejects if its text has an unknown key, a key twice, an
/// invalid number or an algorithm (the desk has no algorithms). A text without any pair is not understood at
/// all.
class CDeskTradingRules : public kit::CFamilyTradingRulesBase {
public:
    /// The first part is the account key. The second part tells which of several accounts is meant and is
    /// appended with an underscore, unless it is "-".
    QString getAccountFromOrderParam(const QString& part1, const QString& part2) override;
    bool parserOrderTradeParam(const std::string& text, TC::COrderTradeParam& param) override;
    void orderSettingFromString(TC::COrderSetting& setting, const QString& text) override;
    void orderSettingToParam(const TC::COrderSetting& setting, TC::CCodeOrderParam& record,
                             TC::EOperationType operation, int volume, double price,
                             const TC::CPriceDataPtr& quote) override;
    /// The account's display id or, if it has none, its key.
    QString accountDisplayIDQs(const TC::CAccountInfo& account) override;
};

} // namespace desk
