#include "orderservice/intake/OrderFileSource.h"

#include "orderservice/base/Text.h"
#include "orderservice/intake/LineReader.h"
#include "orderservice/intake/OrderFileScan.h"
#include "orderservice/platform/HostCall.h"
#include "orderservice/platform/LuaModuleCtrl.h"
#include "orderservice/platform/Switches.h"
#include "orderservice/platform/UserConfig.h"

#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <limits>
#include <optional>
#include <stdexcept>
#include <utility>

namespace TC {
namespace {

/// Checks the whole file before any line of it is carried out, and rewinds it. Returns the reason to refuse
/// it; empty: it is good. `bytes` becomes the number of bytes that were checked.
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

/// One file, from the moment when it has its .tmp name.
class COrderFileSource final : public ILineSource {
public:
    /// `kept` must outlive the object.
    COrderFileSource(CKeptFiles& kept, bool isGuarded) : m_kept(kept), m_bGuarded(isGuarded) {}

    /// Opens the renamed file. Returns the reason to refuse it, or nothing if it can be read.
    std::optional<QString> open(const std::string& source) {
        const std::string path = source + kTmpSuffix;
        COpenedFile taken = openRegularFile(path);
        m_file.emplace(path, source, std::move(taken.m_stream));
        if (m_file->stream() == nullptr) return QString::fromLocal8Bit(taken.m_strCause.c_str());
        if (m_bGuarded) {
            const QString cause = whyRefused(m_file->stream(), m_nBytes);
            if (!cause.isEmpty()) return cause;
        }
        m_reader.emplace(m_file->stream(), m_nBytes);
        return std::nullopt;
    }

    /// Without the guard a refused file is not kept: it is deleted with the object, like any other file.
    void refuse(const QString& cause, CIntakeReport& report) {
        report.m_bRejected = true;
        report.m_strCause = cause;
        if (m_bGuarded) m_kept.keep(*m_file, EKeptFile::Refused, report);
    }

    bool readLine(std::string& line, int& rowPosition) override {
        rowPosition = 0;
        if (m_reader->readLine(line)) return true;
        if (m_reader->failed()) throw std::runtime_error("the file cannot be read further");
        return false;
    }

    long long bytes() const override { return m_file->size(); }

    /// With the guard, bytes that were written after its check are not carried out.
    void finish(CIntakeReport& report) override {
        if (!m_bGuarded || m_file->size() <= m_nBytes) return;
        cutShort(report, QStringLiteral("it was still being written while it was read"));
        m_kept.keep(*m_file, EKeptFile::CutShort, report);
    }

private:
    CKeptFiles& m_kept;
    const bool m_bGuarded;
    std::optional<CTakenFile> m_file;
    /// Most bytes that are read. With the guard: the number of bytes that it checked.
    long long m_nBytes = std::numeric_limits<long long>::max();
    std::optional<CLineReader> m_reader;
};

} // namespace

bool COrderFileSourceKind::serves(const COrderStrategyParam& strategy) const {
    // The registry refuses to start strategies of tables.
    return strategy.comesFromFile() && !strategy.m_strSignalSource.isEmpty() && strategy.m_nAccountMode == 0;
}

std::unique_ptr<ILineSource> COrderFileSourceKind::take(int channel, const COrderStrategyParam& strategy) {
    if (!isFileThere(channel, strategy)) return nullptr;
    // The switch is read before the file is taken. So if the host throws, the file stays where it is.
    const bool isGuarded = luawrapper::isOrderSwitchOn(kFileGuardSwitch);
    if (!clearTmpPath(channel, strategy, isGuarded)) return nullptr;
    const std::string source = utils::toPathBytes(strategy.m_strSignalSource);
    // Created before the file is taken. So if memory runs out, the file stays where it is.
    auto file = std::make_unique<COrderFileSource>(m_kept, isGuarded);
    // A file that cannot be renamed is not read: reading it in place would place its orders again and again.
    // A file that is already under the .tmp name is not read either: no pass of this process took it, and its
    // orders may have been placed before a crash.
    if (::rename(source.c_str(), (source + kTmpSuffix).c_str()) != 0) {
        reportLeftWaiting(channel, strategy, std::string("it cannot be renamed: ") + std::strerror(errno));
        return nullptr;
    }
    m_leftWaiting.erase(strategy.m_strSignalSource);
    const std::optional<QString> refusal = file->open(source);
    if (!refusal) return file;

    CIntakeReport report = makeIntakeReport(channel, strategy);
    file->refuse(*refusal, report);
    reportToAudit(report);
    return nullptr;
}

/// Whether there is a regular file that can be read. Anything else at the path must not be taken away and
/// must not block the loop.
bool COrderFileSourceKind::isFileThere(int channel, const COrderStrategyParam& strategy) {
    // Encrypted files are not read yet; the registry refuses to start such strategies.
    const CUserConfig* user = getUserConfig();
    if (user == nullptr || hostCall<&CUserConfig::hasOrderEncryptionService>.on(*user)) return false;

    const COpenedFile waiting = openRegularFile(utils::toPathBytes(strategy.m_strSignalSource));
    if (waiting.m_stream) return true;
    if (waiting.m_strCause.empty()) {
        m_leftWaiting.erase(strategy.m_strSignalSource);
    } else {
        reportLeftWaiting(channel, strategy, waiting.m_strCause);
    }
    return false;
}

/// Removes a file that was left under the .tmp name. With the guard the left file is moved aside. If that
/// fails, the next file waits.
bool COrderFileSourceKind::clearTmpPath(int channel, const COrderStrategyParam& strategy, bool isGuarded) {
    const std::string source = utils::toPathBytes(strategy.m_strSignalSource);
    const std::string tmpPath = source + kTmpSuffix;
    struct stat status {};
    // A folder under the .tmp name makes the later rename fail, and that failure is reported.
    if (!isGuarded || ::lstat(tmpPath.c_str(), &status) != 0 || S_ISDIR(status.st_mode)) {
        if (!isGuarded) ::unlink(tmpPath.c_str());
        m_kept.forget(source);
        return true;
    }
    CIntakeReport report = makeIntakeReport(channel, strategy);
    const CPutAside kept = m_kept.moveLeftOver(source, report);
    if (kept.m_bMoved) {
        reportToAudit(report);
    } else {
        reportLeftWaiting(channel, strategy, "a file is left under its .tmp name, and " + kept.m_strTrouble);
    }
    return kept.m_bMoved;
}

/// Reports why a file has to wait, but only the first time.
void COrderFileSourceKind::reportLeftWaiting(int channel, const COrderStrategyParam& strategy,
                                             const std::string& cause) {
    if (!m_leftWaiting.insert(strategy.m_strSignalSource).second) return;
    CIntakeReport report = makeIntakeReport(channel, strategy);
    report.m_bLeftWaiting = true;
    report.m_strCause = QString::fromLocal8Bit(cause.c_str());
    reportToAudit(report);
}

} // namespace TC
