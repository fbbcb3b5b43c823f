#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace desk {

/// One mistake or warning about a desk folder. The message says what was expected.
struct CDiagnostic {
    std::string file; ///< name relative to the folder
    int line = 0;     ///< 0: the file as a whole
    std::string message;
};

/// Subjects that other parts of the folder refer to. If the definition of a subject has a mistake, references
/// to it are not reported as mistakes: one mistake must not cause a list of other reports.
enum class ESubject : unsigned { None = 0, Desk = 1, Accounts = 2, Groups = 4, Instruments = 8, Quotes = 16 };

constexpr ESubject operator|(ESubject a, ESubject b) {
    return static_cast<ESubject>(static_cast<unsigned>(a) | static_cast<unsigned>(b));
}
constexpr bool hasCommon(ESubject a, ESubject b) {
    return (static_cast<unsigned>(a) & static_cast<unsigned>(b)) != 0;
}

/// Collects the mistakes and warnings that the readers find.
///
/// A folder with a mistake is not started. A warning is about something that is allowed but probably not
/// intended: orders that will be rejected, a strategy that will not start, a key that looks like protection
/// and has no effect.
class CDiagnostics {
public:
    /// `about`: the subjects whose definitions the mistake depends on. If one of them has a mistake itself,
    /// take leaves this mistake out.
    void add(const std::string& file, int line, const std::string& message, ESubject about = ESubject::None) {
        m_mistakes.push_back({{file, line, message}, about});
    }
    void warn(const std::string& file, int line, const std::string& message) {
        m_warnings.push_back({file, line, message});
    }

    /// Notes that the definitions of these subjects have a mistake that is already reported.
    void spoil(ESubject subjects) { m_eSpoiled = m_eSpoiled | subjects; }

    /// Number of mistakes so far, including those that take leaves out.
    std::size_t count() const { return m_mistakes.size(); }

    /// Returns the mistakes without those that only follow from others. If there was any mistake, returns at
    /// least one.
    std::vector<CDiagnostic> take() {
        std::vector<CDiagnostic> taken;
        for (const CMistake& mistake : m_mistakes) {
            if (!hasCommon(mistake.about, m_eSpoiled)) taken.push_back(mistake.diagnostic);
        }
        if (taken.empty() && !m_mistakes.empty()) taken.push_back(m_mistakes.front().diagnostic);
        m_mistakes.clear();
        return taken;
    }
    std::vector<CDiagnostic> takeWarnings() { return std::move(m_warnings); }

private:
    struct CMistake {
        CDiagnostic diagnostic;
        ESubject about;
    };
    std::vector<CMistake> m_mistakes;
    std::vector<CDiagnostic> m_warnings;
    ESubject m_eSpoiled = ESubject::None;
};

/// Calls spoil for the subject if a mistake is found while this object exists.
class CDefinition {
public:
    CDefinition(CDiagnostics& diagnostics, ESubject subject)
        : m_diagnostics(diagnostics), m_eSubject(subject), m_nBefore(diagnostics.count()) {}
    ~CDefinition() {
        if (m_diagnostics.count() > m_nBefore) m_diagnostics.spoil(m_eSubject);
    }
    CDefinition(const CDefinition&) = delete;
    CDefinition& operator=(const CDefinition&) = delete;

private:
    CDiagnostics& m_diagnostics;
    const ESubject m_eSubject;
    const std::size_t m_nBefore;
};

} // namespace desk
