#include "orderservice/intake/OrderFileParser.h"

#include "orderservice/base/Reserve.h"
#include "orderservice/base/StrictNumber.h"
#include "orderservice/base/Text.h"
#include "orderservice/records/OrderTypes.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace TC {
namespace {

using utils::strictInt;

constexpr char kBlank = ' ';
constexpr char kComma = ',';
constexpr char kTab = '\t';
constexpr char kBar = '|';

constexpr std::string_view kCancelWord = "cancel";
constexpr std::string_view kCancelOrderWord = "cancel_order";
constexpr std::string_view kTradeParamWord = "orderparam";

// Reasons why a line has no effect, for people.
constexpr const char* kBadCancel = "cancel takes one word, the number of the task";
constexpr const char* kBadCancelOrder = "cancel_order takes two words or more";
constexpr const char* kTooFewFields = "it has fewer than two fields";
constexpr const char* kBadListRow = "a row of a list has two fields";
constexpr const char* kBadBasketRow = "the row has too few fields";
constexpr const char* kAfterNamedBasket = "after a named basket, only orderParam lines have an effect";
constexpr const char* kAfterWholeBasket = "after a whole basket, no line has an effect";

QString foreignChannel(int channel) {
    return utils::fillText(QStringLiteral("it is for channel %1"), {QString::number(channel)});
}

bool isBlank(std::string_view line) {
    return line.find_first_not_of(" \t\r\n") == std::string_view::npos;
}

void countReason(int lines, const QString& reason, CIgnoredLines& ignored) {
    auto& reasons = ignored.m_reasons;
    auto found = std::find_if(reasons.begin(), reasons.end(),
                              [&](const std::pair<QString, int>& entry) { return entry.first == reason; });
    if (found == reasons.end()) {
        const bool isFull = reasons.size() >= CIgnoredLines::kMostReasons;
        if (reasons.size() <= CIgnoredLines::kMostReasons)
            reasons.push_back({isFull ? QString() : reason, 0});
        found = std::prev(reasons.end());
    }
    found->second += lines;
}

/// Removes all blanks and carriage returns.
void removeBlanks(std::string& line) {
    line.erase(std::remove_if(line.begin(), line.end(), [](char c) { return c == kBlank || c == '\r'; }),
               line.end());
}

/// Means that the rows of a named basket keep their own operation.
constexpr int kOwnOperation = -1;

std::string_view firstWord(std::string_view line) {
    return line.substr(0, line.find(kBlank));
}

/// Compares the word without regard to case. Comparing single bytes is safe. No character outside ASCII is
/// another case of its letters. The word is at the start of the line, so its first byte cannot be the second
/// half of a GBK pair.
bool isTradeParamLine(std::string_view line) {
    const auto sameLetter = [](char a, char b) {
        return a == b || (a >= 'A' && a <= 'Z' && a - 'A' + 'a' == b);
    };
    return line.size() >= kTradeParamWord.size() &&
           std::equal(kTradeParamWord.begin(), kTradeParamWord.end(), line.begin(),
                      [&](char word, char c) { return sameLetter(c, word); });
}

void fillOrderParam(const COrderTradeParam& tradeParam, COrderParam& order) {
    order.m_strRemark = tradeParam.m_strRemark;
    order.m_eOrderType = static_cast<EOrderType>(tradeParam.m_eOrderType);
    order.m_strOrderSetting = tradeParam.m_strOrderSetting.toStdString();
    order.m_strAccountKeyPart1 = tradeParam.m_strAccountKeyPart1;
    order.m_strAccountKeyPart2 = tradeParam.m_strAccountKeyPart2;
    order.m_nSettingKind = tradeParam.m_nSettingKind;
    order.m_strTradeText1 = tradeParam.m_strTradeText1;
    order.m_strTradeText2 = tradeParam.m_strTradeText2;
    order.m_strTradeText3 = tradeParam.m_strTradeText3;
}

/// Appends a new order to the list and removes it again unless it is kept. So an order is read in its place,
/// without a copy. Nothing else may change the list meanwhile.
class CNewOrder {
public:
    explicit CNewOrder(QVector<COrderParam>& orders) : m_orders(orders) { orders.resize(orders.size() + 1); }
    ~CNewOrder() {
        if (!m_bKept) m_orders.resize(m_orders.size() - 1);
    }
    CNewOrder(const CNewOrder&) = delete;
    CNewOrder& operator=(const CNewOrder&) = delete;

