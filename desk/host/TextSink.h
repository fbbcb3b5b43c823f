#pragma once

#include <iosfwd>
#include <mutex>
#include <string>

namespace desk {

/// Messages of the desk to its user: whole lines to a stream, from any thread. The stream must outlive the
/// sink.
class CTextSink {
public:
    explicit CTextSink(std::ostream& stream) : m_stream(stream) {}

    /// Writes the text (UTF-8) and a newline, and flushes.
    void writeLine(const std::string& text);

private:
    std::mutex m_mutex;
    std::ostream& m_stream;
};

} // namespace desk
