#include "desk/host/TextSink.h"

#include "desk/host/Counted.h"
#include "orderservice/base/Clock.h"

#include <ostream>

namespace desk {
namespace {

constexpr double kSecond = 1.0;

const char* nameOf(EFloodLine kind) {
    switch (kind) {
    case EFloodLine::Refusal:
        return "refused orders";
    case EFloodLine::Message:
        break;
    case EFloodLine::File:
        return "order files";
    case EFloodLine::Incident:
        return "incidents";
    }
    return "messages";
}

} // namespace

CTextSink::~CTextSink() {
    for (auto& [kind, flood] : m_floods)
        reportLeftOut(kind, flood);
}

void CTextSink::writeLine(const std::string& text) {
    const std::lock_guard lock(m_mutex);
    write(text);
}

void CTextSink::writeFloodLine(EFloodLine kind, bool isRecorded, const std::string& text) {
    const std::lock_guard lock(m_mutex);
    if (!isRecorded) return write(text);
    CFlood& flood = m_floods[kind];
    const double now = utils::getTime();
    if (now >= flood.m_dEnd) {
        reportLeftOut(kind, flood);
        flood = {now + kSecond, 0, 0};
    }
    if (flood.m_nShown == kLinesPerSecond) {
        ++flood.m_nLeftOut;
        return;
    }
    ++flood.m_nShown;
    write(text);
}

void CTextSink::poll() {
    const std::lock_guard lock(m_mutex);
    const double now = utils::getTime();
    for (auto& [kind, flood] : m_floods) {
        if (now >= flood.m_dEnd) reportLeftOut(kind, flood);
    }
}

void CTextSink::write(const std::string& text) {
    m_stream << text << '\n' << std::flush;
}

void CTextSink::reportLeftOut(EFloodLine kind, CFlood& flood) {
    if (flood.m_nLeftOut == 0) return;
    write("(" + std::string(nameOf(kind)) + ": " + counted(flood.m_nLeftOut, "more line") +
          " in one second; the journal has each of them)");
    flood.m_nLeftOut = 0;
}

} // namespace desk
