#include "orderservice/ui/OrdersConfirmer.h"

#include "orderservice/ui/OrdersMessageBox.h"

#include <QApplication>

namespace TC {

CConfirmAnswer COrdersConfirmer::confirm(const CConfirmQuestion& question) {
    CConfirmAnswer answer;
    const bool hasWindows = qobject_cast<QApplication*>(QCoreApplication::instance()) != nullptr;
    if (!hasWindows || COrdersMessageBox::isOpen()) {
        answer.m_eResult = EConfirmResult::NotAsked;
        answer.m_strReason =
            hasWindows ? QStringLiteral("另一批指令正在确认") : QStringLiteral("没有确认窗口");
        return answer;
    }
    const int result =
        COrdersMessageBox::showOrders(QApplication::activeWindow(), question.m_strTitle,
                                      question.m_eTraderType, question.m_rows, question.m_remarks);
    answer.m_eResult = result == 1 ? EConfirmResult::Accepted : EConfirmResult::Declined;
    for (const auto& [key, record] : question.m_rows)
        answer.m_remarks[key] = COrdersMessageBox::getRemark(key);
    return answer;
}

} // namespace TC
