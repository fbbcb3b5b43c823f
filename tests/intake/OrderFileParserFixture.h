#pragma once

#include "orderservice/intake/OrderFileParser.h"
#include "tests/intake/FakeLinePort.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

/// The channel of the strategy that reads the file.
inline constexpr int kChannel = 3;

/// The grammar of one file, for the strategy of this channel.
class OrderFileParserFixture : public testing::Test {
protected:
    TC::TypeReturn parse(const std::string& line) {
        std::string copy = line;
        return parser().parseLineParam(copy);
    }

    /// Parses the lines, stops when the read loop would stop, and returns the batch.
    QVector<TC::COrderParam> read(const std::vector<std::string>& lines) {
        for (std::string line : lines) {
            if (!parser().takeLine(line)) break;
        }
        return parser().takeOrders();
    }

    /// Parses one line and returns its only order.
    TC::COrderParam readOne(const std::string& line) {
        const QVector<TC::COrderParam> orders = read({line});
        EXPECT_EQ(orders.size(), 1);
        return orders.isEmpty() ? TC::COrderParam() : orders.first();
    }

    TC::COrderFileParser& parser() {
        if (!m_parser) m_parser = std::make_unique<TC::COrderFileParser>(strategy, kChannel, port);
        return *m_parser;
    }

    void addBasket(const QString& name) {
        TC::CBasketStockData row;
        row.m_strCode = QStringLiteral("600000");
        row.m_nVolume = 200;
        row.m_eOperationType = 19;
        row.m_dWeight = 0.5;
        port.baskets[name].m_rows = {row};
    }

    void setBasketPrice(TC::EPriceType type) {
        strategy.setting(TC::ESettingSlot::StockBasket).m_ePriceType = type;
    }

    TC::COrderStrategyParam strategy;
    CFakeLinePort port;

private:
    std::unique_ptr<TC::COrderFileParser> m_parser;
};

inline TC::COrderTradeParam tradeParam(const std::string& remark) {
    TC::COrderTradeParam param;
    param.m_strRemark = remark;
    return param;
}