    COrderParam& operator*() const { return m_orders.last(); }
    COrderParam* operator->() const { return &m_orders.last(); }
    void keep() { m_bKept = true; }

private:
    QVector<COrderParam>& m_orders;
    bool m_bKept = false;
};

} // namespace

COrderFileParser::COrderFileParser(const COrderStrategyParam& strategy, int channel, ILinePort& port)
    : m_strategy(strategy), m_nChannel(channel), m_port(port) {
    m_order.m_eStrategyType = EOrderStrategyType::File;
}

void COrderFileParser::expectBytes(long long bytes) {
    constexpr long long kShortLine = 16;
    // About 38 MB of address space. Memory is used only for the orders that are stored. The limit is needed
    // because the size of a file says little about its number of orders: it may be one long line.
    constexpr long long kMostReserved = 1 << 17;
    utils::reserveIfPossible(m_orders,
                             static_cast<int>(std::clamp(bytes / kShortLine + 1, 1LL, kMostReserved)));
}

bool COrderFileParser::takeLine(std::string& line, int rowPosition) {
    ++m_nLine;
    switch (m_eRest) {
    case ERest::Nothing:
        ignoreLine(line, QString::fromUtf8(kAfterWholeBasket));
        return false;
    case ERest::TradeParams:
        parseComposeTradeParam(line);
        return true;
    case ERest::Grammar:
        break;
    }
    const TypeReturn result = parseLineParam(line, rowPosition);
    if (result == TR_BASKET_HEADER) m_eRest = ERest::TradeParams;
    if (result == TR_STOP_READING) m_eRest = ERest::Nothing;
    return m_eRest != ERest::Nothing;
}

/// Counts a line that has no effect, unless it is blank.
TypeReturn COrderFileParser::ignoreLine(const std::string& line, const QString& reason) {
    if (!isBlank(line)) countIgnored(1, m_nLine, reason);
    return TR_LINE_DONE;
}

void COrderFileParser::countIgnored(int lines, int first, const QString& reason) {
    if (m_ignored.m_nCount == 0 || first < m_ignored.m_nFirst) {
        m_ignored.m_nFirst = first;
        m_ignored.m_strFirstReason = reason;
    }
    m_ignored.m_nCount += lines;
    countReason(lines, reason, m_ignored);
}

TypeReturn COrderFileParser::parseLineParam(std::string& line, int rowPosition) {
    utils::string_replace(line, '\n');
    if (parseCancel(line)) return TR_LINE_DONE;
    if (parserTradeParam(line)) {
        applyTradeParam(m_nFilledOrders);
        return TR_LINE_DONE;
    }
    removeBlanks(line);
    if (std::exchange(m_bFirstLine, false)) {
        const TypeReturn result = parseFirstLineParam(line);
        if (result != TR_PLAIN_LINE) return result;
    }
    if (m_bCompose) return parseBasketLine(line);
    if (m_order.m_nOrderType == kOrderBasketList) return parseListLine(line);
    return parsePlainLine(line, rowPosition);
}

bool COrderFileParser::parseCancel(const std::string& line) {
    if (line.empty() || line.front() != kCancelWord.front()) return false; // the usual line, without a search
    const std::string_view word = firstWord(line);
    if (word != kCancelWord && word != kCancelOrderWord) return false;
    const CFields fields(line, kBlank);
    if (word == kCancelWord) {
        if (fields.size() == 2) {
            m_port.terminateTask(strictInt(fields[1]));
            ++m_nCancels;
        } else {
            ignoreLine(line, QString::fromUtf8(kBadCancel));
        }
    } else if (fields.size() < 3) {
        ignoreLine(line, QString::fromUtf8(kBadCancelOrder));
    } else {
        std::vector<std::string> texts;
        for (std::size_t i = 0; i < fields.size(); ++i)
            texts.emplace_back(fields[i]);
        m_port.cancelOrders(texts);
        ++m_nCancels;
    }
    return true;
}

