#include "orderservice/widgets/TableLayout.h"

#include <QHeaderView>
#include <QRegularExpression>
#include <QStringList>

#include <map>
#include <set>
#include <utility>
#include <vector>

namespace UW {
namespace {

constexpr int kLeastWidth = 20;
constexpr int kMostWidth = 2000;

/// The columns of the text with their widths, or nothing if the text is damaged.
std::vector<std::pair<int, int>> readLayout(const QString& layout, const std::map<QString, int>& columns) {
    static const QRegularExpression kForm(
        QStringLiteral("^1;[A-Za-z0-9_]{1,64}:[0-9]{1,5}(,[A-Za-z0-9_]{1,64}:[0-9]{1,5})*$"));
    std::vector<std::pair<int, int>> read;
    if (!kForm.match(layout).hasMatch()) return read;
    std::set<QString> seen;
    for (const QString& part : layout.mid(2).split(QLatin1Char(','))) {
        const QString key = part.section(QLatin1Char(':'), 0, 0);
        const int width = part.section(QLatin1Char(':'), 1).toInt();
        if (!seen.insert(key).second) return {};
        const auto column = columns.find(key);
        if (column != columns.end())
            read.emplace_back(column->second, qBound(kLeastWidth, width, kMostWidth));
    }
    return read;
}

} // namespace

QString saveLayout(const QHeaderView& header, const CColumnKeyOf& keyOf) {
    QStringList parts;
    for (int place = 0; place < header.count(); ++place) {
        const int column = header.logicalIndex(place);
        if (!header.isSectionHidden(column))
            parts.append(QStringLiteral("%1:%2").arg(keyOf(column)).arg(header.sectionSize(column)));
    }
    return parts.isEmpty() ? QString() : QStringLiteral("1;") + parts.join(QLatin1Char(','));
}

void loadLayout(QHeaderView& header, const QString& layout, const CColumnKeyOf& keyOf) {
    std::map<QString, int> columns;
    for (int column = 0; column < header.count(); ++column)
        columns[keyOf(column)] = column;
    int place = 0;
    for (const auto& [column, width] : readLayout(layout, columns)) {
        header.moveSection(header.visualIndex(column), place++);
        if (!header.isSectionHidden(column)) header.resizeSection(column, width);
    }
}

} // namespace UW
