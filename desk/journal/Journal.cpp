#include "desk/journal/Journal.h"

#include "desk/journal/JournalTail.h"
#include "desk/journal/RecordCapture.h"
#include <nlohmann/json.hpp>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <utility>

namespace desk {
namespace {

constexpr mode_t kFileMode = 0600; // only the owner may read orders and accounts

std::string systemError() {
    return std::strerror(errno);
}

std::int64_t sizeOf(int descriptor) {
    struct stat status {};
    return ::fstat(descriptor, &status) == 0 ? status.st_size : 0;
}

/// Whether the file ends within a line.
bool endsInHalfLine(int descriptor, std::int64_t size) {
    char last = '\n';
    return size > 0 && ::pread(descriptor, &last, 1, size - 1) == 1 && last != '\n';
}

/// The bytes from `begin` to the end.
std::string bytesFrom(int descriptor, std::int64_t begin) {
    const std::int64_t end = sizeOf(descriptor);
    std::string bytes(static_cast<std::size_t>(std::max<std::int64_t>(end - begin, 0)), '\0');
    std::size_t done = 0;
    while (done < bytes.size()) {
        const ssize_t count = ::pread(descriptor, bytes.data() + done, bytes.size() - done,
                                      begin + static_cast<std::int64_t>(done));
        if (count < 0 && errno == EINTR) continue;
        if (count <= 0) break;
        done += static_cast<std::size_t>(count);
    }
    bytes.resize(done);
    return bytes;
}

} // namespace

CJournal::~CJournal() {
    if (m_nDescriptor >= 0) ::close(m_nDescriptor);
}

utils::KNError CJournal::open(const std::string& folder) {
    const std::lock_guard lock(m_mutex);
    m_strPath = folder + '/' + kJournalFileName;
    int descriptor = -1;
    if (utils::KNError error = openPath(descriptor); !error.isSuccess()) return error;

    CJournalTail tail;
    if (const utils::KNError error = readJournalTail(m_strPath, tail); !error.isSuccess()) {
        ::close(descriptor);
        return {kJournalOpenFailed, error.errorMsg()};
    }
    m_nDescriptor = descriptor;
    m_nLastSeq = tail.m_nLastSeq;
    m_nLastBrokerEvent = tail.m_nLastBrokerEvent;
    m_nLastTask = tail.m_nLastTask;
    m_nLastOrder = tail.m_nLastOrder;
    m_nLastFill = tail.m_nLastFill;
    m_bHalfLine = tail.m_bHalfLine;
    m_bAfterCrash = tail.m_bCutOff;
    m_bElsewhere = false;
    m_nSize = m_nCheckedSize = sizeOf(descriptor);
    m_nCheckedSeq = m_nLastSeq;
    m_strContinued.clear();
    m_strUnwritten.clear();
    setFailure({});
    const CJson fields{{"recovered", tail.m_bHalfLine},
                       {"after_crash", tail.m_bCutOff},
                       {"pid", static_cast<std::int64_t>(::getpid())}};
    const utils::KNError error = writeRecord("started", fields);
    if (error.isSuccess()) return error;
    ::close(m_nDescriptor);
    m_nDescriptor = -1;
    return {kJournalOpenFailed, error.errorMsg()};
}

utils::KNError CJournal::append(const std::string& kind, const CJson& fields, std::int64_t* seq) {
    return append(makeRecord(kind, fields), seq);
}

utils::KNError CJournal::append(const CJournalRecord& record, std::int64_t* seq) {
    const std::lock_guard lock(m_mutex);
    utils::KNError error;
    const bool isWritten = write(&record, 1, error) == 1;
    CRecordCapture::note(record, isWritten ? m_nLastSeq : 0);
    if (!isWritten) {
        if (m_nDescriptor >= 0) ++m_nRefused;
        return error;
    }
    if (seq != nullptr) *seq = m_nLastSeq;
    return {};
}

std::size_t CJournal::appendAll(const std::vector<CJournalRecord>& records) {
    const std::lock_guard lock(m_mutex);
    utils::KNError error;
    return write(records.data(), records.size(), error);
}

/// Writes these records with one write. Returns how many of `records` are in the file. The error
/// is set if one of them is not.
std::size_t CJournal::write(const CJournalRecord* records, std::size_t count, utils::KNError& error) {
    if (m_nDescriptor < 0) {
        error = {kJournalClosed, "the journal is not open"};
        return 0;
    }
    if (!m_failure.isSuccess()) {
        error = m_failure;
        return 0;
    }
    for (std::size_t i = 0; i < count; ++i)
        addWaiting(records[i]);
    return writeWaiting(error);
}

void CJournal::addWaiting(const CJournalRecord& record) {
    m_waiting.add(record, m_nLastSeq + static_cast<std::int64_t>(m_waiting.count()) + 1);
}

void CJournal::keepNumbers(const CJournalNumbers& numbers) {
    const auto keep = [](const auto& number, auto& last) {
        if (number) last = std::max(last, *number);
    };
    keep(numbers.m_event, m_nLastBrokerEvent);
    keep(numbers.m_task, m_nLastTask);
    keep(numbers.m_order, m_nLastOrder);
    keep(numbers.m_fill, m_nLastFill);
}

std::string CJournal::checkFile() {
    const std::lock_guard lock(m_mutex);
    if (m_nDescriptor < 0) return {};
    return lookAtFile();
}

std::string CJournal::lookAtFile() {
    struct stat open {
    }, named{};
    if (m_bElsewhere || ::fstat(m_nDescriptor, &open) != 0) return {};
    const bool isNamed = ::stat(m_strPath.c_str(), &named) == 0;
    m_bElsewhere = !isNamed || named.st_dev != open.st_dev || named.st_ino != open.st_ino;
    std::string cause;
    if (m_bElsewhere && open.st_nlink == 0) {
        cause = "journal " + m_strPath + " was deleted while the desk ran; its lines up to #" +
                std::to_string(m_nCheckedSeq) + " are gone";
    } else if (m_bElsewhere) {
        cause = "journal " + m_strPath + " was moved away while the desk ran; lines up to #" +
                std::to_string(m_nLastSeq) + " are in the file that was moved";
    } else if (open.st_size < m_nSize) {
        cause = "journal " + m_strPath + " was cut from " + std::to_string(m_nSize) + " to " +
                std::to_string(open.st_size) + " bytes while the desk ran";
        m_nSize = open.st_size;
        m_bHalfLine = endsInHalfLine(m_nDescriptor, m_nSize);
    }
    if (!cause.empty()) m_strContinued += (m_strContinued.empty() ? "" : "; ") + cause;
    if (m_bElsewhere) (void)moveToPath();
    if (m_failure.isSuccess()) (void)noteContinued();
    if (m_bElsewhere || !m_strUnwritten.empty()) return cause;
    m_nCheckedSize = m_nSize;
    m_nCheckedSeq = m_nLastSeq;
    return cause;
}

utils::KNError CJournal::openPath(int& descriptor) const {
    descriptor = ::open(m_strPath.c_str(), O_RDWR | O_APPEND | O_CREAT | O_CLOEXEC, kFileMode);
    if (descriptor >= 0) return {};
    return {kJournalOpenFailed, "cannot open journal " + m_strPath + ": " + systemError()};
}

/// Continues in the file at the path. Lines of a deleted file, which only this journal can still read, are
/// written there again.
utils::KNError CJournal::moveToPath() {
    int descriptor = -1;
    if (const utils::KNError error = openPath(descriptor); !error.isSuccess())
        return setFailure({kJournalWriteFailed, error.errorMsg()});
    struct stat before {};
    const bool isDeleted = ::fstat(m_nDescriptor, &before) == 0 && before.st_nlink == 0;
    std::string lines = isDeleted ? bytesFrom(m_nDescriptor, m_nCheckedSize) : std::string();
    if (!lines.empty() && lines.back() != '\n') lines += '\n';
    m_strUnwritten.insert(0, lines);
    ::close(m_nDescriptor);
    m_nDescriptor = descriptor;
    m_bElsewhere = false;
    m_nSize = m_nCheckedSize = sizeOf(descriptor);
    m_bHalfLine = endsInHalfLine(descriptor, m_nSize);
    return writeUnwritten();
}

/// If a line was written only in part, the whole line stays in m_strUnwritten. The part in the file is ended
/// with a newline like any half line.
utils::KNError CJournal::writeUnwritten() {
    if (m_strUnwritten.empty()) return {};
    if (utils::KNError error = closeHalfLine(); !error.isSuccess()) return error;
    const std::int64_t before = m_nSize;
    const utils::KNError error = writeBytes(m_strUnwritten);
    auto count = static_cast<std::size_t>(m_nSize - before);
    // If only the newline is missing, the line is complete: closing the half line adds the newline.
    if (count < m_strUnwritten.size() && m_strUnwritten[count] == '\n') ++count;
    m_strUnwritten.erase(0, m_strUnwritten.substr(0, count).rfind('\n') + 1);
    return error;
}

/// The next start may not find these numbers in the file, because their lines may be in another one. It needs
/// them to know which events the listener has taken and which numbers are used.
utils::KNError CJournal::noteContinued() {
    if (m_strContinued.empty()) return {};
    const utils::KNError error = writeRecord("continued", CJson{{"cause", m_strContinued},
                                                                {"event", m_nLastBrokerEvent},
                                                                {"task", m_nLastTask},
                                                                {"order", m_nLastOrder},
                                                                {"fill", m_nLastFill}});
    if (error.isSuccess()) m_strContinued.clear();
    return error;
}

utils::KNError CJournal::probe() {
    const std::lock_guard lock(m_mutex);
    if (m_nDescriptor < 0) return {kJournalClosed, "the journal is not open"};
    return m_failure.isSuccess() ? utils::KNError() : resume();
}

utils::KNError CJournal::resume() {
    const std::string cause = m_failure.errorMsg();
    utils::KNError error = m_bElsewhere ? moveToPath() : writeUnwritten();
    if (error.isSuccess()) error = writeRecord("resumed", CJson{{"cause", cause}, {"refused", m_nRefused}});
    if (!error.isSuccess()) return error;
    m_nRefused = 0;
    error = noteContinued();
    if (error.isSuccess()) setFailure({});
    return error;
}

utils::KNError CJournal::failure() const {
    const std::lock_guard lock(m_failureMutex);
    return m_failure;
}

utils::KNError CJournal::setFailure(utils::KNError failure) {
    const std::lock_guard lock(m_failureMutex);
    return m_failure = std::move(failure);
}

std::int64_t CJournal::lastSeq() const {
    const std::lock_guard lock(m_mutex);
    return m_nLastSeq + static_cast<std::int64_t>(m_waiting.count());
}

bool CJournal::isAfterCrash() const {
    const std::lock_guard lock(m_mutex);
    return m_bAfterCrash;
}

std::int64_t CJournal::lastBrokerEvent() const {
    const std::lock_guard lock(m_mutex);
    return m_nLastBrokerEvent;
}

int CJournal::lastTask() const {
    const std::lock_guard lock(m_mutex);
    return m_nLastTask;
}

int CJournal::lastOrder() const {
    const std::lock_guard lock(m_mutex);
    return m_nLastOrder;
}

int CJournal::lastFill() const {
    const std::lock_guard lock(m_mutex);
    return m_nLastFill;
}

utils::KNError CJournal::close(const std::string& reason) {
    const std::lock_guard lock(m_mutex);
    if (m_nDescriptor < 0) return {kJournalClosed, "the journal is not open"};
    (void)lookAtFile(); // so that the `stopped` record is in the file at the path
    if (!m_failure.isSuccess()) (void)resume();
    utils::KNError error =
        m_failure.isSuccess() ? writeRecord("stopped", CJson{{"reason", reason}}) : m_failure;
    if (::fdatasync(m_nDescriptor) != 0 && error.isSuccess()) error = fail(systemError());
    // Some file systems report a failed write only now.
    if (::close(m_nDescriptor) != 0 && error.isSuccess()) error = fail(systemError());
    m_nDescriptor = -1;
    return error;
}

/// Writes a record of the journal itself. The caller makes sure that no other line waits.
utils::KNError CJournal::writeRecord(const std::string& kind, const CJson& fields) {
    addWaiting(makeRecord(kind, fields));
    utils::KNError error;
    return writeWaiting(error) == 1 ? utils::KNError() : error;
}

/// Writes all waiting lines with one write. Returns how many are in the file; the others are dropped. So no
/// line waits afterwards.
std::size_t CJournal::writeWaiting(utils::KNError& error) {
    if (m_waiting.count() == 0) return 0;
    error = closeHalfLine();
    const std::int64_t before = m_nSize;
    if (error.isSuccess()) error = writeBytes(m_waiting.bytes());
    // If only the newline of a line could not be written, the record is complete, and the next write adds the
    // newline. If the record were refused here, it could be written again and be in the journal twice.
    const std::size_t written = m_waiting.completeLines(static_cast<std::size_t>(m_nSize - before));
    for (std::size_t i = 0; i < written; ++i)
        keepNumbers(m_waiting.numbers(i));
    m_nLastSeq += static_cast<std::int64_t>(written);
    tellListener(written);
    m_waiting.clear();
    return written;
}

/// The lines are in the file already. If they stayed because the receiver throws, they would be written
/// again.
void CJournal::tellListener(std::size_t written) noexcept {
    if (!m_listener || written == 0) return;
    try {
        m_listener(m_waiting.firstLines(written));
    } catch (...) {
        std::fputs("orderdesk: the window has not got some lines of the journal\n", stderr);
    }
}

utils::KNError CJournal::writeBytes(const std::string& bytes) {
    ssize_t written = 0;
    do {
        written = ::write(m_nDescriptor, bytes.data(), bytes.size());
    } while (written < 0 && errno == EINTR);
    if (written < 0) return fail(systemError());
    m_nSize += written;
    if (written > 0) m_bHalfLine = bytes[static_cast<std::size_t>(written) - 1] != '\n';
    if (static_cast<std::size_t>(written) == bytes.size()) return {};
    return fail("no room for a whole line");
}

utils::KNError CJournal::closeHalfLine() {
    return m_bHalfLine ? writeBytes("\n") : utils::KNError();
}

utils::KNError CJournal::fail(const std::string& cause) {
    return setFailure({kJournalWriteFailed, "cannot write journal " + m_strPath + ": " + cause});
}

} // namespace desk