void COrderFileParser::startHeader(int orderType, std::string_view channelField) {
    m_nHeaderLine = m_nLine;
    m_order.m_nOrderType = orderType;
    const int channel = strictInt(channelField);
    m_order.m_nChannel = isUniversal(channel) ? m_nChannel : channel;
}

TypeReturn COrderFileParser::parseFirstLineParam(const std::string& line) {
    const CFields fields(line, kComma);
    if (fields.size() < 2) return ignoreLine(line, QString::fromUtf8(kTooFewFields));
    const int orderType = strictInt(fields[0]);
    if (orderType == kOrderBasketList) {
        startHeader(orderType, fields[1]);
        return TR_LINE_DONE;
    }
    if (isBasketHeaderOrder(orderType)) {
        m_bCompose = true;
        startHeader(orderType, fields[1]);
        return parseComposeInfo(fields) ? TR_LINE_DONE : TR_BASKET_HEADER;
    }
    m_bCompose = false;
    return TR_PLAIN_LINE;
}

/// True if rows will follow in the file, false if the header already names the whole basket.
bool COrderFileParser::parseComposeInfo(const CFields& fields) {
    if (fields.size() < 3) return true;
    const QString name = UW::sToQs(fields[2].data(), fields[2].size());
    if (m_order.m_nOrderType == kOrderBasketSell && name.toLower() == QStringLiteral("all")) {
        if (m_port.hasAccounts(m_strategy)) m_order.m_bAll = true;
        return false;
    }
    const auto basket = m_port.findBasket(fields[2]);
    if (basket) {
        appendBasket(*basket, kOwnOperation);
    } else {
        m_port.showNote(
            utils::fillText(QStringLiteral("[%1]　通道号: %2, 中间文件中指定的篮子不存在!"),
                            {m_port.sourceLabel(m_strategy.m_eStrategyType), QString::number(m_nChannel)}));
    }
    return false;
}

void COrderFileParser::appendBasket(const CBasketSetting& basket, int fixedOperation) {
    for (const CBasketStockData& row : basket.m_rows) {
        COrderSingleParam line;
        line.m_strCode = row.m_strCode;
        line.m_nVolume = row.m_nVolume;
        line.m_eOperationType = fixedOperation != kOwnOperation ? fixedOperation : row.m_eOperationType;
        line.m_dWeight = row.m_dWeight;
        m_order.m_orders.push_back(std::move(line));
    }
}

void COrderFileParser::parseComposeTradeParam(std::string& line) {
    utils::string_replace(line, '\n');
    int filledOrders = 0;
    if (parserTradeParam(line)) {
        applyTradeParam(filledOrders);
    } else {
        ignoreLine(line, QString::fromUtf8(kAfterNamedBasket));
    }
}

/// True if the line holds trade parameters, even if the host does not understand them.
bool COrderFileParser::parserTradeParam(const std::string& line) {
    if (!isTradeParamLine(line)) return false;
    // Without an equals sign the whole line is used as the text.
    const QString text = UW::sToQsGBK(line);
    const QString param = text.mid(text.indexOf(u'=') + 1);
    COrderTradeParam read = m_tradeParam; // a copy: an unknown text must not change m_tradeParam
    if (param.isEmpty()) return true;
    if (!m_port.readTradeParam(utils::toLocal8Bit(param), read)) {
        ++m_nUnreadTradeParams;
        return true;
    }
    m_tradeParam = std::move(read);
    m_tradeParam.m_strRemark = utils::safeGbk2Utf8(m_tradeParam.m_strRemark);
    if (m_tradeParam.m_strRemark.empty()) m_tradeParam.m_strRemark = m_port.defaultRemark(m_strategy);
    if (!m_port.areRemarksAllowed()) m_tradeParam.m_strRemark.clear();
    return true;
}

