#pragma once

#include "desk/door/CallRequest.h"

#include <optional>
#include <string>
#include <variant>

namespace desk {

enum class ECommand { New, Check, Run, Journal, Call };

/// A command and its options, as given by the user.
struct CCommandLine {
    ECommand m_eCommand = ECommand::Check;
    std::string m_strFolder;
    /// Seconds, 0 or more; only for `run`.
    std::optional<double> m_exitWhenIdle;
    /// Only for `journal`.
    bool m_bFollow = false;
    /// Only for `new`.
    bool m_bConfirm = false;
    /// Only for `call`.
    CCallRequest m_call;
};

/// The result of a command line that runs no command: help, version or a mistake. The process prints the text
/// and ends.
struct CLineEnd {
    int m_nExitCode = 0; ///< 0 for help and version, 2 for a mistake
    std::string m_strText;
    bool m_bToError = false; ///< whether the text is printed to standard error
};

/// Reads the command line of `orderdesk`; argv[0] is the program. Prints nothing and reads no file. The
/// numeric locale of the process must be "C", because the seconds are read with it.
std::variant<CCommandLine, CLineEnd> readCommandLine(int argc, const char* const* argv);

} // namespace desk
