#include "desk/window/StateBar.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

namespace desk {
namespace {

constexpr int kLargePercent = 150;

QString badgeStyle(const QColor& background) {
    return QStringLiteral("background:%1;color:white;padding:2px 10px;border-radius:3px;font-weight:bold;")
        .arg(background.name());
}

QFont largeFont(const QFont& font) {
    QFont large = font;
    large.setPointSizeF(font.pointSizeF() * kLargePercent / 100);
    large.setBold(true);
    return large;
}

} // namespace

EDeskState stateOf(const CDeskStatus& status) {
    if (!status.m_strJournalFailure.empty()) return EDeskState::JournalBroken;
    if (status.m_bHalting) return EDeskState::Halting;
    if (status.m_bHalted) return EDeskState::Halted;
    return status.m_bConfirmationPause || status.m_bConfirmationOpen ? EDeskState::Paused
                                                                     : EDeskState::Active;
}

QString stateWord(EDeskState state) {
    switch (state) {
    case EDeskState::Starting:
        return CStateBar::tr("… STARTING");
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

CStateBar::CStateBar(QWidget* parent)
    : QWidget(parent), m_word(new QLabel(this)), m_facts(new QLabel(this)), m_halt(new QPushButton(this)),
      m_pauseBar(new QWidget(this)), m_resumePause(new QPushButton(tr("Resume the intake"), m_pauseBar)),
      m_noticeBar(new QWidget(this)), m_notice(new QLabel(m_noticeBar)) {
    m_word->setFont(largeFont(font()));
    m_facts->setTextInteractionFlags(Qt::TextSelectableByMouse);
    m_halt->setFont(largeFont(font()));
    m_halt->setFocusPolicy(Qt::NoFocus); // Enter and Space must not halt by accident
    m_notice->setWordWrap(true);
    m_notice->setTextInteractionFlags(Qt::TextSelectableByMouse);

    auto* line = new QHBoxLayout;
    line->addWidget(m_word);
    line->addSpacing(12);
    line->addWidget(m_facts, 1);
    line->addWidget(m_halt);
    auto* pause = new QHBoxLayout(m_pauseBar);
    pause->setContentsMargins(6, 2, 6, 2);
    auto* why =
        new QLabel(tr("A confirmation was closed without an answer. The order files wait until you resume."),
                   m_pauseBar);
    pause->addWidget(why, 1);
    pause->addWidget(m_resumePause);
    auto* notice = new QHBoxLayout(m_noticeBar);
    notice->setContentsMargins(6, 2, 6, 2);
    auto* close = new QPushButton(tr("Close"), m_noticeBar);
    notice->addWidget(m_notice, 1);
    notice->addWidget(close);
    auto* all = new QVBoxLayout(this);
    all->setContentsMargins(6, 4, 6, 2);
    all->setSpacing(2);
    all->addLayout(line);
    all->addWidget(m_pauseBar);
    all->addWidget(m_noticeBar);
    m_pauseBar->hide();
    m_noticeBar->hide();
    for (QWidget* bar : {m_pauseBar, m_noticeBar})
        bar->setObjectName(QStringLiteral("bar"));

    connect(m_halt, &QPushButton::clicked, this, &CStateBar::sigHalt);
    connect(m_resumePause, &QPushButton::clicked, this, &CStateBar::sigEndPause);
    connect(close, &QPushButton::clicked, this, [this] { setNotice({}); });
    showState(m_eState);
}

void CStateBar::showState(EDeskState state) {
    m_eState = state;
    m_word->setText(stateWord(state));
    m_word->setStyleSheet(badgeStyle(CTheme::stateColour(state)));
    const bool isHalted = state == EDeskState::Halted || state == EDeskState::Halting;
    m_halt->setText(isHalted ? tr("RESUME") : tr("HALT"));
    m_halt->setEnabled(state != EDeskState::Starting && state != EDeskState::Ending &&
                       state != EDeskState::Halting);
    m_halt->setStyleSheet(badgeStyle(isHalted ? QColor(0x0b, 0x5f, 0xa5) : CTheme::current().danger()));
    m_halt->setToolTip(
        isHalted ? tr("Takes orders again (Ctrl+H)")
                 : tr("Stops the intake, declines commands and cancels all waiting orders (Ctrl+H)"));
}

void CStateBar::showStatus(const CDeskStatus& status, const CStateFacts& facts) {
    const EDeskState state = stateOf(status);
    if (state != m_eState) showState(state);
    // A broken journal hides a halt; the button must still offer the way back.
    if (state == EDeskState::JournalBroken) m_halt->setText(status.m_bHalted ? tr("RESUME") : tr("HALT"));
    QStringList texts{tr("%1 of %2 strategies run").arg(facts.m_nRunning).arg(facts.m_nStrategies),
                      tr("%n order(s) wait", nullptr, facts.m_nWaiting)};
    if (!facts.m_strLastOrder.isEmpty()) texts.append(tr("last order %1").arg(facts.m_strLastOrder));
    texts.append(status.m_strJournalFailure.empty()
                     ? tr("journal ok")
                     : tr("JOURNAL: %1").arg(QString::fromStdString(status.m_strJournalFailure)));
    const QString text = texts.join(QStringLiteral("   ·   "));
    if (text != m_facts->text()) m_facts->setText(text);
    const bool isUnanswered = status.m_bConfirmationPause && !status.m_bConfirmationOpen;
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

} // namespace desk
