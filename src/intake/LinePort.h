#pragma once

#include "orderservice/records/Basket.h"
#include "orderservice/records/OrderParam.h"
#include "orderservice/records/StrategyParam.h"

#include <QString>

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace TC {

/// Everything that the line grammar needs from outside. The parser has no other input or output, so tests can
/// run it on any bytes. Called on the thread that parses.
class ILinePort {
public:
    virtual ~ILinePort() = default;

    /// Terminates all tasks with this id, as a user request.
    virtual void terminateTask(int taskId) = 0;
    /// Passes on the fields of a `cancel_order` line.
    virtual void cancelOrders(std::vector<std::string>& fields) = 0;
    /// Calls the host's reader of trade parameters. The text is GBK. False: the host does not understand it.
    virtual bool readTradeParam(const std::string& text, COrderTradeParam& param) = 0;
    /// Returns the strategy's default command remark in UTF-8.
    virtual std::string defaultRemark(const COrderStrategyParam& strategy) = 0;
    /// Whether this deployment allows remarks on commands.
    virtual bool areRemarksAllowed() = 0;
    /// Finds the user's basket with this name. The name is GBK or UTF-8; the comparison is case-sensitive.
    virtual std::optional<CBasketSetting> findBasket(std::string_view name) = 0;
    /// Whether the strategy's group or account setting yields at least one account.
    virtual bool hasAccounts(const COrderStrategyParam& strategy) = 0;
    /// The label of a source kind at the start of a message, and the title of the kind.
    virtual QString sourceLabel(EOrderStrategyType type) = 0;
    virtual QString sourceTitle(EOrderStrategyType type) = 0;
    /// Shows a note to the user.
    virtual void showNote(const QString& text) = 0;
};

} // namespace TC
