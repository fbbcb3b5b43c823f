#include "orderservice/ui/OrdersConfirmWidget.h"

#include "orderservice/base/Unset.h"
#include "orderservice/platform/DataCenter.h"
#include "orderservice/platform/ExchangeClient.h"
#include "orderservice/platform/HostCall.h"
#include "orderservice/platform/HostReports.h"
#include "orderservice/platform/LuaModuleCtrl.h"
#include "orderservice/platform/Switches.h"
#include "orderservice/platform/TraderCenter.h"
#include "orderservice/platform/UserConfig.h"
#include "orderservice/ui/BatchTraderType.h"
#include "orderservice/ui/OrderCells.h"
#include "orderservice/ui/OrderParamTable.h"
#include "orderservice/ui/QuoteRows.h"

#include <QAction>
#include <QCursor>
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
const char* const kHelpText = "每行是一笔指令; 多账号的指令只显示最后一个账号的部分.\n"
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

constexpr int kLeastDecimals = 2, kMostDecimals = 4; ///< the smallest price step is 0.0001

/// The digits behind the point that a price needs.
int decimalsOf(const std::optional<double>& price) {
    int decimals = kLeastDecimals;
    for (double scaled = price.value_or(0) * 100; decimals < kMostDecimals; ++decimals, scaled *= 10) {
        if (std::fabs(scaled - std::round(scaled)) < 1e-6 * std::max(1.0, std::fabs(scaled))) break;
    }
    return decimals;
}

QString accountKeyOf(const CCodeOrderParam& record) {
    return record.m_account ? QString::fromStdString(record.m_account->getKey()) : QString();
}

CAccountProduct productOf(const QString& account) {
    const CUserConfig* user = getUserConfig();
    if (user == nullptr || account.isEmpty()) return {};
    return hostCall<&CUserConfig::getAccountProduct>.on(*user, account);
}

/// What the account can order of the record's instrument.
std::optional<double> availableVolume(const CCodeOrderParam& record) {
    if (!record.m_account) return std::nullopt;
    knservice::CDataCenter& centre = hostCall<&knservice::TraderCenter::getDataCenter>();
    const auto data =
        hostCall<&knservice::CDataCenter::getAccountData>.on(centre, record.m_account->getKey());
    if (!data) return std::nullopt;
    const int volume = hostCall<&knservice::CAccountData::getCanOrderVolume>.on(*data, record);
    return isUnset(volume) ? std::nullopt : std::optional<double>(volume);
}

/// The cells with what the host knows now. If the host fails, the failure is reported and they are empty.
COrderCells readCells(const CCodeOrderParam& record, EQdTraderType traderType) {
    COrderCells cells;
    runGuarded(QStringLiteral("下单确认表中有未能显示的内容"), [&] {
        const QString key = stockKeyOf(record);
        CPriceDataPtr quote;
        CInstrumentDetailPtr detail;
        if (!key.isEmpty()) {
            quote = hostCall<&CQuoteClient::getStockPrice>(key);
            detail = hostCall<&CExchangeClient::getCodeInfo>(key);
        }
        cells = cellsOf(record, traderType, quote, detail);
    });
    return cells;
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
    const bool isReadOnly = luawrapper::isOrderSwitchOn(kConfirmReadOnlySwitch);
    m_table->setColumnEditable(Volume, !isReadOnly);
    m_table->setColumnToolTip(Volume, QString::fromUtf8(isReadOnly ? kReadOnlyToolTip : kVolumeToolTip));
    m_table->setColumnEditor(Volume, [this](int row) {
        return UW::CNumberRule{1, repaysMoney(m_rows->order(row)) ? kMoneyDecimals : 0};
    });
    m_table->setStatText(Account, QStringLiteral("合计"));
    setOrderKind(m_nOrderKind);
}

