#pragma once

#include "orderservice/base/SecondLimit.h"

#include <functional>
#include <iosfwd>
#include <map>
#include <mutex>
#include <string>
#include <utility>

namespace desk {

/// Kinds of lines that many orders can repeat many times in a second.
/// Note: like Message, but not a message of the order service.
enum class EFloodLine { Refusal, Message, File, Incident, Note };

/// Whether a line reports a loss or a failure, for a window that shows this.
enum class ESeverity { Note, Warning };

/// Messages of the desk to its user: whole lines to a stream, from any thread. The stream must outlive the
/// sink.
class CTextSink {
public:
    /// Number of flood lines of one kind that are shown in a second, by the clock of base/Clock.h.
    static constexpr int kLinesPerSecond = 50;

    using CListener = std::function<void(const EFloodLine* kind, ESeverity, const std::string& text)>;

    explicit CTextSink(std::ostream& stream) : m_stream(stream) {}
    /// Reports the lines that were left out and not reported yet.
    ~CTextSink();
    CTextSink(const CTextSink&) = delete;
    CTextSink& operator=(const CTextSink&) = delete;

    /// Sets a receiver of all lines of the desk, also of the flood lines that are left out here. `kind` is
    /// null for a line of writeLine. It is called on the writer's thread with the sink locked, so it must not
    /// call the sink and must not wait. Set it before other threads write.
    void setListener(CListener listener) { m_listener = std::move(listener); }

    /// Writes the text (UTF-8) and a newline, and flushes.
    void writeLine(const std::string& text, ESeverity severity = ESeverity::Note);

    /// Does the same, but leaves the line out if the second has had its lines of this kind. The number of
    /// lines that were left out is shown when the second is over. `isRecorded`: whether the journal has the
    /// line. If not, it is always written. Without a severity, refusals and incidents are warnings, and the
    /// other kinds are notes.
    void writeFloodLine(EFloodLine kind, bool isRecorded, const std::string& text);
    void writeFloodLine(EFloodLine kind, bool isRecorded, const std::string& text, ESeverity severity);

    /// Reports the lines that were left out in seconds that are over. Call it several times a second.
    void poll();

private:
    void write(const std::string& text);
    void reportLeftOut(EFloodLine kind, utils::CSecondLimit& flood);

    std::mutex m_mutex;
    std::ostream& m_stream;
    CListener m_listener;
    std::map<EFloodLine, utils::CSecondLimit> m_floods; ///< the kinds that had lines
};

} // namespace desk
