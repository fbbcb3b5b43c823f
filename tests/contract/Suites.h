#pragma once

namespace contract {

// One function for each file of suites. Calling it makes the linker take the file out of the static library;
// without that its tests would be missing without a word.
void linkAlgorithmSuites();
void linkEnvironmentSuites();
void linkExchangeSuites();
void linkOrderClientSuites();
void linkQuoteSuites();
void linkTradeSuites();
void linkTradingRulesSuites();
void linkUserConfigSuites();

} // namespace contract
