#pragma once

#include <algorithm>
#include <cstddef>
#include <ostream>
#include <streambuf>
#include <string>

namespace desk {

/// Writes to another stream and keeps the first part of the text, so that a window can show why the desk did
/// not start. Not thread-safe.
class CKeptText : public std::streambuf {
public:
    static constexpr std::size_t kMost = 8000; ///< bytes that are kept

    explicit CKeptText(std::ostream& target) : m_target(target) {}
    const std::string& text() const { return m_strText; }

protected:
    std::streamsize xsputn(const char* bytes, std::streamsize count) override {
        const auto size = static_cast<std::size_t>(count);
        if (m_strText.size() < kMost) m_strText.append(bytes, std::min(size, kMost - m_strText.size()));
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
