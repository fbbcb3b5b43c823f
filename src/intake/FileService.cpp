#include "orderservice/intake/FileService.h"

#include "orderservice/base/Clock.h"
#include "orderservice/base/Text.h"
#include "orderservice/gates/IntakePause.h"
#include "orderservice/intake/OrderFileParser.h"
#include "orderservice/intake/OrderFileSource.h"
#include "orderservice/platform/HostCall.h"
#include "orderservice/platform/HostReports.h"
#include "orderservice/platform/UserConfig.h"

#include <boost/lexical_cast/bad_lexical_cast.hpp>

#include <exception>
#include <utility>

namespace TC {
namespace {

constexpr double kMillisecondsPerSecond = 1000.0;
constexpr double kTimeTolerance = 1e-5; // milliseconds
constexpr double kPausedSleepSeconds = 0.8;
/// Below this interval, in milliseconds, the loop spins on the clock instead of sleeping.
constexpr int kShortestSleep = 11;

/// Reads the batch to its end. The parser also gets the lines after the one that ends the batch, because it
/// counts the lines without effect.
void readLines(ILineSource& source, COrderFileParser& parser, CIntakeReport& report) {
    std::string line;
    int rowPosition = 0;
    bool goesOn = true;
    while (source.readLine(line, rowPosition)) {
        if (goesOn) ++report.m_nLines;
        goesOn = parser.takeLine(line, rowPosition) && goesOn;
    }
}

/// Runs one step of the reading. An exception cuts the batch short.
template<typename Step>
void takeStep(CIntakeReport& report, const Step& step) {
    try {
        step();
    } catch (const CHostError& error) {
        cutShort(report, QString::fromUtf8(error.what()));
        reportFailure(utils::fillText(QStringLiteral("通道号: %1, 文件单 %2 未读完"),
                                      {QString::number(report.m_nChannel), report.m_strSource}));
    } catch (const boost::bad_lexical_cast&) {
        cutShort(report, QStringLiteral("a number cannot be read"));
    } catch (const std::exception& error) {
        cutShort(report, QString::fromUtf8(error.what()));
    } catch (...) {
        cutShort(report, QStringLiteral("unknown error"));
    }
}

void noteIgnored(const CIgnoredLines& ignored, CIntakeReport& report) {
    report.m_nIgnoredLines = ignored.m_nCount;
    report.m_ignoredReasons = ignored.m_reasons;
    if (ignored.m_nCount == 0) return;
    report.m_strFirstIgnored = utils::fillText(QStringLiteral("line %1: %2"),
                                               {QString::number(ignored.m_nFirst), ignored.m_strFirstReason});
}

std::vector<std::unique_ptr<ILineSourceKind>> fileKinds() {
    std::vector<std::unique_ptr<ILineSourceKind>> kinds;
    kinds.push_back(std::make_unique<COrderFileSourceKind>());
    return kinds;
}

} // namespace

CFileService::CFileService(IOrderGate& gate, IStrategyRegistry& registry)
    : CFileService(gate, registry, fileKinds()) {}

CFileService::CFileService(IOrderGate& gate, IStrategyRegistry& registry,
                           std::vector<std::unique_ptr<ILineSourceKind>> kinds)
    : m_gate(gate), m_registry(registry), m_kinds(std::move(kinds)), m_port(gate) {}

void CFileService::startFileServer() {
    double last = utils::getTime() * kMillisecondsPerSecond;
    while (!m_stop.isMade()) {
        const int interval = readInterval();
        const double now = utils::getTime() * kMillisecondsPerSecond;
        if (now - (interval + last) > kTimeTolerance) {
            last = now;
            try {
                tryOrder();
                m_strLastFailure.clear();
            } catch (...) {
                // The strategies after the failed one are served in the next pass.
                reportOnce(QStringLiteral("文件单轮询中断"));
            }
        }
        if (interval >= kShortestSleep) utils::sleepUnlessStopped(interval / kMillisecondsPerSecond, m_stop);
    }
}

/// Returns the host's polling interval in milliseconds, or one second if the host call fails.
int CFileService::readInterval() {
    constexpr int kWhileUnknown = 1000;
    try {
        const CUserConfig* user = getUserConfig();
        const int interval =
            user != nullptr ? hostCall<&CUserConfig::getMinFileServiceInterval>.on(*user) : kShortestSleep;
        m_bIntervalFailed = false;
        return interval;
    } catch (...) {
        if (!std::exchange(m_bIntervalFailed, true)) reportFailure(QStringLiteral("文件单轮询间隔未知"));
        return kWhileUnknown;
    }
}

/// Must be called in a catch block. A failed pass usually fails again each time. So the same text is shown
/// only once until a pass succeeds.
void CFileService::reportOnce(const QString& text) {
    const QString failure = text + exceptionText();
    if (std::exchange(m_strLastFailure, failure) != failure) reportFailure(text);
}

void CFileService::stop() {
    m_stop.make();
}

void CFileService::tryOrder() {
    if (CIntakePause::isPaused()) {
        utils::sleepUnlessStopped(kPausedSleepSeconds, m_stop);
        return;
    }
    m_registry.visitStrategies([this](int channel, const COrderStrategyParam& strategy) {
        orderStrategyParamPair(channel, strategy);
    });
}

void CFileService::orderStrategyParamPair(int channel, const COrderStrategyParam& strategy) {
    if (!strategy.isRunning()) return;
    for (const std::unique_ptr<ILineSourceKind>& kind : m_kinds) {
        if (!kind->serves(strategy)) continue;
        if (const auto source = kind->take(channel, strategy)) placeBatch(*source, channel, strategy);
        return;
    }
}

/// The source is destroyed after the gate has the orders, so a batch that the gate has not taken is still
/// there after a crash. A left batch is not read again, so a crash in between does not place its orders
/// twice.
void CFileService::placeBatch(ILineSource& source, int channel, const COrderStrategyParam& strategy) {
    CIntakeReport report = makeIntakeReport(channel, strategy);
    QVector<COrderParam> orders = readOrders(source, channel, strategy, report);
    source.finish(report);
    reportToAudit(report);
    m_gate.placeOrders(std::move(orders));
}

QVector<COrderParam> CFileService::readOrders(ILineSource& source, int channel,
                                              const COrderStrategyParam& strategy, CIntakeReport& report) {
    COrderFileParser parser(strategy, channel, m_port);
    QVector<COrderParam> orders;
    takeStep(report, [&] {
        parser.expectBytes(source.bytes());
        readLines(source, parser, report);
    });
    takeStep(report, [&] { orders = parser.takeOrders(); });
    report.m_nOrders = orders.size();
    report.m_nUnreadTradeParams = parser.unreadTradeParams();
    report.m_nCancels = parser.cancels();
    noteIgnored(parser.ignoredLines(), report);
    return orders;
}

} // namespace TC
