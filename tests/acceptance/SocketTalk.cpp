#include "tests/acceptance/SocketTalk.h"

#include "tests/support/TestSocket.h"

#include <gtest/gtest.h>

void holdTalk(unsigned short port, const std::vector<CTalkLine>& lines, const std::function<void()>& settle) {
    CTestSocket client(port);
    std::string last = "connecting";
    for (const CTalkLine& line : lines) {
        switch (line.who) {
        case CTalkLine::EWho::Client:
            client.send(line.bytes + "\r\n");
            last = line.bytes;
            break;
        case CTalkLine::EWho::Server:
            EXPECT_EQ(client.readLine(), line.bytes + "\r\n") << "reply to: " << last;
            settle();
            break;
        case CTalkLine::EWho::ServerCloses:
            EXPECT_TRUE(client.isClosedByServer()) << "behind: " << last;
            break;
        }
    }
}
