#pragma once

#include "intake/TakenFile.h"
#include "platform/IntakeAudit.h"

#include <map>
#include <string>

namespace TC {

/// The end of the names under which files lie that were taken and not yet deleted.
inline constexpr const char* kTmpSuffix = ".tmp";

/// Why a file is kept instead of being deleted.
enum class EKeptFile {
    Refused,  ///< nothing of it was carried out
    CutShort, ///< its writer went on writing: what the guard had looked at was carried out
    LeftOver, ///< an earlier run left it under its .tmp name: its orders may have gone out
};

/// Puts files aside for people to look at, in the folder that the audit names or beside their paths. One
/// thread.
class CKeptFiles {
public:
    /// Keeps a file that was taken, and reports where it lies.
    void keep(CTakenFile& file, EKeptFile kind, CIntakeReport& report);

    /// Moves away the file that lies under the .tmp name of `source`, the path of its writer, and reports it.
    /// What could not be moved when it was kept keeps its kind. If the file cannot be moved now, the report
    /// stays as it was.
    CPutAside moveLeftOver(const std::string& source, CIntakeReport& report);

    /// No file lies under the .tmp name of `source` any more.
    void forget(const std::string& source) { m_unmoved.erase(source + kTmpSuffix); }

private:
    void note(const CPutAside& kept, EKeptFile kind, CIntakeReport& report);

    /// .tmp paths under which a file of this run lies that could not be moved away.
    std::map<std::string, EKeptFile> m_unmoved;
};

} // namespace TC
