// Any bytes as an order file, through the line reader's splitting and the grammar: no crash, no undefined
// behaviour, and every order that comes out belongs to the file's channel or to a basket.
#include "intake/OrderFileParser.h"

#include <boost/lexical_cast/bad_lexical_cast.hpp>

#include <cstddef>
#include <cstdint>
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
    std::optional<TC::CBasketSetting> findBasket(const QString& name) override {
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

/// The read loop over the text, as the file service drives it.
void readText(TC::COrderFileParser& parser, const std::string& text, int rowPosition) {
    bool settled = false;
    for (std::size_t begin = 0; begin < text.size();) {
        const std::size_t end = std::min(text.find('\n', begin), text.size() - 1) + 1;
        std::string line = text.substr(begin, end - begin);
        begin = end;
        if (settled) {
            parser.parseComposeTradeParam(line);
            continue;
        }
        const TC::TypeReturn result = parser.parseLineParam(line, rowPosition);
        if (result == TC::TR_STOP_READING) return;
        settled = result == TC::TR_BASKET_HEADER;
    }
}

void checkOrders(const QVector<TC::COrderParam>& orders) {
    for (int i = 0; i + 1 < orders.size(); ++i) {
        if (orders[i].m_nChannel != kChannel) std::abort();
        if (orders[i].m_orders.size() > 1) std::abort();
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size == 0) return 0;
    TC::COrderStrategyParam strategy;
    const bool isTable = (data[0] & 1) != 0;
    if (isTable) strategy.m_nAccountMode = TC::COrderStrategyParam::kTableMode;
    if ((data[0] & 2) != 0) {
        strategy.setting(TC::ESettingSlot::StockBasket).m_ePriceType = TC::EPriceType::Specified;
    }
    CFuzzPort port;
    TC::COrderFileParser parser(strategy, kChannel, port);
    try {
        readText(parser, std::string(reinterpret_cast<const char*>(data) + 1, size - 1), isTable ? 1 : 0);
    } catch (const boost::bad_lexical_cast&) {
        // The way a file ends at a number that cannot be read.
    }
    checkOrders(parser.takeOrders());
    return 0;
}
