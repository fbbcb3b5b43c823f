#include "orderservice/ui/OrdersMessageBox.h"

#include "orderservice/base/Clock.h"
#include "orderservice/gates/IntakePause.h"
#include "orderservice/gates/OrderConfirmer.h"
#include "orderservice/platform/HostCall.h"
#include "orderservice/platform/HostReports.h"
#include "orderservice/platform/LuaModuleCtrl.h"
#include "orderservice/platform/Switches.h"
#include "orderservice/platform/UserConfig.h"
#include "orderservice/ui/BatchTraderType.h"
#include "orderservice/ui/OrderParamTable.h"
#include "orderservice/ui/OrdersConfirmWidget.h"
#include "orderservice/ui/RemarkLine.h"
#include "orderservice/widgets/BaseWidget.h"
#include "orderservice/widgets/Resources.h"
#include "orderservice/widgets/SimpleTextWidget.h"
#include "orderservice/widgets/WidgetList.h"

#include <QApplication>
#include <QInputMethod>
#include <QKeyEvent>
#include <QLocale>
#include <QPalette>
#include <QPushButton>
#include <QScreen>
#include <QStringList>
#include <QStyle>
#include <QTableView>
#include <QTimer>
#include <QVBoxLayout>

#include <memory>

namespace TC {
namespace {

constexpr int kLeastWidth = 460, kLeastHeight = 150;
constexpr int kWidth = 1000;
constexpr int kHeightBesideTable = 30;
constexpr int kButtonWidth = 80, kButtonHeight = 26;
constexpr int kLabelHeight = 22;

/// With the guard, no answer is taken for this time after the dialog was shown. The user sees the batch
/// first.
constexpr double kGuardSeconds = 0.5;

COrdersMessageBox* s_pOpen = nullptr; ///< the dialog that is open
bool s_bAnswered = false;             ///< the user has ended the last dialog
std::map<int, std::string> s_remarks; ///< by the caller's key; kept after the dialog has closed

QString moneyText(double money) {
    QLocale groups = QLocale::c();
    groups.setNumberOptions(QLocale::DefaultNumberOptions); // signs between groups of digits
    return groups.toString(money, 'f', 2);
}

/// A switch for safety is on if the host fails to answer.
bool isGuardOn() {
    bool isOn = true;
    runGuarded(QStringLiteral("确认窗口的保护已开启"),
               [&] { isOn = luawrapper::isOrderSwitchOn(kConfirmGuardSwitch); });
    return isOn;
}

} // namespace

int COrdersMessageBox::showOrders(QWidget* parent, const QString& title, EQdTraderType traderType,
                                  const std::map<int, CCodeOrderParam>& orders,
                                  const std::map<int, std::string>& remarks) {
    if (s_pOpen != nullptr) {
        reportSafely(QStringLiteral("[接口单]　另一批指令正在确认, %1条指令未执行!")
                         .arg(static_cast<int>(orders.size())));
        return Rejected;
    }
    const CConfirmationHold hold; // batches of the service wait until the dialog is closed
    // On the heap and not on the stack: the parent may be deleted while the dialog is open.
    std::unique_ptr<COrdersMessageBox> dialog(new COrdersMessageBox(title, parent));
    s_pOpen = dialog.get();
    s_bAnswered = false;
    connect(dialog.get(), &QDialog::finished, [] { s_bAnswered = true; });
    dialog->m_bWasPaused = isConfirmationPauseSet();
    setConfirmationPause(true);
    try {
        setBatchTraderType(traderType);
        dialog->m_table->prepare();
        dialog->setOrders(orders, remarks);
        dialog->fitSize();
    } catch (...) {
        // No dialog could end this pause. An earlier one may have left its own.
        setConfirmationPause(dialog->m_bWasPaused);
        throw;
    }
    const int result = dialog.release()->exec(); // deletes itself
    if (isConfirmationPauseSet())
        reportSafely(QStringLiteral("[接口单]　确认窗口未按按钮关闭, 文件单读取保持暂停"));
    return result;
}

std::string COrdersMessageBox::getRemark(int row) {
    const auto found = s_remarks.find(row);
    return found != s_remarks.end() ? found->second : std::string();
}

bool COrdersMessageBox::isOpen() {
    return s_pOpen != nullptr;
}

void COrdersMessageBox::withdraw() {
    if (s_pOpen == nullptr) return;
    setConfirmationPause(s_pOpen->m_bWasPaused);
    s_pOpen->hide(); // ends the event loop of showOrders
}

bool COrdersMessageBox::wasAnswered() {
    return s_bAnswered;
}

COrdersMessageBox::COrdersMessageBox(const QString& title, QWidget* parent)
    : CCommonDialog(parent), m_bGuarded(isGuardOn()), m_guardTimer(new QTimer(this)) {
    setTitle(title);
    setWindowFlag(Qt::WindowContextHelpButtonHint, false);
    setAttribute(Qt::WA_DeleteOnClose);
    setAttribute(Qt::WA_QuitOnClose, false); // an answer must not end the application
    setMinimumSize(kLeastWidth + 2 * kFrameWidth, kLeastHeight + 2 * kFrameWidth);
    makeInner();
    m_guardTimer->setSingleShot(true);
    m_guardTimer->setTimerType(Qt::PreciseTimer); // others may end too early for the clock
    connect(m_guardTimer, &QTimer::timeout, this, &COrdersMessageBox::endGuard);
}

COrdersMessageBox::~COrdersMessageBox() {
    s_pOpen = nullptr;
    // The parts emit signals while they are hidden and destroyed, for instance an open editor of a cell.
    m_table->disconnect(this);
    if (m_remarkEdit != nullptr) m_remarkEdit->disconnect(this);
    hide();
    saveLayout();
}

void COrdersMessageBox::loadLayout() {
    runGuarded(QStringLiteral("下单确认表的布局未读取"), [this] {
        const CUserConfig* user = getUserConfig();
        if (user == nullptr) return;
        const std::string name = hostCall<&CUserConfig::getUserName>.on(*user);
        m_table->setTableConfig(hostCall<&CUserConfig::getTableLayout>.on(*user, m_table->table()->id()));
        m_strLayoutUser = name;
        m_bLayoutLoaded = true;
    });
}

/// Keeps the layout that the user has made. If he has changed nothing, the saved one stays. A dialog that has
/// not shown the saved layout does not replace it, and another user does not get it.
void COrdersMessageBox::saveLayout() {
    if (!m_bLayoutLoaded || !m_table->isLayoutChanged()) return;
    runGuarded(QStringLiteral("下单确认表的布局未保存"), [this] {
        CUserConfig* user = getUserConfig();
        if (user == nullptr || hostCall<&CUserConfig::getUserName>.on(*user) != m_strLayoutUser) return;
        hostCall<&CUserConfig::saveTableLayout>.on(*user, m_table->table()->id(), m_table->tableConfig());
    });
}

void COrdersMessageBox::makeInner() {
    auto* inner = new UW::CBaseWidget;
    m_table = new COrdersConfirmWidget(1, inner);
    m_notice = new UW::CSimpleTextWidget(QString(), inner);
    m_notice->setContentsMargins(15, 2, 15, 2);
    m_notice->setWordWrap(true);
    QPalette colors = m_notice->palette();
    colors.setColor(QPalette::WindowText, Qt::red);
    m_notice->setPalette(colors);
    m_notice->hide();
    auto* row = new UW::CWidgetList(inner);
    row->setMargins({15, 10, 15, 5});
    row->setSpacing(15);
    constexpr int kMore = 10;
    row->setFixedHeight(UW::resourceSize(QStringLiteral("tc_siz_setting_inner_bottom_btn_height")) + kMore);
    makeRemark(*row);
    row->addStretch();
    m_summary = new UW::CSimpleTextWidget;
    m_summary->setElided(true);
    row->addWidget(m_summary);
    m_okButton = makeButton(QStringLiteral("确定"), OkButton);
    m_cancelButton = makeButton(QStringLiteral("取消"), CancelButton);
    row->addWidget(m_okButton);
    row->addWidget(m_cancelButton);
    m_okButton->setDefault(true);
    auto* layout = new QVBoxLayout(inner);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addWidget(m_table, 1);
    layout->addWidget(m_notice);
    layout->addWidget(row);
    setInnerWidget(inner);
    connect(m_table, &COrdersConfirmWidget::sigSelectionChanged, this,
            [this] { handleEvent(CurrentRowEvent, 0); });
    connect(m_table, &COrdersConfirmWidget::sigTotalChanged, this, [this] { showSummary(); });
    connect(m_table, &COrdersConfirmWidget::sigEdited, this, [this] { showNotice(); });
}

void COrdersMessageBox::makeRemark(UW::CWidgetList& row) {
    if (!CRemarkLine::isAllowed()) return;
    auto* label = new UW::CSimpleTextWidget(QStringLiteral("投资备注"));
    label->setFixedHeight(kLabelHeight);
    m_remarkEdit = new CRemarkLine;
    row.addWidget(label);
    row.addWidget(m_remarkEdit, 1000); // more than the stretch beside it
    connect(m_remarkEdit, &QLineEdit::textEdited, this, [this] { handleEvent(RemarkEvent, 0); });
}

QPushButton* COrdersMessageBox::makeButton(const QString& text, int number) {
    auto* button = new QPushButton(text);
    button->setFixedSize(kButtonWidth, kButtonHeight);
    button->setFocusPolicy(Qt::NoFocus);
    button->setAutoDefault(false);
    connect(button, &QPushButton::clicked, this, [this, number] { handleEvent(ButtonEvent, number); });
    return button;
}

void COrdersMessageBox::setOrders(const std::map<int, CCodeOrderParam>& orders,
                                  const std::map<int, std::string>& remarks) {
    m_orders.clear();
    m_rowKeys.clear();
    s_remarks = m_callerRemarks = remarks;
    int row = 0;
    for (const auto& [key, record] : orders) {
        m_rowKeys[row++] = key;
        m_orders.push_back(record);
    }
    m_nWithoutRow = 0;
    for (const auto& [key, remark] : remarks)
        m_nWithoutRow += orders.count(key) == 0 ? 1 : 0;
    m_table->setOrders(m_orders);
    m_table->setSelectedRow(0);
    showRemark();
    showSummary();
    loadLayout();
    m_table->table()->view()->setFocus();
}

void COrdersMessageBox::fitSize() {
    const QWidget* parent = parentWidget();
    const QScreen* screen = parent != nullptr ? parent->screen() : QGuiApplication::primaryScreen();
    if (screen == nullptr) return resize(kWidth, m_table->tableHeight() + kHeightBesideTable);
    // The frame of the window manager is not known before the dialog is shown.
    const int title = style()->pixelMetric(QStyle::PM_TitleBarHeight);
    const QRect area = screen->availableGeometry();
    const QSize size =
        sizeFor(m_table->tableHeight(), area.size(), {2 * kFrameWidth, title + 2 * kFrameWidth});
    resize(size);
    if (parent == nullptr)
        move(area.left() + (area.width() - size.width()) / 2,
             area.top() + (area.height() - size.height()) / 2);
}

QSize COrdersMessageBox::boundedSize(const QSize& wish, const QSize& available, const QSize& frame) {
    return wish.expandedTo({kLeastWidth + 2 * kFrameWidth, kLeastHeight + 2 * kFrameWidth})
        .boundedTo(available - frame);
}

QSize COrdersMessageBox::sizeFor(int tableHeight, const QSize& available, const QSize& frame) {
    return boundedSize({kWidth, tableHeight + kHeightBesideTable}, available, frame);
}

void COrdersMessageBox::handleEvent(int event, int value) {
    switch (event) {
    case ButtonEvent:
        return answer(value);
    case SelectionEvent:
    case CurrentRowEvent:
        return showRemark();
    case RemarkEvent:
        return keepRemark();
    default:
        return CCommonDialog::handleEvent(event, value);
    }
}

void COrdersMessageBox::answer(int button) {
    if (button != OkButton && button != CancelButton) return;
    if (isTooEarly()) return;
    QGuiApplication::inputMethod()->commit(); // the remark may have text that is not committed yet
    setConfirmationPause(false);
    done(button == OkButton ? Accepted : Rejected);
}

/// Questions open one behind the other at the same place. The second click of a double click on the first
/// one must not answer the next one: a batch that is declined unseen is lost.
bool COrdersMessageBox::isTooEarly() const {
    return m_bGuarded && (!m_dShown || utils::getTime() - *m_dShown < kGuardSeconds);
}

/// The buttons are disabled while a click does nothing, so that the user does not think that it was taken.
void COrdersMessageBox::startGuard() {
    if (!isTooEarly()) return;
    m_okButton->setEnabled(false);
    m_cancelButton->setEnabled(false);
    m_guardTimer->start(static_cast<int>(kGuardSeconds * 1000));
}

void COrdersMessageBox::restartGuard() {
    m_dShown = utils::getTime();
    startGuard();
}

void COrdersMessageBox::endGuard() {
    if (isTooEarly()) return startGuard();
    m_okButton->setEnabled(true);
    m_cancelButton->setEnabled(true);
}

void COrdersMessageBox::showEvent(QShowEvent* event) {
    CCommonDialog::showEvent(event);
    if (!m_dShown) restartGuard();
    QApplication::alert(this);
}

bool COrdersMessageBox::isKeyIgnored(const QKeyEvent& event) {
    const bool isEnter = event.key() == Qt::Key_Return || event.key() == Qt::Key_Enter;
    if (!m_bGuarded || (!isEnter && !event.matches(QKeySequence::Cancel))) return false;
    // A key that is held down was pressed for something else.
    return event.isAutoRepeat() || isTooEarly();
}

/// The user presses Enter to end a remark. Without this it would reach 确定 and send the batch.
bool COrdersMessageBox::endRemark(const QKeyEvent& event) {
    const bool isEnter = event.key() == Qt::Key_Return || event.key() == Qt::Key_Enter;
    if (!m_bGuarded || !isEnter || m_remarkEdit == nullptr || focusWidget() != m_remarkEdit) return false;
    QGuiApplication::inputMethod()->commit();
    keepRemark();
    m_table->table()->view()->setFocus();
    return true;
}

void COrdersMessageBox::keyPressEvent(QKeyEvent* event) {
    if (isKeyIgnored(*event) || endRemark(*event)) return;
    CCommonDialog::keyPressEvent(event);
    // Escape with another key does not close the dialog. It must not start the intake behind it.
    if (event->key() == Qt::Key_Escape && !isVisible()) setConfirmationPause(false);
}

const int* COrdersMessageBox::selectedKey() const {
    const auto found = m_rowKeys.find(m_table->selectedRow());
    return found != m_rowKeys.end() ? &found->second : nullptr;
}

void COrdersMessageBox::showRemark() {
    if (m_remarkEdit == nullptr) return;
    const int* key = selectedKey();
    m_remarkEdit->setText(key != nullptr ? QString::fromStdString(getRemark(*key)) : QString());
    m_remarkEdit->setReadOnly(key == nullptr); // no order would get the text
}

void COrdersMessageBox::keepRemark() {
    const int* key = selectedKey();
    if (key != nullptr && m_remarkEdit != nullptr) s_remarks[*key] = m_remarkEdit->text().toStdString();
    showNotice();
}

int COrdersMessageBox::changedRemarks() const {
    int changed = 0;
    for (const auto& [row, key] : m_rowKeys) {
        const auto before = m_callerRemarks.find(key);
        const std::string remark = before != m_callerRemarks.end() ? before->second : std::string();
        changed += getRemark(key) != remark ? 1 : 0;
    }
    return changed;
}

/// A tool tip alone is not enough: a user who has entered another volume expects that it is sent.
void COrdersMessageBox::showNotice() {
    QStringList texts;
    if (const int volumes = m_table->editedRows())
        texts.append(QStringLiteral("%1 行的分配量已修改, 但仍按原分配量下单").arg(volumes));
    if (const int remarks = changedRemarks())
        texts.append(QStringLiteral("%1 行的备注已修改, 但仍按原备注下单").arg(remarks));
    m_notice->setText(texts.join(QStringLiteral("; ")));
    m_notice->setVisible(!texts.isEmpty());
}

QString COrdersMessageBox::notice() const {
    return m_notice->isHidden() ? QString() : m_notice->text();
}

void COrdersMessageBox::showSummary() {
    const COrdersTotal total = m_table->total();
    QString text = QStringLiteral("共 %1 笔").arg(total.m_nOrders + m_nWithoutRow);
    if (m_nWithoutRow > 0) text += QStringLiteral(", %1 笔不在表内").arg(m_nWithoutRow);
    if (total.m_nWithAmount > 0) text += QStringLiteral(", 表内预估 %1").arg(moneyText(total.m_dAmount));
    const int without = total.m_nOrders - total.m_nWithAmount;
    if (without > 0 && total.m_nWithAmount > 0) text += QStringLiteral(" (%1 笔无金额)").arg(without);
    m_summary->setText(text);
    m_summary->setToolTip(text +
                          QStringLiteral("\n表中各行委托预估金额之和. 多账号或篮子的指令只含最后一条."));
    fitSummary();
}

/// The summary has its whole width if the remark line can give it. If not, its end is cut, and never a
/// button.
void COrdersMessageBox::fitSummary() {
    const QWidget* row = m_summary->parentWidget();
    const int others = row->layout()->minimumSize().width() - m_summary->minimumWidth();
    m_summary->setMinimumWidth(qBound(0, row->width() - others, m_summary->sizeHint().width()));
}

void COrdersMessageBox::resizeEvent(QResizeEvent* event) {
    CCommonDialog::resizeEvent(event);
    fitSummary();
}

QString COrdersMessageBox::summary() const {
    return m_summary->text();
}

} // namespace TC
