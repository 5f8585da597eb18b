#include <boost/smart_ptr/make_shared.hpp>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <tavrin_driver/CmdMessage.h>
#include <tavrin_driver/ICmdMessage.h>
#include <tavrin_testing/FakeVariables.h>
#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <iterator>
#include <limits>
#include <map>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "CountedAllocations.h"
#include "DescribeParams.h"
#include "GlobalNumbers.h"
#include "VirtualTable.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using ParamMap = std::map<std::string, DriverParam>;
using MessagePtr = boost::shared_ptr<ICmdMessage>;

class CmdMessage : public testing::Test {
 protected:
  tavrin_testing::FakeVariables manager;
};

ParamMap SampleParams() { return {{"a", {"a", "t", "1"}}, {"b", {"b", "t", 7, 8}}}; }

// --- the interface ---

using Text = const std::string&;

TEST(ICmdMessageTable, HasItsOperationsInTheirOrder) {
  using I = ICmdMessage;
  using AddText = void (I::*)(Text, Text, Text);
  using AddInt = void (I::*)(Text, Text, std::int32_t);
  const std::pair<const char*, std::size_t> operations[] = {
      {"Initialize", VirtualTableSlot(&I::Initialize)},
      {"Clear", VirtualTableSlot(&I::Clear)},
      {"clone", VirtualTableSlot(&I::clone)},
      {"addParam text", VirtualTableSlot(static_cast<AddText>(&I::addParam))},
      {"addParam int", VirtualTableSlot(static_cast<AddInt>(&I::addParam))},
      {"addParamBool", VirtualTableSlot(&I::addParamBool)},
      {"addParamUInt", VirtualTableSlot(&I::addParamUInt)},
      {"addParamULong", VirtualTableSlot(&I::addParamULong)},
      {"addParamLong", VirtualTableSlot(&I::addParamLong)},
      {"addParamDouble", VirtualTableSlot(&I::addParamDouble)},
      {"addParams", VirtualTableSlot(&I::addParams)},
      {"overwriteParam text", VirtualTableSlot(static_cast<AddText>(&I::overwriteParam))},
      {"overwriteParam int", VirtualTableSlot(static_cast<AddInt>(&I::overwriteParam))},
      {"fromXml", VirtualTableSlot(&I::fromXml)},
      {"Load", VirtualTableSlot(&I::Load)},
      {"toXml", VirtualTableSlot(&I::toXml)},
      {"toAutoNode", VirtualTableSlot(&I::toAutoNode)},
      {"getRawCommand", VirtualTableSlot(&I::getRawCommand)},
      {"getParam", VirtualTableSlot(&I::getParam)},
      {"hasParam", VirtualTableSlot(&I::hasParam)},
      {"GetParamMap", VirtualTableSlot(&I::GetParamMap)},
      {"addVarParam", VirtualTableSlot(&I::addVarParam)},
      {"getParamRequired", VirtualTableSlot(&I::getParamRequired)},
      {"getParamRequiredInt", VirtualTableSlot(&I::getParamRequiredInt)},
      {"getParamRequiredBool", VirtualTableSlot(&I::getParamRequiredBool)},
      {"getParamRequiredIntRanged", VirtualTableSlot(&I::getParamRequiredIntRanged)},
      {"getParamRequiredVarDeviceID", VirtualTableSlot(&I::getParamRequiredVarDeviceID)},
      {"getParamRequiredVarVariableID", VirtualTableSlot(&I::getParamRequiredVarVariableID)},
      {"getParamRequiredULong", VirtualTableSlot(&I::getParamRequiredULong)},
      {"getParamRequiredDouble", VirtualTableSlot(&I::getParamRequiredDouble)},
      {"getOwnerId", VirtualTableSlot(&I::getOwnerId)},
      {"setOwnerId", VirtualTableSlot(&I::setOwnerId)},
      {"setOwnerType", VirtualTableSlot(&I::setOwnerType)},
  };
  std::size_t slot = 2;  // behind the destructor
  for (const auto& [name, found] : operations) EXPECT_EQ(found, slot++) << name;
}

TEST(ICmdMessageTable, HasNoFurtherOperations) {
  struct AfterInterface : ICmdMessage {
    virtual void Next() = 0;
  };
  struct AfterMessage : CCmdMessage {
    virtual void Next() = 0;
  };
  EXPECT_EQ(VirtualTableSlot(&AfterInterface::Next), 35U);
  EXPECT_EQ(VirtualTableSlot(&AfterMessage::Next), 35U);
}

