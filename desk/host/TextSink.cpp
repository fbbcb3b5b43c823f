#include "desk/host/TextSink.h"

#include "desk/host/Counted.h"
#include "orderservice/base/Clock.h"

#include <ostream>

namespace desk {
namespace {

const char* nameOf(EFloodLine kind) {
    switch (kind) {
    case EFloodLine::Refusal:
        return "refused orders";
    case EFloodLine::Message:
    case EFloodLine::Note:
        break;
    case EFloodLine::File:
        return "order files";
    case EFloodLine::Incident:
        return "incidents";
    }
    return "messages";
}

ESeverity severityOf(EFloodLine kind) {
    const bool isWarning = kind == EFloodLine::Refusal || kind == EFloodLine::Incident;
    return isWarning ? ESeverity::Warning : ESeverity::Note;
}

} // namespace

CTextSink::~CTextSink() {
    for (auto& [kind, flood] : m_floods)
        reportLeftOut(kind, flood);
}

void CTextSink::writeLine(const std::string& text, ESeverity severity) {
    const std::lock_guard lock(m_mutex);
    if (m_listener) m_listener(nullptr, severity, text);
    write(text);
}

void CTextSink::writeFloodLine(EFloodLine kind, bool isRecorded, const std::string& text) {
    writeFloodLine(kind, isRecorded, text, severityOf(kind));
}

void CTextSink::writeFloodLine(EFloodLine kind, bool isRecorded, const std::string& text,
                               ESeverity severity) {
    const std::lock_guard lock(m_mutex);
    if (m_listener) m_listener(&kind, severity, text);
    if (!isRecorded) return write(text);
    utils::CSecondLimit& flood = m_floods.try_emplace(kind, kLinesPerSecond).first->second;
    const double now = utils::getTime();
    if (flood.isOver(now)) {
        reportLeftOut(kind, flood);
        flood.begin(now);
    }
    if (flood.pass()) write(text);
}

void CTextSink::poll() {
    const std::lock_guard lock(m_mutex);
    const double now = utils::getTime();
    for (auto& [kind, flood] : m_floods) {
        if (flood.isOver(now)) reportLeftOut(kind, flood);
    }
}

void CTextSink::write(const std::string& text) {
    m_stream << text << '\n' << std::flush;
}

void CTextSink::reportLeftOut(EFloodLine kind, utils::CSecondLimit& flood) {
    const int leftOut = flood.takeLeftOut();
    if (leftOut == 0) return;
    write("(" + std::string(nameOf(kind)) + ": " + counted(leftOut, "more line") +
          " in one second; the journal has each of them)");
}

} // namespace desk
