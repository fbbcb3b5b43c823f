#include "desk/config/ConfirmWarnings.h"

#include "desk/config/FolderFiles.h"
#include "orderservice/platform/Switches.h"
#include "orderservice/platform/UserSettings.h"

#include <string>

namespace desk {
namespace {

/// Whether the user's settings let orders of sockets, files or tables wait for a confirmation.
bool asks(int hintBits) {
    return (hintBits & (TC::kHintSocketOrders | TC::kHintOrderFiles | TC::kHintTableBatches)) != 0;
}

/// The desk has no dialog of its own, so desk.toml answers.
void warnOfBatches(const CDeskConfig& config, int line, CDiagnostics& diagnostics) {
    const CUserEntry& user = config.user;
    if (user.orderService || user.rights.empty() || !asks(user.hintBits)) return;
    const std::string answer = config.confirm == EConfirm::Accept
                                   ? "confirm = \"accept\" under [desk]: they are sent, and nobody is asked"
                                   : "confirm = \"decline\" under [desk]: none of them is sent";
    diagnostics.warn(kDeskFile, line,
                     "user: order_service is false and hint_bits is " + std::to_string(user.hintBits) +
                         ", so orders must be confirmed; without a window the answer is " + answer);
}

} // namespace

void warnOfConfirmations(const CDeskConfig& config, const CConfirmLines& lines, CDiagnostics& diagnostics) {
    if (lines.m_nForced != 0 && !config.acceptForcedConfirm)
        diagnostics.warn(
            kDeskFile, lines.m_nForced,
            std::string("switches: ") + TC::kForceConfirmSwitch +
                " is on and accept_forced_confirm under [desk] is not: every command is declined");
    if (lines.m_nAnswer != 0 && config.user.orderService)
        diagnostics.warn(kDeskFile, lines.m_nAnswer,
                         "desk: confirm has no effect with order_service = true under [user]");
    warnOfBatches(config, lines.m_nOrderService, diagnostics);
}

} // namespace desk