// --- construction and copies ---

TEST_F(CmdMessage, ConstructorStoresItsArguments) {
  const ParamMap params = SampleParams();
  const struct {
    const char* what;
    MessagePtr message;
    std::string contents;
    std::uint32_t owner;
  } rows[] = {
      {"owner", boost::make_shared<CCmdMessage>(manager, 4294967295U), " | ", 4294967295U},
      {"name", boost::make_shared<CCmdMessage>("ON", manager), "ON | ", 0},
      {"params", boost::make_shared<CCmdMessage>("ON", params, manager), "ON | a:t=1 b:t=@7/8", 0},
      {"Create owner", CCmdMessage::Create(manager, 5), " | ", 5},
      {"Create params", CCmdMessage::Create("ON", params, manager), "ON | a:t=1 b:t=@7/8", 0},
      {"CreateFromName", CCmdMessage::CreateFromName("ON", manager), "ON | ", 0},
      {"CreateFromString", CCmdMessage::CreateFromString("<c><command>ON</command></c>", manager), "ON | ",
       0},
      {"CreateFromString fails", CCmdMessage::CreateFromString("neither XML nor JSON", manager), " | ", 0},
      {"CreateFromString fails late",
       CCmdMessage::CreateFromString(R"({"x": {"command": "ON", "params": [{"name": "a"}], "z": 1}})",
                                     manager),
       "ON | a:=", 0},
  };
  for (const auto& [what, message, contents, owner] : rows) {
    EXPECT_EQ(Describe(*message), contents) << what;
    EXPECT_EQ(message->getOwnerId(), owner) << what;
  }
}

// Returns values from its virtual functions that differ from its fields.
class ForeignMessage : public CCmdMessage {
 public:
  using CCmdMessage::CCmdMessage;

  const std::string& getRawCommand() const override { return command; }
  const ParamMap& GetParamMap() const override { return params; }
  std::uint32_t getOwnerId() const override { return 99; }

  std::string command = "FOREIGN";
  ParamMap params = {{"x", {"x", "t", "9"}}};
};

TEST_F(CmdMessage, IsCopiedThroughTheInterface) {
  ForeignMessage source("own", manager);
  tavrin_testing::FakeVariables other;
  const CCmdMessage viaInterface(static_cast<const ICmdMessage&>(source), other);
  const CCmdMessage viaCopy(static_cast<const CCmdMessage&>(source));
  const MessagePtr viaClone = source.clone();
  for (const ICmdMessage* copy :
       std::initializer_list<const ICmdMessage*>{&viaInterface, &viaCopy, viaClone.get()}) {
    EXPECT_EQ(Describe(*copy), "FOREIGN | x:t=9");
    EXPECT_EQ(copy->getOwnerId(), 99U);
  }
}

TEST_F(CmdMessage, CopyIsIndependent) {
  CCmdMessage message("ON", SampleParams(), manager);
  message.setOwnerId(3);
  const MessagePtr copy = message.clone();
  copy->Initialize("OFF");
  copy->setOwnerId(4);
  EXPECT_EQ(Describe(message), "ON | a:t=1 b:t=@7/8");
  EXPECT_EQ(message.getOwnerId(), 3U);
  message.Clear();
  EXPECT_EQ(Describe(*copy), "OFF | ");
}

// No function returns the owner type, so the test checks whether a copy reserves space for it.
TEST_F(CmdMessage, CopyDoesNotContainTheOwnerType) {
  constexpr std::size_t size = 1000000;
  CCmdMessage message("ON", SampleParams(), manager);
  const std::size_t before = allocated.total;
  message.setOwnerType(std::string(size, 'x'));
  EXPECT_GT(allocated.total - before, size);
  const std::size_t beforeCopies = allocated.total;
  const CCmdMessage viaCopy(message);
  const CCmdMessage viaInterface(static_cast<const ICmdMessage&>(message), manager);
  const MessagePtr viaClone = message.clone();
  EXPECT_LT(allocated.total - beforeCopies, size);
  EXPECT_EQ(Describe(*viaClone), Describe(message));
}

TEST_F(CmdMessage, CopyUsesTheSameVariableManagerUnlessAnotherIsPassed) {
  manager.set(7, 8, "first");
  tavrin_testing::FakeVariables second;
  second.set(7, 8, "second");
  const CCmdMessage message("ON", SampleParams(), manager);
  EXPECT_EQ(CCmdMessage(message).getParam("b"), "first");
  EXPECT_EQ(message.clone()->getParam("b"), "first");
  EXPECT_EQ(CCmdMessage(static_cast<const ICmdMessage&>(message), second).getParam("b"), "second");
}

