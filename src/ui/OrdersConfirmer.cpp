#include "orderservice/ui/OrdersConfirmer.h"

#include "orderservice/ui/OrdersMessageBox.h"

#include <QApplication>
#include <QDialog>
#include <QWidget>

namespace TC {
namespace {

CConfirmAnswer notAsked(const QString& reason) {
    CConfirmAnswer answer;
    answer.m_eResult = EConfirmResult::NotAsked;
    answer.m_strReason = reason;
    return answer;
}

/// The largest window of the application that can be seen, or null. A dialog of a minimized window may not be
/// shown.
QWidget* largestWindow() {
    QWidget* largest = nullptr;
    for (QWidget* window : QApplication::topLevelWidgets()) {
        const bool isWindow = window->windowType() == Qt::Window || window->windowType() == Qt::Dialog;
        if (!isWindow || !window->isVisible() || window->isMinimized() || window->parentWidget() != nullptr)
            continue;
        const auto areaOf = [](const QWidget* each) { return each->width() * each->height(); };
        if (largest == nullptr || areaOf(window) > areaOf(largest)) largest = window;
    }
    return largest;
}

/// The parent of the dialog. It must live longer than the dialog, so it is not a window that itself belongs
/// to another one. Without a parent the dialog could open behind the other windows.
QWidget* dialogParent() {
    QWidget* window = QApplication::activeWindow();
    if (window == nullptr) return largestWindow();
    while (window->parentWidget() != nullptr)
        window = window->parentWidget();
    return window;
}

} // namespace

CConfirmAnswer COrdersConfirmer::confirm(const CConfirmQuestion& question) {
    if (qobject_cast<QApplication*>(QCoreApplication::instance()) == nullptr)
        return notAsked(QStringLiteral("没有确认窗口"));
    if (COrdersMessageBox::isOpen()) return notAsked(QStringLiteral("另一批指令正在确认"));
    const int result = COrdersMessageBox::showOrders(
        dialogParent(), question.m_strTitle, question.m_eTraderType, question.m_rows, question.m_remarks);
    if (!COrdersMessageBox::wasAnswered()) return notAsked(QStringLiteral("确认窗口已被关闭, 无人确认"));
    CConfirmAnswer answer;
    answer.m_eResult = result == QDialog::Accepted ? EConfirmResult::Accepted : EConfirmResult::Declined;
    for (const auto& [key, record] : question.m_rows)
        answer.m_remarks[key] = COrdersMessageBox::getRemark(key);
    return answer;
}

void COrdersConfirmer::withdraw() {
    COrdersMessageBox::withdraw();
}

} // namespace TC
