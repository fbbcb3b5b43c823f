#include "orderservice/platform/MsgService.h"

#include "tests/platform/EchoHost.h"

#include <gtest/gtest.h>

namespace {

using namespace TC;

using MsgService = echo::CEchoHost;

TEST_F(MsgService, MessageIsAGeneralNoteWithTheUsersFlags) {
    host.user.msgFlags[EMsgTypeDef::General] = {true, false};
    host.user.msgFlags[EMsgTypeDef::OrderFailure] = {false, true};
    showServiceMsg(QStringLiteral("通道号: 3"));
    ASSERT_EQ(host.messages.messages.size(), 1u);
    const fake::CMessage& message = host.messages.messages[0];
    EXPECT_EQ(message.text, QStringLiteral("通道号: 3"));
    EXPECT_EQ(message.type, EMsgTypeDef::General);
    EXPECT_EQ(message.level, MsgLevel::Note);
    EXPECT_TRUE(message.flag1);
    EXPECT_FALSE(message.flag2);
    EXPECT_EQ(message.extra, QString());
}

TEST_F(MsgService, FlagsAreNotSwapped) {
    host.user.msgFlags[EMsgTypeDef::General] = {false, true};
    showServiceMsg(QStringLiteral("text"));
    EXPECT_FALSE(host.messages.messages.at(0).flag1);
    EXPECT_TRUE(host.messages.messages.at(0).flag2);
}

TEST_F(MsgService, MessageWithoutAUserHasNoFlags) {
    host.user.msgFlags[EMsgTypeDef::General] = {true, true};
    host.user.loggedIn = false;
    showServiceMsg(QStringLiteral("text"));
    ASSERT_EQ(host.messages.messages.size(), 1u);
    EXPECT_FALSE(host.messages.messages[0].flag1);
    EXPECT_FALSE(host.messages.messages[0].flag2);
}

} // namespace
