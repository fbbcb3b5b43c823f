#include "desk/config/MarketTables.h"

#include "desk/config/CsvReader.h"
#include "desk/config/Kinds.h"
#include "desk/config/Words.h"
#include "orderservice/base/StrictNumber.h"
#include "orderservice/platform/InstrumentTypes.h"

#include <boost/lexical_cast/bad_lexical_cast.hpp>

#include <algorithm>
#include <cmath>
#include <iterator>
#include <limits>
#include <map>
#include <sstream>

namespace desk {
namespace {

constexpr const char* kInstruments = kInstrumentFile;
constexpr const char* kQuotes = kQuoteFile;
constexpr const char* kQuoteChanges = kQuoteChangeFile;
constexpr const char* kPositions = kPositionFile;

/// Whether the price has too many digits: the paper broker calculates in units of 0.0001.
bool isTooFine(double price) {
    constexpr double kSteps = 10000;
    constexpr double kNoise = 1e-9; // relative rounding error of parsing
    if (TC::isInvalidPrice(price)) return false;
    const double steps = price * kSteps;
    return std::fabs(steps - std::round(steps)) > std::max(1e-6, steps * kNoise);
}

/// Reads the cells of a row and reports those that cannot be read.
class CCells {
public:
    CCells(std::string file, const CCsvRow& row, CDiagnostics& diagnostics)
        : m_strFile(std::move(file)), m_row(row), m_diagnostics(diagnostics) {}

    std::string text(const std::string& column) const { return m_row.text(column); }

    /// An empty cell leaves the target as it is.
    void number(const std::string& column, double& target) const {
        readInto(
            column, target, [](const std::string& text) { return utils::strictDouble(text); }, "a number");
    }
    /// A cell without a price must be empty, because orders would be traded at a price of 0.
    void price(const std::string& column, double& target) const {
        number(column, target);
        if (!(target > 0)) {
            mistake(column + " must be above 0; leave it empty if there is no price");
            target = TC::kUnsetDouble;
        } else if (isTooFine(target)) {
            warn(column + " is " + text(column) + ", finer than 0.0001; the paper broker rounds it");
        }
    }
    void integer(const std::string& column, int& target) const {
        readInto(
            column, target, [](const std::string& text) { return utils::strictInt(text); }, "a whole number");
    }
    void volume(const std::string& column, long long& target) const {
        int value = 0;
        integer(column, value);
        if (value < 0) mistake(column + " must not be negative");
        target = std::max(value, 0);
    }
    /// Reads one of the words. An empty cell leaves the target as it is.
    template<typename E>
    void choice(const std::string& column, E& target, const std::map<std::string, int>& words) const {
        const std::string cell = text(column);
        if (cell.empty()) return;
        const auto found = words.find(cell);
        if (found != words.end()) {
            target = static_cast<E>(found->second);
            return;
        }
        std::string list;
        for (const auto& [word, number] : words)
            list += (list.empty() ? "" : ", ") + word;
        mistake(column + " is \"" + cell + "\"; expected one of " + list);
    }
    void mistake(const std::string& message, ESubject about = ESubject::None) const {
        m_diagnostics.add(m_strFile, m_row.line, message, about);
    }
    void warn(const std::string& message) const { m_diagnostics.warn(m_strFile, m_row.line, message); }

private:
    template<typename T, typename Read>
    void readInto(const std::string& column, T& target, const Read& read, const char* what) const {
        const std::string cell = text(column);
        if (cell.empty()) return;
        try {
            const T value = read(cell);
            if (!std::isfinite(static_cast<double>(value))) throw boost::bad_lexical_cast();
            target = value;
        } catch (const boost::bad_lexical_cast&) {
            mistake(column + " is \"" + cell + "\"; expected " + what);
        }
    }

