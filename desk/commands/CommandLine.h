#pragma once

#include <optional>
#include <string>
#include <variant>

namespace desk {

enum class ECommand { New, Check, Run, Journal };

/// What the user asks for.
struct CCommandLine {
    ECommand m_eCommand = ECommand::Check;
    std::string m_strFolder;
    /// Seconds, 0 or more; only of `run`.
    std::optional<double> m_exitWhenIdle;
    /// Only of `journal`.
    bool m_bFollow = false;
};

/// A command line that runs no command: help, version or a mistake. The process prints the text and ends.
struct CLineEnd {
    int m_nExitCode = 0; ///< 0 for help and version, 2 for a mistake
    std::string m_strText;
    bool m_bToError = false; ///< whether the text belongs on standard error
};

/// Reads the command line of `orderdesk`; argv[0] is the program. Prints nothing and looks at no file. Reads
/// the seconds by the numeric locale of the process, which must be "C".
std::variant<CCommandLine, CLineEnd> readCommandLine(int argc, const char* const* argv);

} // namespace desk
