#pragma once

#include "orderservice/base/Export.h"
#include "orderservice/platform/Quote.h"
#include "orderservice/records/CommandParam.h"
#include "orderservice/records/Enums.h"
#include "orderservice/widgets/BaseWidget.h"

#include <QMap>
#include <QPair>
#include <QString>

#include <boost/shared_ptr.hpp>

#include <memory>
#include <optional>
#include <set>
#include <vector>

class QTimer;

namespace TC {

class CHostFacts;
class COrderParamTable;
class CQuoteRows;
struct COrderCells;

/// What all orders of a table need together, as they came in. Changes in the table do not change it.
struct COrdersTotal {
    int m_nOrders = 0;
    double m_dAmount = 0;  ///< currency units
    int m_nWithAmount = 0; ///< orders that have an amount
};

/// The table of a confirmation: one row for each record, with live market values. The user may change
/// volumes, which stay in this table: they reach no command. Main thread; quotes may come on any thread.
class ORDERSERVICE_EXPORT COrdersConfirmWidget : public UW::CBaseWidget {
    Q_OBJECT
public:
    enum EColumn {
        Account,
        Market,
        Code,
        Name,
        TradeType,
        Volume,
        Available,
        MarketValue,
        BasePrice,
        Price,
        Amount,
        Product,
        FirstExtra, ///< from here on, the columns of extraColumns
    };
    /// The kind of data that has available volumes and market values.
    static constexpr int kOrdersKind = 18;
    static constexpr int kRefreshMs = 500;

    /// mode: 1 gives the table an entry for help in its menu.
    COrdersConfirmWidget(int mode, UW::CBaseWidget* parent);
    /// Ends the quote requests. A call-back that comes later does nothing.
    ~COrdersConfirmWidget() override;

    /// Makes the columns for the trader type of the batch (setBatchTraderType). Call it before setOrders.
    void prepare();
    /// Shows these records and requests their quotes, one request for each instrument.
    void setOrders(const std::vector<CCodeOrderParam>& orders);
    /// The records, with the volumes that the user has changed.
    std::vector<CCodeOrderParam> orders() const;
    COrdersTotal total() const;
    /// The number of rows whose volume is not the one that came in.
    int editedRows() const { return static_cast<int>(m_editedRows.size()); }

    /// The kind of the data. Column 6 is hidden and market values are not updated unless it is kOrdersKind.
    void setOrderKind(int kind);

    /// The height in pixels that all rows need, with the part of the dialog's button row and frame that is
    /// above 30 pixels: the dialog adds only 30 for both.
    int tableHeight() const;
    void setTableConfig(const QString& config);
    QString tableConfig() const;
    /// Whether the user has moved or resized a column.
    bool isLayoutChanged() const;

    /// The extra columns by their module name: column number and header.
    QMap<QString, QPair<int, QString>> extraColumns() const { return m_extraColumns; }
    /// The number of the last extra column, or -1 if no extra column is shown.
    int lastColumn() const { return m_nLastColumn; }
    COrderParamTable* table() const { return m_table; }
    int selectedRow() const;
    void setSelectedRow(int row);

public slots:
    /// Writes the market values and their sum into the table. Called every 500 ms.
    void slotTimeout();
    void slotHelp(bool checked);

signals:
    void sigSelectionChanged();
    /// A quote has come for a row that had no amount without it.
    void sigTotalChanged();
    /// The user has changed a volume.
    void sigEdited();

private:
    struct CRowState {
        bool m_bMoney = false;      ///< the row repays an amount of money
        bool m_bNeedsQuote = false; ///< prices are filled when a quote has them
        CPriceDataPtr m_quote;      ///< the last quote that was tried for them
        std::optional<double> m_basePrice;
        std::optional<double> m_price;
    };

    void makeTable();
    void makeColumn(int column, const QString& header, bool isNumber);
    void makeExtraColumns();
    void setInstruments(CHostFacts& host);
    void fillRows(CHostFacts& host);
    void fillQuotedRows();
    void setText(int row, int column, const QString& text);
    void fillTexts(int row, const CCodeOrderParam& record, const COrderCells& cells);
    void fillNumbers(int row, const COrderCells& cells);
    void setVolume(int row, const COrderCells& cells);
    void setPrices(int row);
    void setToolTips(int row, const COrderCells& cells, int first, int last);
    void fillExtra(int row, const CCodeOrderParam& record);
    void setNumber(int row, int column, const std::optional<double>& value, int decimals);
    void requestQuotes();
    void edit(int row, int column, const QString& text);
    void markEdited(int row);
    void showAmountSum();

    const int m_nMode;
    EQdTraderType m_nTraderType = EQdTraderType::Stock;
    int m_nOrderKind = kOrdersKind;
    COrderParamTable* m_table = nullptr;
    const std::shared_ptr<CQuoteRows> m_rows; ///< also held by the quote call-backs
    std::vector<CCodeOrderParam> m_original;  ///< as setOrders got them
    std::vector<CRowState> m_states;
    std::set<int> m_editedRows;                           ///< whose volume is not that of m_original
    std::vector<std::optional<double>> m_amounts;         ///< of the rows as the user has changed them
    std::vector<std::optional<double>> m_originalAmounts; ///< of the rows as they came in
    std::vector<boost::shared_ptr<CQuoteRequest>> m_requests;
    QTimer* const m_refreshTimer;
    int m_nLastColumn = -1;
    int m_nPriceDecimals = 2;
    QMap<QString, QPair<int, QString>> m_extraColumns;
};

} // namespace TC
