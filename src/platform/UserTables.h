#pragma once

#include "orderservice/base/Export.h"

#include <QString>

namespace TC {

class CUserConfig;

/// The product that an account belongs to. A text is empty if it is not configured.
struct CAccountProduct {
    QString m_strName;        ///< name of the product
    QString m_strAccountName; ///< name of the account in the product
};

/// What the tables of the confirmation show and keep for the logged-in user. A part of CUserConfig. Main
/// thread, while a confirmation is open or closes. The operations return at once and do not throw. A host
/// without the confirmation need not override anything.
class ORDERSERVICE_EXPORT CUserTables {
public:
    using CService = CUserConfig; ///< reports show these operations under its name

    /// The product of the account with this key. By default no account has a product.
    virtual CAccountProduct getAccountProduct(const QString&) const { return {}; }

    /// The layout that saveTableLayout kept for the table with this id, or an empty text. By default no
    /// layout is kept.
    virtual QString getTableLayout(const QString&) const { return {}; }
    /// Keeps the layout of a table: the order and the widths of its columns as one line of ASCII text. `id`
    /// names the table, such as "orders_confirm".
    virtual void saveTableLayout(const QString& /*id*/, const QString& /*layout*/) {}

protected:
    virtual ~CUserTables() = default;
};

} // namespace TC