// --- adding ---

TEST_F(CmdMessage, AddsValuesAsText) {
  using Limits = std::numeric_limits<std::int32_t>;
  CCmdMessage message("C", manager);
  message.addParam("text", "t", "as <it> is");
  message.addParam("text2", "t", std::string());
  message.addParam("int", "t", Limits::min());
  message.addParam("int0", "t", 0);
  message.addParamLong("long", "t", Limits::max());
  message.addParamLong("long-", "t", -1);
  message.addParamUInt("uint", "t", 4294967295U);
  message.addParamULong("ulong", "t", 4294967295U);
  message.addParamBool("true", "t", true);
  message.addParamBool("false", "t", false);
  message.addParamDouble("double", "t", -1234567.125);
  message.addParamDouble("double6", "t", 1.0 / 3);
  message.addParamDouble("double0", "t", 2.0);
  message.addVarParam("variable", "t", 4294967295U, 0);
  const std::pair<const char*, const char*> rows[] = {
      {"text", "text:t=as <it> is"},
      {"text2", "text2:t="},
      {"int", "int:t=-2147483648"},
      {"int0", "int0:t=0"},
      {"long", "long:t=2147483647"},
      {"long-", "long-:t=-1"},
      {"uint", "uint:t=4294967295"},
      {"ulong", "ulong:t=4294967295"},
      {"true", "true:t=true"},
      {"false", "false:t=false"},
      {"double", "double:t=-1234567.125"},
      {"double6", "double6:t=0.333333"},
      {"double0", "double0:t=2"},
      {"variable", "variable:t=@4294967295/0"},
  };
  const ParamMap& params = message.GetParamMap();
  EXPECT_EQ(params.size(), std::size(rows));
  for (const auto& [name, contents] : rows) EXPECT_EQ(Describe(params.at(name)), contents);
}

TEST_F(CmdMessage, AddsNumbersTheSameWayUnderAnyGlobalLocale) {
  const GlobalNumbers grouping;
  CCmdMessage message("C", manager);
  message.addParamDouble("a", "t", 1234567.5);
  message.addParam("b", "t", 1234567);
  message.addParamUInt("c", "t", 1234567);
  message.addParamLong("d", "t", -1234567);
  message.addParamULong("e", "t", 1234567);
  message.overwriteParam("f", "t", 1234567);
  EXPECT_EQ(Describe(message),
            "C | a:t=1234567.5 b:t=1234567 c:t=1234567 d:t=-1234567 e:t=1234567 f:t=1234567");
}

TEST_F(CmdMessage, KeepsTheFirstParameterOfAName) {
  CCmdMessage message("C", manager);
  message.addParam("a", "first", "1");
  message.addParam("a", "t", "2");
  message.addParam("a", "t", 2);
  message.addParamBool("a", "t", true);
  message.addParamUInt("a", "t", 2);
  message.addParamULong("a", "t", 2);
  message.addParamLong("a", "t", 2);
  message.addParamDouble("a", "t", 2);
  message.addVarParam("a", "t", 2, 2);
  message.addParams({{"a", {"a", "t", "2"}}});
  EXPECT_EQ(Describe(message), "C | a:first=1");
  message.addParam("A", "t", "other case, other name");
  EXPECT_TRUE(message.hasParam("A"));
}

TEST_F(CmdMessage, AddsAMapByItsKeys) {
  CCmdMessage message("C", manager);
  message.addParam("b", "first", "1");
  message.addParams({{"a", {"a", "t", "2"}}, {"b", {"b", "t", "2"}}, {"key", {"name", "t", 3, 4}}});
  EXPECT_EQ(Describe(message), "C | a:t=2 b:first=1 key->name:t=@3/4");
}

TEST_F(CmdMessage, OrdersParametersByTheBytesOfTheirNames) {
  CCmdMessage message("C", manager);
  for (const char* name : {"b", "\xC3\xA9", "a", "B", "", "a0"}) message.addParam(name, "", "");
  std::vector<std::string> names;
  for (const auto& [name, param] : message.GetParamMap()) names.push_back(name);
  EXPECT_THAT(names, ElementsAre("", "B", "a", "a0", "b", "\xC3\xA9"));
}

