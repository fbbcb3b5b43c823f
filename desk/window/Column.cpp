#include "desk/window/Column.h"

#include <QLocale>

#include <cmath>
#include <cstring>

namespace desk {
namespace {

constexpr int kMoneyDecimals = 2;
constexpr int kPriceDecimals = 3;

/// The finest price step of the markets is one ten-thousandth.
int priceDecimals(double price) {
    const double tenThousandths = std::round(price * 10000);
    return std::fmod(std::fabs(tenThousandths), 10) > 0 ? kPriceDecimals + 1 : kPriceDecimals;
}

QString numberText(ECell cell, const QVariant& value, const QLocale& locale) {
    if (cell == ECell::Count) return locale.toString(value.toLongLong());
    const double number = value.toDouble();
    const int decimals = cell == ECell::Price ? priceDecimals(number) : kMoneyDecimals;
    return locale.toString(number, 'f', decimals);
}

} // namespace

int columnOf(const CTableSpec& spec, const char* id) {
    for (std::size_t i = 0; i < spec.m_columns.size(); ++i) {
        if (std::strcmp(spec.m_columns[i].m_pszId, id) == 0) return static_cast<int>(i);
    }
    return -1;
}

QString cellText(ECell cell, const QVariant& value) {
    if (!value.isValid()) return {};
    static const QLocale kGrouped(QLocale::English, QLocale::UnitedStates);
    return cell == ECell::Text ? value.toString() : numberText(cell, value, kGrouped);
}

QString plainCellText(ECell cell, const QVariant& value) {
    if (!value.isValid()) return {};
    return cell == ECell::Text ? value.toString() : numberText(cell, value, QLocale::c());
}

} // namespace desk
