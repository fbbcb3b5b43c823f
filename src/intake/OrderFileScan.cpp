#include "orderservice/intake/OrderFileScan.h"

#include "orderservice/base/Text.h"

namespace TC {
namespace {

constexpr char kZeroByte = '\0';
constexpr char kEndMark = '\x1a';

QString faultText(EFileFault fault) {
    switch (fault) {
    case EFileFault::None:
        break;
    case EFileFault::Empty:
        return QStringLiteral("the file is empty");
    case EFileFault::LoneReturn:
        return QStringLiteral("a carriage return without a line feed");
    case EFileFault::ZeroByte:
        return QStringLiteral("a zero byte");
    case EFileFault::EndMark:
        return QStringLiteral("a byte 0x1A");
    case EFileFault::LongLine:
        return QStringLiteral("more than 65536 bytes on the line");
    case EFileFault::NoLineEnd:
        return QStringLiteral("no line end at the end of the file");
    }
    return {};
}

} // namespace

QString CFileVerdict::toText() const {
    return utils::fillText(QStringLiteral("line %1: %2"), {QString::number(m_nLine), faultText(m_eFault)});
}

void COrderFileScan::takeBytes(std::string_view bytes) {
    for (const char byte : bytes) {
        if (isOver()) return;
        m_eFault = faultOf(byte);
    }
}

EFileFault COrderFileScan::faultOf(char byte) {
    m_bEmpty = false;
    if (m_bReturn && byte != '\n') return EFileFault::LoneReturn;
    m_bReturn = byte == '\r';
    switch (byte) {
    case '\r':
        return EFileFault::None;
    case '\n':
        ++m_nLine;
        m_nLength = 0;
        return EFileFault::None;
    case kZeroByte:
        return EFileFault::ZeroByte;
    case kEndMark:
        return EFileFault::EndMark;
    default:
        return ++m_nLength > kLongestLine ? EFileFault::LongLine : EFileFault::None;
    }
}

CFileVerdict COrderFileScan::verdict() const {
    if (isOver()) return {m_eFault, m_nLine};
    if (m_bEmpty) return {EFileFault::Empty, m_nLine};
    if (m_nLength > 0 || m_bReturn) return {EFileFault::NoLineEnd, m_nLine};
    return {};
}

} // namespace TC
