#pragma once

#include <cstddef>
#include <string>
#include <vector>

/// Names of the deployment switches of the order module, for luawrapper::isOrderSwitchOn. All are off unless
/// the host's LuaModuleCtrl::checkModule says that they are on.
namespace TC {

/// The module, the first part of the path that LuaModuleCtrl::checkModule gets.
inline constexpr const char* kOrderModule = "mdl_order";

inline constexpr const char* kCommandGuardSwitch = "mdl_order_command_guard";
inline constexpr const char* kCommandRemarkSwitch = "mdl_order_command_remark";
inline constexpr const char* kComposeHedgeSwitch = "mdl_order_compose_hedge";
inline constexpr const char* kComposeTradeSwitch = "mdl_order_compose_basket_buy_sell";
inline constexpr const char* kConfirmGuardSwitch = "mdl_order_confirm_guard";
inline constexpr const char* kConfirmReadOnlySwitch = "mdl_order_confirm_read_only";
inline constexpr const char* kCreditSpecialCodeSwitch = "mdl_order_credit_special_code";
inline constexpr const char* kFileGuardSwitch = "mdl_order_file_guard";
inline constexpr const char* kForceConfirmSwitch = "mdl_order_service_force_confirm";
inline constexpr const char* kMarketIfTouchedSwitch = "mdl_order_market_if_touched";
inline constexpr const char* kPbDisplaySwitch = "mdl_order_pb_display";
inline constexpr const char* kSocketGuardSwitch = "mdl_order_socket_guard";
inline constexpr const char* kSplitOrderNumSwitch = "mdl_order_split_orderNum";
inline constexpr const char* kTriggerPriceSwitch = "mdl_order_trigger_price";

/// All switches of the module, for a host that lets its user set them.
inline constexpr const char* kOrderSwitches[] = {
    kCommandGuardSwitch,  kCommandRemarkSwitch,   kComposeHedgeSwitch,      kComposeTradeSwitch,
    kConfirmGuardSwitch,  kConfirmReadOnlySwitch, kCreditSpecialCodeSwitch, kFileGuardSwitch,
    kForceConfirmSwitch,  kMarketIfTouchedSwitch, kPbDisplaySwitch,         kSocketGuardSwitch,
    kSplitOrderNumSwitch, kTriggerPriceSwitch};

/// The name of the switch that a path of LuaModuleCtrl::checkModule asks for. Null if the path is not the
/// order module and one switch. The pointer is into the path. Any thread.
inline const std::string* orderSwitchOf(const std::vector<std::string>& path) {
    constexpr std::size_t kModuleAndSwitch = 2;
    return path.size() == kModuleAndSwitch && path[0] == kOrderModule ? &path[1] : nullptr;
}

} // namespace TC
