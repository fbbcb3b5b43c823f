#pragma once

namespace contract {

/// One function for each file of suites. Calling it makes the linker include that file of the static library.
/// Otherwise its tests would be missing without any message.
void linkAlgorithmSuites();
void linkEnvironmentSuites();
void linkExchangeSuites();
void linkFunctionSuites();
void linkOrderClientSuites();
void linkQuoteSuites();
void linkTradeSuites();
void linkTradingRulesSuites();
void linkUserConfigSuites();

} // namespace contract
