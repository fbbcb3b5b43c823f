#include "desk/journal/JournalTail.h"

#include "desk/journal/Json.h"
#include "desk/journal/RecordHeads.h"
#include "desk/journal/TornLine.h"

#include <nlohmann/json.hpp>

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <string_view>

namespace desk {
namespace {

/// The task key follows the keys that every line has. A command without a task is not parsed: it was refused,
/// or an older desk wrote it.
constexpr std::string_view kTaskKey = R"("task":)";
constexpr std::size_t kTaskEnd = 128;

bool beginsWith(std::string_view line, std::string_view head) {
    return line.substr(0, head.size()) == head;
}

bool isCommandWithTask(std::string_view line) {
    return beginsWith(line, kCommandHead) &&
           line.substr(0, kTaskEnd).find(kTaskKey) != std::string_view::npos;
}

CJson parsed(std::string_view line) {
    return CJson::parse(line, nullptr, false);
}

/// The number with this key, or 0 if the record is damaged or has none.
std::int64_t numberIn(const CJson& record, const char* key) {
    if (!record.is_object()) return 0;
    const auto value = record.find(key);
    return value != record.end() && value->is_number_integer() ? value->get<std::int64_t>() : 0;
}

int smallNumberIn(const CJson& record, const char* key) {
    return static_cast<int>(numberIn(record, key));
}

/// Takes the records of a journal from the last to the first until all numbers are known.
class CTailNumbers {
public:
    explicit CTailNumbers(CJournalTail& tail) : m_tail(tail) {}

    bool isComplete() const {
        return m_tail.m_nLastSeq != 0 && m_tail.m_nLastBrokerEvent != 0 && m_tail.m_nLastTask != 0 &&
               m_bOrdersKnown && m_tail.m_nLastFill != 0;
    }

    void take(std::string_view line) {
        if (m_tail.m_nLastSeq == 0) m_tail.m_nLastSeq = numberIn(parsed(line), "seq");
        if (beginsWith(line, kOrderHead)) takeOrder(parsed(line));
        if (beginsWith(line, kFillHead)) takeFill(parsed(line));
        if (beginsWith(line, kContinuedHead)) takeContinued(parsed(line));
        if (m_tail.m_nLastTask == 0 && isCommandWithTask(line))
            m_tail.m_nLastTask = smallNumberIn(parsed(line), "task");
    }

private:
    /// The first record of an order has the status `working` or `rejected`, or `filled` if the order does not
    /// trade. All orders before it have smaller numbers. A record with any other status may be a later record
    /// of an older order, so the search continues.
    void takeOrder(const CJson& record) {
        takeEvent(record);
        if (m_bOrdersKnown || !record.is_object()) return;
        m_tail.m_nLastOrder = std::max(m_tail.m_nLastOrder, smallNumberIn(record, "order"));
        const auto status = record.find("status");
        m_bOrdersKnown = status != record.end() && (*status == "working" || *status == "rejected");
    }
    void takeFill(const CJson& record) {
        takeEvent(record);
        if (m_tail.m_nLastFill == 0) m_tail.m_nLastFill = smallNumberIn(record, "fill");
    }
    void takeContinued(const CJson& record) {
        takeEvent(record);
        if (m_tail.m_nLastTask == 0) m_tail.m_nLastTask = smallNumberIn(record, "task");
        if (m_tail.m_nLastFill == 0) m_tail.m_nLastFill = smallNumberIn(record, "fill");
        m_tail.m_nLastOrder = std::max(m_tail.m_nLastOrder, smallNumberIn(record, "order"));
        m_bOrdersKnown = m_bOrdersKnown || numberIn(record, "order") != 0;
    }
    void takeEvent(const CJson& record) {
        if (m_tail.m_nLastBrokerEvent == 0) m_tail.m_nLastBrokerEvent = numberIn(record, "event");
    }

    CJournalTail& m_tail;
    bool m_bOrdersKnown = false; ///< earlier lines have no larger order number
};

void readTail(std::string_view text, CJournalTail& tail) {
    tail.m_bHalfLine = text.back() != '\n';
    tail.m_bCutOff = true;
    const std::size_t end = text.rfind('\n');
    text = end == std::string_view::npos ? std::string_view() : text.substr(0, end);
    CTailNumbers numbers(tail);
    for (bool isLast = !tail.m_bHalfLine; !text.empty() && !numbers.isComplete(); isLast = false) {
        const std::size_t newline = text.rfind('\n');
        std::string_view line = newline == std::string_view::npos ? text : text.substr(newline + 1);
        line.remove_prefix(recordBehindTornLine(line));
        if (isLast && beginsWith(line, kStoppedHead)) tail.m_bCutOff = false;
        numbers.take(line);
        text = newline == std::string_view::npos ? std::string_view() : text.substr(0, newline);
    }
}

/// Maps a file into memory, so that only the last pages of a long journal are read.
class CFileView {
public:
    explicit CFileView(const std::string& path) {
        const int descriptor = ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
        if (descriptor < 0) return;
        struct stat status {};
        if (::fstat(descriptor, &status) == 0) map(descriptor, static_cast<std::size_t>(status.st_size));
        ::close(descriptor);
    }
    ~CFileView() {
        if (m_pBytes != MAP_FAILED && m_nSize != 0) ::munmap(m_pBytes, m_nSize);
    }
    CFileView(const CFileView&) = delete;
    CFileView& operator=(const CFileView&) = delete;

    bool isFailed() const { return m_pBytes == MAP_FAILED; }
    std::string_view text() const { return {static_cast<const char*>(m_pBytes), m_nSize}; }

private:
    void map(int descriptor, std::size_t size) {
        m_nSize = size;
        m_pBytes = size == 0 ? nullptr : ::mmap(nullptr, size, PROT_READ, MAP_PRIVATE, descriptor, 0);
    }

    void* m_pBytes = MAP_FAILED;
    std::size_t m_nSize = 0;
};

} // namespace

utils::KNError readJournalTail(const std::string& path, CJournalTail& tail) {
    tail = {};
    const CFileView file(path);
    if (file.isFailed()) return {1, "cannot read journal " + path + ": " + std::strerror(errno)};
    if (!file.text().empty()) readTail(file.text(), tail);
    return {};
}

} // namespace desk
