#pragma once

#include <cstddef>
#include <ostream>
#include <streambuf>
#include <string>

namespace desk {

/// Writes to another stream and keeps the last part of the text, so that a window can show why the desk did
/// not start, or what it could not finish. Not thread-safe.
class CKeptText : public std::streambuf {
public:
    static constexpr std::size_t kMost = 2000; ///< bytes that are shown

    explicit CKeptText(std::ostream& target) : m_target(target) {}
    /// Whole lines.
    std::string text() const {
        if (m_strText.size() <= kMost) return m_strText;
        const std::string last = m_strText.substr(m_strText.size() - kMost);
        return last.substr(last.find('\n') + 1);
    }

protected:
    std::streamsize xsputn(const char* bytes, std::streamsize count) override {
        m_strText.append(bytes, static_cast<std::size_t>(count));
        if (m_strText.size() > 2 * kMost) m_strText.erase(0, m_strText.size() - kMost);
        m_target.write(bytes, count);
        return count;
    }
    int_type overflow(int_type byte) override {
        const char character = traits_type::to_char_type(byte);
        xsputn(&character, 1);
        return byte;
    }
    int sync() override {
        m_target.flush();
        return 0;
    }

private:
    std::ostream& m_target;
    std::string m_strText;
};

} // namespace desk
