#include "orderservice/records/OrderParam.h"

#include "orderservice/base/Text.h"

#include <QStringList>

namespace TC {
namespace {

QString number(int value) {
    return isUnset(value) ? QStringLiteral("-") : QString::number(value);
}

QString number(double value) {
    return isInvalidPrice(value) ? QStringLiteral("-") : QString::number(value, 'g', 15);
}

QString lineText(const COrderSingleParam& line) {
    QStringList parts{
        QStringLiteral("code=") + line.m_strCode,
        QStringLiteral("volume=") + number(line.m_nVolume),
        QStringLiteral("price=") + number(line.m_dPrice),
    };
    if (!line.m_strAccount.isEmpty()) parts << QStringLiteral("account=") + line.m_strAccount;
    if (line.m_bHasFirstLimit) parts << QStringLiteral("first_limit=") + number(line.m_dFirstLimit);
    if (line.m_bHasSecondLimit) parts << QStringLiteral("second_limit=") + number(line.m_dSecondLimit);
    if (line.m_eOperationType != -1)
        parts << QStringLiteral("operation=") + QString::number(line.m_eOperationType);
    if (line.m_dWeight != 0.0) parts << QStringLiteral("weight=") + number(line.m_dWeight);
    if (!isInvalidPrice(line.m_dAmount)) parts << QStringLiteral("amount=") + number(line.m_dAmount);
    if (!isUnset(line.m_ePriceType))
        parts << QStringLiteral("price_type=") + QString::number(static_cast<int>(line.m_ePriceType));
    if (!line.m_strCompact.isEmpty()) parts << QStringLiteral("compact=") + line.m_strCompact;
    return QStringLiteral("{") + parts.join(QStringLiteral(" ")) + QStringLiteral("}");
}

} // namespace

QString COrderParam::toQString() const {
    QStringList parts{
        QStringLiteral("order_type=") + number(m_nOrderType),
        QStringLiteral("channel=") + number(m_nChannel),
        QStringLiteral("strategy_type=") + QString::number(static_cast<int>(m_eStrategyType)),
    };
    if (m_bAll) parts << QStringLiteral("all");
    if (!m_strRemark.empty()) parts << QStringLiteral("remark=") + QString::fromStdString(m_strRemark);
    if (!m_strOrderSetting.empty())
        parts << QStringLiteral("setting=") + QString::fromStdString(m_strOrderSetting);
    if (!isUnset(m_eOrderType))
        parts << QStringLiteral("order_kind=") + QString::number(static_cast<int>(m_eOrderType));
    if (m_nSettingKind != 0) parts << QStringLiteral("setting_kind=") + QString::number(m_nSettingKind);
    if (!m_strBasketText.empty())
        parts << QStringLiteral("basket_text=") + QString::fromStdString(m_strBasketText);
    if (!m_strAccountKey.empty())
        parts << QStringLiteral("account_key=") + QString::fromStdString(m_strAccountKey);
    for (const std::string* text : {&m_strTradeText1, &m_strTradeText2, &m_strTradeText3}) {
        if (!text->empty()) parts << QStringLiteral("text=") + QString::fromStdString(*text);
    }
    if (!m_strAccountKeyPart1.isEmpty() || !m_strAccountKeyPart2.isEmpty()) {
        parts << QStringLiteral("account=") + m_strAccountKeyPart1 + QStringLiteral("/") +
                     m_strAccountKeyPart2;
    }
    for (const COrderSingleParam& line : m_orders)
        parts << lineText(line);
    return parts.join(QStringLiteral(" "));
}

bool codeSingleParamLessThan(const COrderSingleParam& a, const COrderSingleParam& b) {
    return COrderSingleParamCompareTraits::compare(a, b) < 0;
}

int COrderSingleParamCompareTraits::compare(const COrderSingleParam& a, const COrderSingleParam& b) {
    return a.m_strCode.compare(b.m_strCode);
}

bool isUniversal(int channel) {
    return channel == 0;
}

COrderSingleParam& setOnlyLine(COrderParam& order) {
    order.m_orders = QVector<COrderSingleParam>(1);
    return order.m_orders.first();
}

QString codeOfField(std::string_view field) {
    return field == "0" ? QString() : UW::sToQs(field.data(), field.size());
}

} // namespace TC
