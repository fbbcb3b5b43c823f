#pragma once

#include "desk/window/RowModel.h"

#include <QWidget>

#include <vector>

class QLabel;

namespace desk {

/// The lines below the table of orders: the newest rejections that the user has not seen, each with its
/// reason. They stay until the user has seen them. Main thread only.
class CRejectionBar : public QWidget {
    Q_OBJECT
public:
    static constexpr std::size_t kLines = 3;

    /// `orders`: the rows of the orders; must outlive the bar.
    explicit CRejectionBar(const CRowModel& orders, QWidget* parent = nullptr);

    /// Shows these orders, oldest first. Hidden if the list is empty.
    void showOrders(const std::vector<int>& orders);
    QString text() const;

signals:
    void sigSeen(); ///< the user has pressed the button

protected:
    void changeEvent(QEvent* event) override;

private:
    void applyColours();

    const CRowModel& m_orders;
    std::vector<int> m_shown;
    QLabel* m_text;
};

} // namespace desk
