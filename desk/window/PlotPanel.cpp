#include "desk/window/PlotPanel.h"

#include "desk/window/Theme.h"
#include "orderservice/base/Clock.h"

#include <QEvent>
#include <QHBoxLayout>
#include <QLocale>
#include <QPainter>

#include <qwt_date_scale_draw.h>
#include <qwt_date_scale_engine.h>
#include <qwt_legend.h>
#include <qwt_plot.h>
#include <qwt_plot_canvas.h>
#include <qwt_plot_curve.h>
#include <qwt_plot_grid.h>
#include <qwt_plot_histogram.h>
#include <qwt_scale_draw.h>
#include <qwt_symbol.h>
#include <qwt_text_label.h>

#include <array>

namespace desk {
namespace {

constexpr int kDrawMs = 1000;
constexpr int kMaxTicks = 5;
constexpr int kDotSize = 4;
constexpr double kLineWidth = 1.5;

/// Colours of lines. None is red or green: these are the colours of prices.
QColor lineColour(int number) {
    static const std::array<QColor, 6> kLight = {QColor(0x0b, 0x5f, 0xa5), QColor(0xb8, 0x5c, 0x00),
                                                 QColor(0x7a, 0x3d, 0xa8), QColor(0x00, 0x7a, 0x7a),
                                                 QColor(0x7a, 0x5a, 0x2e), QColor(0x55, 0x5b, 0x63)};
    static const std::array<QColor, 6> kDark = {QColor(0x6c, 0xb2, 0xf5), QColor(0xf0, 0xa4, 0x4c),
                                                QColor(0xc3, 0x96, 0xee), QColor(0x5c, 0xcf, 0xcf),
                                                QColor(0xcf, 0xb0, 0x86), QColor(0xaa, 0xb1, 0xba)};
    const auto& colours = CTheme::current().isDark() ? kDark : kLight;
    return colours[static_cast<std::size_t>(number) % colours.size()];
}

/// Times of day; seconds only if the plot is short.
class CTimeScale : public QwtDateScaleDraw {
public:
    CTimeScale() : QwtDateScaleDraw(Qt::LocalTime) {
        for (const auto interval : {QwtDate::Hour, QwtDate::Minute})
            setDateFormat(interval, QStringLiteral("HH:mm"));
        for (const auto interval : {QwtDate::Second, QwtDate::Millisecond})
            setDateFormat(interval, QStringLiteral("HH:mm:ss"));
        setDateFormat(QwtDate::Day, QStringLiteral("MM-dd"));
    }
};

/// Numbers with groups, as in the tables.
class CNumberScale : public QwtScaleDraw {
public:
    QwtText label(double value) const override {
        static const QLocale kGrouped(QLocale::English, QLocale::UnitedStates);
        return kGrouped.toString(value, 'f', QLocale::FloatingPointShortest);
    }
};

} // namespace

CPlotPanel::CPlotPanel(QWidget* parent) : QWidget(parent) {
    auto* line = new QHBoxLayout(this);
    line->setContentsMargins(2, 2, 2, 2);
    m_equity = addPlot(tr("Equity ¥"));
    m_orders = addPlot(tr("Orders a minute"));
    m_commands = addPlot(tr("File or socket to command (ms)"));
    m_equity->insertLegend(new QwtLegend, QwtPlot::BottomLegend);
    for (QwtPlot* plot : {m_orders, m_commands})
        plot->setAxisScaleEngine(QwtPlot::yLeft, [] {
            auto* engine = new QwtLinearScaleEngine;
            engine->setAttribute(QwtScaleEngine::IncludeReference, true); // zero is the reference
            return engine;
        }());
    m_bars = new QwtPlotHistogram;
    m_bars->setStyle(QwtPlotHistogram::Columns);
    m_bars->attach(m_orders);
    m_dots = new QwtPlotCurve;
    m_dots->setStyle(QwtPlotCurve::NoCurve);
    m_dots->attach(m_commands);
    applyColours();
    m_timer.setInterval(kDrawMs);
    connect(&m_timer, &QTimer::timeout, this, &CPlotPanel::draw);
}

CPlotPanel::~CPlotPanel() = default;

QWidget& CPlotPanel::equityPlotWidget() const {
    return *m_equity;
}

QWidget& CPlotPanel::orderPlotWidget() const {
    return *m_orders;
}

QWidget& CPlotPanel::commandPlotWidget() const {
    return *m_commands;
}

QwtPlot* CPlotPanel::addPlot(const QString& title) {
    auto* plot = new QwtPlot(QwtText(title, QwtText::PlainText), this);
    QFont bold = font();
    bold.setBold(true);
    plot->titleLabel()->setFont(bold);
    plot->setAxisScaleDraw(QwtPlot::xBottom, new CTimeScale);
    plot->setAxisScaleEngine(QwtPlot::xBottom, new QwtDateScaleEngine(Qt::LocalTime));
    plot->setAxisScaleDraw(QwtPlot::yLeft, new CNumberScale);
    plot->setAxisMaxMajor(QwtPlot::xBottom, kMaxTicks);
    plot->setAxisMaxMajor(QwtPlot::yLeft, kMaxTicks);
    plot->setAxisFont(QwtPlot::xBottom, font());
    plot->setAxisFont(QwtPlot::yLeft, font());
    plot->setMinimumSize(1, 1); // the plots must not make the other panels smaller
    static_cast<QwtPlotCanvas*>(plot->canvas())->setFrameStyle(QFrame::NoFrame);
    auto* grid = new QwtPlotGrid;
    grid->attach(plot);
    m_grids.append(grid);
    layout()->addWidget(plot);
    plot->hide();
    return plot;
}

void CPlotPanel::applyColours() {
    const CTheme& theme = CTheme::current();
    for (QwtPlot* plot : {m_equity, m_orders, m_commands})
        plot->setCanvasBackground(theme.base());
    for (QwtPlotGrid* grid : m_grids)
        grid->setPen(theme.grid(), 1);
    m_bars->setBrush(lineColour(0));
    m_bars->setPen(QPen(theme.base()));
    m_dots->setSymbol(
        new QwtSymbol(QwtSymbol::Ellipse, lineColour(0), QPen(Qt::NoPen), QSize(kDotSize, kDotSize)));
    int number = 0;
    for (QwtPlotCurve* curve : m_curves)
        curve->setPen(lineColour(number++), kLineWidth);
}

void CPlotPanel::setAccounts(const QMap<QString, QString>& accounts) {
    if (accounts == m_accounts) return;
    m_accounts = accounts;
    for (QwtPlotCurve* curve : m_curves)
        delete curve; // detaches itself
    m_curves.clear();
    for (auto account = accounts.begin(); account != accounts.end(); ++account) {
        auto* curve = new QwtPlotCurve(QwtText(account.value(), QwtText::PlainText));
        curve->setPaintAttribute(QwtPlotCurve::FilterPoints);
        curve->setRenderHint(QwtPlotItem::RenderAntialiased);
        curve->attach(m_equity);
        m_curves[account.key()] = curve;
    }
    applyColours();
    if (isVisible()) draw();
}

void CPlotPanel::drawEquity() {
    bool hasData = false;
    for (auto curve = m_curves.begin(); curve != m_curves.end(); ++curve) {
        const QVector<QPointF> points = m_data.equity(curve.key());
        hasData = hasData || !points.isEmpty();
        curve.value()->setSamples(points);
    }
    if (!hasData) return;
    m_equity->show();
    m_equity->replot();
}

void CPlotPanel::draw() {
    drawEquity();
    const auto now = static_cast<double>(utils::currentDateTime().toMSecsSinceEpoch());
    QVector<QwtIntervalSample> bars;
    for (const QPointF& minute : m_data.ordersAMinute(now))
        bars.append(QwtIntervalSample(minute.y(), minute.x(), minute.x() + CPlotData::kMinuteMs));
    if (!bars.isEmpty()) {
        m_bars->setSamples(bars);
        m_orders->show();
        m_orders->replot();
    }
    if (!m_data.commandTimes().isEmpty()) {
        m_dots->setSamples(m_data.commandTimes());
        m_commands->show();
        m_commands->replot();
    }
    update();
}

void CPlotPanel::showEvent(QShowEvent* event) {
    QWidget::showEvent(event);
    draw();
    m_timer.start();
}

void CPlotPanel::hideEvent(QHideEvent* event) {
    m_timer.stop();
    QWidget::hideEvent(event);
}

void CPlotPanel::changeEvent(QEvent* event) {
    QWidget::changeEvent(event);
    if (event->type() != QEvent::PaletteChange) return;
    applyColours();
    if (isVisible()) draw();
}

void CPlotPanel::paintEvent(QPaintEvent* event) {
    QWidget::paintEvent(event);
    const bool isEmpty = m_equity->isHidden() && m_orders->isHidden() && m_commands->isHidden();
    if (!isEmpty) return;
    QPainter painter(this);
    painter.setPen(palette().color(QPalette::PlaceholderText));
    painter.drawText(rect(), Qt::AlignHCenter | Qt::AlignTop | Qt::TextWordWrap,
                     tr("No data yet. The plots begin with the first accounts and orders."));
}

} // namespace desk
