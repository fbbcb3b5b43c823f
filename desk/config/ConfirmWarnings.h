#pragma once

#include "desk/config/DeskConfig.h"
#include "desk/config/Diagnostics.h"

namespace desk {

/// Lines of desk.toml for warnings about confirmations.
struct CConfirmLines {
    int m_nForced = 0;       ///< of the switch that lets every command be confirmed; 0: it is off
    int m_nAnswer = 0;       ///< of the key `confirm`; 0: it is missing
    int m_nOrderService = 0; ///< of the key `order_service`, or of its table
};

/// Warns if commands or batches must be confirmed and nobody is there to ask, and if an answer has no effect.
/// Call it after all tables are read, because the answer may be in a table after the switches.
void warnOfConfirmations(const CDeskConfig& config, const CConfirmLines& lines, CDiagnostics& diagnostics);

} // namespace desk
