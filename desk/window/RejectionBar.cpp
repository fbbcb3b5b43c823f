#include "desk/window/RejectionBar.h"

#include "desk/window/Tables.h"
#include "desk/window/Theme.h"

#include <QEvent>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>

#include <algorithm>

namespace desk {
namespace {

/// "10:31:07.214  A1  buy SH600104 150: volume 150 is not a multiple of 100"
QString lineOf(const CRow& row) {
    const CTableSpec& spec = orderTable();
    const auto cell = [&](const char* column) {
        const int place = columnOf(spec, column);
        return cellText(spec.m_columns[static_cast<std::size_t>(place)].m_eCell, row.m_cells.value(place));
    };
    return QStringLiteral("%1  %2  %3 %4 %5: %6")
        .arg(cell("time"), cell("account"), cell("side"), cell("code"), cell("volume"), cell("reason"));
}

} // namespace

CRejectionBar::CRejectionBar(const CRowModel& orders, QWidget* parent)
    : QWidget(parent), m_orders(orders), m_text(new QLabel(this)) {
    m_text->setTextFormat(Qt::PlainText);
    m_text->setTextInteractionFlags(Qt::TextSelectableByMouse);
    m_text->setSizePolicy(QSizePolicy::Ignored,
                          QSizePolicy::Preferred); // a long reason must not widen the panel
    m_text->setWordWrap(true);
    auto* seen = new QPushButton(tr("Seen (F3)"), this);
    seen->setFocusPolicy(Qt::NoFocus);
    auto* line = new QHBoxLayout(this);
    line->setContentsMargins(6, 2, 6, 2);
    line->addWidget(m_text, 1);
    line->addWidget(seen, 0, Qt::AlignTop);
    connect(seen, &QPushButton::clicked, this, &CRejectionBar::sigSeen);
    applyColours();
    hide();
}

void CRejectionBar::showOrders(const std::vector<int>& orders) {
    if (orders == m_shown) return;
    m_shown = orders;
    QStringList lines;
    for (auto order = orders.rbegin(); order != orders.rend() && lines.size() < static_cast<int>(kLines);
         ++order) {
        if (const CRow* row = m_orders.find(QString::number(*order))) lines.append(lineOf(*row));
    }
    const int more = static_cast<int>(orders.size()) - lines.size();
    if (more > 0 && !lines.isEmpty()) lines.append(tr("and %n more", nullptr, more));
    m_text->setText(lines.isEmpty() ? QString()
                                    : tr("REJECTED") + QStringLiteral("  ") + lines.join(QLatin1Char('\n')));
    setVisible(!lines.isEmpty());
}

void CRejectionBar::applyColours() {
    QPalette colours = palette();
    colours.setColor(QPalette::WindowText, CTheme::current().warning());
    m_text->setPalette(colours);
}

void CRejectionBar::changeEvent(QEvent* event) {
    QWidget::changeEvent(event);
    if (event->type() == QEvent::PaletteChange) applyColours();
}

QString CRejectionBar::text() const {
    return m_text->text();
}

} // namespace desk
