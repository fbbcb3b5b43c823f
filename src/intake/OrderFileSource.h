#pragma once

#include "orderservice/intake/KeptFiles.h"
#include "orderservice/intake/LineSource.h"

#include <QString>

#include <memory>
#include <set>
#include <string>

namespace TC {

/// Order files. A file is taken away from its writer by renaming it to its .tmp name. It is deleted when its
/// source is destroyed. So no file is read twice. After a crash, a file whose orders were not handed over is
/// still there under its .tmp name. No file stays open between passes.
///
/// If the switch "mdl_order_file_guard" is on, a damaged or incomplete file is refused completely and kept,
/// see COrderFileScan. A file that was left under a .tmp name is also kept instead of being deleted. Used on
/// the file thread.
class COrderFileSourceKind final : public ILineSourceKind {
public:
    /// Serves file strategies that have a path. Tables are not read yet.
    bool serves(const COrderStrategyParam& strategy) const override;
    std::unique_ptr<ILineSource> take(int channel, const COrderStrategyParam& strategy) override;

private:
    bool isFileThere(int channel, const COrderStrategyParam& strategy);
    bool clearTmpPath(int channel, const COrderStrategyParam& strategy, bool isGuarded);
    void reportLeftWaiting(int channel, const COrderStrategyParam& strategy, const std::string& cause);

    CKeptFiles m_kept;
    std::set<QString> m_leftWaiting; ///< paths of files that cannot be taken and were reported
};

} // namespace TC
