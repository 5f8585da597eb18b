// Counts the allocations of messages, and checks what documents release.

#include <gtest/gtest.h>
#include <json/value.h>

#include <tavrin_driver/BindMessage.h>
#include <tavrin_driver/CmdMessage.h>
#include <tavrin_driver/CondMessage.h>
#include <tavrin_driver/ZqColor.h>
#include <tavrin_platform/XmlNode.h>
#include <tavrin_testing/FakeVariables.h>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>

#include "CountedAllocations.h"

namespace {

// Returns the number of allocations of `work`, after the allocations that a thread makes only once.
template <typename Work>
std::size_t AllocationsOf(Work work) {
  work();
  const std::size_t before = allocated.calls;
  work();
  return allocated.calls - before;
}

const std::string longNumber = "00000000000000000000000000000042";
static_assert(sizeof(std::string) <= 32, "a string of 32 characters allocates memory");

CCmdMessage Level(zq::IVariableManager& manager, const std::string& value) {
  CCmdMessage message("SET_LEVEL", manager);
  message.addParam("LEVEL", "number", value);
  return message;
}

TEST(MemoryUse, AllocationsAreCounted) {
  EXPECT_EQ(AllocationsOf([] { return std::string(longNumber); }), 1U);
  EXPECT_EQ(AllocationsOf([] { std::free(std::calloc(1, 100)); }), 1U);
}

TEST(MemoryUse, LoadingACommandOfThreeParametersTakesAtMostTwentyAllocations) {
  tavrin_testing::FakeVariables manager;
  CCmdMessage message("SET_LEVEL", manager);
  message.addParam("LEVEL", "number", "75");
  message.addVarParam("FOLLOW_THE_OUTDOOR_BRIGHTNESS", "number", 17, 1001);
  message.addParam("RAMP_SECONDS", "number", "2.5");
  const std::string text = message.toXml(false);
  const auto load = [&] { return CCmdMessage::CreateFromString(text, manager); };
  EXPECT_EQ(load()->GetParamMap().size(), 3U);
  EXPECT_LE(AllocationsOf(load), 20U);
}

TEST(MemoryUse, JsonEntriesThatAddNoParameterAllocateNothing) {
  tavrin_testing::FakeVariables manager;
  const auto read = [&manager](Json::Value& object) {
    static_cast<void>(CCmdMessage(manager, 0).parseJsonObject(object));
  };
  Json::Value object(Json::objectValue);
  Json::Value& entry = object["params"][0];
  entry["name"] = "LEVEL";
  entry["value"]["static"] = longNumber;
  const std::size_t one = AllocationsOf([&] { read(object); });
  EXPECT_GT(one, 0U);

  for (int i = 0; i < 100; ++i) {
    object["params"].append(Json::nullValue);
    object["params"].append(Json::objectValue)["name"] = "LEVEL";
  }
  EXPECT_EQ(AllocationsOf([&] { read(object); }), one);
}

TEST(MemoryUse, AddingAParameterThatExistsAllocatesNothing) {
  tavrin_testing::FakeVariables manager;
  CCmdMessage command = Level(manager, "75");
  CBindMessage binding;
  binding.addParam("LEVEL", "number", "75");
  CCondMessage conditional;
  conditional.addParam("LEVEL", "number", "75");
  const std::string name = "LEVEL";
  EXPECT_EQ(AllocationsOf([&] { command.addParam(name, longNumber, longNumber); }), 0U);
  EXPECT_EQ(AllocationsOf([&] { command.addVarParam(name, longNumber, 1, 2); }), 0U);
  EXPECT_EQ(AllocationsOf([&] { binding.addParam(name, longNumber, longNumber); }), 0U);
  EXPECT_EQ(AllocationsOf([&] { conditional.addParam(name, longNumber, longNumber); }), 0U);
  EXPECT_EQ(command.getParam(name), "75");
}

TEST(MemoryUse, ConvertingAColourAllocatesNothing) {
  const ZqColor cool(0.28, 0.29, ZqColor::XY);
  const ZqColor far(0.7, 0.3, ZqColor::XY);
  double hue = 0;
  double saturation = 0;
  double value = 0;
  for (const ZqColor& color : {cool, far}) {
    EXPECT_EQ(AllocationsOf([&] { color.toHSV(hue, saturation, value); }), 0U);
    EXPECT_EQ(AllocationsOf([&] { return color.toCCTTable(); }), 0U);
  }
}

TEST(MemoryUse, ReadingAStringAllocatesOnlyTheString) {
  tavrin_testing::FakeVariables manager;
  const CCmdMessage shortValue = Level(manager, "42");
  const CCmdMessage longValue = Level(manager, longNumber);
  const std::string name = "LEVEL";
  EXPECT_EQ(AllocationsOf([&] { return shortValue.getParam(name); }), 0U);
  EXPECT_EQ(AllocationsOf([&] { return longValue.getParam(name); }), 1U);
  EXPECT_EQ(AllocationsOf([&] { return shortValue.getParamRequired(name); }), 0U);
  EXPECT_EQ(AllocationsOf([&] { return longValue.getParamRequired(name); }), 1U);
  EXPECT_EQ(AllocationsOf([&] { return longValue.hasParam(name); }), 0U);
}

TEST(MemoryUse, DestroyingADocumentReleasesItsMemory) {
  const auto blocksLeftBy = [](const std::string& text) {
    EXPECT_TRUE(zq::CreateXmlDocument(text));
    const std::size_t before = allocated.blocks;
    EXPECT_TRUE(zq::CreateXmlDocument(text));
    return allocated.blocks - before;
  };
  std::string largeTree = "<a>";
  for (int i = 0; i < 50'000; ++i) largeTree += "<b/>";
  EXPECT_EQ(blocksLeftBy("<a/>"), 0U);
  EXPECT_EQ(blocksLeftBy(largeTree + "</a>"), 0U);
}

TEST(MemoryUse, ReadingANumberAllocatesNothing) {
  tavrin_testing::FakeVariables manager;
  const CCmdMessage message = Level(manager, longNumber);
  const std::string name = "LEVEL";
  ASSERT_EQ(message.getParamRequiredInt(name), 42);
  EXPECT_EQ(AllocationsOf([&] { return message.getParamRequiredInt(name); }), 0U);
  EXPECT_EQ(AllocationsOf([&] { return message.getParamRequiredIntRanged(name, 0, 100); }), 0U);
  EXPECT_EQ(AllocationsOf([&] { return message.getParamRequiredULong(name); }), 0U);
  EXPECT_EQ(AllocationsOf([&] { return message.getParamRequiredBool(name); }), 0U);
}

// A string with a comma is copied, to replace the comma by a point.
TEST(MemoryUse, ReadingADoubleAllocatesNothingUnlessItsTextIsLongAndHasAComma) {
  tavrin_testing::FakeVariables manager;
  const std::string name = "LEVEL";
  const CCmdMessage shortPoint = Level(manager, "-1234567.891234");
  const CCmdMessage shortComma = Level(manager, "-1234567,891234");
  const CCmdMessage longPoint = Level(manager, longNumber + ".5");
  const CCmdMessage longComma = Level(manager, longNumber + ",5");
  ASSERT_EQ(longPoint.getParamRequiredDouble(name, 2), 42.5);
  ASSERT_EQ(longComma.getParamRequiredDouble(name, 2), 42.5);
  EXPECT_EQ(AllocationsOf([&] { return shortPoint.getParamRequiredDouble(name, 2); }), 0U);
  EXPECT_EQ(AllocationsOf([&] { return shortComma.getParamRequiredDouble(name, 2); }), 0U);
  EXPECT_EQ(AllocationsOf([&] { return longPoint.getParamRequiredDouble(name, 2); }), 0U);
  EXPECT_EQ(AllocationsOf([&] { return longComma.getParamRequiredDouble(name, 2); }), 1U);
}

TEST(MemoryUse, ReadingATypedParameterOfABindingAllocatesNothing) {
  bool truth = false;
  std::int32_t number = 0;
  std::uint32_t natural = 0;
  double real = 0;
  const std::string name = "LEVEL";
  for (const std::string& value : {std::string("TRUE"), longNumber, longNumber + ",5"}) {
    CBindMessage message;
    message.addParam(name, "number", value);
    ASSERT_TRUE(message.getParamBool(name, truth));
    EXPECT_EQ(AllocationsOf([&] { return message.getParam(name); }), value.size() < 16 ? 0U : 1U) << value;
    EXPECT_EQ(AllocationsOf([&] { return message.getParamBool(name, truth); }), 0U) << value;
    EXPECT_EQ(AllocationsOf([&] { return message.getParamInt(name, number); }), 0U) << value;
    EXPECT_EQ(AllocationsOf([&] { return message.getParamUInt(name, natural); }), 0U) << value;
    EXPECT_EQ(AllocationsOf([&] { return message.getParamLong(name, number); }), 0U) << value;
    EXPECT_EQ(AllocationsOf([&] { return message.getParamULong(name, natural); }), 0U) << value;
    EXPECT_EQ(AllocationsOf([&] { return message.getParamDouble(name, real); }), 0U) << value;
  }
}

}  // namespace
