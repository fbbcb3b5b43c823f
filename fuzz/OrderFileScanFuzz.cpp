// Sends any bytes through the scan of the order file guard. The verdict must equal that of a simple
// implementation of the rules. It must not depend on how the bytes are cut.
#include "orderservice/intake/OrderFileScan.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string_view>

namespace {

using TC::EFileFault;

TC::CFileVerdict scan(std::string_view bytes, std::size_t piece) {
    TC::COrderFileScan scan;
    for (std::size_t at = 0; at < bytes.size(); at += piece)
        scan.takeBytes(bytes.substr(at, piece));
    return scan.verdict();
}

/// The fault of one line, given without its LF. `isLast` means that the line has no LF.
EFileFault faultOfLine(std::string_view line, bool isLast) {
    if (!line.empty() && line.back() == '\r') line.remove_suffix(1);
    const std::size_t bad = line.find_first_of(std::string_view("\r\0\x1A", 3));
    const bool isLong = std::min(bad, line.size()) > TC::COrderFileScan::kLongestLine;
    if (isLong) return EFileFault::LongLine;
    if (bad == std::string_view::npos) return isLast ? EFileFault::NoLineEnd : EFileFault::None;
    if (line[bad] == '\r') return EFileFault::LoneReturn;
    return line[bad] == '\0' ? EFileFault::ZeroByte : EFileFault::EndMark;
}

TC::CFileVerdict expected(std::string_view bytes) {
    if (bytes.empty()) return {EFileFault::Empty, 1};
    for (long long number = 1; !bytes.empty(); ++number) {
        const std::size_t feed = bytes.find('\n');
        const bool isLast = feed == std::string_view::npos;
        const EFileFault fault = faultOfLine(bytes.substr(0, feed), isLast);
        if (fault != EFileFault::None) return {fault, number};
        bytes.remove_prefix(isLast ? bytes.size() : feed + 1);
    }
    return {};
}

void check(const TC::CFileVerdict& verdict, const TC::CFileVerdict& wanted) {
    if (verdict.m_eFault != wanted.m_eFault || verdict.m_nLine != wanted.m_nLine) std::abort();
    if (verdict.isGood() != (wanted.m_eFault == EFileFault::None)) std::abort();
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size == 0) return 0;
    const std::string_view bytes(reinterpret_cast<const char*>(data) + 1, size - 1);
    const TC::CFileVerdict wanted = expected(bytes);
    check(scan(bytes, 1), wanted);
    check(scan(bytes, std::size_t{data[0]} + 1), wanted);
    check(scan(bytes, size), wanted);
    return 0;
}
