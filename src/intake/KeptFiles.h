#pragma once

#include "orderservice/intake/TakenFile.h"
#include "orderservice/platform/IntakeAudit.h"

#include <map>
#include <string>

namespace TC {

/// File name suffix of files that were taken and are not deleted yet.
inline constexpr const char* kTmpSuffix = ".tmp";

/// Why a file is kept instead of being deleted.
enum class EKeptFile {
    Refused,  ///< no line of it was carried out
    CutShort, ///< it was still being written: only the bytes checked by the guard were carried out
    LeftOver, ///< an earlier run left it under its .tmp name: its orders may have been placed
};

/// Moves files aside so that people can look at them: to the folder that the audit names, or next to their
/// original paths. Not thread-safe.
class CKeptFiles {
public:
    /// Keeps a file that was taken, and reports where it is now.
    void keep(CTakenFile& file, EKeptFile kind, CIntakeReport& report);

    /// Moves away the file under the .tmp name of `source` and reports it. `source` is the path that the
    /// writer uses. If this run kept the file earlier but could not move it, the file has the kind that it
    /// had then; otherwise it is LeftOver. If the file cannot be moved now, the report is not changed.
    CPutAside moveLeftOver(const std::string& source, CIntakeReport& report);

    /// Call this when no file is under the .tmp name of `source` any more.
    void forget(const std::string& source) { m_unmoved.erase(source + kTmpSuffix); }

private:
    void note(const CPutAside& kept, EKeptFile kind, CIntakeReport& report);

    /// .tmp paths of files that this run kept but could not move away.
    std::map<std::string, EKeptFile> m_unmoved;
};

} // namespace TC
