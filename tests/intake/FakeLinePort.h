#pragma once

#include "orderservice/intake/LinePort.h"

#include <map>
#include <string>
#include <vector>

/// A line port for the grammar. It records what the lines ask for.
class CFakeLinePort : public TC::ILinePort {
public:
    void terminateTask(int taskId) override { terminated.push_back(taskId); }
    void cancelOrders(std::vector<std::string>& fields) override { cancelled.push_back(fields); }
    bool readTradeParam(const std::string& text, TC::COrderTradeParam& param) override {
        paramTexts.push_back(text);
        const auto known = params.find(text);
        if (known == params.end()) return false;
        param = known->second;
        return true;
    }
    std::string defaultRemark(const TC::COrderStrategyParam&) override { return defaultRemarkText; }
    bool areRemarksAllowed() override { return remarksAllowed; }
    std::optional<TC::CBasketSetting> findBasket(std::string_view name) override {
        const auto found = baskets.find(QString::fromUtf8(name.data(), static_cast<int>(name.size())));
        return found != baskets.end() ? std::optional<TC::CBasketSetting>(found->second) : std::nullopt;
    }
    bool hasAccounts(const TC::COrderStrategyParam&) override { return accounts; }
    QString sourceLabel(TC::EOrderStrategyType) override { return QStringLiteral("文件单"); }
    QString sourceTitle(TC::EOrderStrategyType) override { return QStringLiteral("[文件单]"); }
    void showNote(const QString& text) override { notes.push_back(text); }

    std::vector<int> terminated;
    std::vector<std::vector<std::string>> cancelled;
    std::vector<std::string> paramTexts;
    std::map<std::string, TC::COrderTradeParam> params;
    std::string defaultRemarkText;
    bool remarksAllowed = true;
    std::map<QString, TC::CBasketSetting> baskets;
    bool accounts = true;
    std::vector<QString> notes;
};
