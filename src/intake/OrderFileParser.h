#pragma once

#include "orderservice/intake/LinePort.h"
#include "orderservice/intake/PlainOrder.h"
#include "orderservice/records/OrderParam.h"
#include "orderservice/records/StrategyParam.h"

#include <QVector>

#include <string>
#include <string_view>
#include <utility>

namespace TC {

/// The lines of a file that had no effect. Blank lines are not counted.
struct CIgnoredLines {
    int m_nCount = 0;
    int m_nFirst = 0;         ///< position of the first such line, counted from 1; 0: there is none
    QString m_strFirstReason; ///< why the first such line had no effect, for people
    /// Number of lines by reason. At most kMostReasons; an empty reason has the lines of all others.
    QVector<std::pair<QString, int>> m_reasons;
    static constexpr int kMostReasons = 8;
};

/// The grammar of order files, one object for each file. It takes the lines one after the other and collects
/// the orders. Requests that are carried out at once, like a cancel, go to the port. No I/O, no lock, no
/// state beyond the file.
///
/// A number that cannot be read throws boost::bad_lexical_cast and ends the file. The orders collected before
/// stay valid.
class COrderFileParser {
public:
    /// `channel` is the strategy's key in the registry. The strategy and the port must outlive the parser.
    COrderFileParser(const COrderStrategyParam& strategy, int channel, ILinePort& port);

    /// Reserves memory for the orders of a file of this many bytes, so that a large batch is not moved again
    /// and again. Best effort: the amount is bounded, and nothing happens if there is not enough memory.
    void expectBytes(long long bytes);

    /// Takes the next line of a source. Changes the text. False if the rest of the source does not matter;
    /// later lines are only counted as ignored. rowPosition: the position of a table row, counted from 1,
    /// unused for files.
    bool takeLine(std::string& line, int rowPosition = 0);

    /// Reads one line, with or without its line end. Changes the text.
    TypeReturn parseLineParam(std::string& line, int rowPosition = 0);

    /// Reads one line after a header that already names the whole basket. Only trade parameters have an
    /// effect, and they are given to all orders of the file. Changes the text.
    void parseComposeTradeParam(std::string& line);

    /// Returns the batch of the file; the basket or list order is the last one. Call once, at the end.
    QVector<COrderParam> takeOrders();

    /// Number of trade parameter lines that the host did not understand. The orders before such a line get
    /// the last parameters that the host understood, or the defaults.
    int unreadTradeParams() const { return m_nUnreadTradeParams; }

    /// Complete only after takeOrders, because that call discards a list of another channel.
    const CIgnoredLines& ignoredLines() const { return m_ignored; }

    /// Number of cancel lines that were passed to the port.
    int cancels() const { return m_nCancels; }

private:
    /// Which lines are still read.
    enum class ERest {
        Grammar,     ///< all lines
        TradeParams, ///< only trade parameters: the header names the whole basket
        Nothing,     ///< no line: a plain line has taken a whole basket
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

    bool m_bFirstLine = true; ///< true until the first line that is neither a cancel nor trade parameters
    bool m_bCompose = false;  ///< the file is a basket with a header
    COrderParam m_order;      ///< the basket or list order of the file
    COrderTradeParam m_tradeParam;
    QVector<COrderParam> m_orders;
    CRecentCodes m_codes;
    int m_nFilledOrders = 0; ///< number of orders in m_orders that have their trade parameters
    int m_nUnreadTradeParams = 0;
    ERest m_eRest = ERest::Grammar;
    int m_nLine = 0;       ///< position of the current line, counted from 1
    int m_nHeaderLine = 0; ///< position of the header
    CIgnoredLines m_ignored;
    int m_nCancels = 0;
};

} // namespace TC
