#pragma once

#include <string>
#include <vector>

namespace desk {

/// One mistake in a desk folder, in words that tell what was expected.
struct CDiagnostic {
    std::string file; ///< name below the folder
    int line = 0;     ///< 0: the file as a whole
    std::string message;
};

/// Where readers put the mistakes that they find.
class CDiagnostics {
public:
    void add(const std::string& file, int line, const std::string& message) {
        m_mistakes.push_back({file, line, message});
    }
    std::vector<CDiagnostic> take() { return std::move(m_mistakes); }

private:
    std::vector<CDiagnostic> m_mistakes;
};

} // namespace desk
