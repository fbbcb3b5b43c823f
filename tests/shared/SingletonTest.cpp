// A library that the process loads later sees the same singletons, types and signals as the program. Strategy
// libraries of customers are loaded in this way.
#include "orderservice/platform/MsgService.h"
#include "orderservice/platform/TradeClient.h"
#include "orderservice/records/Portfolio.h"
#include "orderservice/service/OrderService.h"
#include "tests/shared/SingletonPlugin.h"
#include "tests/support/FakeHost.h"

#include <dlfcn.h>
#include <gtest/gtest.h>

namespace {

class LoadedLibrary : public testing::Test {
protected:
    void SetUp() override {
        TC::COrderService::initInstance(new TC::COrderService);
        m_library = dlopen(PLUGIN_FILE, RTLD_NOW | RTLD_LOCAL);
        ASSERT_NE(m_library, nullptr) << dlerror();
    }
    void TearDown() override {
        if (m_library != nullptr) dlclose(m_library);
        TC::COrderService::release();
    }
    template<typename Function>
    Function* find(const char* name, Function*) {
        auto* function = reinterpret_cast<Function*>(dlsym(m_library, name));
        EXPECT_NE(function, nullptr) << name;
        return function;
    }

    CFakeHost m_host;
    void* m_library = nullptr;
};
#define IN_LIBRARY(function) (*find(#function, static_cast<decltype(&function)>(nullptr)))

TEST_F(LoadedLibrary, SeesTheSameSingletons) {
    EXPECT_EQ(IN_LIBRARY(serviceInLibrary)(), TC::COrderService::instance());
    EXPECT_EQ(IN_LIBRARY(tradeClientInLibrary)(), &m_host.trade);
    EXPECT_EQ(IN_LIBRARY(messagesInLibrary)(), &m_host.messages);
}

TEST_F(LoadedLibrary, CatchesExceptionsOfTheOrderServiceByType) {
    EXPECT_TRUE(IN_LIBRARY(catchesHostError)());
    EXPECT_TRUE(IN_LIBRARY(catchesJsonError)());
}

TEST_F(LoadedLibrary, ConnectsToSignalsOfTheService) {
    EXPECT_TRUE(IN_LIBRARY(connectsToService)());
}

TEST_F(LoadedLibrary, CastsRecordsOfTheProgram) {
    const knservice::CPositionDetail position;
    const knservice::CPositionStatics statics;
    EXPECT_TRUE(IN_LIBRARY(castsRecord)(static_cast<const knservice::IData*>(&position)));
    EXPECT_FALSE(IN_LIBRARY(castsRecord)(static_cast<const knservice::IData*>(&statics)));
}

} // namespace