    std::string m_strFile;
    const CCsvRow& m_row;
    CDiagnostics& m_diagnostics;
};

using CRows = std::vector<CCsvRow>;

std::vector<std::string> quoteColumns() {
    std::vector<std::string> columns = {"instrument", "last", "previous_close"};
    for (const char* side : {"bid", "ask"}) {
        for (int level = 1; level <= CQuoteEntry::kDepth; ++level) {
            columns.push_back(side + std::to_string(level));
            columns.push_back(side + std::to_string(level) + "_volume");
        }
    }
    return columns;
}

/// The prices must rise from the lowest bid to the highest ask, because orders are filled level by level.
void checkBook(const CCells& cells, const CQuoteEntry& quote) {
    std::string lower;
    double lowest = 0;
    const auto check = [&](const std::string& column, double price) {
        if (TC::isInvalidPrice(price)) return;
        if (price <= lowest) cells.mistake(column + " is not above " + lower);
        lower = column;
        lowest = price;
    };
    for (int level = CQuoteEntry::kDepth; level >= 1; --level)
        check("bid" + std::to_string(level), quote.buy[static_cast<std::size_t>(level - 1)].price);
    for (int level = 1; level <= CQuoteEntry::kDepth; ++level)
        check("ask" + std::to_string(level), quote.sell[static_cast<std::size_t>(level - 1)].price);
}

/// Warns if a level has only a price or only a volume: it needs both to be traded.
void warnOfLevel(const CCells& cells, const std::string& column, const CQuoteLevel& level) {
    const bool hasPrice = !TC::isInvalidPrice(level.price);
    if (hasPrice && level.volume == 0)
        cells.warn(column + " has no volume; expected " + column + "_volume above 0");
    if (!hasPrice && level.volume != 0) cells.warn(column + "_volume has no price; expected " + column);
}

CQuoteEntry readQuote(const CCells& cells) {
    CQuoteEntry quote;
    quote.stockKey = cells.text("instrument");
    cells.price("last", quote.last);
    cells.price("previous_close", quote.previousClose);
    for (int level = 1; level <= CQuoteEntry::kDepth; ++level) {
        const auto index = static_cast<std::size_t>(level - 1);
        const std::string number = std::to_string(level);
        cells.price("bid" + number, quote.buy[index].price);
        cells.volume("bid" + number + "_volume", quote.buy[index].volume);
        cells.price("ask" + number, quote.sell[index].price);
        cells.volume("ask" + number + "_volume", quote.sell[index].volume);
        warnOfLevel(cells, "bid" + number, quote.buy[index]);
        warnOfLevel(cells, "ask" + number, quote.sell[index]);
    }
    checkBook(cells, quote);
    return quote;
}

/// Reads the four tables. Keeps the line numbers of the instruments for later messages.
class CMarketReader {
public:
    CMarketReader(const std::string& folder, CInstrumentLines instruments, CDeskConfig& config,
                  CDiagnostics& diagnostics)
        : m_strFolder(folder), m_config(config), m_diagnostics(diagnostics),
          m_instrumentLines(std::move(instruments)) {
        for (const CInstrumentEntry& entry : config.instruments) {
            for (const std::string& name : entry.names())
                m_instruments[name] = &entry;
        }
    }

    void readInstruments() {
        const CDefinition definition(m_diagnostics, ESubject::Instruments);
        const CRows rows =
            table(kInstruments,
                  {"market", "code", "name", "product", "types", "unit", "ui_unit", "upper_limit",
                   "lower_limit", "reference_price", "transfer_kind", "kind", "multiplier", "margin_rate"},
                  {"market", "code"}, true);
        for (const CCsvRow& row : rows)
            readInstrument(CCells(kInstruments, row, m_diagnostics), row.line);
    }
    const CInstrumentLines& instrumentLines() const { return m_instrumentLines; }

    void readQuotes() {
        std::map<std::string, int> lines;
        readQuoteRows(lines);
        for (const CInstrumentEntry& instrument : m_config.instruments) {
            const std::string key = instrument.key();
            if (lines.count(key) == 0) {
                m_diagnostics.add(kInstruments, m_instrumentLines[key],
                                  "instrument \"" + key + "\" has no quote; expected a row in " + kQuotes,
                                  ESubject::Quotes);
            }
        }
    }

    void readQuoteRows(std::map<std::string, int>& lines) {
        const CDefinition definition(m_diagnostics, ESubject::Quotes);
        const CRows rows = table(kQuotes, quoteColumns(), {"instrument"}, true);
        for (const CCsvRow& row : rows) {
            const CCells cells(kQuotes, row, m_diagnostics);
            CQuoteEntry quote = readQuote(cells);
            quote.stockKey = instrumentKey(cells, quote.stockKey);
            warnOfLimits(cells, quote);
            if (!lines.emplace(quote.stockKey, row.line).second) {
                cells.mistake("instrument \"" + quote.stockKey + "\" has a quote on line " +
                              std::to_string(lines[quote.stockKey]) + " already");
            }
            m_config.quotes.push_back(quote);
        }
    }

    void readQuoteChanges() {
        std::vector<std::string> columns = quoteColumns();
        columns.emplace_back("after_seconds");
        const CRows rows = table(kQuoteChanges, columns, {"after_seconds", "instrument"}, false);
        for (const CCsvRow& row : rows) {
            const CCells cells(kQuoteChanges, row, m_diagnostics);
            CQuoteChange change;
            cells.number("after_seconds", change.offsetSeconds);
            if (change.offsetSeconds < 0) cells.mistake("after_seconds must not be negative");
            change.quote = readQuote(cells);
            change.quote.stockKey = instrumentKey(cells, change.quote.stockKey);
            warnOfLimits(cells, change.quote);
            m_config.quoteChanges.push_back(change);
        }
        std::stable_sort(
            m_config.quoteChanges.begin(), m_config.quoteChanges.end(),
            [](const CQuoteChange& a, const CQuoteChange& b) { return a.offsetSeconds < b.offsetSeconds; });
    }

