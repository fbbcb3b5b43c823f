#include "desk/commands/RunDesk.h"

#include "desk/commands/BacklogWatch.h"
#include "desk/commands/CheckFolder.h"
#include "desk/config/ConfigLoader.h"
#include "desk/config/DeskToml.h"
#include "desk/host/Desk.h"
#include "desk/host/FileLimit.h"
#include "desk/host/FolderLock.h"
#include "orderservice/base/Clock.h"
#include "orderservice/service/OrderService.h"
#include "orderservice/service/OrderServiceAdapter.h"

#include <QCoreApplication>

#include <atomic>
#include <filesystem>
#include <system_error>

namespace desk {
namespace {

constexpr int kOrderly = 0;
constexpr int kCannotWork = 1;
constexpr int kBadFolder = 2;
constexpr double kTickSeconds = 0.02;

/// Runs the main loop; returns the reason why it ended.
std::string runLoop(CDesk& desk, std::optional<double> exitWhenIdle, const std::function<bool()>& keepGoing) {
    const double start = utils::getTime();
    double lastActive = start;
    std::int64_t seen = desk.activity();
    while (keepGoing()) {
        const double now = utils::getTime();
        desk.tick(now - start);
        QCoreApplication::processEvents();
        if (desk.activity() != seen || desk.hasQuotesToCome()) lastActive = now;
        seen = desk.activity();
        if (exitWhenIdle && now - lastActive >= *exitWhenIdle) return "idle";
        utils::sleep(kTickSeconds);
    }
    return "signal";
}

/// Whether the folder has a desk. In other folders no lock file must be created.
bool hasDesk(const std::string& folder) {
    std::error_code unreadable;
    return std::filesystem::exists(std::filesystem::path(folder) / kDeskFile, unreadable);
}

int refuse(const std::string& folder, const std::vector<CDiagnostic>& mistakes, std::ostream& out) {
    printMistakes(mistakes, out);
    out << folder << ": not started, because of the mistakes above\n" << std::flush;
    return kBadFolder;
}

/// Finishes the accepted orders. After it returns nothing is left to be recorded. False if orders were
/// discarded, or were not sent because nobody could confirm them any more.
bool endTrading(CDesk& desk, CTextSink& sink, IDeskProgram& program,
                const std::function<bool()>& keepWaiting) {
    {
        std::function<bool()> look;
        if (keepWaiting) {
            look = [&] {
                desk.showProgress();
                return keepWaiting();
            };
        }
        std::atomic<bool> isBacklogDone{false};
        const auto phase = [&] {
            if (!isBacklogDone) return EEndPhase::Backlog;
            return desk.isCallRunning() ? EEndPhase::Call : EEndPhase::Done;
        };
        const CBacklogWatch watch(*TC::COrderService::instance(), sink, look, phase);
        desk.endQuestions();
        desk.refuseCalls();
        program.end(desk, [&] {
            TC::COrderService::instance()->shutdown();
            isBacklogDone = true;
            desk.finishCalls();
        });
    }
    // Orders that were checked during shutdown wait for the main thread, which answers and sends them here.
    QCoreApplication::processEvents();
    const std::string unplaced = desk.unplacedText();
    if (!unplaced.empty()) sink.writeLine(unplaced, ESeverity::Warning);
    const int notAsked = desk.notAskedOrders();
    if (notAsked > 0)
        sink.writeLine(counted(notAsked, "order") +
                           " not sent: they needed a confirmation when the desk ended",
                       ESeverity::Warning);
    return unplaced.empty() && notAsked == 0;
}

/// The desk without a window.
class CPlainProgram : public IDeskProgram {
public:
    CPlainProgram(std::optional<double> exitWhenIdle, const std::function<bool()>& keepGoing)
        : m_exitWhenIdle(exitWhenIdle), m_keepGoing(keepGoing) {}