TEST_F(CmdMessage, OverwritesTheWholeRecord) {
  CCmdMessage message("C", manager);
  message.addVarParam("v", "old", 7, 8);
  message.overwriteParam("v", "new", "text");
  message.addParam("s", "old", "old");
  message.overwriteParam("s", "new", std::numeric_limits<std::int32_t>::min());
  message.overwriteParam("absent", "new", 5);
  message.overwriteParam("absent2", "new", "text");
  message.addParam("absent", "t", "late");
  EXPECT_EQ(Describe(message), "C | absent:new=5 absent2:new=text s:new=-2147483648 v:new=text");
}

TEST_F(CmdMessage, OverwritesARecordByItsKey) {
  CCmdMessage message("C", manager);
  message.addParams({{"key", {"name", "old", 7, 8}}});
  message.overwriteParam("name", "new", "1");
  EXPECT_EQ(Describe(message), "C | key->name:old=@7/8 name:new=1");
  message.overwriteParam("key", "new", "2");
  EXPECT_EQ(Describe(message), "C | key:new=2 name:new=1");
}

TEST_F(CmdMessage, FindsParametersByTheKeysOfAMap) {
  manager.set(7, 8, "9");
  CCmdMessage message("C", {{"key", {"name", "t", "1"}}, {"v", {"variable", "t", 7, 8}}}, manager);
  EXPECT_TRUE(message.hasParam("key"));
  EXPECT_FALSE(message.hasParam("name"));
  EXPECT_EQ(message.getParam("key"), "1");
  EXPECT_EQ(message.getParam("name"), "");
  EXPECT_EQ(message.getParam("v"), "9");
  EXPECT_EQ(message.getParamRequired("key"), "1");
  EXPECT_THROW(message.getParamRequired("name"), ExceptionParameterMissing);
  EXPECT_EQ(message.getParamRequiredInt("key"), 1);
  EXPECT_THROW(message.getParamRequiredInt("name"), ExceptionParameterMissing);
  EXPECT_EQ(message.getParamRequiredVarVariableID("v"), 8);
  EXPECT_THROW(message.getParamRequiredVarVariableID("variable"), ExceptionParameterMissing);
}

TEST_F(CmdMessage, ExceptionsOfTheVariableManagerPropagate) {
  manager.failWith(7, 8, std::out_of_range("no such device"));
  CCmdMessage message("C", manager);
  message.addVarParam("v", "t", 7, 8);
  EXPECT_THROW(message.getParam("v"), std::out_of_range);
  EXPECT_THROW(message.getParamRequired("v"), std::out_of_range);
  EXPECT_THROW(message.getParamRequiredInt("v"), std::out_of_range);
  EXPECT_THROW(message.getParamRequiredBool("v"), std::out_of_range);
  EXPECT_THROW(message.getParamRequiredDouble("v", 1), std::out_of_range);
  EXPECT_THROW(message.getParamRequiredULong("v"), std::out_of_range);
  EXPECT_THROW(message.getParamRequiredIntRanged("v", 0, 1), std::out_of_range);
}

// No function returns the owner type, but it is the last member in the layout of version 1.
const std::string& OwnerTypeOf(const CCmdMessage& message) {
  return *(reinterpret_cast<const std::string*>(&message + 1) - 1);
}

TEST_F(CmdMessage, KeepsItsOwnerTypeUntilAnotherOneIsSet) {
  CCmdMessage message("C", manager);
  EXPECT_EQ(OwnerTypeOf(message), "");
  message.setOwnerType("scene");
  EXPECT_EQ(OwnerTypeOf(message), "scene");
  message.Initialize("D");
  EXPECT_EQ(OwnerTypeOf(message), "scene");
  message.Clear();
  EXPECT_EQ(OwnerTypeOf(message), "scene");
  message.setOwnerType("an owner type that is too long for a short string");
  EXPECT_EQ(OwnerTypeOf(message), "an owner type that is too long for a short string");
  EXPECT_EQ(OwnerTypeOf(CCmdMessage(message)), "");
}

// Exposes the protected members of the base class.
class Overriding : public CCmdMessage {
 public:
  using CCmdMessage::addParam;
  using CCmdMessage::CCmdMessage;
  using CCmdMessage::overwriteParam;

  void addParam(const std::string& name, const std::string& type, const std::string& value) override {
    seen.push_back("add " + name + ':' + type + '=' + value);
  }
  void overwriteParam(const std::string& name, const std::string& type, const std::string& value) override {
    seen.push_back("overwrite " + name + ':' + type + '=' + value);
  }

  std::vector<std::string> seen;
};

