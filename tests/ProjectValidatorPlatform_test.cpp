// The validator on a platform that is not the bundled one: what a document without a root, an element without
// an iterator and errors at any call lead to.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <tavrin_driver/ProjectValidator.h>
#include <tavrin_platform/ZqError.h>
#include <boost/smart_ptr/make_shared.hpp>
#include <stdexcept>
#include <string>

namespace {

// What the platform below does.
struct Platform {
  bool hasRoot = true;
  bool hasIterator = true;
  std::string rootError;
  std::string nameError;
};

Platform platform;

struct FakeNode : zq::XmlNode {};
struct FakeDocument : zq::XmlDocument {};

zq::XmlNode::Ptr NewNode() { return boost::make_shared<FakeNode>(); }

// A walk over no children.
struct FakeIterator : zq::XmlNodeIterator {};

FakeIterator noChildren;

}  // namespace

namespace zq {

// NOLINTBEGIN(readability-convert-member-functions-to-static): the classes are the platform's.

XmlNode::Ptr XmlNodeIterator::First() { return {}; }
XmlNode::Ptr XmlNodeIterator::Next() { return {}; }

XmlNodeIterator* XmlNode::GetIterator() { return platform.hasIterator ? &noChildren : nullptr; }
std::string XmlNode::GetName() const { return "fake"; }
bool XmlNode::IsName(const std::string& /*name*/) const {
  if (!platform.nameError.empty()) throw ZqError(platform.nameError);
  return true;
}
XmlNode::Ptr XmlNode::GetChild() const { return {}; }
XmlNode::Ptr XmlNode::GetChild(const std::string& /*name*/) const { return {}; }
std::uint32_t XmlNode::GetChildCount() const { return 0; }
std::int64_t XmlNode::GetChildDataNumber(const std::string& /*name*/) const { return 0; }
std::string XmlNode::GetData() const { return {}; }
std::int64_t XmlNode::GetDataNumber() const { return 0; }
bool XmlNode::HasAttribute(const std::string& /*name*/) const { return false; }
std::uint32_t XmlNode::GetAttributeCount() const { return 0; }
std::int32_t XmlNode::GetAttributeNumber(const std::string& /*name*/) const { return 0; }

XmlNode::Ptr XmlDocument::GetRoot() const {
  if (!platform.rootError.empty()) throw ZqError(platform.rootError);
  return platform.hasRoot ? NewNode() : XmlNode::Ptr();
}

XmlDocument::Ptr CreateXmlDocument(const std::string& text) {
  if (text == "throw") throw std::length_error("from the platform");
  return boost::make_shared<FakeDocument>();
}

XmlPosition PositionOf(const XmlNode& /*node*/) { return {4, 2}; }

// NOLINTEND(readability-convert-member-functions-to-static)

}  // namespace zq

std::string ToLower(const std::string& s) { return s; }

namespace {

using testing::ElementsAre;
using zq::ProjectValidator;
using zq::XmlNode;

class ProjectValidatorPlatform : public testing::Test {
 protected:
  void TearDown() override { platform = Platform(); }
};

TEST_F(ProjectValidatorPlatform, ReportsADocumentWithoutRoot) {
  platform.hasRoot = false;
  ProjectValidator validator("text");
  EXPECT_FALSE(validator.valid());
  EXPECT_THAT(validator.messages(), ElementsAre("invalid project, xml document root is nullptr"));

  platform.hasRoot = true;
  EXPECT_FALSE(validator.valid());
  EXPECT_THAT(validator.messages(),
              ElementsAre("invalid project, xml document root is nullptr", "properties is missing"));
}

TEST_F(ProjectValidatorPlatform, ReportsAnErrorOfTheRootLookup) {
  platform.rootError = "no root today";
  ProjectValidator validator("text");
  EXPECT_FALSE(validator.valid());
  EXPECT_THAT(validator.messages(), ElementsAre("invalid project, no root today"));
  EXPECT_THAT(validator.places(), ElementsAre(zq::XmlPosition()));
}

TEST_F(ProjectValidatorPlatform, PlacesNoErrorAtAnElementOfAnEarlierCheck) {
  ProjectValidator validator("text");
  XmlNode::Ptr item = NewNode();
  validator.parseItem(item);
  item.reset();
  validator.set("another text");
  platform.rootError = "no root today";
  EXPECT_FALSE(validator.valid());
  EXPECT_THAT(validator.places(), ElementsAre(zq::XmlPosition()));
}

TEST_F(ProjectValidatorPlatform, ReportsAnErrorOfANameLookup) {
  platform.nameError = "no names today";
  ProjectValidator validator("text");
  EXPECT_FALSE(validator.valid());
  EXPECT_THAT(validator.messages(), ElementsAre("invalid project, no names today"));
}

TEST_F(ProjectValidatorPlatform, ReportsAnItemWithoutAnIterator) {
  platform.hasIterator = false;
  ProjectValidator validator{XmlNode::Ptr()};
  XmlNode::Ptr item = NewNode();
  EXPECT_FALSE(validator.checkItemCommon(item, 0, 0));
  validator.parseItem(item);
  EXPECT_THAT(validator.messages(), ElementsAre("item has no elements", "item has no elements"));
}

TEST_F(ProjectValidatorPlatform, PassesOtherErrorsOn) {
  EXPECT_THROW(ProjectValidator("throw"), std::length_error);

  ProjectValidator validator("text");
  validator.addMessage("kept");
  EXPECT_THROW(validator.set("throw"), std::length_error);
  EXPECT_THAT(validator.messages(), ElementsAre("kept"));
  EXPECT_FALSE(validator.valid());
  EXPECT_THAT(validator.messages(), ElementsAre("kept", "properties is missing"));
}

}  // namespace
