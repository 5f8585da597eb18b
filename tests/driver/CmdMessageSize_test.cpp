// Commands with huge names and values.

#include <gtest/gtest.h>

#include <tavrin_driver/CmdMessage.h>
#include <tavrin_testing/FakeVariables.h>
#include <cstddef>
#include <string>

namespace {

class CmdMessageSize : public testing::Test {
 protected:
  tavrin_testing::FakeVariables manager;
  CCmdMessage message{manager, 0};
};

// A copy or a comparison for each null would exceed the time limit of the test.
TEST_F(CmdMessageSize, ReadsNullsAfterAHugeNameAndValue) {
  const std::string huge(std::size_t{8} * 1024 * 1024, 'n');
  std::string text = R"({"c": {"params": [{"name": ")" + huge + R"(", "value": {"static": ")" + huge + "\"}}";
  for (int i = 0; i < 400'000; ++i) text += ",null";
  EXPECT_EQ(message.Load(text + "]}}"), 0);
  EXPECT_EQ(message.GetParamMap().size(), 1U);
}

TEST_F(CmdMessageSize, ReadsAHugeValue) {
  const std::string huge(std::size_t{64} * 1024 * 1024, 'x');
  ASSERT_EQ(message.Load("<c><params><param><name>a</name><value><static>" + huge +
                         "</static></value></param></params></c>"),
            0);
  ASSERT_EQ(message.Load(R"({"c": {"params": [{"name": "b", "value": {"static": ")" + huge + "\"}}]}}"), 0);
  EXPECT_TRUE(message.getParam("a") == huge);
  EXPECT_TRUE(message.getParam("b") == huge);
}

}  // namespace
