#pragma once

#include "base/KNError.h"
#include "desk/config/DeskConfig.h"
#include "desk/config/Diagnostics.h"
#include "desk/config/FolderFiles.h"
#include "desk/config/StrategyStore.h"

#include <string>

namespace desk {

/// Reads strategies.toml of the folder. Settings start from the user's defaults; the keys of a strategy go to
/// its family's slot, those of its setting tables to the slot that they name. Needs the instruments and what
/// desk.toml says.
void readStrategies(const std::string& folder, CDeskConfig& config, CDiagnostics& diagnostics);

/// strategies.toml of a folder as the place where strategies are kept. Paths below the folder are written
/// relative to it, settings as far as they differ from the user's defaults. What is kept is what
/// readStrategies reads back without a mistake and without a difference.
class CStrategyFile : public IStrategyStore {
public:
    /// The configuration that the folder was loaded with.
    CStrategyFile(std::string folder, CDeskConfig config);

    std::string whyNotKept(const TC::COrderStrategyParam& strategy,
                           const TC::COrderStrategyMap& others) const override;
    /// Why the strategy must not be changed to this or started like this now, for people; empty if it may.
    /// `others`: the strategies whose files it must not meet. Any thread.
    std::string whyRefused(const TC::COrderStrategyParam& strategy,
                           const TC::COrderStrategyMap& others) const;
    /// Writes the file anew, whole or not at all, for its owner alone.
    [[nodiscard]] utils::KNError save(const TC::COrderStrategyMap& strategies) const override;

private:
    std::string m_strFolder;
    CDeskConfig m_config; ///< without its strategies
};

} // namespace desk