    void readPositions() {
        const CRows rows =
            table(kPositions, {"account", "instrument", "side", "volume", "available", "cost", "paid"},
                  {"account", "instrument", "volume"}, false);
        for (const CCsvRow& row : rows)
            readPosition(CCells(kPositions, row, m_diagnostics));
    }

private:
    CRows table(const char* file, const std::vector<std::string>& columns,
                const std::vector<std::string>& required, bool mandatory) {
        return readCsv(m_strFolder, file, columns, required, mandatory, m_diagnostics);
    }

    void readInstrument(const CCells& cells, int line) {
        CInstrumentEntry instrument;
        instrument.market = cells.text("market");
        instrument.code = cells.text("code");
        instrument.name = cells.text("name");
        instrument.productId = cells.text("product");
        readTypes(cells, instrument);
        cells.integer("unit", instrument.unit);
        instrument.uiUnit = instrument.unit;
        cells.integer("ui_unit", instrument.uiUnit);
        if (instrument.unit < 1 || instrument.uiUnit < 1) cells.mistake("units must be at least 1");
        cells.price("upper_limit", instrument.upperLimit);
        cells.price("lower_limit", instrument.lowerLimit);
        if (!TC::isInvalidPrice(instrument.lowerLimit) && instrument.lowerLimit > instrument.upperLimit)
            cells.mistake("lower_limit is above upper_limit");
        cells.price("reference_price", instrument.referencePrice);
        cells.integer("transfer_kind", instrument.transferKind);
        constexpr int kTransferKinds[] = {0, 2, 4};
        if (std::find(std::begin(kTransferKinds), std::end(kTransferKinds), instrument.transferKind) ==
            std::end(kTransferKinds))
            cells.warn("transfer_kind is " + cells.text("transfer_kind") + "; expected 2 or 4");
        if (instrument.market.empty() || instrument.code.empty())
            cells.mistake("expected a market and a code");
        readKind(cells, instrument);
        if (takeNames(cells, instrument, line)) m_config.instruments.push_back(instrument);
    }

    static void readKind(const CCells& cells, CInstrumentEntry& instrument) {
        instrument.kind = kindOfMarket(instrument.market);
        cells.choice("kind", instrument.kind, kindWords());
        const std::string market = marketOfKind(instrument.kind);
        if (!market.empty() && market != instrument.market)
            cells.mistake("market is \"" + instrument.market + "\"; expected " + market + " for that kind");
        cells.integer("multiplier", instrument.multiplier);
        if (instrument.multiplier < 1) cells.mistake("multiplier must be at least 1");
        cells.number("margin_rate", instrument.marginRate);
        if (!(instrument.marginRate > 0 && instrument.marginRate <= 1))
            cells.mistake("margin_rate must be above 0 and at most 1");
    }

    /// Registers the names of an instrument. Each name may belong to one instrument only.
    bool takeNames(const CCells& cells, const CInstrumentEntry& instrument, int line) {
        for (const std::string& name : instrument.names()) {
            const auto known = m_instrumentLines.find(name);
            if (known == m_instrumentLines.end()) continue;
            cells.mistake("instrument \"" + name + "\" is defined on line " + std::to_string(known->second) +
                          " already");
            return false;
        }
        for (const std::string& name : instrument.names())
            m_instrumentLines.emplace(name, line);
        return true;
    }

    /// Reads type numbers separated by blanks.
    void readTypes(const CCells& cells, CInstrumentEntry& instrument) {
        std::istringstream words(cells.text("types"));
        for (std::string word; words >> word;) {
            try {
                const int type = utils::strictInt(word);
                instrument.types.insert(type);
                if (!isKnownType(type)) cells.warn("types has " + word + ", which the desk does not know");
            } catch (const boost::bad_lexical_cast&) {
                cells.mistake("types has \"" + word + "\"; expected numbers separated by blanks");
            }
        }
    }

