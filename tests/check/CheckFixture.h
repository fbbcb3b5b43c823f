#pragma once

#include "orderservice/check/OrderServiceBase.h"
#include "tests/support/Builders.h"
#include "tests/support/FakeClock.h"
#include "tests/support/FakeHost.h"

#include <gtest/gtest.h>

/// The base class with its three operations empty, because the tests are about its checks only.
class CPlainService : public TC::COrderServiceBase {
public:
    void filterStrategies(TC::COrderStrategyMap*) override {}
    void placeOrders(QVector<TC::COrderParam>, const TC::COrderStrategyMap*) override {}
};

class CheckFixture : public testing::Test {
protected:
    QString onlyError() const {
        const auto texts = host.errorTexts();
        EXPECT_EQ(texts.size(), 1u);
        return texts.empty() ? QString() : texts.front();
    }
    QString onlyMessage() const {
        const auto texts = host.messageTexts();
        EXPECT_EQ(texts.size(), 1u);
        return texts.empty() ? QString() : texts.front();
    }

    CFakeClock clock;
    CFakeHost host;
    CPlainService service;
};
