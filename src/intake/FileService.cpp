#include "intake/FileService.h"

#include "base/Clock.h"
#include "base/Text.h"
#include "gates/IntakePause.h"
#include "intake/LineReader.h"
#include "intake/OrderFileParser.h"
#include "intake/OrderFileScan.h"
#include "platform/HostCall.h"
#include "platform/HostReports.h"
#include "platform/IntakeAudit.h"
#include "platform/LuaModuleCtrl.h"
#include "platform/Switches.h"
#include "platform/UserConfig.h"

#include <boost/lexical_cast/bad_lexical_cast.hpp>

#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <exception>
#include <limits>
#include <stdexcept>
#include <utility>

namespace TC {
namespace {

constexpr double kMillisecondsPerSecond = 1000.0;
constexpr double kTimeTolerance = 1e-5; // milliseconds
constexpr double kPausedSleepSeconds = 0.8;
/// Below this interval, in milliseconds, the loop spins on the clock instead of sleeping.
constexpr int kShortestSleep = 11;
constexpr const char* kTmpSuffix = ".tmp";

CIntakeReport makeReport(int channel, const COrderStrategyParam& strategy) {
    CIntakeReport report;
    report.m_eStrategyType = strategy.m_eStrategyType;
    report.m_nChannel = channel;
    report.m_strSource = strategy.m_strSignalSource;
    return report;
}

/// Reads the file to its end. Behind a line that ends it the lines are still counted.
void readLines(CLineReader& reader, COrderFileParser& parser, CIntakeReport& report) {
    std::string line;
    bool goesOn = true;
    while (reader.readLine(line)) {
        if (goesOn) ++report.m_nLines;
        goesOn = parser.takeLine(line) && goesOn;
    }
    if (reader.failed()) throw std::runtime_error("the file cannot be read further");
}

/// What stood before the line goes on, the rest of the file is lost. The user sees nothing; the audit tells.
void cutShort(CIntakeReport& report, const QString& cause) {
    report.m_bCutShort = true;
    report.m_strCause =
        utils::fillText(QStringLiteral("line %1: %2"), {QString::number(report.m_nLines), cause});
}

/// Takes a step of the reading; an exception of it cuts the file short.
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
    if (ignored.m_nCount == 0) return;
    report.m_strFirstIgnored = utils::fillText(QStringLiteral("line %1: %2"),
                                               {QString::number(ignored.m_nFirst), ignored.m_strFirstReason});
}

/// Looks through the whole file before any line of it is carried out, and goes back to its beginning. Gives
/// the reason to refuse it; empty: there is none. `bytes` becomes how many were looked at.
QString whyRefused(std::FILE* stream, long long& bytes) {
    COrderFileScan scan;
    std::array<char, 65536> buffer;
    bytes = 0;
    while (!scan.isOver()) {
        const std::size_t size = std::fread(buffer.data(), 1, buffer.size(), stream);
        if (size == 0) break;
        scan.takeBytes({buffer.data(), size});
        bytes += static_cast<long long>(size);
    }
    if (std::ferror(stream) != 0) return QStringLiteral("it cannot be read");
    std::rewind(stream);
    const CFileVerdict verdict = scan.verdict();
    return verdict.isGood() ? QString() : verdict.toText();
}

std::string rejectedPath() {
    return utils::toPathBytes(rejectedFolder());
}

/// What the name of a kept file has behind its writer's name. A crash between the move and the report hides
/// nothing by that: the name alone tells whether orders of the file may have gone out.
const char* markOf(EKeptFile kind) {
    switch (kind) {
    case EKeptFile::CutShort:
        return ".cut";
    case EKeptFile::LeftOver:
        return kTmpSuffix;
    case EKeptFile::Refused:
        break;
    }
    return "";
}

/// What is reported of a file that is found under its .tmp name.
QString causeOfFound(EKeptFile kind) {
    if (kind == EKeptFile::Refused)
        return QStringLiteral("it was refused before and could not be moved then");
    if (kind == EKeptFile::CutShort)
        return QStringLiteral("a part of it was carried out before, and it could not be moved then");
    return QStringLiteral(
        "an earlier run left it there, and its orders may have gone out already: see the journal");
}

} // namespace

