#include "desk/window/WindowProgram.h"

#include "desk/host/Desk.h"
#include "desk/host/TextSink.h"
#include "orderservice/base/Clock.h"

#include <QApplication>
#include <QEventLoop>
#include <QSettings>
#include <QTimer>

#include <thread>
#include <utility>

namespace desk {
namespace {

constexpr int kTickMs = 20;
constexpr int kDeclineMs = 10;
constexpr const char* kClosed = "window closed";

CFeedMessage::EKind kindOf(const EFloodLine* kind) {
    if (kind == nullptr) return CFeedMessage::EKind::Desk;
    switch (*kind) {
    case EFloodLine::Refusal:
        return CFeedMessage::EKind::Refusal;
    case EFloodLine::File:
        return CFeedMessage::EKind::File;
    case EFloodLine::Incident:
        return CFeedMessage::EKind::Incident;
    case EFloodLine::Note:
        return CFeedMessage::EKind::Desk;
    case EFloodLine::Message:
        break;
    }
    return CFeedMessage::EKind::Service;
}

} // namespace

CWindowProgram::CWindowProgram(QString folder, QSettings& settings, std::function<bool()> keepGoing)
    : m_strFolder(std::move(folder)), m_settings(settings), m_keepGoing(std::move(keepGoing)) {}

CWindowProgram::~CWindowProgram() = default;

void CWindowProgram::began(CTextSink& sink) {
    sink.setListener([this](const EFloodLine* kind, ESeverity severity, const std::string& text) {
        // CWindowMsgService has the messages of the order service already.
        if (kind != nullptr && *kind == EFloodLine::Message) return;
        m_feed.addMessage(kindOf(kind), severity == ESeverity::Warning, QString::fromStdString(text));
    });
}

void CWindowProgram::made(CDesk& desk) {
    desk.setOrderListener([this](const CBrokerEvent& event) { m_feed.addEvent(event); });
    desk.journal().setListener([this](const std::string& lines) { m_feed.addJournalLines(lines); });
    const QString group = QStringLiteral("confirmation/");
    desk.setTableLayouts(
        {[this, group](const QString& id) { return m_settings.value(group + id).toString(); },
         [this, group](const QString& id, const QString& layout) {
             m_settings.setValue(group + id, layout);
         }});
}

void CWindowProgram::opened(CDesk& desk, TC::CHost& host) {
    m_control = std::make_unique<CLiveControl>(desk, m_feed);
    m_messages = std::make_unique<CWindowMsgService>(*host.msgService, m_feed, m_control->meter());
    host.msgService = m_messages.get();
    m_orders = std::make_unique<CWindowOrderClient>(*host.orderClient, m_control->meter());
    host.orderClient = m_orders.get();
    m_audit = std::make_unique<CMeteredAudit>(*host.intakeAudit, m_control->meter());
    host.intakeAudit = m_audit.get();
    m_control->feedStart();
    desk.setDialog(&m_dialog);
}

/// The window shows what was there before. So all that trading brings is news.
void CWindowProgram::starting() {
    QApplication::setQuitOnLastWindowClosed(false); // the window is still needed while the desk ends
    m_control->measure();
    m_window = std::make_unique<CMainWindow>(m_strFolder, *m_control, m_feed, m_settings);
    m_dialog.setWindow(m_window.get(), [this] { m_window->halt(); });
    m_window->begin();
    m_window->show();
    if (m_onWindow) m_onWindow(*m_window);
}

std::string CWindowProgram::run(CDesk& desk) {
    QEventLoop loop;
    std::string reason = kClosed;
    QTimer tick;
    const double start = utils::getTime();
    QObject::connect(&tick, &QTimer::timeout, &loop, [&] {
        desk.tick(utils::getTime() - start);
        if (m_keepGoing()) return;
        if (loop.isRunning()) reason = "signal"; // a closed window has ended the loop otherwise
        // A confirmation that is closed here does not pause the intake any more.
        if (m_pause == nullptr) m_pause = std::make_unique<TC::CIntakePause>();
        desk.endQuestions();
        loop.quit(); // it ends after the loops of all questions, which wait inside it
        CMainWindow::declineOpen();
    });
    QObject::connect(m_window.get(), &CMainWindow::sigClosed, &loop, &QEventLoop::quit);
    tick.start(kTickMs);
    loop.exec();
    m_window->saveAll();
    if (m_onClosed && reason == kClosed) m_onClosed();
    return reason;
}

void CWindowProgram::end(CDesk&, const std::function<void()>& shutDown) {
    if (m_window == nullptr) { // the end was requested before the window was made
        m_control.reset();
        return shutDown();
    }
    m_control->setEnding();
    m_window->showEnding();
    QEventLoop loop;
    QTimer ended; // it also runs in the loop of a question that is open, and that nobody may answer
    QObject::connect(&ended, &QTimer::timeout, &loop, [&loop] {
        loop.quit(); // it ends after the loops of all questions, which wait inside it
        CMainWindow::declineOpen();
    });
    ended.setInterval(kDeclineMs);
    std::thread thread([&] {
        shutDown();
        // By its name: the thread sanitizer does not see that Qt hands a function pointer over.
        QMetaObject::invokeMethod(&ended, "start", Qt::QueuedConnection);
    });
    loop.exec();
    thread.join();
    m_pause.reset();
    m_dialog.setWindow(nullptr, {});
    m_window.reset();
    m_feed.end();
    m_control.reset();
}

void CWindowProgram::ended(CDesk&) {
    m_control.reset();
}

} // namespace desk
