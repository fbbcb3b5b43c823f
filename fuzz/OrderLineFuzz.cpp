// Reads any bytes as an order file, with the line reader and the grammar. There must be no crash and no
// undefined behaviour. Every order must belong to the file's channel, or be a basket or list of several
// lines.
#include "orderservice/intake/LineReader.h"
#include "orderservice/intake/OrderFileParser.h"
#include "orderservice/records/OrderTypes.h"

#include <boost/lexical_cast/bad_lexical_cast.hpp>

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>

namespace {

constexpr int kChannel = 3;

class CFuzzPort : public TC::ILinePort {
public:
    void terminateTask(int) override {}
    void cancelOrders(std::vector<std::string>& fields) override {
        if (fields.size() < 3) std::abort();
    }
    bool readTradeParam(const std::string& text, TC::COrderTradeParam& param) override {
        param = TC::COrderTradeParam();
        param.m_strRemark = text;
        return text.size() % 2 == 0;
    }
    std::string defaultRemark(const TC::COrderStrategyParam&) override { return "default"; }
    bool areRemarksAllowed() override { return true; }
    std::optional<TC::CBasketSetting> findBasket(std::string_view name) override {
        if (name.size() % 2 == 0) return std::nullopt;
        TC::CBasketSetting basket;
        basket.m_rows.resize(2);
        return basket;
    }
    bool hasAccounts(const TC::COrderStrategyParam&) override { return true; }
    QString sourceLabel(TC::EOrderStrategyType) override { return QStringLiteral("%1"); }
    QString sourceTitle(TC::EOrderStrategyType) override { return QStringLiteral("%2"); }
    void showNote(const QString& text) override {
        if (text.isEmpty()) std::abort();
    }
};

/// Also reads the lines that have no effect, like the file service, which counts them.
void readAll(TC::COrderFileParser& parser, std::FILE* stream, int rowPosition) {
    TC::CLineReader reader(stream);
    for (std::string line; reader.readLine(line);)
        parser.takeLine(line, rowPosition);
}

/// Only the last order can be the basket or list of the file. Only a basket or list may have another channel
/// or several lines.
void checkOrders(const QVector<TC::COrderParam>& orders) {
    for (int i = 0; i < orders.size(); ++i) {
        const TC::COrderParam& order = orders[i];
        const bool isBasket =
            TC::isBasketHeaderOrder(order.m_nOrderType) || order.m_nOrderType == TC::kOrderBasketWhole;
        const bool isList = order.m_nOrderType == TC::kOrderBasketList;
        const bool isLast = i + 1 == orders.size();
        if (order.m_nChannel != kChannel && !(isLast && isBasket)) std::abort();
        if (order.m_orders.size() > 1 && !(isLast && (isBasket || isList))) std::abort();
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size < 2) return 0; // fmemopen does not accept an empty buffer
    TC::COrderStrategyParam strategy;
    const bool isTable = (data[0] & 1) != 0;
    if (isTable) strategy.m_nAccountMode = TC::COrderStrategyParam::kTableMode;
    if ((data[0] & 2) != 0) {
        strategy.setting(TC::ESettingSlot::StockBasket).m_ePriceType = TC::EPriceType::Specified;
    }
    std::FILE* stream = ::fmemopen(const_cast<std::uint8_t*>(data) + 1, size - 1, "r");
    if (stream == nullptr) std::abort();
    CFuzzPort port;
    TC::COrderFileParser parser(strategy, kChannel, port);
    try {
        readAll(parser, stream, isTable ? 1 : 0);
    } catch (const boost::bad_lexical_cast&) {
        // A number that cannot be read ends the file with this exception.
    }
    std::fclose(stream);
    checkOrders(parser.takeOrders());
    const TC::CIgnoredLines& ignored = parser.ignoredLines();
    if ((ignored.m_nCount == 0) != (ignored.m_nFirst == 0)) std::abort();
    if ((ignored.m_nCount == 0) != ignored.m_strFirstReason.isEmpty()) std::abort();
    if (static_cast<std::size_t>(ignored.m_nCount) > size) std::abort();
    return 0;
}
