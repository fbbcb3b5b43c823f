#pragma once

#include "orderservice/variants/OrderServiceSplit.h"

#include "tests/support/ScriptedConfirmer.h"
#include "tests/variants/FamilyHost.h"

#include <QObject>
#include <QVector>

#include <vector>

/// The two-pass variant on the fake host, with a stock strategy on channel 3 and a confirmer that accepts.
class SplitFixture : public FamilyHost {
protected:
    using CChecked = QVector<TC::orderParamForOrderService>;

    SplitFixture() {
        strategies.insert(3, CStrategyBuilder());
        QObject::connect(&service, &TC::COrderServiceBase::sigPlaceLegalOrders,
                         [this](const CChecked& orders, const TC::COrderStrategyMap* map) {
                             batches.push_back(orders);
                             maps.push_back(map);
                             lastMap = *map;
                         });
    }
    static COrderBuilder stock() { return COrderBuilder(23).line(QStringLiteral("600000"), 10.5, 1000); }

    /// The orders that pass the first pass.
    CChecked check(const QVector<TC::COrderParam>& orders) {
        batches.clear();
        service.placeOrders(orders, &strategies);
        return batches.empty() ? CChecked() : batches.back();
    }
    /// Both passes.
    void place(const QVector<TC::COrderParam>& orders) {
        service.placeLegalOrders(check(orders), &strategies);
    }

    TC::COrderServiceSplit service;
    CScriptedConfirmer confirmer;
    std::vector<CChecked> batches; ///< emitted by the first pass
    std::vector<const TC::COrderStrategyMap*> maps;
    TC::COrderStrategyMap lastMap;
};
