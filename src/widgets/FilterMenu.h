#pragma once

#include <QFrame>
#include <QString>

#include <set>

class QListWidget;
class QLineEdit;

namespace UW {

/// A popup that lets the user choose the texts of one column. The keyboard reaches everything: typing
/// searches, Space switches a text, Enter applies, Escape closes. It deletes itself when it closes. Main
/// thread.
class CFilterMenu : public QFrame {
    Q_OBJECT
public:
    /// chosen: the texts of the present filter, or null if all are shown.
    CFilterMenu(const std::set<QString>& texts, const std::set<QString>* chosen, QWidget* parent);

    QLineEdit* searchLine() const { return m_pSearch; }
    QListWidget* list() const { return m_pList; }

public slots:
    void slotApply();
    void slotClear();

signals:
    /// The texts to show. An empty set means all.
    void sigChosen(std::set<QString> texts);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void fill(const std::set<QString>& texts, const std::set<QString>* chosen);
    void search(const QString& text);
    void checkVisible(bool isChecked);
    /// Without the texts that the search hides: the user sees what he gets.
    std::set<QString> checkedTexts() const;

    QLineEdit* const m_pSearch;
    QListWidget* const m_pList;
};

} // namespace UW
