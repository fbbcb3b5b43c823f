#include "desk/host/TextSink.h"

#include <ostream>

namespace desk {

void CTextSink::writeLine(const std::string& text) {
    const std::lock_guard lock(m_mutex);
    m_stream << text << '\n' << std::flush;
}

} // namespace desk