CFileService::CFileService(IOrderGate& gate, IStrategyRegistry& registry)
    : m_gate(gate), m_registry(registry), m_port(gate) {}

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
                // The strategies behind the one that failed have their turn in the next pass.
                reportOnce(QStringLiteral("文件单轮询中断"));
            }
        }
        if (interval >= kShortestSleep) utils::sleepUnlessStopped(interval / kMillisecondsPerSecond, m_stop);
    }
}

/// The interval that the host gives, or a calm one while it cannot.
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

/// In a catch block. A pass that fails fails again at every look: the same words are shown once, until a
/// pass succeeds.
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
    if (!strategy.isRunning() || !strategy.comesFromFile()) return;
    if (!isOrderFileThere(channel, strategy)) return;
    // Asked while the file still waits: an exception of the host leaves it there.
    const bool isGuarded = luawrapper::isOrderSwitchOn(kFileGuardSwitch);
    const std::unique_ptr<CTakenFile> file = takeOrderFile(channel, strategy, isGuarded);
    if (!file) return;

    CIntakeReport report = makeReport(channel, strategy);
    long long bytes = std::numeric_limits<long long>::max();
    if (isGuarded) {
        const QString cause = whyRefused(file->stream(), bytes);
        if (!cause.isEmpty()) return refuse(*file, cause, report);
    }
    QVector<COrderParam> orders = readOrders(*file, bytes, channel, strategy, report);
    if (isGuarded && file->size() > bytes) cutAndKeep(*file, report);
    // The file is deleted behind the gate: what the gate has not taken still lies under the .tmp name after a
    // crash. It is not read again there, so a crash between the two does not place the orders twice.
    tellAudit(report);
    m_gate.placeOrders(std::move(orders));
}

void CFileService::refuse(CTakenFile& file, const QString& cause, CIntakeReport& report) {
    report.m_bRejected = true;
    report.m_strCause = cause;
    noteKept(file.keep(markOf(EKeptFile::Refused), rejectedPath()), EKeptFile::Refused, report);
    tellAudit(report);
}

void CFileService::cutAndKeep(CTakenFile& file, CIntakeReport& report) {
    cutShort(report, QStringLiteral("its writer went on writing while it was read"));
    noteKept(file.keep(markOf(EKeptFile::CutShort), rejectedPath()), EKeptFile::CutShort, report);
}

void CFileService::noteKept(const CPutAside& kept, EKeptFile kind, CIntakeReport& report) {
    report.m_strKeptAs = QString::fromStdString(kept.m_strPath);
    if (!kept.m_strTrouble.empty())
        report.m_strCause += QStringLiteral("; ") + QString::fromLocal8Bit(kept.m_strTrouble.c_str());
    if (!kept.m_bMoved) m_unmoved[kept.m_strPath] = kind;
}

QVector<COrderParam> CFileService::readOrders(CTakenFile& file, long long bytes, int channel,
                                              const COrderStrategyParam& strategy, CIntakeReport& report) {
    COrderFileParser parser(strategy, channel, m_port);
    QVector<COrderParam> orders;
    takeStep(report, [&] {
        CLineReader reader(file.stream(), bytes);
        parser.expectBytes(file.size());
        readLines(reader, parser, report);
    });
    takeStep(report, [&] { orders = parser.takeOrders(); });
    report.m_nOrders = orders.size();
    report.m_nUnreadTradeParams = parser.unreadTradeParams();
    noteIgnored(parser.ignoredLines(), report);
    return orders;
}

/// Says what keeps a file waiting at the first look only.
void CFileService::tellLeftWaiting(int channel, const COrderStrategyParam& strategy,
                                   const std::string& cause) {
    if (!m_leftWaiting.insert(strategy.m_strSignalSource).second) return;
    CIntakeReport report = makeReport(channel, strategy);
    report.m_bLeftWaiting = true;
    report.m_strCause = QString::fromLocal8Bit(cause.c_str());
    tellAudit(report);
}

