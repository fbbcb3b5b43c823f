#pragma once

#include "orderservice/service/OrderService.h"
#include "tests/support/Builders.h"
#include "tests/support/FakeHost.h"
#include "tests/support/TempFolder.h"

#include <gtest/gtest.h>

#include <memory>

/// The real service on a host in memory. The order files are in the test's own folder.
class ServiceFixture : public testing::Test {
protected:
    void SetUp() override { TC::COrderService::initInstance(new TC::COrderService); }
    void TearDown() override {
        TC::COrderService::instance()->shutdown();
        TC::COrderService::release();
    }

    TC::COrderService& service() { return *TC::COrderService::instance(); }

    /// Adds a stock strategy that reads the channel's file, and creates the file.
    void addFileStrategy(int channel, bool running = true) {
        CStrategyBuilder builder;
        builder.channel(channel).file(folder.path(fileOf(channel)));
        if (!running) builder.stopped();
        host.user.addStrategy(builder);
        folder.write(fileOf(channel), "");
    }
    static std::string fileOf(int channel) { return std::to_string(channel) + ".txt"; }

    /// Writes the bytes to the order file of the channel and returns when the service has read them.
    void drop(int channel, const std::string& bytes) {
        const std::size_t before = host.records.snapshot([this] { return host.audit.reports.size(); });
        folder.handOver(fileOf(channel), bytes);
        ASSERT_TRUE(host.waitForIntakes(before + 1));
    }

    CTempFolder folder;
    CFakeHost host;
};
