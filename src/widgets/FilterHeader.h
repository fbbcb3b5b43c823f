#pragma once

#include <QHeaderView>
#include <QPoint>
#include <QSize>

#include <functional>

namespace UW {

/// What the header shows beside the text of a column.
enum class EFilterSign { None, Off, On };

/// A header with a filter button in its sections. A click beside the button sorts. Main thread.
class CFilterHeader : public QHeaderView {
    Q_OBJECT
public:
    using CSignOf = std::function<EFilterSign(int column)>;

    CFilterHeader(CSignOf signOf, QWidget* parent);

signals:
    /// The filter button of a column was clicked. The point is below the section, in global coordinates.
    void sigFilterClicked(int column, QPoint below);

protected:
    void paintSection(QPainter* painter, const QRect& rect, int section) const override;
    QSize sectionSizeFromContents(int section) const override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;

private:
    /// The column whose filter button is at this point, or -1.
    int filterAt(const QPoint& point) const;
    /// The button is at the side that the text of the section leaves free.
    bool isSignLeft(int section) const;

    CSignOf m_signOf;
    int m_nPressed = -1;
};

} // namespace UW
