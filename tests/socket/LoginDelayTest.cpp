// Failed logins delay their own address. Other addresses do not wait.
#include "orderservice/socket/FailedLogins.h"
#include "tests/socket/SocketFixture.h"

#include <algorithm>
#include <memory>
#include <string>
#include <vector>

namespace {

using namespace TC;

constexpr std::chrono::milliseconds kNow{0};

class LoginDelay : public SocketFixture {
protected:
    LoginDelay() { guard(); }

    /// A connection with a user name that has just sent a wrong password.
    std::unique_ptr<CTestSocket> guess(const std::string& pass = "wrong") {
        auto client = connect();
        EXPECT_EQ(client->ask("user trader"), kOk);
        client->send("pass " + pass + "\r\n");
        return client;
    }
    /// Fails this number of logins, each on a new connection, while time passes.
    void fail(int count) {
        for (int i = 0; i < count; ++i) {
            const auto client = connect();
            EXPECT_EQ(askWaiting(*client, "pass wrong"), kBadLogin);
        }
    }
    /// Whether the client has received nothing after the listener has read everything that was sent before.
    static bool isQuiet(CTestSocket& client, CTestSocket& bystander) {
        EXPECT_EQ(bystander.ask("cancel 1"), kOk);
        return !client.waitForData(kNow);
    }
};

TEST_F(LoginDelay, FourthFailureOfAnAddressIsAnsweredLater) {
    start();
    const auto trader = logIn();
    for (int i = 0; i < CFailedLogins::kFree; ++i)
        EXPECT_EQ(guess()->readLine(), kBadLogin);
    const auto client = guess();
    EXPECT_TRUE(isQuiet(*client, *trader));
    passTime(0.4);
    EXPECT_TRUE(isQuiet(*client, *trader));
    passTime(0.11);
    EXPECT_EQ(client->readLine(), kBadLogin);
}

TEST_F(LoginDelay, TimerOfTheListenerEndsTheDelay) {
    start();
    const auto trader = logIn();
    fail(CFailedLogins::kFree);
    const auto client = guess();
    EXPECT_TRUE(isQuiet(*client, *trader));
    passTime(0.4999); // the timer is set again for the remaining time
    EXPECT_TRUE(isQuiet(*client, *trader));
    clock.sleep(0.001);
    EXPECT_EQ(client->readLine(), kBadLogin);
}

TEST_F(LoginDelay, AnotherLoopbackAddressWaitsToo) {
    start();
    const auto trader = logIn();
    fail(CFailedLogins::kFree);
    CTestSocket client(m_nPort, "127.0.0.2");
    EXPECT_EQ(client.readLine(), kGreeting);
    EXPECT_EQ(client.ask("user trader"), kOk);
    client.send("pass secret\r\n");
    EXPECT_TRUE(isQuiet(client, *trader));
    passTime(0.51);
    EXPECT_EQ(client.readLine(), kOk);
}

TEST_F(LoginDelay, RightPasswordWaitsAsLongAsAWrongOneAndNotLonger) {
    start();
    const auto trader = logIn();
    fail(20);
    const auto wrong = guess();
    const auto right = guess("secret");
    EXPECT_TRUE(isQuiet(*wrong, *trader));
    passTime(3.9);
    EXPECT_TRUE(isQuiet(*wrong, *trader));
    EXPECT_TRUE(isQuiet(*right, *trader));
    passTime(0.11);
    EXPECT_EQ(wrong->readLine(), kBadLogin);
    EXPECT_EQ(right->readLine(), kOk);
    EXPECT_EQ(right->ask("cancel 2"), kOk);
}

TEST_F(LoginDelay, GoodLoginDoesNotSpeedUpItsAddress) {
    start();
    fail(20);
    const auto right = connect();
    right->ask("user trader");
    EXPECT_EQ(askWaiting(*right, "pass secret"), kOk);
    const auto client = guess();
    EXPECT_TRUE(isQuiet(*client, *right));
    passTime(3.9);
    EXPECT_TRUE(isQuiet(*client, *right));
}

TEST_F(LoginDelay, AddressRecoversAfterAMinute) {
    start();
    fail(20);
    passTime(60.05); // the sum of steps of 0.1 is not exact
    EXPECT_EQ(guess()->readLine(), kBadLogin);
    logIn();
}

TEST_F(LoginDelay, LinesAfterAPasswordWaitForIt) {
    start();
    const auto trader = logIn();
    fail(CFailedLogins::kFree);
    const auto client = connect();
    client->send("user trader\r\npass secret\r\ncancel 8\r\nquit\r\n");
    EXPECT_EQ(client->readLine(), kOk);
    EXPECT_TRUE(isQuiet(*client, *trader));
    passTime(0.51);
    EXPECT_EQ(client->readAll(), kOk + kOk + kOk);
    stop();
    EXPECT_EQ(gate.cancelledTasks.back(), 8);
}

TEST_F(LoginDelay, WhoseLoginWaitsIsNotSilent) {
    start();
    const auto trader = logIn();
    fail(20);
    const auto client = connect();
    client->ask("user trader");
    passTime(58);
    client->send("pass secret\r\n");
    EXPECT_TRUE(isQuiet(*client, *trader));
    passTime(3); // more than a minute since it connected
    EXPECT_TRUE(isQuiet(*client, *trader));
    passTime(1.1);
    EXPECT_EQ(client->readLine(), kOk);
}

TEST_F(LoginDelay, ListenerWithoutALoginSlowsNobody) {
    start("", "secret");
    for (int i = 0; i < 8; ++i)
        EXPECT_EQ(connect()->ask("pass wrong"), kBadLogin);
}

TEST_F(LoginDelay, SeveralGuessesOfOneConnectionWaitOneByOne) {
    start();
    const auto trader = logIn();
    fail(20);
    const auto client = guess();
    client->send("pass secret\r\n");
    EXPECT_TRUE(isQuiet(*client, *trader));
    passTime(4.1);
    EXPECT_EQ(client->readLine(), kBadLogin);
    EXPECT_TRUE(isQuiet(*client, *trader));
    passTime(4.1);
    EXPECT_EQ(client->readLine(), kOk);
}

/// The delays of simultaneous guesses grow as if the guesses came one after the other.
TEST_F(LoginDelay, ConnectionsThatWaitAtOnceDoNotShareTheFirstDelay) {
    start();
    const auto trader = logIn();
    fail(CFailedLogins::kFree);
    std::vector<std::unique_ptr<CTestSocket>> wave;
    for (int i = 0; i < 6; ++i)
        wave.push_back(guess());
    EXPECT_TRUE(isQuiet(*wave.back(), *trader));
    for (const double seconds : {0.501, 0.5, 1.0}) {
        passTime(seconds);
        EXPECT_EQ(wave.front()->readLine(), kBadLogin);
        wave.erase(wave.begin());
        EXPECT_TRUE(isQuiet(*wave.front(), *trader));
    }
    passTime(1.9);
    EXPECT_TRUE(isQuiet(*wave.front(), *trader));
    passTime(0.1);
    for (const auto& client : wave)
        EXPECT_EQ(client->readLine(), kBadLogin);
}

TEST_F(LoginDelay, GuesserThatKeepsItsConnectionsMakesRoomForANewOne) {
    start();
    const auto trader = logIn();
    fail(20);
    std::vector<std::unique_ptr<CTestSocket>> guessers;
    for (int i = 0; i < CFailedLogins::kMaxDelayed; ++i)
        guessers.push_back(guess());
    EXPECT_TRUE(isQuiet(*guessers.back(), *trader));
    passTime(4.1);
    for (const auto& client : guessers) {
        EXPECT_EQ(client->readLine(), kBadLogin);
        client->send("pass wrong\r\n");
    }
    EXPECT_TRUE(isQuiet(*guessers.back(), *trader));
    const auto right = guess("secret");
    EXPECT_TRUE(isQuiet(*right, *trader));
    const auto isRefused = [](const auto& client) { return client->waitForData(kNow); };
    EXPECT_EQ(std::count_if(guessers.begin(), guessers.end(), isRefused), 1);
    const auto refused = std::find_if(guessers.begin(), guessers.end(), isRefused);
    ASSERT_NE(refused, guessers.end());
    EXPECT_EQ((*refused)->readAll(), "-ERR Too Many Failed Logins\r\n");
    passTime(4.1);
    EXPECT_EQ(right->readLine(), kOk);
}

TEST_F(LoginDelay, OrdersOfThoseWhoAreLoggedInDoNotWaitAndTheirNextPassDoes) {
    start();
    const auto trader = logIn();
    fail(20);
    EXPECT_EQ(trader->ask("cancel 1"), kOk);
    trader->send("pass secret\r\n");
    const auto other = connect();
    EXPECT_EQ(other->ask("nonsense"), "-ERR Bad Command\r\n");
    EXPECT_FALSE(trader->waitForData(kNow));
    passTime(4.1);
    EXPECT_EQ(trader->readLine(), kBadLogin); // no `user` line since its login
}

TEST_F(LoginDelay, AsManyAsMayWaitDoAndThoseWhoHaveGoneMakeRoom) {
    start();
    const auto trader = logIn();
    fail(20);
    std::vector<std::unique_ptr<CTestSocket>> waiting;
    for (int i = 0; i < CFailedLogins::kMaxDelayed; ++i)
        waiting.push_back(guess());
    EXPECT_TRUE(isQuiet(*waiting.back(), *trader));
    EXPECT_EQ(guess("secret")->readAll(), "-ERR Too Many Failed Logins\r\n");
    waiting.resize(waiting.size() - 10);
    passTime(1);
    const auto late = guess("secret");
    EXPECT_TRUE(isQuiet(*late, *trader));
    passTime(4);
    EXPECT_EQ(waiting.front()->readLine(), kBadLogin);
    EXPECT_EQ(late->readLine(), kOk);
}

} // namespace
