#pragma once

#include "desk/window/DeskControl.h"
#include "desk/window/Theme.h"

#include <QString>
#include <QWidget>

class QLabel;
class QPushButton;

namespace desk {

/// The state of the desk from what it reports. A broken journal is the most urgent one, then a halt.
EDeskState stateOf(const CDeskStatus& status);
/// The state as a word with a sign, such as "● ACTIVE".
QString stateWord(EDeskState state);
/// All that is urgent, as words: a broken journal does not hide a halt or a pause.
QString deskStateText(const CDeskStatus& status);
/// The style of a word or a button with white text on this colour, and the tool tip of a button that halts.
QString badgeStyle(const QColor& background);
QString haltTip();

/// What the bar shows besides the state.
struct CStateFacts {
    int m_nRunning = 0;
    int m_nStrategies = 0;
    int m_nWaiting = 0;  ///< orders
    int m_nBehind = 0;   ///< entries that the tables do not show yet
    int m_nBooksAge = 0; ///< seconds since money, positions and quotes were read
};

/// The line at the top of the window: the state in large letters, the numbers, and the button that halts.
/// Below it are the troubles and a notice, if there are any. Main thread.
class CStateBar : public QWidget {
    Q_OBJECT
public:
    explicit CStateBar(QWidget* parent = nullptr);

    void showStatus(const CDeskStatus& status, const CStateFacts& facts);
    /// A notice with a close button; an empty text closes it.
    void setNotice(const QString& text);
    EDeskState state() const { return m_eState; }
    QPushButton& haltButton() const { return *m_halt; }
    QPushButton& pauseButton() const { return *m_resumePause; }
    QWidget& pauseBar() const { return *m_pauseBar; }
    QString noticeText() const;
    QString factsText() const;
    QString wordText() const;
    /// What is wrong, in whole sentences. Empty if nothing is.
    QString troubleText() const;

signals:
    void sigHalt(); ///< halt; resume if the desk is halted; discard the queue if the desk ends
    void sigEndPause();

private:
    void makeBars();
    void showState(const CDeskStatus& status);
    void showButton(const CDeskStatus& status);
    void showFacts(const CDeskStatus& status, const CStateFacts& facts);
    void showTroubles(const CDeskStatus& status, const CStateFacts& facts);

    EDeskState m_eState = EDeskState::Active;
    QLabel* m_word;
    QLabel* m_facts;
    QPushButton* m_halt;
    QWidget* m_troubleBar;
    QLabel* m_trouble;
    QWidget* m_pauseBar;
    QPushButton* m_resumePause;
    QWidget* m_noticeBar;
    QLabel* m_notice;
};

} // namespace desk
