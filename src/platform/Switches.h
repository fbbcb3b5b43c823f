#pragma once

/// Names of the deployment switches of the module "mdl_order", for luawrapper::isOrderSwitchOn. All are off
/// unless the host's LuaModuleCtrl::checkModule says that they are on.
namespace TC {

inline constexpr const char* kCommandGuardSwitch = "mdl_order_command_guard";
inline constexpr const char* kCommandRemarkSwitch = "mdl_order_command_remark";
inline constexpr const char* kComposeHedgeSwitch = "mdl_order_compose_hedge";
inline constexpr const char* kComposeTradeSwitch = "mdl_order_compose_basket_buy_sell";
inline constexpr const char* kFileGuardSwitch = "mdl_order_file_guard";
inline constexpr const char* kForceConfirmSwitch = "mdl_order_service_force_confirm";
inline constexpr const char* kPbDisplaySwitch = "mdl_order_pb_display";
inline constexpr const char* kSocketGuardSwitch = "mdl_order_socket_guard";
inline constexpr const char* kSplitOrderNumSwitch = "mdl_order_split_orderNum";

/// All of them.
inline constexpr const char* kOrderSwitches[] = {
    kCommandGuardSwitch, kCommandRemarkSwitch, kComposeHedgeSwitch, kComposeTradeSwitch, kFileGuardSwitch,
    kForceConfirmSwitch, kPbDisplaySwitch,     kSocketGuardSwitch,  kSplitOrderNumSwitch};

} // namespace TC
