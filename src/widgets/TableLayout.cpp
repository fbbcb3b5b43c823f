#include "orderservice/widgets/TableLayout.h"

#include <QHeaderView>
#include <QRegularExpression>
#include <QStringList>

#include <set>
#include <utility>
#include <vector>

namespace UW {
namespace {

constexpr int kLeastWidth = 20;
constexpr int kMostWidth = 2000;

/// The columns of the text with their widths, or nothing if the text is damaged.
std::vector<std::pair<int, int>> readLayout(const QString& layout, int columns) {
    static const QRegularExpression kForm(QStringLiteral("^1;\\d{1,3}:\\d{1,5}(,\\d{1,3}:\\d{1,5})*$"));
    std::vector<std::pair<int, int>> read;
    if (!kForm.match(layout).hasMatch()) return read;
    std::set<int> seen;
    for (const QString& part : layout.mid(2).split(QLatin1Char(','))) {
        const int column = part.section(QLatin1Char(':'), 0, 0).toInt();
        const int width = part.section(QLatin1Char(':'), 1).toInt();
        if (!seen.insert(column).second) return {};
        if (column < columns) read.emplace_back(column, qBound(kLeastWidth, width, kMostWidth));
    }
    return read;
}

} // namespace

QString saveLayout(const QHeaderView& header) {
    QStringList parts;
    for (int place = 0; place < header.count(); ++place) {
        const int column = header.logicalIndex(place);
        if (!header.isSectionHidden(column))
            parts.append(QStringLiteral("%1:%2").arg(column).arg(header.sectionSize(column)));
    }
    return parts.isEmpty() ? QString() : QStringLiteral("1;") + parts.join(QLatin1Char(','));
}

void loadLayout(QHeaderView& header, const QString& layout) {
    int place = 0;
    for (const auto& [column, width] : readLayout(layout, header.count())) {
        header.moveSection(header.visualIndex(column), place++);
        if (!header.isSectionHidden(column)) header.resizeSection(column, width);
    }
}

} // namespace UW
