#pragma once

#include "intake/LinePort.h"
#include "intake/PlainOrder.h"
#include "records/OrderParam.h"
#include "records/StrategyParam.h"

#include <QVector>

#include <string>
#include <string_view>

namespace TC {

/// Lines of a file that gave nothing. Blank lines do not count.
struct CIgnoredLines {
    int m_nCount = 0;
    int m_nFirst = 0;         ///< position of the first one, counted from 1; 0: there is none
    QString m_strFirstReason; ///< for people: why the first one gave nothing
};

/// The grammar of order files, one object for each file. Lines go in one after the other, orders are
/// collected, and what a line asks for at once goes to the port. No I/O, no lock, no state beyond the file.
///
/// A number that cannot be read leaves as boost::bad_lexical_cast and ends the file: the orders collected by
/// then stand.
class COrderFileParser {
public:
    /// `channel` is the key under which the strategy is kept. The strategy and the port outlive the parser.
    COrderFileParser(const COrderStrategyParam& strategy, int channel, ILinePort& port);

    /// Makes room for the orders of a file of so many bytes, so that a large batch is not moved again and
    /// again. Best effort: bounded, and without effect if the memory is not there.
    void expectBytes(long long bytes);

    /// Takes the next line of a source. Changes the text. False when the rest of it does not matter; lines
    /// that come all the same are counted as ignored. rowPosition: the position of a table row, counted from
    /// 1, unused for files.
    bool takeLine(std::string& line, int rowPosition = 0);

    /// Reads one line, with or without its line end. Changes the text.
    TypeReturn parseLineParam(std::string& line, int rowPosition = 0);

    /// Reads one line of the rest of a file whose header settled the basket: only trade parameters count, and
    /// they go to all orders of the file. Changes the text.
    void parseComposeTradeParam(std::string& line);

    /// The batch of the file, the basket or list order last. Call once, at the end.
    QVector<COrderParam> takeOrders();

    /// Lines of trade parameters that the host did not understand. The orders in front of them keep what they
    /// had and count as served.
    int unreadTradeParams() const { return m_nUnreadTradeParams; }

    /// Complete after takeOrders, which drops a list of another channel.
    const CIgnoredLines& ignoredLines() const { return m_ignored; }

private:
    /// Where the file is.
    enum class ERest {
        Grammar,     ///< every line counts
        TradeParams, ///< the header settled the basket: only trade parameters count
        Nothing,     ///< a basket taken whole: no line counts
    };
    TypeReturn parseFirstLineParam(const std::string& line);
    bool parseComposeInfo(const CFields& fields);
    bool parserTradeParam(const std::string& line);
    void applyTradeParam(int& filledOrders);
    bool parseCancel(const std::string& line);
    void startHeader(int orderType, std::string_view channelField);
    TypeReturn parsePlainLine(const std::string& line, int rowPosition);
    bool takeWholeBasket(const CFields& fields, const CLineOrigin& source, const COrderParam& parsed);
    TypeReturn parseListLine(const std::string& line);
    TypeReturn parseBasketLine(const std::string& line);
    void appendBasket(const CBasketSetting& basket, int fixedOperation);
    TypeReturn ignoreLine(const std::string& line, const QString& reason);
    void countIgnored(int lines, int first, const QString& reason);

    const COrderStrategyParam& m_strategy;
    const int m_nChannel;
    ILinePort& m_port;

    bool m_bFirstLine = true; ///< until the first line that is no cancel and no trade parameters
    bool m_bCompose = false;  ///< the file is a basket with a header
    COrderParam m_order;      ///< the basket or list order of the file
    COrderTradeParam m_tradeParam;
    QVector<COrderParam> m_orders;
    int m_nFilledOrders = 0; ///< of m_orders, those that have their trade parameters
    int m_nUnreadTradeParams = 0;
    ERest m_eRest = ERest::Grammar;
    int m_nLine = 0;       ///< position of the line in hand, counted from 1
    int m_nHeaderLine = 0; ///< position of the header
    CIgnoredLines m_ignored;
};

} // namespace TC