    void readPosition(const CCells& cells) {
        CPositionEntry position;
        position.stockKey = instrumentKey(cells, cells.text("instrument"));
        cells.choice("side", position.side, sideWords());
        cells.volume("volume", position.volume);
        position.available = position.volume;
        if (!cells.text("available").empty()) cells.volume("available", position.available);
        cells.number("cost", position.cost);
        cells.choice("paid", position.paidInFull, paidWords());
        if (position.cost < 0) cells.mistake("cost must not be negative");
        if (position.volume == 0 && (cells.text("volume") == "0" || cells.text("volume").empty()))
            cells.warn("volume is 0: the row has no position");
        if (position.available > position.volume) cells.mistake("available is more than volume");
        const std::string key = cells.text("account");
        const auto account = std::find_if(m_config.accounts.begin(), m_config.accounts.end(),
                                          [&](const CAccountEntry& entry) { return entry.key == key; });
        if (account == m_config.accounts.end())
            return cells.mistake("account \"" + key + "\" is unknown; expected the key of an [[account]]",
                                 ESubject::Accounts);
        checkKind(cells, *account, position);
        for (const CPositionEntry& other : account->positions) {
            if (other.stockKey == position.stockKey && other.side == position.side)
                return cells.mistake("the position is defined twice");
        }
        account->positions.push_back(position);
    }

    void checkKind(const CCells& cells, const CAccountEntry& account, const CPositionEntry& position) const {
        const auto found = m_instruments.find(position.stockKey);
        if (found == m_instruments.end()) return;
        const EInstrumentKind kind = found->second->kind;
        if (!holdsKind(account.broker, kind)) {
            cells.mistake("account \"" + account.key +
                              "\" is of a broker type that does not hold instruments "
                              "of kind " +
                              wordFor(kindWords(), static_cast<int>(kind)),
                          ESubject::Accounts | ESubject::Instruments);
        }
        if (position.side == EPositionSide::Short && !canBeShort(kind))
            cells.mistake("side is short; only futures, options and gold can be short",
                          ESubject::Instruments);
        const bool isLongGold = kind == EInstrumentKind::Gold && position.side == EPositionSide::Long;
        if (paidWords().count(cells.text("paid")) != 0 && !isLongGold)
            cells.mistake("paid is only for long positions in gold", ESubject::Instruments);
    }

    /// Warns about prices outside the limits, because orders at such a price are rejected.
    void warnOfLimits(const CCells& cells, const CQuoteEntry& quote) const {
        const auto found = m_instruments.find(quote.stockKey);
        if (found == m_instruments.end()) return;
        const CInstrumentEntry& instrument = *found->second;
        const auto check = [&](const std::string& column, double price) {
            if (TC::isInvalidPrice(price)) return false;
            const bool isAbove = !TC::isInvalidPrice(instrument.upperLimit) && price > instrument.upperLimit;
            const bool isBelow = !TC::isInvalidPrice(instrument.lowerLimit) && price < instrument.lowerLimit;
            if (isAbove || isBelow)
                cells.warn(column + (isAbove ? " is above the upper_limit" : " is below the lower_limit") +
                           " of \"" + instrument.key() + "\"");
            return isAbove || isBelow;
        };
        // One warning for each row is enough: if the limits are wrong, all of its prices look wrong.
        bool isReported = check("last", quote.last);
        for (std::size_t level = 0; level < CQuoteEntry::kDepth && !isReported; ++level) {
            isReported = check("bid" + std::to_string(level + 1), quote.buy[level].price) ||
                         check("ask" + std::to_string(level + 1), quote.sell[level].price);
        }
    }

    static bool isKnownType(int type) {
        using namespace knservice;
        return type == kTypeTradableStock || type == kTypeStarMarket || type == kTypeParPriced ||
               std::find(std::begin(kBasketTypes), std::end(kBasketTypes), type) != std::end(kBasketTypes);
    }

    /// Returns the key of the instrument that the cell names. An unknown name is reported and returned
    /// unchanged.
    std::string instrumentKey(const CCells& cells, const std::string& name) const {
        const auto found = m_instruments.find(name);
        if (found != m_instruments.end()) return found->second->key();
        // An instrument row with a mistake still defines its names, so references to them are not reported.
        if (m_instrumentLines.count(name) == 0) {
            cells.mistake("instrument \"" + name + "\" is unknown; expected market and code of a row in " +
                              kInstruments,
                          ESubject::Instruments);
        }
        return name;
    }

    const std::string& m_strFolder;
    CDeskConfig& m_config;
    CDiagnostics& m_diagnostics;
    CInstrumentLines m_instrumentLines;
    std::map<std::string, const CInstrumentEntry*> m_instruments; ///< each name of an instrument is a key
};

} // namespace

CInstrumentLines readInstruments(const std::string& folder, CDeskConfig& config, CDiagnostics& diagnostics) {
    CMarketReader reader(folder, {}, config, diagnostics);
    reader.readInstruments();
    return reader.instrumentLines();
}

void readMarketTables(const std::string& folder, const CInstrumentLines& instruments, CDeskConfig& config,
                      CDiagnostics& diagnostics) {
    CMarketReader reader(folder, instruments, config, diagnostics);
    reader.readQuotes();
    reader.readQuoteChanges();
    reader.readPositions();
}

} // namespace desk
