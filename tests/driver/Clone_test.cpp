#include <gtest/gtest.h>

#include <tavrin_driver/Clone.h>
#include <tavrin_driver/CmdMessage.h>
#include <tavrin_platform/XmlNode.h>
#include <tavrin_testing/FakeVariables.h>
#include <memory>
#include <string>

#include "DescribeParams.h"
#include "ParseXml.h"

namespace {

CBindMessage QueryAnswer() {
  CBindMessage message;
  zq::XmlNode::Ptr element = ParseXml("<m><notify>LEVEL</notify><query/><data>75</data></m>");
  message.fromXml(element);
  return message;
}

// An implementation of the interface that forwards to another message without deriving from it.
class Foreign : public IBindMessage {
 public:
  explicit Foreign(CBindMessage& message) : message_(message) {}
  std::int32_t Initialize(std::int32_t kind, const std::string& name) override {
    return message_.Initialize(kind, name);
  }
  std::int32_t Initialize(std::int32_t kind, const std::string& name, const std::string& data) override {
    return message_.Initialize(kind, name, data);
  }
  std::int32_t Initialize(std::int32_t kind, const std::string& name, std::int32_t data) override {
    return message_.Initialize(kind, name, data);
  }
  std::int32_t Initialize(const ICmdMessage& cmd) override { return message_.Initialize(cmd); }
  void AddPath(const std::string& path) override { message_.AddPath(path); }
  std::int32_t fromXml(zq::XmlNode::Ptr& node) override { return message_.fromXml(node); }
  std::string toXml() const override { return message_.toXml(); }
  std::string toJson() const override { return message_.toJson(); }
  std::string getPath() const override { return message_.getPath(); }
  std::string getData() const override { return message_.getData(); }
  std::int32_t getDataAsInteger() const override { return message_.getDataAsInteger(); }
  const std::string& getCommand() const override { return message_.getCommand(); }
  const std::string& getNotify() const override { return message_.getNotify(); }
  void addParam(const std::string& name, const std::string& type, const std::string& value) override {
    message_.addParam(name, type, value);
  }
  void addParam(const std::string& name, const std::string& type, std::int32_t value) override {
    message_.addParam(name, type, value);
  }
  void addParamDouble(const std::string& name, const std::string& type, double value) override {
    message_.addParamDouble(name, type, value);
  }
  void addParams(const std::map<std::string, DriverParam>& params) override { message_.addParams(params); }
  bool hasParam(const std::string& name) const override { return message_.hasParam(name); }
  std::string getParam(const std::string& name) const override { return message_.getParam(name); }
  std::string getParamRequired(const std::string& name) const override {
    return message_.getParamRequired(name);
  }
  bool getParamBool(const std::string& name, bool& out) const override {
    return message_.getParamBool(name, out);
  }
  bool getParamInt(const std::string& name, std::int32_t& out) const override {
    return message_.getParamInt(name, out);
  }
  bool getParamUInt(const std::string& name, std::uint32_t& out) const override {
    return message_.getParamUInt(name, out);
  }
  bool getParamLong(const std::string& name, std::int32_t& out) const override {
    return message_.getParamLong(name, out);
  }
  bool getParamULong(const std::string& name, std::uint32_t& out) const override {
    return message_.getParamULong(name, out);
  }
  bool getParamDouble(const std::string& name, double& out) const override {
    return message_.getParamDouble(name, out);
  }
  bool hasData() const override { return message_.hasData(); }
  const std::map<std::string, DriverParam>& GetParamMap() const override { return message_.GetParamMap(); }
  ZqTypes::BoundCallBase* getDataPtr() const override { return message_.getDataPtr(); }
  void setDataPtr(ZqTypes::BoundCallBase* p) override { message_.setDataPtr(p); }

 private:
  CBindMessage& message_;
};

TEST(Clone, OfACommandKeepsNameParametersAndOwner) {
  tavrin_testing::FakeVariables manager;
  CCmdMessage command("SET_LEVEL", manager);
  command.addParam("LEVEL", "number", 40);
  command.setOwnerId(12);
  const ICmdMessage& original = command;
  const boost::shared_ptr<ICmdMessage> copy = zq::Clone(original);
  command.Clear();
  EXPECT_EQ(Describe(*copy), "SET_LEVEL | LEVEL:number=40");
  EXPECT_EQ(copy->getOwnerId(), 12U);
}

// Sets every field of a binding message, and an attached call.
CBindMessage FullBinding(ZqTypes::BoundCallBase* call) {
  CBindMessage message = QueryAnswer();
  message.AddPath("house/hall");
  message.addParam("SOURCE", "string", "dimmer");
  message.setDataPtr(call);
  return message;
}

TEST(Clone, OfABindingMessageCopiesEveryField) {
  int call = 0;
  auto* const attached = reinterpret_cast<ZqTypes::BoundCallBase*>(&call);
  auto original = std::make_unique<CBindMessage>(FullBinding(attached));
  const std::string xml = original->toXml();
  const boost::shared_ptr<CBindMessage> copy = zq::Clone(static_cast<const IBindMessage&>(*original));
  original.reset();
  EXPECT_EQ(copy->toXml(), xml);
  EXPECT_EQ(copy->getDataAsInteger(), 75);
  EXPECT_EQ(copy->getDataPtr(), attached);
}

TEST(Clone, OfAnotherImplementationCopiesWhatTheInterfaceReturns) {
  int call = 0;
  auto* const attached = reinterpret_cast<ZqTypes::BoundCallBase*>(&call);
  CBindMessage binding = FullBinding(attached);
  binding.Initialize(IBindMessage::COMMAND, "GET", "75 %");
  const Foreign foreign(binding);
  const boost::shared_ptr<CBindMessage> copy = zq::Clone(static_cast<const IBindMessage&>(foreign));
  EXPECT_EQ(Describe(*copy), "GET/LEVEL = 75 % (75) @ house/hall | SOURCE:string=dimmer");
  EXPECT_EQ(copy->getDataPtr(), attached);
}

TEST(Clone, OfAConditionalCopiesEveryField) {
  CCondMessage conditional(12);
  zq::XmlNode::Ptr element = ParseXml("<c><name>LEVEL_IS</name><conditional>EQUAL</conditional></c>");
  conditional.fromXml(element);
  conditional.addParam("VALUE", "number", "40");
  const boost::shared_ptr<CCondMessage> copy = zq::Clone(static_cast<const ICondMessage&>(conditional));
  EXPECT_EQ(Describe(*copy), "LEVEL_IS EQUAL | VALUE:number=40");
  EXPECT_EQ(copy->getOwnerId(), 12U);
}

TEST(AnswersQuery, IsTrueOnlyForAMessageReadAsAnAnswer) {
  EXPECT_TRUE(zq::AnswersQuery(QueryAnswer()));
  EXPECT_TRUE(QueryAnswer().isQueryAnswer());
  EXPECT_TRUE(zq::AnswersQuery(*zq::Clone(static_cast<const IBindMessage&>(QueryAnswer()))));
  EXPECT_FALSE(zq::AnswersQuery(*CBindMessage::Create(IBindMessage::NOTIFY, "LEVEL", 75)));
  EXPECT_FALSE(CBindMessage().isQueryAnswer());
}

TEST(AnswersQuery, IsFalseForOtherImplementations) {
  CBindMessage binding = QueryAnswer();
  EXPECT_FALSE(zq::AnswersQuery(Foreign(binding)));
}

}  // namespace
