#pragma once

#include "records/Basket.h"
#include "records/OrderParam.h"
#include "records/StrategyParam.h"

#include <QString>

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace TC {

/// What the line grammar asks of the world. The parser itself reads and writes nothing else, so that it can
/// be run on any bytes. Called on the thread that parses.
class ILinePort {
public:
    virtual ~ILinePort() = default;

    /// Ends the tasks of the id on the user's word.
    virtual void terminateTask(int taskId) = 0;
    /// Hands on the fields of a `cancel_order` line.
    virtual void cancelOrders(std::vector<std::string>& fields) = 0;
    /// The host's reader of trade parameters; the text is GBK.
    virtual bool readTradeParam(const std::string& text, COrderTradeParam& param) = 0;
    /// The strategy's default command remark, UTF-8.
    virtual std::string defaultRemark(const COrderStrategyParam& strategy) = 0;
    /// Whether this deployment lets commands carry remarks at all.
    virtual bool areRemarksAllowed() = 0;
    /// The user's basket of that name, given in GBK or UTF-8; the comparison keeps case.
    virtual std::optional<CBasketSetting> findBasket(std::string_view name) = 0;
    /// Whether the strategy's group or account gives any account.
    virtual bool hasAccounts(const COrderStrategyParam& strategy) = 0;
    /// Label of a source kind at the head of a message, and the kind's title.
    virtual QString sourceLabel(EOrderStrategyType type) = 0;
    virtual QString sourceTitle(EOrderStrategyType type) = 0;
    /// Shows a note to the user.
    virtual void showNote(const QString& text) = 0;
};

} // namespace TC
