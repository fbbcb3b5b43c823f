#pragma once

#include "desk/commands/RunDesk.h"
#include "desk/window/ConfirmDialog.h"
#include "desk/window/Feed.h"
#include "desk/window/LiveControl.h"
#include "desk/window/MainWindow.h"
#include "desk/window/MeteredAudit.h"
#include "orderservice/gates/IntakePause.h"

#include <QString>

#include <functional>
#include <memory>
#include <string>

class QSettings;

namespace desk {

/// Runs a desk with a window. Main thread, with a QApplication.
class CWindowProgram : public IDeskProgram {
public:
    /// `keepGoing`: the run ends when it returns false. `settings` has the layout and must outlive the
    /// program.
    CWindowProgram(QString folder, QSettings& settings, std::function<bool()> keepGoing);
    ~CWindowProgram() override;

    /// Is called with the window before trading starts, for tests.
    void setOnWindow(std::function<void(CMainWindow&)> onWindow) { m_onWindow = std::move(onWindow); }
    /// Is called on the main thread when the user has closed the window, before the accepted orders are
    /// finished.
    void setOnClosed(std::function<void()> onClosed) { m_onClosed = std::move(onClosed); }

    void began(CTextSink& sink) override;
    void made(CDesk& desk) override;
    void opened(CDesk& desk, TC::CHost& host) override;
    void starting() override;
    std::string run(CDesk& desk) override;
    /// Shows the window until the accepted orders are finished. Then open questions are declined.
    void end(CDesk& desk, const std::function<void()>& shutDown) override;
    void ended(CDesk& desk) override;

private:
    const QString m_strFolder;
    QSettings& m_settings;
    const std::function<bool()> m_keepGoing;
    std::function<void(CMainWindow&)> m_onWindow;
    std::function<void()> m_onClosed;
    CWindowFeed m_feed;
    CConfirmDialog m_dialog; ///< the desk uses it until its end
    std::unique_ptr<CWindowMsgService> m_messages;
    std::unique_ptr<CLiveControl> m_control;
    std::unique_ptr<CWindowOrderClient> m_orders;
    std::unique_ptr<CMeteredAudit> m_audit;
    std::unique_ptr<CMainWindow> m_window;
    std::unique_ptr<TC::CIntakePause> m_pause; ///< after a signal, until no order file is read any more
};

} // namespace desk
