#pragma once

#include <QString>

#include <cstddef>
#include <string_view>

namespace TC {

/// Why the order file guard refuses a file.
enum class EFileFault {
    None,
    Empty,      ///< no byte at all: its writer has only begun
    LoneReturn, ///< a CR without LF: the lines before and behind it would be read as one
    ZeroByte,   ///< the rest of its line would be lost
    EndMark,    ///< 0x1A, which ends a text on some systems and not on others
    LongLine,   ///< more than COrderFileScan::kLongestLine bytes on a line
    NoLineEnd,  ///< the last line has no line end: it may be half a line
};

struct CFileVerdict {
    EFileFault m_eFault = EFileFault::None;
    long long m_nLine = 0; ///< where the fault is, counted from 1

    bool isGood() const { return m_eFault == EFileFault::None; }
    /// The fault in words, with its line.
    QString toText() const;
};

/// Looks through the bytes of an order file for signs that it is damaged or not complete, before any line of
/// it is carried out. Takes the bytes in pieces of any size; the verdict does not depend on how they are cut.
/// Pure: no I/O, no lock.
class COrderFileScan {
public:
    /// Most bytes on a line, its line end not counted.
    static constexpr std::size_t kLongestLine = 64 * 1024;

    void takeBytes(std::string_view bytes);
    /// Whether a fault has been found; more bytes do not change the verdict then.
    bool isOver() const { return m_eFault != EFileFault::None; }
    /// The verdict, if the file ends here.
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