void COrdersConfirmWidget::makeExtraColumns() {
    m_extraColumns.clear();
    m_nLastColumn = -1;
    int column = FirstExtra;
    for (const CExtraColumn& extra : kExtraColumns) {
        if (!extra.m_isUsedBy(m_nTraderType) || !luawrapper::isOrderSwitchOn(extra.m_pszModule)) continue;
        const QString header = QString::fromUtf8(extra.m_pszHeader);
        makeColumn(column, header, false);
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
    m_rows->setOrders(orders);
    m_original = orders;
    m_amounts.assign(orders.size(), std::nullopt);
    std::vector<COrderCells> cells;
    m_nPriceDecimals = kLeastDecimals;
    for (const CCodeOrderParam& record : orders) {
        cells.push_back(readCells(record, m_nTraderType));
        for (const std::optional<double>& price : {cells.back().m_price, cells.back().m_basePrice})
            m_nPriceDecimals = std::max(m_nPriceDecimals, decimalsOf(price));
    }
    {
        const CTableUpdate update(*m_table);
        for (std::size_t row = 0; row < orders.size(); ++row)
            fillRow(static_cast<int>(row), orders[row], cells[row]);
    }
    setTotal();
    showAmountSum();
    requestQuotes();
    slotTimeout();
    m_table->adjustVisibleRowsColumnWidth();
}

void COrdersConfirmWidget::setTotal() {
    m_total = {static_cast<int>(m_amounts.size()), 0, 0};
    for (const std::optional<double>& amount : m_amounts) {
        if (!amount) continue;
        m_total.m_dAmount += *amount;
        ++m_total.m_nWithAmount;
    }
}

std::vector<CCodeOrderParam> COrdersConfirmWidget::orders() const {
    return m_rows->orders();
}

void COrdersConfirmWidget::fillRow(int row, const CCodeOrderParam& record, const COrderCells& cells) {
    fillNumbers(row, cells);
    const auto text = [&](int column, const QString& value) {
        m_table->setItemText(row, column, value.isEmpty() ? kNone : value);
    };
    // A failure of the host in one row must not hide the other rows.
    runGuarded(QStringLiteral("下单确认表中有未能显示的内容"), [&] {
        const QString account = accountKeyOf(record);
        text(Account, account);
        text(Market, QString::fromStdString(record.m_stock.m_strMarket));
        text(Code, QString::fromStdString(record.m_stock.m_strCode));
        text(Name, QString::fromStdString(record.m_stock.m_strName));
        const CAccountProduct product = productOf(account);
        text(Product, product.m_strName);
        if (!product.m_strAccountName.isEmpty()) text(Account, product.m_strAccountName);
        fillExtra(row, record);
        setNumber(row, Available, availableVolume(record), 0);
    });
}

void COrdersConfirmWidget::fillNumbers(int row, const COrderCells& cells) {
    m_table->setItemText(row, TradeType, cells.m_strTradeType);
    setNumber(row, Volume, cells.m_volume, cells.m_bMoney ? kMoneyDecimals : 0);
    setPrice(row, BasePrice, cells.m_basePrice);
    setPrice(row, Price, cells.m_price);
    if (!cells.m_price && !cells.m_strPriceWord.isEmpty())
        m_table->setItemText(row, Price, cells.m_strPriceWord);
    setNumber(row, Amount, cells.m_amount, kMoneyDecimals);
    m_amounts[static_cast<std::size_t>(row)] = cells.m_amount;
}

void COrdersConfirmWidget::fillExtra(int row, const CCodeOrderParam& record) {
    // The records have no trigger prices, so these columns stay "-".
    const auto contract = m_extraColumns.constFind(QLatin1String(kCreditSpecialCodeSwitch));
    if (contract == m_extraColumns.constEnd()) return;
    const std::string& named =
        record.m_strRepayText.empty() ? record.m_strContractText : record.m_strRepayText;
    m_table->setItemText(row, contract->first,
                         named.empty() ? QStringLiteral("否") : QString::fromStdString(named));
}

void COrdersConfirmWidget::setNumber(int row, int column, const std::optional<double>& value, int decimals) {
    if (!value) return m_table->setItemText(row, column, kNone);
    if (decimals == 0) return m_table->setItemLonglong(row, column, static_cast<qlonglong>(*value));
    m_table->setItemDouble(row, column, *value, decimals);
}

void COrdersConfirmWidget::setPrice(int row, int column, const std::optional<double>& price) {
    setNumber(row, column, price, std::max(m_nPriceDecimals, decimalsOf(price)));
}

void COrdersConfirmWidget::requestQuotes() {
    for (const QString& key : m_rows->keys()) {
        runGuarded(QStringLiteral("下单确认表未能请求行情"), [&] {
            const std::shared_ptr<CQuoteRows> rows = m_rows;
            m_requests.push_back(CQuoteRequest::makeRequest(
                key, [rows, key](const CPriceDataPtr& price) { rows->setQuote(key, price); },
                ESubscribeType::Plain));
            m_rows->setKnownQuote(key, hostCall<&CQuoteClient::getStockPrice>(key));
        });
    }
}

void COrdersConfirmWidget::slotTimeout() {
    if (m_nOrderKind != kOrdersKind) return;
    const std::vector<CQuoteRows::CValue> values = m_rows->values();
    const CTableUpdate update(*m_table);
    double sum = 0;
    bool hasValue = false;
    for (std::size_t row = 0; row < values.size(); ++row) {
        const CQuoteRows::CValue& value = values[row];
        if (!value.m_bValid) {
            m_table->setItemText(static_cast<int>(row), MarketValue, kNone);
            continue;
        }
        m_table->setItemDouble(static_cast<int>(row), MarketValue, value.m_dMarketValue, kMoneyDecimals);
        sum += value.m_dMarketValue;
        hasValue = true;
    }
    m_table->setStatText(MarketValue, hasValue ? QString::number(sum, 'f', kMoneyDecimals) : kNone);
}

void COrdersConfirmWidget::edit(int row, int column, const QString& text) {
    if (column != Volume) return;
    const bool isMoney = repaysMoney(m_rows->order(row));
    if (isMoney) {
        m_rows->setMoney(row, text.toDouble());
    } else {
        m_rows->setVolume(row, text.toInt());
    }
    fillNumbers(row, readCells(m_rows->order(row), m_nTraderType));
    const std::optional<double> before = quantityOf(m_original[static_cast<std::size_t>(row)]);
    const std::optional<double> after = quantityOf(m_rows->order(row));
    const bool isChanged = before != after;
    m_table->setItemMarked(row, Volume, isChanged);
    m_table->setItemToolTip(row, Volume,
                            isChanged && before
                                ? QStringLiteral("原分配量 %1. %2")
                                      .arg(QString::number(*before, 'f', isMoney ? kMoneyDecimals : 0),
                                           QString::fromUtf8(kVolumeToolTip))
                                : QString());
    showAmountSum();
    slotTimeout();
}

void COrdersConfirmWidget::showAmountSum() {
    double sum = 0;
    bool hasAmount = false;
    for (const std::optional<double>& amount : m_amounts) {
        if (!amount) continue;
        sum += *amount;
        hasAmount = true;
    }
    m_table->setStatText(Amount, hasAmount ? QString::number(sum, 'f', kMoneyDecimals) : kNone);
}

int COrdersConfirmWidget::tableHeight() const {
    return m_table->neededHeight();
}

void COrdersConfirmWidget::setTableConfig(const QString& config) {
    m_table->loadConfigStr(config);
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
