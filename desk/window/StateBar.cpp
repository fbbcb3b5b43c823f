#include "desk/window/StateBar.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

namespace desk {
namespace {

constexpr int kWordPercent = 240; ///< readable from two metres
constexpr int kButtonPercent = 150;
constexpr int kOldSeconds = 2;   ///< they are read twice a second
constexpr int kFarBehind = 1000; ///< entries; fewer of them are shown within a fraction of a second

QFont largeFont(const QFont& font, int percent) {
    QFont large = font;
    large.setPointSizeF(font.pointSizeF() * percent / 100);
    large.setBold(true);
    return large;
}

/// What happens to the accepted orders when the desk ends.
QString endingText(const CDeskStatus& status) {
    if (status.m_nQueue == 0) return CStateBar::tr("The desk ends.");
    if (status.m_bHalting || status.m_bHalted)
        return CStateBar::tr("The desk is halted: it declines the %n order(s) that it has accepted, and then "
                             "ends.",
                             nullptr, status.m_nQueue);
    if (status.m_bConfirms)
        return CStateBar::tr(
            "The desk processes the %n order(s) that it has accepted, and then ends. Those that "
            "need your confirmation are not sent.",
            nullptr, status.m_nQueue);
    return CStateBar::tr("The desk sends the %n order(s) that it has accepted, and then ends.", nullptr,
                         status.m_nQueue);
}

} // namespace

QString badgeStyle(const QColor& background) {
    return QStringLiteral("background:%1;color:white;padding:2px 10px;border-radius:3px;font-weight:bold;")
        .arg(background.name());
}

QString haltTip() {
    return CStateBar::tr("Stops the intake, declines commands and cancels all waiting orders (Ctrl+H)");
}

EDeskState stateOf(const CDeskStatus& status) {
    if (status.m_bEnding) return EDeskState::Ending;
    if (!status.m_strJournalFailure.empty()) return EDeskState::JournalBroken;
    if (status.m_bHalting) return EDeskState::Halting;
    if (status.m_bHalted) return EDeskState::Halted;
    return status.m_bConfirmationPause || status.m_bConfirmationOpen ? EDeskState::Paused
                                                                     : EDeskState::Active;
}

QString stateWord(EDeskState state) {
    switch (state) {
    case EDeskState::Active:
        return CStateBar::tr("● ACTIVE");
    case EDeskState::Halting:
        return CStateBar::tr("■ HALTING");
    case EDeskState::Halted:
        return CStateBar::tr("■ HALTED");
    case EDeskState::Paused:
        return CStateBar::tr("▮▮ PAUSED");
    case EDeskState::JournalBroken:
        return CStateBar::tr("▲ JOURNAL BROKEN");
    case EDeskState::Ending:
        break;
    }
    return CStateBar::tr("… ENDING");
}

QString deskStateText(const CDeskStatus& status) {
    const EDeskState first = stateOf(status);
    CDeskStatus rest = status;
    if (first == EDeskState::Ending)
        rest.m_bEnding = false;
    else if (first == EDeskState::JournalBroken)
        rest.m_strJournalFailure.clear();
    else
        return stateWord(first);
    const EDeskState second = stateOf(rest);
    if (second == EDeskState::Active) return stateWord(first);
    return stateWord(first) + QStringLiteral("  ") + deskStateText(rest);
}

CStateBar::CStateBar(QWidget* parent)
    : QWidget(parent), m_word(new QLabel(this)), m_facts(new QLabel(this)), m_halt(new QPushButton(this)),
      m_troubleBar(new QWidget(this)), m_trouble(new QLabel(m_troubleBar)), m_pauseBar(new QWidget(this)),
      m_resumePause(new QPushButton(tr("Resume the intake"), m_pauseBar)), m_noticeBar(new QWidget(this)),
      m_notice(new QLabel(m_noticeBar)) {
    m_word->setFont(largeFont(font(), kWordPercent));
    m_halt->setFont(largeFont(font(), kButtonPercent));
    m_halt->setFocusPolicy(Qt::NoFocus); // Enter and Space must not halt by accident
    m_facts->setWordWrap(true);
    m_notice->setWordWrap(true);
    m_trouble->setWordWrap(true);
    for (QLabel* label : {m_word, m_facts, m_notice, m_trouble})
        label->setTextFormat(Qt::PlainText); // they show texts of files and of the system
    for (QLabel* label : {m_facts, m_notice, m_trouble})
        label->setTextInteractionFlags(Qt::TextSelectableByMouse);
    auto* line = new QHBoxLayout;
    line->addWidget(m_word);
    line->addSpacing(12);
    line->addWidget(m_facts, 1);
    line->addWidget(m_halt);
    auto* all = new QVBoxLayout(this);
    all->setContentsMargins(6, 4, 6, 2);
    all->setSpacing(2);
    all->addLayout(line);
    makeBars();
    for (QWidget* bar : {m_troubleBar, m_pauseBar, m_noticeBar}) {
        bar->setObjectName(QStringLiteral("bar"));
        all->addWidget(bar);
        bar->hide();
    }
    connect(m_halt, &QPushButton::clicked, this, &CStateBar::sigHalt);
    connect(m_resumePause, &QPushButton::clicked, this, &CStateBar::sigEndPause);
    m_word->setText(stateWord(m_eState));
    m_word->setStyleSheet(badgeStyle(CTheme::stateColour(m_eState)));
    m_halt->setEnabled(false);
}

void CStateBar::makeBars() {
    const auto lineOf = [](QWidget* bar, QWidget* text) {
        auto* line = new QHBoxLayout(bar);
        line->setContentsMargins(6, 2, 6, 2);
        line->addWidget(text, 1);
        return line;
    };
    lineOf(m_troubleBar, m_trouble);
    auto* why =
        new QLabel(tr("A confirmation was closed without an answer. The order files wait until you resume."),
                   m_pauseBar);
    lineOf(m_pauseBar, why)->addWidget(m_resumePause);
    auto* close = new QPushButton(tr("Close"), m_noticeBar);
    lineOf(m_noticeBar, m_notice)->addWidget(close);
    connect(close, &QPushButton::clicked, this, [this] { setNotice({}); });
}

void CStateBar::showState(const CDeskStatus& status) {
    const QString text = deskStateText(status);
    if (text == m_word->text()) return;
    m_eState = stateOf(status);
    m_word->setText(text);
    m_word->setStyleSheet(badgeStyle(CTheme::stateColour(m_eState)));
}

void CStateBar::showButton(const CDeskStatus& status) {
    const bool isHalted = status.m_bHalted || status.m_bHalting;
    QString text = isHalted ? tr("RESUME") : tr("HALT");
    QString tip = isHalted ? tr("Takes orders again (Ctrl+H)") : haltTip();
    if (status.m_bEnding) {
        text = tr("DISCARD");
        tip = tr("Discards the accepted orders that are not processed yet (Ctrl+H)");
    }
    const bool isEnabled = status.m_bEnding || !(status.m_bHalting || status.m_bResuming);
    if (text == m_halt->text() && m_halt->isEnabled() == isEnabled) return;
    m_halt->setText(text);
    m_halt->setToolTip(tip);
    m_halt->setEnabled(isEnabled);
    const bool isResume = isHalted && !status.m_bEnding;
    m_halt->setStyleSheet(badgeStyle(isResume ? QColor(0x0b, 0x5f, 0xa5) : CTheme::current().danger()));
}

void CStateBar::showFacts(const CDeskStatus& status, const CStateFacts& facts) {
    QStringList texts{tr("%1 of %n strategy(s) running", nullptr, facts.m_nStrategies).arg(facts.m_nRunning),
                      tr("queue %1").arg(status.m_nQueue), tr("%n order(s) wait", nullptr, facts.m_nWaiting)};
    if (!status.m_strLastCommand.isEmpty()) {
        QString last = tr("last order %1").arg(status.m_strLastCommand);
        if (status.m_lastMs) last += QStringLiteral(" (%1 ms)").arg(*status.m_lastMs, 0, 'f', 1);
        texts.append(last);
    }
    texts.append(status.m_strJournalFailure.empty() ? tr("journal ok") : tr("journal broken"));
    const QString text = texts.join(QStringLiteral("   ·   "));
    if (text != m_facts->text()) m_facts->setText(text);
}

void CStateBar::showTroubles(const CDeskStatus& status, const CStateFacts& facts) {
    QStringList texts;
    if (status.m_bEnding) texts.append(endingText(status));
    if (status.m_nDelayed > 0)
        texts.append(tr("%n batch(es) wait until you answer the open question.", nullptr, status.m_nDelayed));
    if (!status.m_strHaltProblem.isEmpty()) texts.append(status.m_strHaltProblem);
    if (!status.m_strJournalFailure.empty())
        texts.append(tr("The journal cannot be written: %1. The tables do not show what happened since then.")
                         .arg(QString::fromStdString(status.m_strJournalFailure)));
    if (facts.m_nBehind >= kFarBehind)
        texts.append(tr("The tables are %n entries behind.", nullptr, facts.m_nBehind));
    if (facts.m_nBooksAge > kOldSeconds)
        texts.append(tr("Accounts, positions and quotes are %n seconds old.", nullptr, facts.m_nBooksAge));
    const QString text = texts.join(QLatin1Char('\n'));
    if (text == m_trouble->text()) return;
    m_trouble->setText(text);
    m_troubleBar->setVisible(!text.isEmpty());
}

void CStateBar::showStatus(const CDeskStatus& status, const CStateFacts& facts) {
    showState(status);
    showButton(status);
    showFacts(status, facts);
    showTroubles(status, facts);
    const bool isUnanswered =
        status.m_bConfirmationPause && !status.m_bConfirmationOpen && stateOf(status) == EDeskState::Paused;
    if (m_pauseBar->isHidden() == isUnanswered) m_pauseBar->setVisible(isUnanswered);
}

void CStateBar::setNotice(const QString& text) {
    m_notice->setText(text);
    m_noticeBar->setVisible(!text.isEmpty());
}

QString CStateBar::noticeText() const {
    return m_notice->text();
}

QString CStateBar::factsText() const {
    return m_facts->text();
}

QString CStateBar::wordText() const {
    return m_word->text();
}

QString CStateBar::troubleText() const {
    return m_trouble->text();
}

} // namespace desk
