#pragma once

#include "desk/config/DeskConfig.h"
#include "desk/config/Diagnostics.h"
#include "desk/config/FolderFiles.h"
#include "desk/config/StrategyStore.h"
#include "orderservice/base/KNError.h"

#include <string>

namespace desk {

/// Reads strategies.toml of the folder. Settings start from the user's defaults. The keys of a strategy set
/// the slot of its family, and the keys of its setting tables set the slot that the table names. The
/// instruments and desk.toml must be read before.
void readStrategies(const std::string& folder, CDeskConfig& config, CDiagnostics& diagnostics);

/// Keeps strategies in strategies.toml of a folder. Paths below the folder are written relative to it.
/// Settings are written only if they differ from the user's defaults. A strategy can be kept only if
/// readStrategies reads it back without a mistake and without a difference.
class CStrategyFile : public IStrategyStore {
public:
    /// `config`: the configuration that was loaded from the folder.
    CStrategyFile(std::string folder, CDeskConfig config);

    std::string whyNotKept(const TC::COrderStrategyParam& strategy,
                           const TC::COrderStrategyMap& others) const override;
    /// Returns the reason why the strategy must not be changed to these values, or started with them, now;
    /// for people, empty if it may. `others`: the strategies whose files it must not share. Any thread.
    std::string whyRefused(const TC::COrderStrategyParam& strategy,
                           const TC::COrderStrategyMap& others) const;
    /// Replaces the file, completely or not at all. Only the file's owner can read or write it.
    [[nodiscard]] utils::KNError save(const TC::COrderStrategyMap& strategies) const override;

private:
    std::string m_strFolder;
    CDeskConfig m_config; ///< without its strategies
};

} // namespace desk
