// The validator on a platform that misbehaves: what a document without a root, an element without an
// iterator or a place and errors at any call lead to.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <tavrin_driver/ProjectValidator.h>
#include <stdexcept>
#include <string>

#include "Faults.h"
#include "ParseXml.h"
#include "ProjectText.h"

namespace {

using testing::ElementsAre;
using zq::ProjectValidator;
using zq::XmlNode;

class ProjectValidatorPlatform : public testing::Test {
 protected:
  void TearDown() override { platformFaults = PlatformFaults(); }
};

TEST_F(ProjectValidatorPlatform, FindsNothingWhereNothingIsWrong) {
  ProjectValidator validator(ProjectWith(Item("7")));
  EXPECT_TRUE(validator.valid());
}

TEST_F(ProjectValidatorPlatform, ReportsADocumentWithoutRoot) {
  platformFaults.noRoot = true;
  ProjectValidator validator("<currentstate/>");
  EXPECT_FALSE(validator.valid());
  EXPECT_THAT(validator.messages(), ElementsAre("invalid project, xml document root is nullptr"));

  platformFaults.noRoot = false;
  EXPECT_FALSE(validator.valid());
  EXPECT_THAT(validator.messages(),
              ElementsAre("invalid project, xml document root is nullptr", "properties is missing"));
}

TEST_F(ProjectValidatorPlatform, ReportsAnErrorOfTheRootLookup) {
  platformFaults.rootError = "no root today";
  ProjectValidator validator("<currentstate/>");
  EXPECT_FALSE(validator.valid());
  EXPECT_THAT(validator.messages(), ElementsAre("invalid project, no root today"));
  EXPECT_THAT(validator.places(), ElementsAre(zq::XmlPosition()));
}

TEST_F(ProjectValidatorPlatform, PlacesNoErrorAtAnElementOfAnEarlierCheck) {
  ProjectValidator validator("<currentstate/>");
  XmlNode::Ptr item = ParseXml(Item("7"));
  validator.parseItem(item);
  item.reset();
  validator.set("<another/>");
  platformFaults.rootError = "no root today";
  EXPECT_FALSE(validator.valid());
  EXPECT_THAT(validator.messages(), ElementsAre("invalid project, no root today"));
  EXPECT_THAT(validator.places(), ElementsAre(zq::XmlPosition()));
}

TEST_F(ProjectValidatorPlatform, ReportsAnErrorOfANameLookup) {
  platformFaults.nameError = "no names today";
  ProjectValidator validator("<currentstate/>");
  EXPECT_FALSE(validator.valid());
  EXPECT_THAT(validator.messages(), ElementsAre("invalid project, no names today"));
}

TEST_F(ProjectValidatorPlatform, ReportsAnItemWithoutAnIterator) {
  platformFaults.noIterator = true;
  ProjectValidator validator{XmlNode::Ptr()};
  XmlNode::Ptr item = ParseXml(Item("7"));
  EXPECT_FALSE(validator.checkItemCommon(item, 0, 0));
  validator.parseItem(item);
  EXPECT_THAT(validator.messages(), ElementsAre("item has no elements", "item has no elements"));
}

TEST_F(ProjectValidatorPlatform, HasNoPlacesWhereThePlatformKeepsNone) {
  const std::string project = ProjectWith(Item("7") + Item("7") + Item("x"));
  platformFaults.noPlaces = true;
  ProjectValidator validator(project);
  EXPECT_FALSE(validator.valid());
  EXPECT_THAT(validator.messages(), ElementsAre("id 7 is a duplicate, 1 of them seen so far",
                                                testing::HasSubstr("invalid project, ")));
  EXPECT_THAT(validator.places(), ElementsAre(zq::XmlPosition(), zq::XmlPosition()));
}

TEST_F(ProjectValidatorPlatform, PassesOtherErrorsOn) {
  platformFaults.documentError = "from the platform";
  EXPECT_THROW(ProjectValidator("<currentstate/>"), std::length_error);

  platformFaults.documentError.clear();
  ProjectValidator validator("<currentstate/>");
  validator.addMessage("kept");
  platformFaults.documentError = "from the platform";
  EXPECT_THROW(validator.set("<another/>"), std::length_error);
  EXPECT_THAT(validator.messages(), ElementsAre("kept"));
  EXPECT_FALSE(validator.valid());
  EXPECT_THAT(validator.messages(), ElementsAre("kept", "properties is missing"));
}

}  // namespace
