#pragma once

#include "desk/window/PlotData.h"

#include <QMap>
#include <QStringList>
#include <QTimer>
#include <QWidget>

class QwtPlot;
class QwtPlotCurve;
class QwtPlotGrid;
class QwtPlotHistogram;

namespace desk {

/// The plots: equity, orders a minute, and the time from file or socket to command. They are drawn once a
/// second and only while they are visible. A plot appears with its first data. Main thread only.
class CPlotPanel : public QWidget {
    Q_OBJECT
public:
    explicit CPlotPanel(QWidget* parent = nullptr);
    ~CPlotPanel() override;

    CPlotData& data() { return m_data; }
    /// The accounts whose equity is shown: keys of their rows, with the names for the legend.
    void setAccounts(const QMap<QString, QString>& accounts);
    /// Draws all plots from the data. The panel's timer calls it.
    void draw();

    QStringList plottedAccounts() const { return m_accounts.values(); }
    QWidget& equityPlotWidget() const;
    QWidget& orderPlotWidget() const;
    QWidget& commandPlotWidget() const;

protected:
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;
    void changeEvent(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    QwtPlot* addPlot(const QString& title);
    void applyColours();
    void drawEquity();

    CPlotData m_data;
    QMap<QString, QString> m_accounts;
    QwtPlot* m_equity;
    QwtPlot* m_orders;
    QwtPlot* m_commands;
    QMap<QString, QwtPlotCurve*> m_curves; ///< by account; the plot owns them, like all items
    QwtPlotHistogram* m_bars;
    QwtPlotCurve* m_dots;
    QList<QwtPlotGrid*> m_grids;
    QTimer m_timer;
};

} // namespace desk
