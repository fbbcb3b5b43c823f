#include "desk/window/Column.h"

#include "orderservice/base/Clock.h"

#include <QLocale>

#include <cmath>
#include <cstring>
#include <string_view>

namespace desk {
namespace {

constexpr int kMoneyDecimals = 2;
constexpr int kPriceDecimals = 3;

/// The finest price step of the markets is one ten-thousandth.
int priceDecimals(double price) {
    const double tenThousandths = std::round(price * 10000);
    return std::fmod(std::fabs(tenThousandths), 10) > 0 ? kPriceDecimals + 1 : kPriceDecimals;
}

int decimalsOf(ECell cell, double number) {
    return cell == ECell::Price ? priceDecimals(number) : kMoneyDecimals;
}

QString numberText(ECell cell, const QVariant& value, const QLocale& locale) {
    if (cell == ECell::Count) return locale.toString(value.toLongLong());
    const double number = value.toDouble();
    const double shown = signOf(cell, value) == 0 ? 0 : number; // never "-0.00"
    return locale.toString(shown, 'f', decimalsOf(cell, number));
}

/// The first characters of "10:31:07.214", or "03-02 10:31" on another day. A text that is not ISO 8601 stays
/// as it is.
QString timeText(const QString& time, int characters) {
    const int begin = time.indexOf(QLatin1Char('T'));
    if (begin < 0) return time;
    const QString today = QString::fromStdString(utils::currentTimeText()).left(begin);
    constexpr int kYear = 5;    // "2026-"
    constexpr int kMinutes = 5; // "10:31"
    if (time.left(begin) == today) return time.mid(begin + 1, characters);
    return time.mid(kYear, begin - kYear) + QLatin1Char(' ') + time.mid(begin + 1, kMinutes);
}

} // namespace

bool isShownWhole(const CColumn& column) {
    const std::string_view id = column.m_pszId;
    return column.m_eCell != ECell::Text || id == "code" || id == "account";
}

int columnOf(const CTableSpec& spec, const char* id) {
    for (std::size_t i = 0; i < spec.m_columns.size(); ++i) {
        if (std::strcmp(spec.m_columns[i].m_pszId, id) == 0) return static_cast<int>(i);
    }
    return -1;
}

QString cellText(ECell cell, const QVariant& value) {
    if (!value.isValid()) return {};
    static const QLocale kGrouped(QLocale::English, QLocale::UnitedStates);
    constexpr int kToSeconds = 8;
    constexpr int kToMillis = 12;
    if (cell == ECell::Time) return timeText(value.toString(), kToMillis);
    if (cell == ECell::Second) return timeText(value.toString(), kToSeconds);
    return cell == ECell::Text ? value.toString() : numberText(cell, value, kGrouped);
}

QString plainCellText(ECell cell, const QVariant& value) {
    if (!value.isValid()) return {};
    if (cell == ECell::Time || cell == ECell::Second)
        return value.toString().replace(QLatin1Char('T'), QLatin1Char(' '));
    return cell == ECell::Text ? value.toString() : numberText(cell, value, QLocale::c());
}

int signOf(ECell cell, const QVariant& value) {
    const double number = value.toDouble();
    const double shown = cell == ECell::Count ? number : number * std::pow(10, decimalsOf(cell, number));
    const double rounded = std::round(shown);
    return rounded > 0 ? 1 : rounded < 0 ? -1 : 0;
}

} // namespace desk
