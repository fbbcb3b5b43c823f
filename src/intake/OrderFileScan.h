#pragma once

#include <QString>

#include <cstddef>
#include <string_view>

namespace TC {

/// Why the order file guard refuses a file.
enum class EFileFault {
    None,
    Empty,      ///< zero bytes: its writer has only begun
    LoneReturn, ///< a CR without LF: the lines before and after it would be read as one line
    ZeroByte,   ///< the rest of the line would be lost
    EndMark,    ///< 0x1A, which ends a text file on some systems only
    LongLine,   ///< more than COrderFileScan::kLongestLine bytes on a line
    NoLineEnd,  ///< the last line has no line end: it may be half a line
};

struct CFileVerdict {
    EFileFault m_eFault = EFileFault::None;
    long long m_nLine = 0; ///< the line with the fault, counted from 1

    bool isGood() const { return m_eFault == EFileFault::None; }
    /// Describes the fault in words, with its line.
    QString toText() const;
};

/// Checks whether an order file is damaged or incomplete, before any line of it is carried out. Takes the
/// bytes in pieces of any size; the verdict does not depend on how they are split. Pure: no I/O, no lock.
class COrderFileScan {
public:
    /// Longest allowed line in bytes, without its line end.
    static constexpr std::size_t kLongestLine = 64 * 1024;

    void takeBytes(std::string_view bytes);
    /// Whether a fault was found. After that, more bytes do not change the verdict.
    bool isOver() const { return m_eFault != EFileFault::None; }
    /// Returns the verdict for a file that ends here.
    CFileVerdict verdict() const;

private:
    EFileFault faultOf(char byte);

    EFileFault m_eFault = EFileFault::None;
    bool m_bEmpty = true;
    bool m_bReturn = false; ///< the last byte was a CR
    long long m_nLine = 1;
    std::size_t m_nLength = 0; ///< bytes on the line so far
};

} // namespace TC