/// Whether a regular file waits that can be read. Anything else at its path must neither be taken away nor
/// block the loop.
bool CFileService::isOrderFileThere(int channel, const COrderStrategyParam& strategy) {
    if (strategy.m_strSignalSource.isEmpty()) return false;
    // Enciphered files and tables are not read yet; the registry refuses to start such strategies.
    const CUserConfig* user = getUserConfig();
    if (strategy.m_nAccountMode != 0 || user == nullptr ||
        hostCall<&CUserConfig::hasOrderEncryptionService>.on(*user))
        return false;

    const COpenedFile waiting = openRegularFile(utils::toPathBytes(strategy.m_strSignalSource));
    if (waiting.m_stream) return true;
    if (waiting.m_strCause.empty()) {
        m_leftWaiting.erase(strategy.m_strSignalSource);
    } else {
        tellLeftWaiting(channel, strategy, waiting.m_strCause);
    }
    return false;
}

/// Takes the file away from its writer. Null: it waits, or it could not be opened any more and was deleted
/// or, with the guard, kept.
std::unique_ptr<CTakenFile> CFileService::takeOrderFile(int channel, const COrderStrategyParam& strategy,
                                                        bool isGuarded) {
    const std::string source = utils::toPathBytes(strategy.m_strSignalSource);
    const std::string tmpPath = source + kTmpSuffix;
    if (!clearTmpPath(channel, strategy, isGuarded)) return nullptr;
    // A file that cannot be renamed waits: reading it where it lies would place its orders again and again.
    // What lies under the .tmp name is not read in its place: no pass of this process has taken it, and its
    // orders may have gone out before a crash.
    if (::rename(source.c_str(), tmpPath.c_str()) != 0) {
        tellLeftWaiting(channel, strategy, std::string("it cannot be renamed: ") + std::strerror(errno));
        return nullptr;
    }
    m_leftWaiting.erase(strategy.m_strSignalSource);
    COpenedFile taken = openRegularFile(tmpPath);
    auto file = std::make_unique<CTakenFile>(tmpPath, source, std::move(taken.m_stream));
    if (file->stream() != nullptr) return file;

    CIntakeReport report = makeReport(channel, strategy);
    const QString cause = QString::fromLocal8Bit(taken.m_strCause.c_str());
    if (isGuarded) {
        refuse(*file, cause, report);
    } else {
        report.m_bRejected = true;
        report.m_strCause = cause;
        tellAudit(report);
    }
    return nullptr;
}

/// Makes the .tmp name free of a file that was left there. With the guard the file is kept, and the next one
/// waits if that fails.
bool CFileService::clearTmpPath(int channel, const COrderStrategyParam& strategy, bool isGuarded) {
    const std::string source = utils::toPathBytes(strategy.m_strSignalSource);
    const std::string tmpPath = source + kTmpSuffix;
    struct stat status {};
    // A folder there makes the rename fail, which says so.
    if (!isGuarded || ::lstat(tmpPath.c_str(), &status) != 0 || S_ISDIR(status.st_mode)) {
        if (!isGuarded) ::unlink(tmpPath.c_str());
        m_unmoved.erase(tmpPath);
        return true;
    }
    const auto unmoved = m_unmoved.find(tmpPath);
    const EKeptFile kind = unmoved != m_unmoved.end() ? unmoved->second : EKeptFile::LeftOver;
    const CPutAside kept = putAside(tmpPath, source + markOf(kind), rejectedPath());
    if (!kept.m_bMoved) {
        tellLeftWaiting(channel, strategy, "a file is left under its .tmp name, and " + kept.m_strTrouble);
        return false;
    }
    m_unmoved.erase(tmpPath);
    CIntakeReport report = makeReport(channel, strategy);
    report.m_strSource += QLatin1String(kTmpSuffix);
    report.m_bRejected = kind == EKeptFile::Refused;
    report.m_bLeftOver = !report.m_bRejected;
    report.m_strCause = causeOfFound(kind);
    noteKept(kept, kind, report);
    tellAudit(report);
    return true;
}

} // namespace TC