    void began(CTextSink&) override {}
    void made(CDesk&) override {}
    void opened(CDesk&, TC::CHost&) override {}
    void starting() override {}
    std::string run(CDesk& desk) override { return runLoop(desk, m_exitWhenIdle, m_keepGoing); }
    void end(CDesk&, const std::function<void()>& shutDown) override { shutDown(); }
    void ended(CDesk&) override {}

private:
    const std::optional<double> m_exitWhenIdle;
    const std::function<bool()>& m_keepGoing;
};

int trade(CDesk& desk, CTextSink& sink, IDeskProgram& program, const std::function<bool()>& keepGoing,
          const std::function<bool()>& keepWaiting) {
    TC::CHost host = desk.services();
    program.opened(desk, host);
    const utils::KNError installed = TC::installHost(host);
    if (!installed.isSuccess()) {
        sink.writeLine(installed.errorMsg(), ESeverity::Warning);
        program.ended(desk);
        return kCannotWork;
    }
    TC::COrderService::initInstance(new TC::COrderService);
    TC::COrderServiceAdapter::initInstance(new TC::COrderServiceAdapter);
    std::string reason = "signal";
    if (keepGoing()) { // the user may have requested the end while the folder and the books were read
        program.starting();
        desk.startTrading();
        reason = program.run(desk);
    }
    const bool isProcessed = endTrading(desk, sink, program, keepWaiting);
    const utils::KNError saved = desk.saveInterfaces();
    if (!saved.isSuccess())
        sink.writeLine("the interfaces cannot be saved: " + saved.errorMsg(), ESeverity::Warning);
    TC::COrderServiceAdapter::release();
    TC::COrderService::release();
    desk.releaseCalls();
    TC::releaseHost();
    program.ended(desk);
    const utils::KNError closed = desk.close(reason);
    if (!closed.isSuccess())
        sink.writeLine("the journal could not be closed: " + closed.errorMsg(), ESeverity::Warning);
    return isProcessed && saved.isSuccess() && closed.isSuccess() ? kOrderly : kCannotWork;
}

} // namespace

int runDesk(const std::string& folder, std::optional<double> exitWhenIdle, std::ostream& out,
            const std::function<bool()>& keepGoing, const std::function<bool()>& keepWaiting) {
    CPlainProgram program(exitWhenIdle, keepGoing);
    return runDesk(folder, out, program, keepGoing, keepWaiting);
}

int runDesk(const std::string& folder, std::ostream& out, IDeskProgram& program,
            const std::function<bool()>& keepGoing, const std::function<bool()>& keepWaiting) {
    CTextSink sink(out);
    program.began(sink);
    if (!hasDesk(folder)) return refuse(folder, loadDeskConfig(folder).mistakes, out);
    // Another desk that is just ending may still write files of the folder, so the lock is taken before
    // reading.
    CFolderLock lock;
    const utils::KNError locked = lock.acquire(folder);
    if (!locked.isSuccess()) {
        sink.writeLine(locked.errorMsg(), ESeverity::Warning);
        return kBadFolder;
    }
    CLoadedConfig loaded = readDeskFolder(folder);
    if (!loaded.mistakes.empty()) return refuse(folder, loaded.mistakes, out);
    for (const CDiagnostic& warning : loaded.warnings)
        sink.writeLine(warningText(warning), ESeverity::Warning);
    const utils::KNError raised = raiseFileLimit();
    if (!raised.isSuccess()) sink.writeLine(raised.errorMsg(), ESeverity::Warning);
    for (const std::string& problem : prepareOrderFiles(loaded.config))
        sink.writeLine(problem, ESeverity::Warning);
    CDesk desk(folder, std::move(loaded.config), sink);
    program.made(desk);
    const utils::KNError opened = desk.open();
    if (!opened.isSuccess()) {
        program.ended(desk);
        sink.writeLine(opened.errorMsg(), ESeverity::Warning);
        return kCannotWork;
    }
    return trade(desk, sink, program, keepGoing, keepWaiting);
}

} // namespace desk