/// Sets the trade parameters of the orders from index `filledOrders` on, and of the basket or list order.
void COrderFileParser::applyTradeParam(int& filledOrders) {
    for (; filledOrders < m_orders.size(); ++filledOrders)
        fillOrderParam(m_tradeParam, m_orders[filledOrders]);
    fillOrderParam(m_tradeParam, m_order);
}

TypeReturn COrderFileParser::parsePlainLine(const std::string& line, int rowPosition) {
    const CFields fields(line, kComma);
    if (fields.size() < 2) return ignoreLine(line, QString::fromUtf8(kTooFewFields));
    const bool isTableRow = m_strategy.m_nAccountMode == COrderStrategyParam::kTableMode;
    const CLineOrigin source{m_nChannel, isTableRow, rowPosition};
    CNewOrder parsed(m_orders);
    parsePlainOrder(fields, source, m_codes, *parsed);
    if (parsed->m_nOrderType == kOrderBasketWhole && takeWholeBasket(fields, source, *parsed))
        return TR_STOP_READING;
    const int channel = parsed->m_nChannel;
    if (channel == m_nChannel) {
        parsed.keep();
        return TR_PLAIN_LINE;
    }
    ignoreLine(line, foreignChannel(channel));
    m_port.showNote(m_port.sourceTitle(m_strategy.m_eStrategyType) +
                    utils::fillText(QStringLiteral("　通道号: %1, 中间文件中指定的通道号为 %2, 忽略!"),
                                    {QString::number(m_nChannel), QString::number(channel)}));
    return TR_PLAIN_LINE;
}

/// Takes the named basket as the basket order of the file. False if the line does not name a basket of the
/// user.
bool COrderFileParser::takeWholeBasket(const CFields& fields, const CLineOrigin& source,
                                       const COrderParam& parsed) {
    startHeader(parsed.m_nOrderType, fields[1]);
    constexpr std::size_t kFieldCount = 3;
    if (fields.size() != kFieldCount) return false;
    const auto basket = m_port.findBasket(fields[firstOrderField(source)]);
    if (!basket) return false;
    appendBasket(*basket, static_cast<int>(EOperationType::Buy));
    m_bCompose = true;
    return true;
}

TypeReturn COrderFileParser::parseListLine(const std::string& line) {
    const char separator = line.find(kBar) != std::string::npos ? kBar : kTab;
    const CFields fields(line, separator);
    if (fields.size() != 2) return ignoreLine(line, QString::fromUtf8(kBadListRow));
    COrderSingleParam row;
    readListRow(fields, row);
    m_order.m_orders.push_back(std::move(row));
    return TR_LINE_DONE;
}

TypeReturn COrderFileParser::parseBasketLine(const std::string& line) {
    const CFields fields(line, kTab);
    const EPriceType priceType = m_strategy.setting(ESettingSlot::StockBasket).m_ePriceType;
    const bool needsPrice = priceType == EPriceType::Specified || priceType == EPriceType::SpecifiedByRow;
    if (fields.size() < (needsPrice ? 3u : 2u)) return ignoreLine(line, QString::fromUtf8(kBadBasketRow));
    COrderSingleParam row;
    readBasketRow(fields, row);
    m_order.m_orders.push_back(std::move(row));
    return TR_PLAIN_LINE;
}

QVector<COrderParam> COrderFileParser::takeOrders() {
    const bool isList = m_order.m_nOrderType == kOrderBasketList;
    const bool isOwnList = isList && m_order.m_nChannel == m_nChannel;
    if (isList && !isOwnList)
        countIgnored(1 + m_order.m_orders.size(), m_nHeaderLine, foreignChannel(m_order.m_nChannel));
    if (m_bCompose || isOwnList) m_orders.push_back(std::move(m_order));
    return std::move(m_orders);
}

} // namespace TC
