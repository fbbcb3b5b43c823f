#pragma once

#include "orderservice/base/Bson.h"
#include "orderservice/platform/InstrumentTypes.h"
#include "tests/func/RoutineFixture.h"

#include <string>
#include <vector>

using CVolumes = std::vector<int>;

/// A basket "b" of SH600000 (100 shares, weight 1) and SZ000001 (150 shares, weight 3), both at 10, and an
/// account with a limit far away.
class ComposeFixture : public RoutineFixture {
protected:
    ComposeFixture() {
        addRow("SH", "600000", 100, 1);
        addRow("SZ", "000001", 150, 3);
        for (const char* key : {"SH600000", "SZ000001"}) {
            addQuote(QString::fromUtf8(key), 10, 9, 11).m_dDayFigure1 = 1;
            host.types.types.insert({100003, key});
        }
        setAssets("A1", 100000);
        setAssets("A2", 50000);
        defaults = {{"opType", "25"},        {"orderType", "2101"},       {"prType", "5"},
                    {"modelPrice", "\"0\""}, {"modelVolume", "\"2\""},    {"accountID", "\"A1\""},
                    {"orderCode", "\"b\""},  {"tradeKey", "\"x|key|7\""}, {"strategyName", "\"grid\""},
                    {"note", "\"remark\""},  {"modelName", "\"model\""}};
    }
    void addRow(const char* market, const char* code, int volume, double weight, int op = 18) {
        TC::CBasketStockData row;
        row.m_strMarket = QString::fromUtf8(market);
        row.m_strCode = QString::fromUtf8(code);
        row.m_nVolume = volume;
        row.m_dWeight = weight;
        row.m_eOperationType = op;
        host.user.baskets[QStringLiteral("b")].m_rows.append(row);
    }
    QVector<TC::CBasketStockData>& rows() { return host.user.baskets[QStringLiteral("b")].m_rows; }
    void setAssets(const std::string& key, double amount) {
        const auto detail = boost::make_shared<knservice::CAccountDetail>();
        detail->m_dAssetForRatio = detail->m_dAssetCheck = detail->m_dBasketAsset = amount;
        accounts.at(key)->m_detail = detail;
    }
    void addFutures() {
        addFutureAccount("F1");
        addFutureAccount("F2");
        host.user.addGroup(TC::EQDBrokerType::Future, "futures", {{"F1", 1}, {"F2", 1}});
        rows().clear();
        for (const char* code : {"IF2609", "IF2612"}) {
            const QString key = QStringLiteral("CFFEX") + QString::fromUtf8(code);
            host.exchange.addOther("future", key);
            const auto detail = boost::make_shared<TC::CInstrumentDetail>();
            detail->m_strMarket = "CFFEX";
            detail->m_strCode = code;
            detail->m_dMultiplier = 300;
            host.exchange.others[key] = detail;
            addQuote(key, 4000, 3600, 4400).m_dDayFigure1 = 1;
            addRow("CFFEX", code, 1, 1, 0);
            for (const char* account : {"F1", "F2"}) {
                const auto fee = boost::make_shared<knservice::CInstrumentFee>();
                fee->m_instrument = detail;
                accounts.at(account)
                    ->m_fees[knservice::CInstrumentFee::genKey(*detail, *host.user.accounts.at(account))] =
                    fee;
            }
        }
        defaults["opType"] = "40";
        defaults["accountID"] = "\"F1\"";
    }
    void order(const std::map<std::string, std::string>& changes = {}) { call(TC::orderCompose, changes); }
    /// The volumes of the only command's records.
    CVolumes volumesOf(const std::map<std::string, std::string>& changes = {}) {
        forget();
        order(changes);
        CVolumes volumes;
        for (const TC::CCodeOrderParam& record : onlyCommand()->m_codes)
            volumes.push_back(record.m_nVolume);
        return volumes;
    }
    /// The only report about rows that were left out: number, first code, first cause.
    std::string leftOut() const {
        if (host.audit.incidents.size() != 1) return std::to_string(host.audit.incidents.size());
        const TC::CIncidentReport& report = host.audit.incidents[0];
        return std::to_string(report.m_nRows) + " " + report.m_strCode.toStdString() + ": " +
               report.m_strCause.toStdString();
    }
};