TEST_F(CmdMessage, TypedFormsCallTheStringForm) {
  Overriding message("C", manager);
  message.addParam("a", "t", -1);
  message.addParamBool("b", "t", true);
  message.addParamUInt("c", "t", 2);
  message.addParamULong("d", "t", 3);
  message.addParamLong("e", "t", -4);
  message.addParamDouble("f", "t", 0.5);
  message.overwriteParam("g", "t", -6);
  EXPECT_THAT(message.seen, ElementsAre("add a:t=-1", "add b:t=true", "add c:t=2", "add d:t=3", "add e:t=-4",
                                        "add f:t=0.5", "overwrite g:t=-6"));
  EXPECT_EQ(Describe(message), "C | ");
}

// --- reading ---

TEST_F(CmdMessage, ReadsStaticValues) {
  CCmdMessage message("C", manager);
  message.addParam("a", "t", "text");
  message.addParam("empty", "t", "");
  EXPECT_EQ(message.getParam("a"), "text");
  EXPECT_EQ(message.getParam("empty"), "");
  EXPECT_EQ(message.getParam("absent"), "");
  EXPECT_EQ(message.getParam("A"), "");
  EXPECT_TRUE(message.hasParam("a"));
  EXPECT_TRUE(message.hasParam("empty"));
  EXPECT_FALSE(message.hasParam("absent"));
  EXPECT_FALSE(message.hasParam("A"));
  EXPECT_FALSE(message.hasParam(""));
  EXPECT_THAT(manager.reads(), IsEmpty());
}

TEST_F(CmdMessage, EndsStaticValuesAtTheFirstNulByteWhenTheyAreRead) {
  CCmdMessage message("C", manager);
  const std::string value("ab\0cd", 5);
  message.addParam("a", "t", value);
  EXPECT_EQ(message.getParam("a"), "ab");
  EXPECT_EQ(message.GetParamMap().at("a").value, value) << "the record keeps it whole";
}

TEST_F(CmdMessage, ReturnsVariableValuesVerbatim) {
  CCmdMessage message("C", manager);
  message.addVarParam("v", "t", 7, 4294967295U);
  const std::string value("ab\0cd", 5);
  for (const int success : {0, 1, std::numeric_limits<int>::max()}) {
    manager.set(7, 4294967295U, value, success);
    EXPECT_EQ(message.getParam("v"), value);
  }
  EXPECT_EQ(manager.reads(), std::vector<tavrin_testing::VariableId>(3, {7, 4294967295U}))
      << "nothing is kept";
}

TEST_F(CmdMessage, ReadsAVariableThatCannotBeReadAsEmpty) {
  CCmdMessage message("C", manager);
  message.addVarParam("v", "t", 7, 8);
  EXPECT_EQ(message.getParam("v"), "");
  EXPECT_TRUE(message.hasParam("v"));
  manager.set(7, 8, "x");
  EXPECT_EQ(message.getParam("v"), "x");
  for (const int failure : {-1, std::numeric_limits<int>::min()}) {
    manager.set(7, 8, "x", failure);
    EXPECT_EQ(message.getParam("v"), "");
  }
}

// --- lifetime ---

TEST_F(CmdMessage, InitializeAndClearKeepTheOwner) {
  CCmdMessage message("ON", SampleParams(), manager);
  message.setOwnerId(4294967295U);
  message.setOwnerType("driver");
  EXPECT_EQ(message.Initialize("OFF"), 0);
  EXPECT_EQ(Describe(message), "OFF | ");
  EXPECT_EQ(message.getOwnerId(), 4294967295U);
  message.addParam("a", "t", "1");
  message.Clear();
  EXPECT_EQ(Describe(message), " | ");
  EXPECT_EQ(message.getOwnerId(), 4294967295U);
}

TEST_F(CmdMessage, InitializeAcceptsItsOwnValue) {
  CCmdMessage message("ON", manager);
  message.addParam("a", "t", "A_COMMAND_TOO_LONG_TO_LIE_WITHIN_A_STRING");
  message.Initialize(message.GetParamMap().at("a").value);
  EXPECT_EQ(Describe(message), "A_COMMAND_TOO_LONG_TO_LIE_WITHIN_A_STRING | ");
}

TEST_F(CmdMessage, ReturnsReferencesToItsFields) {
  CCmdMessage message("ON", manager);
  const std::string& command = message.getRawCommand();
  const ParamMap& params = message.GetParamMap();
  message.Initialize("OFF");
  message.addParam("a", "t", "1");
  EXPECT_EQ(command, "OFF");
  EXPECT_EQ(params.size(), 1U);
}

}  // namespace
