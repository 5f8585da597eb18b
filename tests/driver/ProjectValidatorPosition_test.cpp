// The positions of findings, which only the bundled platform provides.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <tavrin_driver/ProjectValidator.h>
#include <tavrin_platform/ZqError.h>
#include <ostream>
#include <string>
#include <utility>
#include <vector>

#include "ParseXml.h"
#include "ProjectText.h"

namespace zq {

static void PrintTo(const XmlPosition& position, std::ostream* os) {
  *os << position.line << ':' << position.column;
}

}  // namespace zq

namespace {

using testing::ElementsAre;
using zq::ProjectValidator;
using zq::XmlPosition;

TEST(ProjectValidatorPosition, IsReportedForEachFinding) {
  ProjectValidator validator(
      "\n"
      "<currentstate a='1'>\n"
      "  <properties/>\n"
      "  <systemitems>\n"
      "    <item majorversion='6' minorversion='1' buildnumber='0'>\n"
      "      <id>1</id><name/><type>2</type>\n"
      "      <itemdata/>\n"
      "      <subitems>\n"
      "        <item><id>0</id><name/><type>0</type><zqi>x</zqi> <devicedata/></item>\n"
      "        <room><id>0</id>\n"
      "        </room>\n"
      "        <item b='1'>\n"
      "          <ID>9</ID><name/><type>2</type></item>\n"
      "      </subitems>\n"
      "      <more/>\n"
      "    </item>\n"
      "    <item/>\n"
      "  </systemitems>\n"
      "  <bindings/><networkbindings/><event_mgr/>\n"
      "</currentstate>\n");
  EXPECT_FALSE(validator.valid());

  std::vector<std::pair<std::string, std::pair<int, int>>> found;
  for (std::size_t i = 0; i < validator.messages().size(); ++i) {
    const XmlPosition& place = validator.places().at(i);
    found.push_back({validator.messages()[i], {place.line, place.column}});
  }
  const std::vector<std::pair<std::string, std::pair<int, int>>> expected = {
      {"currentstate has attributes", {2, 1}},
      {"systemitems contains more than one item, 2", {4, 3}},
      {"expected type 1, got 2", {6, 24}},
      {"item 1 is missing buildrevision", {5, 5}},
      {"item 1 has an invalid major version number 6", {5, 5}},
      {"item has an invalid id 0", {9, 15}},
      {"item 0 has an invalid type 0", {9, 32}},
      {"item 0 has invalid zqi file name x", {9, 46}},
      {"item 0 contains both devicedata and zqi", {9, 46}},
      {"item 0 contains duplicate devicedata", {9, 59}},
      {"expected item, got room", {10, 9}},
      {"expected item, got room", {10, 9}},
      {"item has an invalid id 0", {10, 15}},
      {"id 0 is a duplicate, 1 of them seen so far", {10, 15}},
      {"name is missing", {10, 9}},
      {"item has attributes", {12, 9}},
      {"expected id, got ID", {13, 11}},
      {"cannot happen, expected id, got ID", {13, 11}},
      {"item 0 is missing all optional elements", {12, 9}},
      {"extra elements in item 1, more", {15, 7}},
      {"variables is missing", {2, 1}},
  };
  EXPECT_EQ(found, expected);
}

TEST(ProjectValidatorPosition, OfMissingPartsOfTheSystemItemIsThatOfTheItem) {
  ProjectValidator validator(ProjectWithSystemItem("\n<item " + Version("2", "1") + ">\n<id>1</id></item>"));
  validator.valid();
  EXPECT_THAT(validator.messages(),
              ElementsAre("name is missing", "itemdata is missing", "subitems is missing"));
  EXPECT_THAT(validator.places(), testing::Each(XmlPosition{2, 1}));
}

TEST(ProjectValidatorPosition, OfAMalformedNumberIsThatOfItsElement) {
  const std::pair<std::string, XmlPosition> cases[] = {
      {ProjectWith("\n" + Item("2") + "\n <item>\n  <id>x</id></item>"), {4, 3}},
      {ProjectWith("\n" + Item("2") + "\n <item><id>3</id><name/>\n<type>x</type></item>"), {4, 1}},
      {ProjectWith("\n" + Item("2") + "\n <item><a>3</a><name/><type>2</type><id>x</id></item>"), {3, 2}},
      {ProjectWithSystemItem("\n <item majorversion='x'>" + Leading("1", "1") + "</item>"), {2, 2}},
  };
  for (const auto& [project, place] : cases) {
    ProjectValidator validator(project);
    EXPECT_FALSE(validator.valid());
    EXPECT_EQ(validator.places().back(), place) << project;
  }
}

TEST(ProjectValidatorPosition, OfAnErrorOfAnEarlierStepIsReset) {
  ProjectValidator validator(ParseXml("\n<item><id>x</id></item>"));
  EXPECT_THROW(validator.parseItem(ParseXml("\n\n<item><id>x</id></item>")), zq::ZqError);
  validator.addMessage("from outside");
  EXPECT_THAT(validator.places(), ElementsAre(XmlPosition{}));

  EXPECT_THROW(validator.parseItem(ParseXml("\n\n<item><id>x</id></item>")), zq::ZqError);
  EXPECT_FALSE(validator.valid());
  EXPECT_THAT(validator.messages(), ElementsAre("from outside", "expected currentstate, got item",
                                                "expected properties, got id", "systemitems is missing"));
  EXPECT_THAT(validator.places(),
              ElementsAre(XmlPosition{}, XmlPosition{2, 1}, XmlPosition{2, 7}, XmlPosition{2, 1}));
}

}  // namespace
