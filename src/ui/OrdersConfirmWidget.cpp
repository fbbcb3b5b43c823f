#include "orderservice/ui/OrdersConfirmWidget.h"

#include "orderservice/base/Unset.h"
#include "orderservice/platform/HostReports.h"
#include "orderservice/platform/LuaModuleCtrl.h"
#include "orderservice/platform/Switches.h"
#include "orderservice/ui/BatchTraderType.h"
#include "orderservice/ui/HostFacts.h"
#include "orderservice/ui/OrderCells.h"
#include "orderservice/ui/OrderParamTable.h"
#include "orderservice/ui/QuoteRows.h"

#include <QAction>
#include <QCursor>
#include <QStringList>
#include <QTimer>
#include <QVBoxLayout>
#include <QWhatsThis>

#include <algorithm>
#include <cmath>
#include <utility>

namespace TC {
namespace {

const QString kNone = QStringLiteral("-");
constexpr int kMoneyDecimals = 2;

const char* const kVolumeToolTip = "修改只保留在本表内, 不改变任何指令. 下单按原分配量执行.";
const char* const kReadOnlyToolTip = "下单按此分配量执行. 本表不能修改分配量.";
const char* const kUnreadToolTip = "未能读取";
constexpr double kMostLonglong = 9e18; ///< a greater number does not fit a qlonglong
const char* const kHelpText = "每行是一笔指令; 多账号或篮子的指令只显示最后一条.\n"
                              "确定执行全部指令, 与筛选和选择无关.\n"
                              "最新市值每 0.5 秒更新一次, 没有行情时显示 -.\n"
                              "在表内修改的分配量不改变任何指令.\n"
                              "点击列标题排序, 点击标题右侧的漏斗筛选, Ctrl+C 复制选中的行.";

struct CExtraColumn {
    const char* m_pszModule;
    const char* m_pszHeader;
    bool (*m_isUsedBy)(EQdTraderType traderType);
};

const CExtraColumn kExtraColumns[] = {
    {kTriggerPriceSwitch, "触价价格", [](EQdTraderType) { return true; }},
    {kMarketIfTouchedSwitch, "篮子触价", [](EQdTraderType type) { return type == EQdTraderType::Basket; }},
    {kCreditSpecialCodeSwitch, "负债合约编号",
     [](EQdTraderType type) { return type == EQdTraderType::Credit; }},
};

/// Whether the switch of an extra column is on. If the host fails to answer, the column is missing: no batch
/// is dropped for it.
bool isExtraOn(const CExtraColumn& extra) {
    bool isOn = false;
    runGuarded(QStringLiteral("下单确认表缺少一列"),
               [&] { isOn = luawrapper::isOrderSwitchOn(extra.m_pszModule); });
    return isOn;
}

/// A switch for safety is on if the host fails to answer.
bool isReadOnlyOn() {
    bool isOn = true;
    runGuarded(QStringLiteral("分配量不能修改"),
               [&] { isOn = luawrapper::isOrderSwitchOn(kConfirmReadOnlySwitch); });
    return isOn;
}

constexpr int kLeastDecimals = 2;
constexpr int kMostQuoteDecimals = 4; ///< the smallest price step is 0.0001
constexpr int kMostDecimals = 8;      ///< of a price that an order names: it is sent with all of them

/// The digits behind the point that the number has, at most `most`.
int decimalsOf(const std::optional<double>& number, int most) {
    if (!number) return 0;
    const QString digits = QString::number(*number, 'f', most);
    int decimals = most;
    while (decimals > 0 && digits[digits.size() - 1 - (most - decimals)] == QLatin1Char('0'))
        --decimals;
    return decimals;
}

/// The digits behind the point that the prices of a row need.
int priceDecimalsOf(const COrderCells& cells) {
    const int base =
        cells.m_basePrice == cells.m_price ? 0 : decimalsOf(cells.m_basePrice, kMostQuoteDecimals);
    return std::max({kLeastDecimals, base, decimalsOf(cells.m_price, kMostDecimals)});
}

/// The amounts of all rows together.
COrdersTotal totalOf(const std::vector<std::optional<double>>& amounts) {
    COrdersTotal total;
    total.m_nOrders = static_cast<int>(amounts.size());
    for (const std::optional<double>& amount : amounts) {
        if (!amount) continue;
        total.m_dAmount += *amount;
        ++total.m_nWithAmount;
    }
    return total;
}

/// One update of the table: its changes are drawn together.
class CTableUpdate {
public:
    explicit CTableUpdate(COrderParamTable& table) : m_table(table) { m_table.beginUpdate(); }
    ~CTableUpdate() { m_table.endUpdate(); }
    CTableUpdate(const CTableUpdate&) = delete;
    CTableUpdate& operator=(const CTableUpdate&) = delete;

private:
    COrderParamTable& m_table;
};

} // namespace

COrdersConfirmWidget::COrdersConfirmWidget(int mode, UW::CBaseWidget* parent)
    : CBaseWidget(parent), m_nMode(mode), m_rows(std::make_shared<CQuoteRows>()),
      m_refreshTimer(new QTimer(this)) {
    makeTable();
    connect(m_refreshTimer, &QTimer::timeout, this, &COrdersConfirmWidget::slotTimeout);
    m_refreshTimer->start(kRefreshMs);
}

COrdersConfirmWidget::~COrdersConfirmWidget() = default;

void COrdersConfirmWidget::makeTable() {
    m_table = new COrderParamTable(
        QStringLiteral("orders_confirm"), [this](int column) { return m_table->columnTexts(column); },
        [this](int column, const std::set<QString>& texts) { m_table->setColumnFilter(column, texts); },
        this);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(m_table);
    connect(m_table, &UW::CBaseNormalTable::sigSelectionChanged, this,
            &COrdersConfirmWidget::sigSelectionChanged);
    connect(m_table, &UW::CBaseNormalTable::sigItemEdited, this, &COrdersConfirmWidget::edit);
    if (m_nMode != 1) return;
    m_table->addMenuSeparator();
    connect(m_table->addMenuAction(QStringLiteral("帮助")), &QAction::triggered, this,
            &COrdersConfirmWidget::slotHelp);
}

void COrdersConfirmWidget::makeColumn(int column, const QString& header, bool isNumber) {
    m_table->setColumnHeader(column, header);
    m_table->setColumnIsNumber(column, isNumber);
    m_table->setColumnFilterable(column, true);
    m_table->setColumnBoldFont(column, isNumber);
    m_table->setStatColumnBoldFont(column, isNumber);
}

void COrdersConfirmWidget::prepare() {
    m_nTraderType = batchTraderType();
    const bool isContract = isFutureLike(m_nTraderType);
    makeColumn(Account, QStringLiteral("账号"), false);
    makeColumn(Market, QStringLiteral("市场"), false);
    makeColumn(Code, QStringLiteral("代码"), false);
    makeColumn(Name, isContract ? QStringLiteral("合约名称") : QStringLiteral("股票名称"), false);
    makeColumn(TradeType, QStringLiteral("交易类型"), false);
    makeColumn(Volume, QStringLiteral("分配量"), true);
    makeColumn(Available, QStringLiteral("可用量"), true);
    makeColumn(MarketValue, QStringLiteral("最新市值"), true);
    makeColumn(BasePrice, QStringLiteral("基准价"), true);
    makeColumn(Price, QStringLiteral("委托价"), true);
    makeColumn(Amount, QStringLiteral("委托预估金额"), true);
    makeColumn(Product, QStringLiteral("产品名称"), false);
    makeExtraColumns();
    m_table->setColumnFlashChange(MarketValue, true);
    const bool isReadOnly = isReadOnlyOn();
    m_table->setColumnEditable(Volume, !isReadOnly);
    m_table->setColumnToolTip(Volume, QString::fromUtf8(isReadOnly ? kReadOnlyToolTip : kVolumeToolTip));
    m_table->setColumnEditor(Volume, [this](int row) {
        return UW::CNumberRule{1, m_states.at(static_cast<std::size_t>(row)).m_bMoney ? kMoneyDecimals : 0};
    });
    m_table->setStatText(Account, QStringLiteral("合计"));
    setOrderKind(m_nOrderKind);
}

void COrdersConfirmWidget::makeExtraColumns() {
    m_extraColumns.clear();
    m_nLastColumn = -1;
    int column = FirstExtra;
    for (const CExtraColumn& extra : kExtraColumns) {
        if (!extra.m_isUsedBy(m_nTraderType) || !isExtraOn(extra)) continue;
        const QString header = QString::fromUtf8(extra.m_pszHeader);
        makeColumn(column, header, false);
        m_table->setColumnKey(column, QString::fromLatin1(extra.m_pszModule));
        m_extraColumns.insert(QString::fromLatin1(extra.m_pszModule), {column, header});
        m_nLastColumn = column++;
    }
}

void COrdersConfirmWidget::setOrderKind(int kind) {
    m_nOrderKind = kind;
    m_table->setColumnHidden(Available, kind != kOrdersKind);
}

void COrdersConfirmWidget::setOrders(const std::vector<CCodeOrderParam>& orders) {
    m_requests.clear();
    m_table->clearFilter();
    m_table->setRowCount(static_cast<int>(orders.size()));
    m_table->setHiddenRowsText(
        QStringLiteral("筛选隐藏了 %1 行; 确定仍执行全部 %2 笔")
            .arg(QStringLiteral("%1"), QString::number(static_cast<int>(orders.size()))));
    m_original = orders;
    m_states.assign(orders.size(), CRowState{});
    m_editedRows.clear();
    m_amounts.assign(orders.size(), std::nullopt);
    m_originalAmounts = m_amounts;
    CHostFacts host(m_nTraderType);
    setInstruments(host);
    requestQuotes();
    fillRows(host);
    host.report();
    showAmountSum();
    slotTimeout();
    m_table->adjustVisibleRowsColumnWidth();
}

void COrdersConfirmWidget::setInstruments(CHostFacts& host) {
    std::vector<CQuoteRows::CInstrument> instruments(m_original.size());
    for (std::size_t row = 0; row < m_original.size(); ++row) {
        if (host.repaysMoney(m_original[row]).value_or(true)) continue;
        instruments[row] = {host.instrument(m_original[row]).m_strKey, host.moneyRule(m_original[row])};
    }
    m_rows->setOrders(m_original, instruments);
    host.restartRow(); // fillRows finds the same failures again
}

void COrdersConfirmWidget::fillRows(CHostFacts& host) {
    std::vector<COrderCells> cells;
    cells.reserve(m_original.size());
    m_nPriceDecimals = kLeastDecimals;
    for (const CCodeOrderParam& record : m_original) {
        const CPriceDataPtr quote = host.quote(record);
        m_rows->setKnownQuote(host.instrument(record).m_strKey, quote);
        cells.push_back(cellsOf(record, m_nTraderType, host, quote));
        host.endRow();
        m_states[cells.size() - 1].m_quote = quote;
        m_nPriceDecimals = std::max(m_nPriceDecimals, priceDecimalsOf(cells.back()));
    }
    const CTableUpdate update(*m_table);
    for (std::size_t row = 0; row < cells.size(); ++row) {
        m_states[row].m_bMoney = cells[row].m_bMoney.value_or(false);
        m_originalAmounts[row] = cells[row].m_amount;
        fillTexts(static_cast<int>(row), m_original[row], cells[row]);
        fillNumbers(static_cast<int>(row), cells[row]);
    }
}

COrdersTotal COrdersConfirmWidget::total() const {
    return totalOf(m_originalAmounts);
}

std::vector<CCodeOrderParam> COrdersConfirmWidget::orders() const {
    return m_rows->orders();
}

void COrdersConfirmWidget::setText(int row, int column, const QString& text) {
    m_table->setItemText(row, column, text.isEmpty() ? kNone : text);
}

void COrdersConfirmWidget::fillTexts(int row, const CCodeOrderParam& record, const COrderCells& cells) {
    setText(row, Account, cells.m_strAccount);
    setText(row, Market, QString::fromStdString(record.m_stock.m_strMarket));
    setText(row, Code, QString::fromStdString(record.m_stock.m_strCode));
    setText(row, Name, QString::fromStdString(record.m_stock.m_strName));
    setText(row, TradeType, cells.m_strTradeType);
    setText(row, Product, cells.m_strProduct);
    fillExtra(row, record);
    setNumber(row, Available, cells.m_available, 0);
    setToolTips(row, cells, Account, Available);
    setToolTips(row, cells, Product, Product);
}

void COrdersConfirmWidget::fillNumbers(int row, const COrderCells& cells) {
    CRowState& state = m_states[static_cast<std::size_t>(row)];
    state.m_bNeedsQuote = cells.m_bNeedsQuote;
    state.m_basePrice = cells.m_basePrice;
    state.m_price = cells.m_price;
    setVolume(row, cells);
    if (const int decimals = priceDecimalsOf(cells); decimals > m_nPriceDecimals) {
        m_nPriceDecimals = decimals; // the points of a column are below each other
        for (int each = 0; each < static_cast<int>(m_states.size()); ++each)
            setPrices(each);
    }
    setPrices(row);
    if (!cells.m_price) setText(row, Price, cells.m_strPriceWord);
    setNumber(row, Amount, cells.m_amount, kMoneyDecimals);
    m_amounts[static_cast<std::size_t>(row)] = cells.m_amount;
    setToolTips(row, cells, MarketValue, Amount);
}

void COrdersConfirmWidget::setVolume(int row, const COrderCells& cells) {
    if (cells.m_bMoney || !cells.m_volume)
        return setNumber(row, Volume, cells.m_volume, cells.m_bMoney.value_or(false) ? kMoneyDecimals : 0);
    // As a text it cannot be edited: nobody knows whether it is money.
    const int decimals = decimalsOf(cells.m_volume, kMostDecimals);
    m_table->setItemText(row, Volume, QString::number(*cells.m_volume, 'f', decimals));
}

void COrdersConfirmWidget::setPrices(int row) {
    const CRowState& state = m_states[static_cast<std::size_t>(row)];
    setNumber(row, BasePrice, state.m_basePrice, m_nPriceDecimals);
    if (state.m_price) setNumber(row, Price, state.m_price, m_nPriceDecimals);
}

/// Marks the cells that the host has failed to answer for: "-" alone also means that a value is not set.
void COrdersConfirmWidget::setToolTips(int row, const COrderCells& cells, int first, int last) {
    for (int column = first; column <= last; ++column) {
        const bool isUnread = cells.m_unread.count(column) > 0;
        m_table->setItemToolTip(row, column, isUnread ? QString::fromUtf8(kUnreadToolTip) : QString());
    }
}

void COrdersConfirmWidget::fillExtra(int row, const CCodeOrderParam& record) {
    // The records have no trigger prices, so these columns stay "-".
    const auto contract = m_extraColumns.constFind(QLatin1String(kCreditSpecialCodeSwitch));
    if (contract == m_extraColumns.constEnd()) return;
    const std::string& named =
        record.m_strRepayText.empty() ? record.m_strContractText : record.m_strRepayText;
    m_table->setItemText(row, contract->first,
                         named.empty() ? QStringLiteral("否")
                                       : QStringLiteral("是 ") + QString::fromStdString(named));
}

void COrdersConfirmWidget::setNumber(int row, int column, const std::optional<double>& value, int decimals) {
    if (!value) return m_table->setItemText(row, column, kNone);
    const bool fits = std::fabs(*value) < kMostLonglong;
    if (decimals == 0 && fits) return m_table->setItemLonglong(row, column, static_cast<qlonglong>(*value));
    m_table->setItemDouble(row, column, *value, decimals);
}

void COrdersConfirmWidget::requestQuotes() {
    QStringList failed;
    QString cause;
    for (const QString& key : m_rows->keys()) {
        try {
            const std::shared_ptr<CQuoteRows> rows = m_rows;
            m_requests.push_back(CQuoteRequest::makeRequest(
                key, [rows, key](const CPriceDataPtr& price) { rows->setQuote(key, price); },
                ESubscribeType::Plain));
        } catch (...) {
            if (failed.isEmpty()) cause = exceptionText();
            failed.append(key);
        }
    }
    if (failed.isEmpty()) return;
    constexpr int kMostNamed = 5;
    reportSafely(
        QStringLiteral("[接口单]　下单确认表未能请求 %1 个代码的行情 (%2): ")
            .arg(QString::number(failed.size()), failed.mid(0, kMostNamed).join(QStringLiteral(", "))) +
        cause);
}

/// Works out the cells of the rows whose quotes did not have their prices yet.
void COrdersConfirmWidget::fillQuotedRows() {
    CHostFacts host(m_nTraderType);
    bool isFilled = false;
    for (std::size_t row = 0; row < m_states.size(); ++row) {
        const int number = static_cast<int>(row);
        const CPriceDataPtr quote = m_states[row].m_bNeedsQuote ? m_rows->quote(number) : nullptr;
        if (!quote || quote == m_states[row].m_quote) continue;
        m_states[row].m_quote = quote;
        COrderCells cells = numbersOf(m_original[row], host, quote);
        m_originalAmounts[row] = cells.m_amount;
        if (m_editedRows.count(number) > 0) cells = numbersOf(m_rows->order(number), host, quote);
        fillNumbers(number, cells);
        host.endRow();
        isFilled = true;
    }
    if (!isFilled) return;
    host.report();
    showAmountSum();
    emit sigTotalChanged();
}

void COrdersConfirmWidget::slotTimeout() {
    if (m_nOrderKind != kOrdersKind) return;
    const std::vector<CQuoteRows::CValue> values = m_rows->values();
    const CTableUpdate update(*m_table);
    fillQuotedRows();
    double sum = 0;
    bool hasValue = false;
    for (std::size_t row = 0; row < values.size(); ++row) {
        const CQuoteRows::CValue& value = values[row];
        if (!value.m_bValid) {
            m_table->setItemText(static_cast<int>(row), MarketValue, kNone);
            continue;
        }
        m_table->setItemDouble(static_cast<int>(row), MarketValue, value.m_dMarketValue, kMoneyDecimals);
        m_table->setItemToolTip(static_cast<int>(row), MarketValue, QString());
        sum += value.m_dMarketValue;
        hasValue = true;
    }
    m_table->setStatText(MarketValue, hasValue ? QString::number(sum, 'f', kMoneyDecimals) : kNone);
}

void COrdersConfirmWidget::edit(int row, int column, const QString& text) {
    if (column != Volume) return;
    runGuarded(QStringLiteral("分配量未修改"), [&] {
        const bool isMoney = m_states.at(static_cast<std::size_t>(row)).m_bMoney;
        if (isMoney) {
            m_rows->setMoney(row, text.toDouble());
        } else {
            m_rows->setVolume(row, text.toInt());
        }
        CHostFacts host(m_nTraderType);
        const CCodeOrderParam record = m_rows->order(row);
        host.setRepaysMoney(record, isMoney);
        const CPriceDataPtr quote = m_rows->quote(row);
        fillNumbers(row, numbersOf(record, host, quote ? quote : host.quote(record)));
        host.endRow();
        host.report();
        markEdited(row);
        showAmountSum();
        slotTimeout();
        emit sigEdited();
    });
}

void COrdersConfirmWidget::markEdited(int row) {
    const std::optional<double> before = quantityOf(m_original[static_cast<std::size_t>(row)]);
    const bool isChanged = before != quantityOf(m_rows->order(row));
    isChanged ? (void)m_editedRows.insert(row) : (void)m_editedRows.erase(row);
    const bool isMoney = m_states[static_cast<std::size_t>(row)].m_bMoney;
    m_table->setItemMarked(row, Volume, isChanged);
    m_table->setItemToolTip(row, Volume,
                            isChanged && before
                                ? QStringLiteral("原分配量 %1. %2")
                                      .arg(QString::number(*before, 'f', isMoney ? kMoneyDecimals : 0),
                                           QString::fromUtf8(kVolumeToolTip))
                                : QString());
}

void COrdersConfirmWidget::showAmountSum() {
    const COrdersTotal total = totalOf(m_amounts);
    m_table->setStatText(
        Amount, total.m_nWithAmount > 0 ? QString::number(total.m_dAmount, 'f', kMoneyDecimals) : kNone);
}

int COrdersConfirmWidget::tableHeight() const {
    constexpr int kButtonRow = 46, kFrame = 2, kAddedByDialog = 30;
    return m_table->neededHeight() + kButtonRow + kFrame - kAddedByDialog;
}

void COrdersConfirmWidget::setTableConfig(const QString& config) {
    m_table->loadConfigStr(config);
}

bool COrdersConfirmWidget::isLayoutChanged() const {
    return m_table->isLayoutChanged();
}

QString COrdersConfirmWidget::tableConfig() const {
    return m_table->saveConfigStr();
}

int COrdersConfirmWidget::selectedRow() const {
    return m_table->selectedRow();
}

void COrdersConfirmWidget::setSelectedRow(int row) {
    m_table->setSelectedRow(row);
}

void COrdersConfirmWidget::slotHelp(bool) {
    QWhatsThis::showText(QCursor::pos(), QString::fromUtf8(kHelpText), this);
}

} // namespace TC
