// The validator on a platform that fails: documents without a root, elements without an iterator, and
// exceptions from any call. Also checks which objects it keeps alive on a platform whose elements are
// destroyed with their last pointer.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <tavrin_driver/ProjectValidator.h>
#include <stdexcept>
#include <string>

#include "Faults.h"
#include "LiveObjects.h"
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

TEST_F(ProjectValidatorPlatform, ReportsNothingForAValidProject) {
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

TEST_F(ProjectValidatorPlatform, ReportsNoPositionOfAnEarlierCheck) {
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

TEST_F(ProjectValidatorPlatform, HasNoPositionsIfThePlatformHasNone) {
  ProjectValidator validator(ProjectWith(Item("7") + Item("7") + Item("x")));
  EXPECT_FALSE(validator.valid());
  EXPECT_THAT(validator.messages(), ElementsAre("id 7 is a duplicate, 1 of them seen so far",
                                                testing::HasSubstr("invalid project, ")));
  EXPECT_THAT(validator.places(), ElementsAre(zq::XmlPosition(), zq::XmlPosition()));
}

TEST_F(ProjectValidatorPlatform, UsesOneIteratorForEachOpenElement) {
  const std::string house = Item(
      "2", "<subitems>" + Item("3", "<state/><subitems>" + Item("4") + Item("5") + "</subitems><state/>") +
               Item("6") + "</subitems>");
  ProjectValidator validator(ProjectWith(house + Item("7")));
  EXPECT_FALSE(validator.valid());
  EXPECT_THAT(validator.messages(), ElementsAre("item 3 contains duplicate state"));
}

TEST_F(ProjectValidatorPlatform, ReleasesThePreviousDocumentWithANewText) {
  ProjectValidator validator("<currentstate/>");
  EXPECT_EQ(liveObjects.documents, 1);
  validator.valid();
  validator.set("<another/>");
  EXPECT_EQ(liveObjects.documents, 1);
  EXPECT_EQ(liveObjects.nodes, 0);
  validator.set("no document");
  EXPECT_EQ(liveObjects.documents, 0);
}

TEST_F(ProjectValidatorPlatform, KeepsOnlyTheRootBetweenCalls) {
  for (const std::string& items : {Item("7"), Item("x"), Item("7", "<subitems><item/></subitems>")}) {
    ProjectValidator validator(ProjectWith(items));
    validator.valid();
    EXPECT_EQ(liveObjects.nodes, 1) << items;
  }
  EXPECT_EQ(liveObjects.nodes, 0);
  EXPECT_EQ(liveObjects.documents, 0);

  ProjectValidator validator{XmlNode::Ptr()};
  validator.parseItem(ParseXml(Item("7", "<subitems>" + Item("8") + "</subitems>")));
  EXPECT_EQ(liveObjects.nodes, 0);
}

TEST_F(ProjectValidatorPlatform, KeepsTheDocumentThatItChecks) {
  ProjectValidator validator(ProjectWith(Item("7")));
  int documents = 0;
  validator.setItemObserver([&] {
    validator.set("<another/>");
    documents = liveObjects.documents;
  });
  EXPECT_TRUE(validator.valid());
  EXPECT_EQ(documents, 2) << "the one that is checked and the other one";
  EXPECT_EQ(liveObjects.documents, 1);
}

TEST_F(ProjectValidatorPlatform, PropagatesOtherErrors) {
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
