#pragma once

#include "orderservice/base/Export.h"
#include "orderservice/widgets/BaseNormalTable.h"

#include <QString>

#include <functional>
#include <set>

namespace TC {

/// The table of order records. Which texts a filter offers and what it does is decided by the owner's two
/// call-backs. Main thread.
class ORDERSERVICE_EXPORT COrderParamTable : public UW::CBaseNormalTable {
    Q_OBJECT
public:
    /// Returns all different texts of a column.
    using CTextsOf = std::function<std::set<QString>(int column)>;
    /// Shows only the rows whose text in the column is in the set. An empty set shows all.
    using CApplyFilter = std::function<void(int column, const std::set<QString>& texts)>;

    /// id: names the table, such as for its saved layout.
    COrderParamTable(const QString& id, const CTextsOf& textsOf, const CApplyFilter& applyFilter,
                     QWidget* parent = nullptr);

    QString id() const { return m_strId; }

    /// Opens the menu that lets the user choose the texts of a column. `below`: in global coordinates.
    void showFilterMenu(int column, const QPoint& below) override;
    /// Applies a choice of the menu.
    virtual void filterColumn(int column, const std::set<QString>& texts);

private:
    const QString m_strId;
    const CTextsOf m_textsOf;
    const CApplyFilter m_applyFilter;
};

} // namespace TC
