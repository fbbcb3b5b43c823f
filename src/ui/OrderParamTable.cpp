#include "orderservice/ui/OrderParamTable.h"

#include "orderservice/widgets/FilterMenu.h"

#include <QGuiApplication>
#include <QScreen>

namespace TC {

COrderParamTable::COrderParamTable(const QString& id, const CTextsOf& textsOf,
                                   const CApplyFilter& applyFilter, QWidget* parent)
    : CBaseNormalTable(parent), m_strId(id), m_textsOf(textsOf), m_applyFilter(applyFilter) {}

void COrderParamTable::showFilterMenu(int column, const QPoint& below) {
    auto* menu = new UW::CFilterMenu(m_textsOf(column), acceptedTexts(column), this);
    connect(menu, &UW::CFilterMenu::sigChosen, this,
            [this, column](const std::set<QString>& texts) { filterColumn(column, texts); });
    menu->adjustSize();
    const QScreen* screen = QGuiApplication::screenAt(below);
    const QRect area = screen != nullptr ? screen->availableGeometry() : QRect(below, menu->size());
    menu->move(qMax(area.left(), qMin(below.x(), area.right() - menu->width())),
               qMax(area.top(), qMin(below.y(), area.bottom() - menu->height())));
    menu->show();
}

void COrderParamTable::filterColumn(int column, const std::set<QString>& texts) {
    m_applyFilter(column, texts);
}

} // namespace TC
