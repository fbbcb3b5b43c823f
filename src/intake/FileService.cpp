#include "intake/FileService.h"

#include "base/Clock.h"
#include "base/Text.h"
#include "gates/IntakePause.h"
#include "intake/LineReader.h"
#include "intake/OrderFileParser.h"
#include "platform/IntakeAudit.h"
#include "platform/UserConfig.h"

#include <boost/lexical_cast/bad_lexical_cast.hpp>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <exception>
#include <stdexcept>

namespace TC {
namespace {

constexpr double kMillisecondsPerSecond = 1000.0;
constexpr double kTimeTolerance = 1e-5; // milliseconds
constexpr double kPausedSleepSeconds = 0.8;
/// Below this interval, in milliseconds, the loop spins on the clock instead of sleeping.
constexpr int kShortestSleep = 11;
constexpr const char* kTmpSuffix = ".tmp";

/// Opens a regular file for reading, or gives null. Other kinds of file, such as a folder or a pipe at the
/// agreed path, must neither be taken away nor block the loop.
CFileStream openRegularFile(const std::string& path) {
    const int descriptor = ::open(path.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
    if (descriptor < 0) return nullptr;
    struct stat status {};
    if (::fstat(descriptor, &status) != 0 || !S_ISREG(status.st_mode)) {
        ::close(descriptor);
        return nullptr;
    }
    CFileStream stream(::fdopen(descriptor, "r"));
    if (!stream) ::close(descriptor);
    return stream;
}

long long fileSize(std::FILE* stream) {
    struct stat status {};
    return ::fstat(::fileno(stream), &status) == 0 ? status.st_size : 0;
}

void deleteFile(const std::string& path) {
    ::unlink(path.c_str());
}

CIntakeReport makeReport(int channel, const COrderStrategyParam& strategy) {
    CIntakeReport report;
    report.m_eStrategyType = strategy.m_eStrategyType;
    report.m_nChannel = channel;
    report.m_strSource = strategy.m_strSignalSource;
    return report;
}

/// Reads the file to its end or to the line that ends it, and counts.
void readLines(CLineReader& reader, COrderFileParser& parser, CIntakeReport& report) {
    std::string line;
    while (reader.readLine(line)) {
        ++report.m_nLines;
        if (!parser.takeLine(line)) return;
    }
    if (reader.failed()) throw std::runtime_error("the file cannot be read further");
}

/// What stood before the line goes on, the rest of the file is lost. The user sees nothing; the audit tells.
void cutShort(CIntakeReport& report, const QString& cause) {
    report.m_bCutShort = true;
    report.m_strCause =
        utils::fillText(QStringLiteral("line %1: %2"), {QString::number(report.m_nLines), cause});
}

} // namespace

CFileService::CFileService(IOrderGate& gate, IStrategyRegistry& registry)
    : m_gate(gate), m_registry(registry), m_port(gate) {}

void CFileService::startFileServer() {
    double last = utils::getTime() * kMillisecondsPerSecond;
    while (!m_stop.isMade()) {
        const CUserConfig* user = getUserConfig();
        const int interval = user != nullptr ? user->getMinFileServiceInterval() : kShortestSleep;
        const double now = utils::getTime() * kMillisecondsPerSecond;
        if (now - (interval + last) > kTimeTolerance) {
            last = now;
            try {
                tryOrder();
            } catch (...) {
                // The strategies behind the one that failed have their turn in the next pass.
            }
        }
        if (interval >= kShortestSleep) utils::sleepUnlessStopped(interval / kMillisecondsPerSecond, m_stop);
    }
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
    if (!strategy.isRunning() || !strategy.comesFromFile()) return;
    std::string tmpPath;
    CFileStream stream;
    if (!readOrderFile(channel, strategy, tmpPath, stream)) return;

    COrderFileParser parser(strategy, channel, m_port);
    CIntakeReport report = makeReport(channel, strategy);
    CLineReader reader(stream.get());
    try {
        parser.expectBytes(fileSize(stream.get()));
        readLines(reader, parser, report);
    } catch (const boost::bad_lexical_cast&) {
        cutShort(report, QStringLiteral("a number cannot be read"));
    } catch (const std::exception& error) {
        cutShort(report, QString::fromUtf8(error.what()));
    } catch (...) {
        cutShort(report, QStringLiteral("unknown error"));
    }
    stream.reset();
    deleteFile(tmpPath);
    QVector<COrderParam> orders = parser.takeOrders();
    report.m_nOrders = orders.size();
    report.m_nUnreadTradeParams = parser.unreadTradeParams();
    tellAudit(report);
    m_gate.placeOrders(std::move(orders));
}

/// Says what keeps a file waiting at the first look only.
void CFileService::tellLeftWaiting(int channel, const COrderStrategyParam& strategy, const char* cause) {
    if (!m_leftWaiting.insert(utils::toPathBytes(strategy.m_strSignalSource) + kTmpSuffix).second) return;
    CIntakeReport report = makeReport(channel, strategy);
    report.m_bLeftWaiting = true;
    report.m_strCause =
        utils::fillText(QStringLiteral("it cannot be renamed: %1"), {QString::fromLocal8Bit(cause)});
    tellAudit(report);
}

bool CFileService::readOrderFile(int channel, const COrderStrategyParam& strategy, std::string& tmpPath,
                                 CFileStream& stream) {
    if (strategy.m_strSignalSource.isEmpty()) return false;
    // Enciphered files and tables are not read yet; the registry refuses to start such strategies.
    const CUserConfig* user = getUserConfig();
    if (strategy.m_nAccountMode != 0 || user == nullptr || user->hasOrderEncryptionService()) return false;

    const std::string source = utils::toPathBytes(strategy.m_strSignalSource);
    tmpPath = source + kTmpSuffix;
    if (!openRegularFile(source)) return false;
    deleteFile(tmpPath); // one that a pass left behind when it died
    // A file that cannot be taken away waits: reading it where it lies would place its orders again and
    // again.
    if (::rename(source.c_str(), tmpPath.c_str()) != 0) {
        tellLeftWaiting(channel, strategy, std::strerror(errno));
        return false;
    }
    m_leftWaiting.erase(tmpPath);
    stream = openRegularFile(tmpPath);
    if (!stream) deleteFile(tmpPath);
    return stream != nullptr;
}

} // namespace TC
