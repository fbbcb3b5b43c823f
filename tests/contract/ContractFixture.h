#pragma once

#include "tests/contract/ContractHost.h"

#include <gtest/gtest.h>

#include <ostream>
#include <string>
#include <thread>
#include <vector>

/// How test output names the kind.
inline void PrintTo(const CContractHostKind& kind, std::ostream* out) {
    *out << kind.name;
}

/// A suite's fixture: a host of the kind, installed for the test.
class CContractTest : public testing::TestWithParam<CContractHostKind> {
protected:
    const CContractWorld& world() const { return m_host->world(); }

    /// Runs the work on another thread, to its end.
    template<typename Work>
    static void onAnotherThread(const Work& work) {
        std::thread(work).join();
    }

    /// Runs the work many times on several threads at once.
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

inline std::string contractHostName(const testing::TestParamInfo<CContractHostKind>& info) {
    return info.param.name;
}

/// Runs a suite against every kind of host of the program.
#define CONTRACT_SUITE(Suite)                                                                                \
    INSTANTIATE_TEST_SUITE_P(Hosts, Suite, testing::ValuesIn(contractHosts()), contractHostName)
