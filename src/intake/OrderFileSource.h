#pragma once

#include "intake/KeptFiles.h"
#include "intake/LineSource.h"

#include <QString>

#include <memory>
#include <set>
#include <string>

namespace TC {

/// Order files. A file is taken away from its writer by renaming it to its .tmp name, and deleted when the
/// source lets go of it. So a file is never read twice, and one whose orders have not been handed over still
/// lies under its .tmp name after a crash. Nothing stays open between passes.
///
/// With the switch "mdl_order_file_guard" on, a file that is damaged or not complete is refused whole and
/// kept, see COrderFileScan, and a file that is left under a .tmp name is kept as well instead of being
/// deleted. File thread.
class COrderFileSourceKind final : public ILineSourceKind {
public:
    /// File strategies with a path; tables are not read yet.
    bool serves(const COrderStrategyParam& strategy) const override;
    std::unique_ptr<ILineSource> take(int channel, const COrderStrategyParam& strategy) override;

private:
    bool isFileThere(int channel, const COrderStrategyParam& strategy);
    bool clearTmpPath(int channel, const COrderStrategyParam& strategy, bool isGuarded);
    void tellLeftWaiting(int channel, const COrderStrategyParam& strategy, const std::string& cause);

    CKeptFiles m_kept;
    std::set<QString> m_leftWaiting; ///< paths of files that cannot be taken and were reported
};

} // namespace TC
