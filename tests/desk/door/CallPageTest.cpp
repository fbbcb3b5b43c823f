// Sends the request of docs/desk-reference.md to a desk, and compares the answer with the page.
#include "tests/desk/commands/RunningFolder.h"
#include "tests/desk/door/ControlClient.h"
#include "tests/docs/FencedBlocks.h"

#include <nlohmann/json.hpp>

#include <gtest/gtest.h>

#include <future>
#include <string>
#include <vector>

namespace desk {
namespace {

class CallPage : public CRunningFolder {};

std::vector<std::string> blocksOfReference(const std::string& info) {
    std::vector<std::string> texts;
    for (const CFencedBlock& block : readFencedBlocks(std::string(SOURCE_DIR) + "/docs/desk-reference.md")) {
        if (block.info == info) texts.push_back(block.text);
    }
    return texts;
}

TEST_F(CallPage, RequestHasTheAnswerOfThePage) {
    const std::vector<std::string> requests = blocksOfReference("control-request");
    const std::vector<std::string> answers = blocksOfReference("control-answer");
    ASSERT_EQ(requests.size(), 1u);
    ASSERT_EQ(answers.size(), 1u);
    std::string answer;
    std::future<void> done;
    EXPECT_EQ(run({
                  [&] {
                      if (!folder.exists("desk/control.sock")) return false;
                      done = std::async(std::launch::async, [&] {
                          CControlClient client(folder.path("desk"));
                          client.send(requests[0]);
                          answer = client.readLine();
                      });
                      return true;
                  },
                  [&] { return done.wait_for(std::chrono::seconds(0)) == std::future_status::ready; },
              }),
              0);
    nlohmann::ordered_json given = nlohmann::ordered_json::parse(answer);
    nlohmann::ordered_json expected = nlohmann::ordered_json::parse(answers[0]);
    EXPECT_TRUE(given["call"].is_number_integer());
    given.erase("call"); // a number of this run
    expected.erase("call");
    EXPECT_EQ(given.dump(), expected.dump());
}

} // namespace
} // namespace desk
