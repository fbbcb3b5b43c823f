#pragma once

#include "orderservice/contract/ContractHost.h"

#include <gtest/gtest.h>

#include <ostream>
#include <string>
#include <thread>
#include <vector>

namespace contract {

/// The kind that runHostContract received, as a list with one element. Empty if `trait` does not fit.
std::vector<CContractHostKind> allHosts();
std::vector<CContractHostKind> hostsWith(EHostTrait trait);
std::vector<CContractHostKind> hostsWithout(EHostTrait trait);

/// Prints the name of the kind in test output.
inline void PrintTo(const CContractHostKind& kind, std::ostream* out) {
    *out << kind.name;
}

inline std::string contractHostName(const testing::TestParamInfo<CContractHostKind>& info) {
    return info.param.name;
}

/// The fixture of a suite: a host of the kind, installed for the test.
class CContractTest : public testing::TestWithParam<CContractHostKind> {
protected:
    const CContractWorld& world() const { return m_host->world(); }
    bool has(EHostTrait trait) const { return GetParam().lacks.count(trait) == 0; }

    /// Runs the work on another thread and waits for its end.
    template<typename Work>
    static void onAnotherThread(const Work& work) {
        std::thread(work).join();
    }

    /// Runs the work many times on several threads at the same time.
    template<typename Work>
    static void onManyThreads(const Work& work) {
        constexpr int kThreads = 4;
        constexpr int kRounds = 200;
        std::vector<std::thread> threads;
        for (int i = 0; i < kThreads; ++i) {
            threads.emplace_back([&work] {
                for (int round = 0; round < kRounds; ++round)
                    work();
            });
        }
        for (std::thread& thread : threads)
            thread.join();
    }

private:
    std::unique_ptr<IContractHost> m_host = GetParam().make();
};

} // namespace contract

/// Runs a suite against every host, only against hosts with a trait, or only against hosts without it.
#define CONTRACT_SUITE_OF(Suite, hosts)                                                                      \
    GTEST_ALLOW_UNINSTANTIATED_PARAMETERIZED_TEST(Suite);                                                    \
    INSTANTIATE_TEST_SUITE_P(Hosts, Suite, testing::ValuesIn(hosts), contract::contractHostName)
#define CONTRACT_SUITE(Suite) CONTRACT_SUITE_OF(Suite, contract::allHosts())
#define CONTRACT_SUITE_WITH(Suite, trait) CONTRACT_SUITE_OF(Suite, contract::hostsWith(trait))
#define CONTRACT_SUITE_WITHOUT(Suite, trait) CONTRACT_SUITE_OF(Suite, contract::hostsWithout(trait))
