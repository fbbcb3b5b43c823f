#include "desk/journal/Journal.h"

#include "base/Clock.h"
#include "desk/journal/JournalTail.h"

#include <nlohmann/json.hpp>

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>

namespace desk {
namespace {

constexpr mode_t kFileMode = 0600; // orders and accounts are nobody else's business

std::string systemError() {
    return std::strerror(errno);
}

std::string recordTime() {
    return utils::currentDateTime().toString(Qt::ISODateWithMs).toStdString();
}

/// One line with its newline. Bytes that are no UTF-8 become U+FFFD: a record is never lost over a text.
std::string recordLine(const std::string& kind, std::int64_t seq, const CJson& fields) {
    CJson record;
    record["kind"] = kind;
    record["time"] = recordTime();
    record["seq"] = seq;
    for (const auto& [key, value] : fields.items())
        record[key] = value;
    return record.dump(-1, ' ', false, CJson::error_handler_t::replace) + '\n';
}

} // namespace

CJournal::~CJournal() {
    if (m_nDescriptor >= 0) ::close(m_nDescriptor);
}

utils::KNError CJournal::open(const std::string& folder) {
    const std::lock_guard lock(m_mutex);
    m_strPath = folder + '/' + kJournalFileName;
    const int descriptor = ::open(m_strPath.c_str(), O_RDWR | O_APPEND | O_CREAT | O_CLOEXEC, kFileMode);
    if (descriptor < 0)
        return {kJournalOpenFailed, "cannot open journal " + m_strPath + ": " + systemError()};

    CJournalTail tail;
    if (const utils::KNError error = readJournalTail(m_strPath, tail); !error.isSuccess()) {
        ::close(descriptor);
        return {kJournalOpenFailed, error.errorMsg()};
    }
    m_nDescriptor = descriptor;
    m_nLastSeq = tail.m_nLastSeq;
    m_nLastBrokerEvent = tail.m_nLastBrokerEvent;
    m_nLastTask = tail.m_nLastTask;
    m_bHalfLine = tail.m_bHalfLine;
    m_failure = {};
    const CJson fields{{"recovered", tail.m_bHalfLine}, {"pid", static_cast<std::int64_t>(::getpid())}};
    const utils::KNError error = writeRecord("started", fields);
    if (error.isSuccess()) return error;
    ::close(m_nDescriptor);
    m_nDescriptor = -1;
    return {kJournalOpenFailed, error.errorMsg()};
}

utils::KNError CJournal::append(const std::string& kind, const CJson& fields, std::int64_t* seq) {
    const std::lock_guard lock(m_mutex);
    if (m_nDescriptor < 0) return {kJournalClosed, "the journal is not open"};
    utils::KNError error = m_failure.isSuccess() ? writeRecord(kind, fields) : m_failure;
    if (!error.isSuccess())
        ++m_nRefused;
    else if (seq != nullptr)
        *seq = m_nLastSeq;
    return error;
}

utils::KNError CJournal::probe() {
    const std::lock_guard lock(m_mutex);
    if (m_nDescriptor < 0) return {kJournalClosed, "the journal is not open"};
    if (m_failure.isSuccess()) return {};
    const CJson fields{{"cause", m_failure.errorMsg()}, {"refused", m_nRefused}};
    utils::KNError error = writeRecord("resumed", fields);
    if (error.isSuccess()) {
        m_failure = {};
        m_nRefused = 0;
    }
    return error;
}

utils::KNError CJournal::failure() const {
    const std::lock_guard lock(m_mutex);
    return m_failure;
}

std::int64_t CJournal::lastSeq() const {
    const std::lock_guard lock(m_mutex);
    return m_nLastSeq;
}

std::int64_t CJournal::lastBrokerEvent() const {
    const std::lock_guard lock(m_mutex);
    return m_nLastBrokerEvent;
}

int CJournal::lastTask() const {
    const std::lock_guard lock(m_mutex);
    return m_nLastTask;
}

utils::KNError CJournal::close(const std::string& reason) {
    const std::lock_guard lock(m_mutex);
    if (m_nDescriptor < 0) return {kJournalClosed, "the journal is not open"};
    utils::KNError error =
        m_failure.isSuccess() ? writeRecord("stopped", CJson{{"reason", reason}}) : m_failure;
    if (::fdatasync(m_nDescriptor) != 0 && error.isSuccess()) error = fail(systemError());
    // Some file systems report a failed write only now.
    if (::close(m_nDescriptor) != 0 && error.isSuccess()) error = fail(systemError());
    m_nDescriptor = -1;
    return error;
}

utils::KNError CJournal::writeRecord(const std::string& kind, const CJson& fields) {
    utils::KNError error = closeHalfLine();
    if (!error.isSuccess()) return error;
    error = writeBytes(recordLine(kind, m_nLastSeq + 1, fields));
    if (error.isSuccess()) ++m_nLastSeq;
    return error;
}

utils::KNError CJournal::writeBytes(const std::string& bytes) {
    ssize_t written = 0;
    do {
        written = ::write(m_nDescriptor, bytes.data(), bytes.size());
    } while (written < 0 && errno == EINTR);
    if (written < 0) return fail(systemError());
    if (static_cast<std::size_t>(written) == bytes.size()) return {};
    m_bHalfLine = m_bHalfLine || written > 0;
    return fail("no room for a whole line");
}

utils::KNError CJournal::closeHalfLine() {
    if (!m_bHalfLine) return {};
    utils::KNError error = writeBytes("\n");
    if (error.isSuccess()) m_bHalfLine = false;
    return error;
}

utils::KNError CJournal::fail(const std::string& cause) {
    m_failure = {kJournalWriteFailed, "cannot write journal " + m_strPath + ": " + cause};
    return m_failure;
}

} // namespace desk
