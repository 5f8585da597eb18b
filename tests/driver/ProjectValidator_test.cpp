#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <tavrin_driver/ProjectValidator.h>
#include <tavrin_platform/ZqError.h>
#include <tavrin_testing/LogCapture.h>
#include <cstdint>
#include <locale>
#include <memory>
#include <ostream>
#include <stdexcept>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

#include "ParseXml.h"
#include "ProjectText.h"
#include "tavrin_driver/internal/ProjectObserver.h"

namespace zq {

static void PrintTo(const XmlPosition& position, std::ostream* os) {
  *os << position.line << ':' << position.column;
}

}  // namespace zq

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;
using zq::ProjectValidator;
using zq::XmlNode;
using zq::XmlPosition;

using Messages = std::vector<std::string>;

Messages MessagesOf(const std::string& project) {
  ProjectValidator validator(project);
  const bool valid = validator.valid();
  EXPECT_EQ(valid, validator.messages().empty());
  EXPECT_EQ(validator.places().size(), validator.messages().size());
  return validator.messages();
}

struct Finding {
  const char* name;
  std::string project;
  Messages messages;
};

void PrintTo(const Finding& finding, std::ostream* os) { *os << finding.name; }

class ProjectFinding : public testing::TestWithParam<Finding> {};

TEST_P(ProjectFinding, IsReported) { EXPECT_EQ(MessagesOf(GetParam().project), GetParam().messages); }

template <typename Case>
std::string NameOf(const testing::TestParamInfo<Case>& info) {
  return info.param.name;
}

// --- the whole document ---

INSTANTIATE_TEST_SUITE_P(
    Text, ProjectFinding,
    testing::Values(
        Finding{"Empty", "", {"invalid project, could not parse project"}},
        Finding{"NotXml", "hello", {"invalid project, could not parse project"}},
        Finding{"Truncated", ProjectWith("").substr(0, 100), {"invalid project, could not parse project"}},
        Finding{"TwoRoots", ProjectWith("") + "<more/>", {"invalid project, could not parse project"}},
        Finding{"WhiteSpaceAround", "\n " + ProjectWith("") + "\n", {}}),
    NameOf<Finding>);

// --- the top level ---

const std::string system0 = Element("systemitems", SystemItemWith(""));
const std::string sections =
    "<properties/>" + system0 + "<bindings/><networkbindings/><event_mgr/><variables/>";

INSTANTIATE_TEST_SUITE_P(
    TopLevel, ProjectFinding,
    testing::Values(
        Finding{"Clean", Element("currentstate", sections + "<scan_schedule/><plugins/>"), {}},
        Finding{"WithoutScanSchedule", Element("currentstate", sections + "<plugins/>"), {}},
        Finding{"EndsAfterVariables", Element("currentstate", sections), {"scan_schedule is missing"}},
        Finding{
            "WithoutPlugins", Element("currentstate", sections + "<scan_schedule/>"), {"plugins is missing"}},
        Finding{"LastSectionsMayHaveAttributes",
                Element("currentstate", sections + "<scan_schedule a='1'/><plugins a='1'/>"),
                {}},
        Finding{"ExtraTag",
                Element("currentstate", sections + "<scan_schedule/><plugins/><foo/><bar/>"),
                {"extra tags in project foo"}},
        Finding{"OtherInPlaceOfScanSchedule",
                Element("currentstate", sections + "<foo/><plugins/>"),
                {"extra tags in project foo"}},
        Finding{"OtherInPlaceOfPlugins",
                Element("currentstate", sections + "<scan_schedule/><foo/><plugins/>"),
                {"extra tags in project foo"}},
        Finding{"ScanScheduleBehindPlugins",
                Element("currentstate", sections + "<plugins/><scan_schedule/>"),
                {"extra tags in project scan_schedule"}},
        Finding{"MisnamedRoot",
                Element("project", sections + "<plugins/>"),
                {"expected currentstate, got project"}},
        Finding{"RootWithAttributes",
                "<currentstate a='1'>" + sections + "<plugins/></currentstate>",
                {"currentstate has attributes"}},
        Finding{"MisnamedRootWithAttributes",
                "<Currentstate a='1'>" + sections + "<plugins/></Currentstate>",
                {"expected currentstate, got Currentstate", "currentstate has attributes"}},
        Finding{"EmptyRoot", "<currentstate/>", {"properties is missing"}},
        Finding{"OnlyProperties", "<currentstate><properties/></currentstate>", {"systemitems is missing"}},
        Finding{"EndsAfterSystemItems",
                Element("currentstate", "<properties/>" + system0),
                {"bindings is missing"}},
        Finding{"EndsAfterBindings",
                Element("currentstate", "<properties/>" + system0 + "<bindings/>"),
                {"networkbindings is missing"}},
        Finding{"EndsAfterNetworkBindings",
                Element("currentstate", "<properties/>" + system0 + "<bindings/><networkbindings/>"),
                {"event_mgr is missing"}},
        Finding{
            "EndsAfterEventManager",
            Element("currentstate", "<properties/>" + system0 + "<bindings/><networkbindings/><event_mgr/>"),
            {"variables is missing"}},
        Finding{
            "MisnamedSections",
            Element("currentstate", "<p/>" + system0 + "<binding/><n/><e/><v/><plugins/>"),
            {"expected properties, got p", "expected bindings, got binding",
             "expected networkbindings, got n", "expected event_mgr, got e", "expected variables, got v"}},
        Finding{"MisnamedSystemItemsAreWalked",
                Project(Element("items", SystemItemWith(Item("0")))),
                {"expected systemitems, got items", "item has an invalid id 0"}},
        Finding{"SectionsWithAttributes",
                Element("currentstate", "<properties a='1'/>" + system0 +
                                            "<bindings a='1'/><networkbindings a='1'/><event_mgr a='1'/>"
                                            "<variables a='1' b='2'/><plugins/>"),
                {"properties has attributes", "bindings has attributes", "networkbindings has attributes",
                 "event_mgr has attributes", "variables has attributes"}}),
    NameOf<Finding>);

// --- the system item ---

std::string ProjectOfVersion(const std::string& major, const std::string& minor,
                             const std::string& build = "0", const std::string& revision = "0") {
  return ProjectWithSystemItem(
      SystemItem(Version(major, minor, build, revision),
                 Leading("1", "1") + "<itemdata/>" + Element("subitems", Item("0"))));
}

// Checks the messages for a system item of version 2.1.0.0 with this content.
std::string ProjectOfSystemItem(const std::string& content) {
  return ProjectWithSystemItem(SystemItem(Version("2", "1"), content));
}

const Messages gate = {"the validator can only check 2.1.0 or greater"};
const std::string invalidItem = "item has an invalid id 0";  // of the one item below the system item

INSTANTIATE_TEST_SUITE_P(
    ProjectVersion, ProjectFinding,
    testing::Values(Finding{"V2_1", ProjectOfVersion("2", "1"), {invalidItem}},
                    Finding{"V2_0", ProjectOfVersion("2", "0", "5"), gate},
                    Finding{"V2_Negative", ProjectOfVersion("2", "-1"), gate},
                    Finding{"V1_9", ProjectOfVersion("1", "9"), gate},
                    Finding{"V0_0", ProjectOfVersion("0", "0"), gate},
                    Finding{"VNegative", ProjectOfVersion("-2147483648", "5"), gate},
                    Finding{"GateComesBeforeTheRanges", ProjectOfVersion("2", "0", "101", "-1"), gate},
                    Finding{"V3_0", ProjectOfVersion("3", "0"), {invalidItem}},
                    Finding{"V5_0", ProjectOfVersion("5", "0"), {invalidItem}},
                    Finding{"V6_0",
                            ProjectOfVersion("6", "0"),
                            {"item 1 has an invalid major version number 6", invalidItem}},
                    Finding{"V100_7",
                            ProjectOfVersion("100", "7"),
                            {"item 1 has an invalid major version number 100", invalidItem}},
                    Finding{"V101_7",
                            ProjectOfVersion("101", "7"),
                            {"item 1 has an invalid major version number 101",
                             "item 1 has an invalid minor version number 7", invalidItem}},
                    Finding{"Minor500", ProjectOfVersion("2", "500"), {invalidItem}},
                    Finding{"MinorNegative",
                            ProjectOfVersion("3", "-1"),
                            {"item 1 has an invalid minor version number -1", invalidItem}},
                    Finding{"Build100", ProjectOfVersion("2", "1", "100"), {invalidItem}},
                    Finding{"Build101",
                            ProjectOfVersion("2", "1", "101"),
                            {"item 1 hasf a invalid build number 101", invalidItem}},
                    Finding{"BuildNegative",
                            ProjectOfVersion("2", "1", "-1"),
                            {"item 1 hasf a invalid build number -1", invalidItem}},
                    Finding{"RevisionLargest", ProjectOfVersion("2", "1", "0", "2147483647"), {invalidItem}},
                    Finding{"RevisionNegative",
                            ProjectOfVersion("2", "1", "0", "-1"),
                            {"item 1 has an invalid revision number -1", invalidItem}},
                    Finding{"EverythingOutOfRange",
                            ProjectOfVersion("2147483647", "-5", "2147483647", "-2147483648"),
                            {"item 1 has an invalid major version number 2147483647",
                             "item 1 has an invalid minor version number -5",
                             "item 1 hasf a invalid build number 2147483647",
                             "item 1 has an invalid revision number -2147483648", invalidItem}}),
    NameOf<Finding>);

INSTANTIATE_TEST_SUITE_P(
    SystemItem, ProjectFinding,
    testing::Values(
        Finding{"SectionWithAttributes",
                Project("<systemitems a='1'>" + SystemItemWith("") + "</systemitems>"),
                {"systemitems has attributes"}},
        Finding{"None", Project("<systemitems/>"), {"systemitems contains no items"}},
        Finding{"TextOnly", Project("<systemitems>1</systemitems>"), {"systemitems contains no items"}},
        Finding{"Two",
                ProjectWithSystemItem(SystemItemWith("") + "<item/>"),
                {"systemitems contains more than one item, 2"}},
        Finding{"Three",
                ProjectWithSystemItem(SystemItemWith("") + "<item/><foo/>"),
                {"systemitems contains more than one item, 3"}},
        Finding{"NoAttributes",
                ProjectWithSystemItem(SystemItem("", Leading("1", "1") + "<itemdata/><subitems/>")),
                {"item 1 is missing majorversion", "item 1 is missing minorversion",
                 "item 1 is missing buildnumber", "item 1 is missing buildrevision", gate[0]}},
        Finding{"NoMinorVersion",
                ProjectWithSystemItem(SystemItem("majorversion='3' buildnumber='0' buildrevision='0'",
                                                 Leading("1", "1") + "<itemdata/><subitems/>")),
                {"item 1 is missing minorversion"}},
        Finding{"ExtraAttribute",
                ProjectWithSystemItem(SystemItem(Version("2", "1") + " a='1'",
                                                 Leading("1", "1") + "<itemdata/><subitems/>")),
                {"item 1 has extra attributes"}},
        Finding{"OtherAttributeInsteadIsNotExtra",
                ProjectWithSystemItem(SystemItem("majorversion='3' buildnumber='0' buildrevision='0' a='1'",
                                                 Leading("1", "1") + "<itemdata/><subitems/>")),
                {"item 1 is missing minorversion"}},
        Finding{"Misnamed",
                ProjectWithSystemItem("<system " + Version("2", "1") + ">" + Leading("1", "1") +
                                      "<itemdata/><subitems/></system>"),
                {"expected item, got system"}},
        Finding{"OtherId",
                ProjectOfSystemItem(Leading("2", "1") + "<itemdata/><subitems/>"),
                {"expected item 1, got item 2"}},
        Finding{"InvalidId",
                ProjectOfSystemItem(Leading("0", "1") + "<itemdata/><subitems/>"),
                {"item has an invalid id 0", "expected item 1, got item 0"}},
        Finding{"OtherType",
                ProjectOfSystemItem(Leading("1", "2") + "<itemdata/><subitems/>"),
                {"expected type 1, got 2"}},
        Finding{"InvalidType",
                ProjectOfSystemItem(Leading("1", "-7") + "<itemdata/><subitems/>"),
                {"item 1 has an invalid type -7", "expected type 1, got -7"}},
        Finding{"Id1ElsewhereIsADuplicate",
                ProjectWith(Item("1")),
                {"id 1 is a duplicate, 1 of them seen so far"}},
        Finding{"Empty",
                ProjectOfSystemItem(""),
                {"id is missing", "itemdata is missing", "subitems is missing"}},
        Finding{"OnlyId",
                ProjectOfSystemItem("<id>1</id>"),
                {"name is missing", "itemdata is missing", "subitems is missing"}},
        Finding{"OnlyIdAndName",
                ProjectOfSystemItem("<id>1</id><name/>"),
                {"type is missing", "itemdata is missing", "subitems is missing"}},
        Finding{"NoItemdata",
                ProjectOfSystemItem(Leading("1", "1")),
                {"itemdata is missing", "subitems is missing"}},
        Finding{
            "NoSubitems", ProjectOfSystemItem(Leading("1", "1") + "<itemdata/>"), {"subitems is missing"}},
        Finding{"StateInPlaceOfItemdata",
                ProjectOfSystemItem(Leading("1", "1") + "<state/>" + Element("itemdata", Item("0"))),
                {"expected itemdata, got state", "expected subitems, got itemdata", invalidItem}},
        Finding{"ItemdataWithAttributes",
                ProjectOfSystemItem(Leading("1", "1") + "<itemdata a='1'/><subitems/>"),
                {"itemdata has attributes"}},
        Finding{"SubitemsWithAttributes",
                ProjectOfSystemItem(Leading("1", "1") + "<itemdata/><subitems a='1'/>"),
                {"subitems has attributes"}},
        Finding{"ExtraElements",
                ProjectOfSystemItem(Leading("1", "1") + "<itemdata/><subitems/><foo/><bar/>"),
                {"extra elements in item 1, foo"}}),
    NameOf<Finding>);

// --- items ---

INSTANTIATE_TEST_SUITE_P(
    ItemId, ProjectFinding,
    testing::Values(
        Finding{"Smallest", ProjectWith(Item("2")), {}}, Finding{"Largest", ProjectWith(Item("200000")), {}},
        Finding{"AmongWhiteSpace", ProjectWith(Item(" \n+2\t")), {}},
        Finding{"TooLarge", ProjectWith(Item("200001")), {"item has an invalid id 200001"}},
        Finding{"Zero", ProjectWith(Item("0")), {"item has an invalid id 0"}},
        Finding{"Blank", ProjectWith(Item("")), {"item has an invalid id 0"}},
        Finding{"MinusOne", ProjectWith(Item("-1")), {"item has an invalid id 4294967295"}},
        Finding{"Lowest", ProjectWith(Item("-2147483648")), {"item has an invalid id 2147483648"}},
        Finding{"Highest", ProjectWith(Item("4294967295")), {"item has an invalid id 4294967295"}},
        Finding{"Duplicates",
                ProjectWith(Item("5") + Item("5") + Item("6") + Item("5")),
                {"id 5 is a duplicate, 1 of them seen so far", "id 5 is a duplicate, 2 of them seen so far"}},
        Finding{"DuplicateBelow",
                ProjectWith(Item("5", Element("subitems", Item("5")))),
                {"id 5 is a duplicate, 1 of them seen so far"}},
        Finding{"InvalidIdsAreCounted",
                ProjectWith(Item("0") + Item("0")),
                {"item has an invalid id 0", "item has an invalid id 0",
                 "id 0 is a duplicate, 1 of them seen so far"}},
        Finding{"ReadingsOfOneIdAreDuplicates",
                ProjectWith(Item("-1") + Item("4294967295")),
                {"item has an invalid id 4294967295", "item has an invalid id 4294967295",
                 "id 4294967295 is a duplicate, 1 of them seen so far"}}),
    NameOf<Finding>);

INSTANTIATE_TEST_SUITE_P(
    ItemType, ProjectFinding,
    testing::Values(
        Finding{"Smallest", ProjectWith(Item("7", "<state/>", "1")), {}},
        Finding{"Largest", ProjectWith(Item("7", "<state/>", "9")), {}},
        Finding{"Zero", ProjectWith(Item("7", "<state/>", "0")), {"item 7 has an invalid type 0"}},
        Finding{"Blank", ProjectWith(Item("7", "<state/>", " ")), {"item 7 has an invalid type 0"}},
        Finding{"Ten", ProjectWith(Item("7", "<state/>", "10")), {"item 7 has an invalid type 10"}},
        Finding{"MinusOne", ProjectWith(Item("7", "<state/>", "-1")), {"item 7 has an invalid type -1"}},
        Finding{"HighestWraps",
                ProjectWith(Item("7", "<state/>", "4294967295")),
                {"item 7 has an invalid type -1"}},
        Finding{"TwoToThe31Wraps",
                ProjectWith(Item("7", "<state/>", "2147483648")),
                {"item 7 has an invalid type -2147483648"}}),
    NameOf<Finding>);

std::string ItemOf(const std::string& content) { return ProjectWith(Element("item", content)); }

INSTANTIATE_TEST_SUITE_P(
    LeadingElements, ProjectFinding,
    testing::Values(
        Finding{"None", ItemOf(""), {"id is missing"}}, Finding{"TextOnly", ItemOf("7"), {"id is missing"}},
        Finding{"OnlyId", ItemOf("<id>7</id>"), {"name is missing"}},
        Finding{"OnlyIdAndName", ItemOf("<id>7</id><name/>"), {"type is missing"}},
        Finding{"OnlyLeading", ItemOf(Leading("7", "2")), {"item 7 is missing all optional elements"}},
        Finding{"WrongId",
                ItemOf("<ID>7</ID><name/><type>2</type><state/>"),
                {"expected id, got ID", "cannot happen, expected id, got ID"}},
        Finding{"WrongIdAlone",
                ItemOf("<ID>7</ID>"),
                {"expected id, got ID", "name is missing", "cannot happen, expected id, got ID"}},
        Finding{"WrongName",
                ItemOf("<id>7</id><title/><type>2</type><state/>"),
                {"expected name, got title", "cannot happen, expected name, got title"}},
        Finding{"WrongType",
                ItemOf("<id>7</id><name/><kind>2</kind><state/>"),
                {"expected type, got kind", "cannot happen, expected type, got kind"}},
        Finding{"AllWrong",
                ItemOf("<a>7</a><b/><c>0</c>"),
                {"expected id, got a", "expected name, got b", "expected type, got c",
                 "item 0 has an invalid type 0", "cannot happen, expected id, got a",
                 "cannot happen, expected name, got b", "cannot happen, expected type, got c",
                 "item 0 is missing all optional elements"}},
        // A message names the item by its element "id", wherever that is.
        Finding{"IdFurtherDown",
                ItemOf("<a>7</a><name/><type>0</type><id>9</id>"),
                {"expected id, got a", "item 9 has an invalid type 0", "cannot happen, expected id, got a",
                 "item 9 contains duplicate id"}},
        Finding{
            "Attributes",
            ProjectWith(
                "<item a='1'><id b='1'>7</id><name c='1' d='2'/><type e='1'>2</type><state f='1'/></item>"),
            {"item has attributes", "id has attributes", "name has attributes", "type has attributes"}},
        Finding{"NameMayHoldAnything", ItemOf("<id>7</id><name>a<b/>c</name><type>2</type><state/>"), {}},
        Finding{"MisnamedItem",
                ProjectWith(Element("room", Leading("7", "0") + "<state/>")),
                {"expected item, got room", "expected item, got room", "item 7 has an invalid type 0"}},
        Finding{
            "MisnamedItemWithAttributes",
            ProjectWith("<room a='1'/>"),
            {"expected item, got room", "item has attributes", "expected item, got room", "id is missing"}}),
    NameOf<Finding>);

std::string ItemWith(const std::string& optional) { return ProjectWith(Item("7", optional)); }

const Messages both = {"item 7 contains both devicedata and zqi"};

INSTANTIATE_TEST_SUITE_P(
    OptionalElements, ProjectFinding,
    testing::Values(
        Finding{"All", ItemWith("<itemdata/><state/><zqi>a.zqi</zqi><subitems/>"), {}},
        Finding{"AllWithDeviceData", ItemWith("<itemdata/><state/><devicedata/><subitems/>"), {}},
        Finding{"OnlyItemdata", ItemWith("<itemdata/>"), {}}, Finding{"OnlyState", ItemWith("<state/>"), {}},
        Finding{"OnlyZqi", ItemWith("<zqi/>"), {}}, Finding{"OnlyDeviceData", ItemWith("<devicedata/>"), {}},
        Finding{"OnlySubitems", ItemWith("<subitems/>"), {}},
        Finding{"TheyMayHaveAttributes", ItemWith("<itemdata a='1'/><state a='1'/><devicedata a='1'/>"), {}},
        Finding{"SubitemsMayNot", ItemWith("<subitems a='1'/>"), {"subitems has attributes"}},
        Finding{"UpperCaseFile", ItemWith("<zqi>Light.ZQZ</zqi>"), {}},
        Finding{"SuffixAnywhere", ItemWith("<zqi>light.zqi.bak</zqi>"), {}},
        Finding{"SuffixAlone", ItemWith("<zqi>.zqi</zqi>"), {}},
        Finding{
            "OtherFile", ItemWith("<zqi>Light.xml</zqi>"), {"item 7 has invalid zqi file name Light.xml"}},
        Finding{"FileWithoutPoint", ItemWith("<zqi>zqi</zqi>"), {"item 7 has invalid zqi file name zqi"}},
        Finding{"BlankFile", ItemWith("<zqi> </zqi>"), {"item 7 has invalid zqi file name  "}},
        Finding{
            "StateBeforeItemdata", ItemWith("<state/><itemdata/>"), {"item 7 contains duplicate itemdata"}},
        Finding{"TwoStates", ItemWith("<state/><state/>"), {"item 7 contains duplicate state"}},
        Finding{"TwoZqi", ItemWith("<zqi/><zqi/>"), {"item 7 contains duplicate zqi"}},
        Finding{"TwoDeviceData",
                ItemWith("<devicedata/><devicedata/>"),
                {"item 7 contains duplicate devicedata"}},
        Finding{"TwoSubitems", ItemWith("<subitems/><subitems/>"), {"item 7 contains duplicate subitems"}},
        Finding{"ZqiAndDeviceData",
                ItemWith("<zqi/><devicedata/>"),
                {both[0], "item 7 contains duplicate devicedata"}},
        Finding{
            "DeviceDataAndZqi", ItemWith("<devicedata/><zqi/>"), {both[0], "item 7 contains duplicate zqi"}},
        Finding{"ZqiAndDeviceDataFurtherDown",
                ItemWith("<zqi>a</zqi><subitems/><devicedata/>"),
                {"item 7 has invalid zqi file name a", both[0], "item 7 contains duplicate devicedata"}},
        Finding{
            "BothBehindAnother", ItemWith("<foo/><zqi/><devicedata/>"), {"item 7 contains an invalid foo"}},
        Finding{"OnlyTheFirstLeftOver",
                ItemWith("<itemdata/><subitems/><foo/><bar/>"),
                {"item 7 contains an invalid foo"}},
        Finding{"NameWithinAName", ItemWith("<data/>"), {"item 7 contains duplicate data"}},
        Finding{"BeginningOfAName", ItemWith("<sub/>"), {"item 7 contains duplicate sub"}},
        Finding{"LetterOfAName", ItemWith("<q/>"), {"item 7 contains duplicate q"}},
        Finding{"LongerThanAName", ItemWith("<states/>"), {"item 7 contains an invalid states"}},
        Finding{"OtherCase", ItemWith("<State/>"), {"item 7 contains an invalid State"}},
        Finding{"SubitemsBeforeTheRest",
                ItemWith("<subitems>" + Item("0") + "</subitems><state/>"),
                {invalidItem, "item 7 contains duplicate state"}},
        Finding{
            "DepthFirst",
            ProjectWith(Item("7", "<subitems>" +
                                      Item("8", "<subitems>" + Item("201000") + "</subitems><x/>") +
                                      Item("202000") + "</subitems><w/>") +
                        Item("203000")),
            {"item has an invalid id 201000", "item 8 contains an invalid x", "item has an invalid id 202000",
             "item 7 contains an invalid w", "item has an invalid id 203000"}}),
    NameOf<Finding>);

// --- malformed numbers ---

struct Unreadable {
  const char* name;
  std::string project;
  Messages messagesBefore;
  std::vector<std::string> parts;  // of the last message
};

void PrintTo(const Unreadable& unreadable, std::ostream* os) { *os << unreadable.name; }

class UnreadableNumber : public testing::TestWithParam<Unreadable> {};

TEST_P(UnreadableNumber, EndsTheCheckWithOneMessage) {
  Messages messages = MessagesOf(GetParam().project);
  ASSERT_THAT(messages, SizeIs(GetParam().messagesBefore.size() + 1));
  const std::string last = messages.back();
  messages.pop_back();
  EXPECT_EQ(messages, GetParam().messagesBefore);
  EXPECT_THAT(last, testing::StartsWith("invalid project, "));
  for (const std::string& part : GetParam().parts) EXPECT_THAT(last, testing::HasSubstr(part));
}

INSTANTIATE_TEST_SUITE_P(
    , UnreadableNumber,
    testing::Values(
        Unreadable{
            "Id", ProjectWith(Item("0") + Item("abc") + Item("0")), {invalidItem}, {"\"id\"", "\"abc\""}},
        Unreadable{"IdBeyond32Bits", ProjectWith(Item("4294967296")), {}, {"\"id\"", "\"4294967296\""}},
        Unreadable{"IdBelow32Bits", ProjectWith(Item("-2147483649")), {}, {"\"id\"", "\"-2147483649\""}},
        Unreadable{"IdWithFraction", ProjectWith(Item("1.5")), {}, {"\"id\"", "\"1.5\""}},
        Unreadable{"Type", ProjectWith(Item("0", "<state/>", "x")), {invalidItem}, {"\"type\"", "\"x\""}},
        Unreadable{"IdFurtherDown",
                   ItemOf("<a>7</a><name/><type>2</type><id>x</id>"),
                   {"expected id, got a"},
                   {"\"id\"", "\"x\""}},
        Unreadable{"SystemItemId", ProjectOfSystemItem(Leading("one", "1")), {}, {"\"id\"", "\"one\""}},
        Unreadable{"MajorVersion", ProjectOfVersion("two", "1"), {}, {"\"majorversion\"", "\"two\""}},
        Unreadable{"MinorVersion", ProjectOfVersion("2", "x"), {}, {"\"minorversion\"", "\"x\""}},
        // All four are read before the first one is judged.
        Unreadable{"BuildNumber", ProjectOfVersion("1", "1", "b"), {}, {"\"buildnumber\"", "\"b\""}},
        Unreadable{"BuildRevision",
                   ProjectOfVersion("1", "1", "0", "2147483648"),
                   {},
                   {"\"buildrevision\"", "\"2147483648\""}}),
    NameOf<Unreadable>);

TEST(ProjectValidator, PropagatesOtherErrorsOfTheSteps) {
  ProjectValidator validator{XmlNode::Ptr()};
  EXPECT_THROW(validator.parseItem(ParseXml(Item("abc"))), zq::ZqError);
  XmlNode::Ptr item = ParseXml(Item("abc"));
  EXPECT_THROW(validator.getId(item), zq::ZqError);
  EXPECT_THAT(validator.messages(), IsEmpty());
}

// --- positions ---

TEST(ProjectValidator, HasNoPositionsForElementsBuiltInCode) {
  ProjectValidator validator("nothing");
  validator.valid();
  validator.addMessage("from outside");
  EXPECT_THAT(validator.messages(), ElementsAre("invalid project, could not parse project", "from outside"));
  EXPECT_THAT(validator.places(), ElementsAre(XmlPosition{}, XmlPosition{}));

  ProjectValidator built(zq::CreateXmlNode("currentstate", ""));
  built.valid();
  EXPECT_THAT(built.messages(), ElementsAre("properties is missing"));
  EXPECT_THAT(built.places(), ElementsAre(XmlPosition{}));
}

// --- runs ---

TEST(ProjectValidator, ChecksAParsedProject) {
  ProjectValidator validator(ParseXml(ProjectWith(Item("2"))));
  EXPECT_THAT(validator.messages(), IsEmpty());
  EXPECT_TRUE(validator.valid());
  EXPECT_THAT(validator.messages(), IsEmpty());
}

TEST(ProjectValidator, ChecksAProjectThatWasBuiltInCode) {
  XmlNode::Ptr root = zq::CreateXmlNode("currentstate", "");
  root->AddChild("properties", "");
  root->AddChild("systemitems", "")->AddChild("item", "")->AddChild("id", 0U);
  ProjectValidator validator(root);
  EXPECT_FALSE(validator.valid());
  EXPECT_THAT(validator.messages(),
              ElementsAre("item has an invalid id 0", "expected item 1, got item 0", "name is missing",
                          "item 1 is missing majorversion", "item 1 is missing minorversion",
                          "item 1 is missing buildnumber", "item 1 is missing buildrevision", gate[0],
                          "bindings is missing"));
}

TEST(ProjectValidator, TreatsANullNodeAsMalformedText) {
  ProjectValidator validator{XmlNode::Ptr()};
  EXPECT_THAT(validator.messages(), IsEmpty());
  EXPECT_FALSE(validator.valid());
  EXPECT_THAT(validator.messages(), ElementsAre("invalid project, could not parse project"));
}

TEST(ProjectValidator, ReportsEveryItemAgainInASecondRun) {
  ProjectValidator validator(ProjectWith(Item("2")));
  EXPECT_TRUE(validator.valid());
  EXPECT_FALSE(validator.valid());
  EXPECT_THAT(validator.messages(), ElementsAre("id 1 is a duplicate, 1 of them seen so far",
                                                "id 2 is a duplicate, 1 of them seen so far"));
  EXPECT_FALSE(validator.valid());
  EXPECT_THAT(validator.messages(), SizeIs(4));
  EXPECT_EQ(validator.messages().back(), "id 2 is a duplicate, 2 of them seen so far");
  EXPECT_THAT(validator.places(), SizeIs(4));
}

TEST(ProjectValidator, ForgetsMessagesButNotIdsWithANewText) {
  ProjectValidator validator(ProjectWith(Item("0")));
  EXPECT_FALSE(validator.valid());

  validator.set(ProjectWith(Item("2")));
  EXPECT_THAT(validator.messages(), IsEmpty());
  EXPECT_THAT(validator.places(), IsEmpty());
  EXPECT_FALSE(validator.valid());
  EXPECT_THAT(validator.messages(), ElementsAre("id 1 is a duplicate, 1 of them seen so far"));

  validator.set("no project");
  EXPECT_THAT(validator.messages(), IsEmpty());
  EXPECT_FALSE(validator.valid());
  EXPECT_THAT(validator.messages(), ElementsAre("invalid project, could not parse project"));
}

TEST(ProjectValidator, ChecksATextAfterANode) {
  ProjectValidator validator(ParseXml("<project/>"));
  EXPECT_FALSE(validator.valid());
  validator.set(ProjectWith(Item("2")));
  EXPECT_TRUE(validator.valid());
}

TEST(ProjectValidator, KeepsEveryMessageEvenWhenTheyAreTheSame) {
  ProjectValidator validator(ProjectWith(Item("2")));
  validator.addMessage("a");
  validator.addMessage("");
  validator.addMessage("a");
  EXPECT_FALSE(validator.valid());
  EXPECT_THAT(validator.messages(), ElementsAre("a", "", "a"));
  EXPECT_THAT(validator.places(), SizeIs(3));
}

TEST(ProjectValidator, CallsTheObserverForEachItem) {
  ProjectValidator validator(
      ProjectWith(Item("2", "<subitems>" + Item("3") + "<room/></subitems>") + Item("4")));
  int items = 0;
  validator.setItemObserver([&items] { ++items; });
  validator.valid();
  EXPECT_EQ(items, 5);

  validator.setItemObserver({});
  validator.valid();
  EXPECT_EQ(items, 5);
}

TEST(ProjectValidator, ExceptionsOfTheObserverEndTheCheck) {
  ProjectValidator validator(ProjectWith(Item("0") + Item("0")));
  int items = 0;
  validator.setItemObserver([&items] {
    if (++items == 3) throw std::runtime_error("enough");
  });
  EXPECT_THROW(validator.valid(), std::runtime_error);
  EXPECT_THAT(validator.messages(), ElementsAre("item has an invalid id 0"));
}

TEST(ProjectValidator, ObserverMaySetAnotherText) {
  ProjectValidator validator(ProjectWith(Item("2", "<subitems>" + Item("x") + "</subitems>")));
  int items = 0;
  validator.setItemObserver([&] {
    if (++items == 1) validator.set(ProjectWith(Item("5")));
  });
  EXPECT_FALSE(validator.valid());
  EXPECT_EQ(items, 3) << "the check continues with its own text";
  EXPECT_THAT(validator.messages(), ElementsAre(testing::StartsWith("invalid project, ")));
  EXPECT_THAT(validator.places(), SizeIs(1));

  validator.set(ProjectWith(Item("6")));
  EXPECT_FALSE(validator.valid());
  EXPECT_EQ(items, 5);
  EXPECT_THAT(validator.messages(), ElementsAre("id 1 is a duplicate, 1 of them seen so far"));
}

TEST(ProjectValidator, TextThatAnObserverSetIsCheckedByTheNextCall) {
  ProjectValidator validator(ProjectWith(Item("2")));
  validator.setItemObserver([&] {
    validator.setItemObserver({});
    validator.set("no project");
  });
  EXPECT_TRUE(validator.valid());
  EXPECT_FALSE(validator.valid());
  EXPECT_THAT(validator.messages(), ElementsAre("invalid project, could not parse project"));
}

TEST(ProjectValidator, ObserverMayReplaceItself) {
  ProjectValidator validator(ProjectWith(Item("2") + Item("3")));
  std::string calls;
  const std::string first(100, 'a');  // allocated, and freed with the closure below
  validator.setItemObserver([&validator, &calls, first] {
    validator.setItemObserver([&calls] { calls += 'b'; });
    calls += first;
  });
  EXPECT_TRUE(validator.valid());
  EXPECT_EQ(calls, first + "bb");
}

TEST(ProjectValidator, ObserverMayReplaceItselfDuringASingleStep) {
  ProjectValidator validator{XmlNode::Ptr()};
  std::string calls;
  const std::string first(100, 'a');
  validator.setItemObserver([&validator, &calls, first] {
    validator.setItemObserver({});
    calls += first;
  });
  validator.parseItem(ParseXml(Item("2", "<subitems>" + Item("3") + "</subitems>")));
  EXPECT_EQ(calls, first);
}

TEST(ProjectValidator, ObserverKeepsItsState) {
  ProjectValidator validator(ProjectWith(Item("2") + Item("3")));
  int last = 0;
  validator.setItemObserver([&last, count = 0]() mutable { last = ++count; });
  EXPECT_TRUE(validator.valid());
  EXPECT_EQ(last, 3);
}

TEST(ProjectValidator, ObserverIsDestroyedWithTheValidator) {
  const auto owned = std::make_shared<int>();
  {
    ProjectValidator validator{XmlNode::Ptr()};
    validator.setItemObserver([owned] {});
    EXPECT_EQ(owned.use_count(), 2);
  }
  EXPECT_EQ(owned.use_count(), 1);
}

// --- checks beyond malformed numbers ---

// Checks a project with an observer that has the check continue.
std::vector<std::string> MessagesBehindUnreadableNumbers(const std::string& project, bool addMessages,
                                                         std::vector<std::string>& unreadable) {
  ProjectValidator validator(project);
  validator.setItemObserver(
      tavrin::ProjectObserver{{}, [&](const XmlNode& element, const zq::ZqError& /*error*/) {
                                unreadable.push_back(element.GetName());
                                return addMessages;
                              }});
  validator.valid();
  return validator.messages();
}

TEST(ProjectValidator, ContinuesAfterMalformedNumbersForAProjectObserver) {
  std::vector<std::string> unreadable;
  EXPECT_THAT(
      MessagesBehindUnreadableNumbers(
          ProjectWithSystemItem(SystemItem(
              Version("x", "-1"), Leading("1", "1") + "<itemdata/>" +
                                      Element("subitems", Item("six") + Item("7", "<state/><x/>", "type") +
                                                              Item("six", "<x/>") + Item("0")))),
          true, unreadable),
      ElementsAre(
          R"(invalid project, attribute "majorversion" contains "x", which is not a number from -2147483648 to 2147483647)",
          "item 1 has an invalid minor version number -1",
          R"(invalid project, element "id" contains "six", which is not a number from -2147483648 to 4294967295)",
          R"(invalid project, element "type" contains "type", which is not a number from -2147483648 to 4294967295)",
          "item 7 contains an invalid x",
          R"(invalid project, element "id" contains "six", which is not a number from -2147483648 to 4294967295)",
          R"(invalid project, element "id" contains "six", which is not a number from -2147483648 to 4294967295)",
          "item 0 contains an invalid x", "item has an invalid id 0"));
  EXPECT_THAT(unreadable, ElementsAre("item", "id", "type", "id", "item"));
}

TEST(ProjectValidator, ProjectObserverReceivesMessagesAboutMalformedNumbers) {
  std::vector<std::string> unreadable;
  EXPECT_THAT(MessagesBehindUnreadableNumbers(ProjectWith(Item("six")), false, unreadable), IsEmpty());
  EXPECT_THAT(unreadable, ElementsAre("id"));
}

TEST(ProjectValidator, CallsAProjectObserverForEachItem) {
  ProjectValidator validator(ProjectWith(Item("2")));
  int items = 0;
  validator.setItemObserver(tavrin::ProjectObserver{[&items] { ++items; }, {}});
  EXPECT_TRUE(validator.valid());
  EXPECT_EQ(items, 2);
}

// --- accepted input ---

TEST(ProjectValidator, AttributesOfTheOptionalElementsAreNotReported) {
  for (const std::string element : {"itemdata", "state", "zqi", "devicedata"}) {
    EXPECT_THAT(MessagesOf(ProjectWith(Item("7", "<" + element + " a='1' b='2'/>"))), IsEmpty()) << element;
  }
  EXPECT_THAT(MessagesOf(ProjectWith(Item("7", "<subitems a='1'/>"))),
              ElementsAre("subitems has attributes"));
}

TEST(ProjectValidator, IgnoresCommentsInstructionsAndCdata) {
  const std::string noElement = "<!-- <item/> --><?pi <item/>?><![CDATA[]]>\n";
  std::string project = ProjectWith(
      Item("7", "<itemdata/><state/><zqi>a.zqi</zqi><subitems>" + Item("8") + Item("9") + "</subitems>"));
  for (std::size_t at = project.find('>'); at != std::string::npos; at = project.find('>', at + 1)) {
    if (at + 1 == project.size() || project[at + 1] != '<') continue;
    project.insert(at + 1, noElement);
    at += noElement.size();
  }
  EXPECT_THAT(MessagesOf(project), IsEmpty()) << project;
}

TEST(ProjectValidator, CommentsAndInstructionsDoNotSeparateATextAndCdataBelongsToIt) {
  const std::string parts[] = {"1<!-- 2 -->2", "1<?pi 3?>2", "<![CDATA[12]]>", "1<![CDATA[2]]>",
                               " <!----> 12 "};
  for (const std::string& twelve : parts) {
    EXPECT_THAT(MessagesOf(ProjectWith(Item(twelve) + Item("12"))),
                ElementsAre("id 12 is a duplicate, 1 of them seen so far"))
        << twelve;
  }
  EXPECT_THAT(MessagesOf(ProjectWith(Item("7", "<zqi>a.<!-- x --><![CDATA[ZQI]]></zqi>"))), IsEmpty());
  EXPECT_THAT(MessagesOf(ProjectWith(Item("7", "<zqi><!-- .zqi -->a<?b .zqi?></zqi>"))),
              ElementsAre("item 7 has invalid zqi file name a"));
}

TEST(ProjectValidator, BlankVersionNumberReadsAsZero) {
  const auto of = [](const std::string& major, const std::string& minor, const std::string& build,
                     const std::string& revision) {
    return MessagesOf(ProjectWithSystemItem(
        SystemItem(Version(major, minor, build, revision), Leading("1", "1") + "<itemdata/><subitems/>")));
  };
  const Messages tooOld = {"the validator can only check 2.1.0 or greater"};
  for (const char* const blank : {"", " ", "\t \n"}) {
    EXPECT_EQ(of(blank, "9", "0", "0"), tooOld);
    EXPECT_EQ(of("2", blank, "0", "0"), tooOld);
    EXPECT_THAT(of("3", blank, blank, blank), IsEmpty());
  }
}

TEST(ProjectValidator, DriverFileNamesAreComparedInLowerCaseOfTheGlobalLocale) {
  struct ZForX : std::ctype<char> {
    char do_tolower(char c) const override { return c == 'X' ? 'z' : std::ctype<char>::do_tolower(c); }
  };
  const std::string project = ProjectWith(Item("7", "<zqi>a.XQI</zqi>"));
  const Messages invalid = {"item 7 has invalid zqi file name a.XQI"};
  EXPECT_EQ(MessagesOf(project), invalid);
  const std::locale before = std::locale::global(std::locale(std::locale::classic(), new ZForX));
  const Messages changed = MessagesOf(project);
  std::locale::global(before);
  EXPECT_THAT(changed, IsEmpty());
  EXPECT_EQ(MessagesOf(project), invalid);
}

// --- single steps ---

TEST(ProjectValidatorStep, CheckNodePtrReportsOnlyWhatIsMissing) {
  ProjectValidator validator{XmlNode::Ptr()};
  XmlNode::Ptr element = ParseXml("<foo/>");
  EXPECT_FALSE(validator.checkNodePtr(element, "bar"));
  EXPECT_FALSE(validator.checkNodePtr(element, 7U));
  EXPECT_THAT(validator.messages(), IsEmpty());

  XmlNode::Ptr missing;
  EXPECT_TRUE(validator.checkNodePtr(missing, "bar"));
  EXPECT_TRUE(validator.checkNodePtr(missing, 7U));
  EXPECT_TRUE(validator.checkNodePtr(missing, 4294967295U));
  EXPECT_THAT(validator.messages(),
              ElementsAre("bar is missing", "item 7 is missing", "item 4294967295 is missing"));
  EXPECT_THAT(validator.places(), SizeIs(3));
}

TEST(ProjectValidatorStep, CheckTagIsTrueOnlyForAMissingElement) {
  const std::tuple<const char*, bool, Messages> cases[] = {
      {"", true, {"foo is missing"}},
      {"<foo/>", false, {}},
      {"<foo a='1' b='2'/>", false, {"foo has attributes"}},
      {"<bar/>", false, {"expected foo, got bar"}},
      {"<Foo/>", false, {"expected foo, got Foo"}},
      {"<bar a='1'/>", false, {"expected foo, got bar", "foo has attributes"}},
  };
  for (const auto& [text, missing, messages] : cases) {
    ProjectValidator validator{XmlNode::Ptr()};
    XmlNode::Ptr element = *text != '\0' ? ParseXml(text) : XmlNode::Ptr();
    EXPECT_EQ(validator.checkTag(element, "foo"), missing) << text;
    EXPECT_EQ(validator.messages(), messages) << text;
  }
}

TEST(ProjectValidatorStep, GetIdReadsTheFirstIdOfAnItem) {
  ProjectValidator validator{XmlNode::Ptr()};
  const std::pair<const char*, std::uint32_t> cases[] = {
      {"<item/>", 0},
      {"<item><name>3</name></item>", 0},
      {"<item><id/></item>", 0},
      {"<item><id>7</id></item>", 7},
      {"<item><name/><id>7</id><id>8</id></item>", 7},
      {"<item><id>-1</id></item>", 4294967295},
  };
  for (const auto& [text, id] : cases) {
    XmlNode::Ptr item = ParseXml(text);
    EXPECT_EQ(validator.getId(item), id) << text;
  }
  XmlNode::Ptr missing;
  EXPECT_EQ(validator.getId(missing), 0U);
  EXPECT_THAT(validator.messages(), IsEmpty());
}

TEST(ProjectValidatorStep, CheckItemCommonComparesWithWhatIsExpected) {
  const std::tuple<std::string, std::uint32_t, std::int32_t, Messages> cases[] = {
      {Item("7"), 0, 0, {}},
      {Item("7"), 7, 2, {}},
      {Item("7"), 8, 3, {"expected item 8, got item 7", "expected type 3, got 2"}},
      {Item("7"), 4294967295, -1, {"expected item 4294967295, got item 7", "expected type -1, got 2"}},
      {"<item a='1'>" + Leading("7", "2") + "</item>", 0, 0, {}},
      {"<room/>", 0, 0, {"expected item, got room", "id is missing"}},
  };
  for (const auto& [text, id, type, messages] : cases) {
    ProjectValidator validator{XmlNode::Ptr()};
    XmlNode::Ptr item = ParseXml(text);
    EXPECT_FALSE(validator.checkItemCommon(item, id, type)) << text;
    EXPECT_EQ(validator.messages(), messages) << text;
  }
}

TEST(ProjectValidatorStep, ReportsMissingElements) {
  ProjectValidator validator{XmlNode::Ptr()};
  XmlNode::Ptr missing;
  EXPECT_TRUE(validator.checkItemCommon(missing, 5, 0));
  validator.parseCurrentState(missing);
  validator.parseSystemItems(missing);
  validator.parseItem1(missing);
  validator.parseItem1Data(missing);
  validator.parseItem(missing);
  validator.parseSubItems(missing);
  EXPECT_THAT(
      validator.messages(),
      ElementsAre("item 5 is missing", "currentstate is missing", "systemitems is missing",
                  "item 1 is missing", "itemdata is missing", "item is missing", "subitems is missing"));
  EXPECT_THAT(validator.places(), testing::Each(XmlPosition{}));
}

TEST(ProjectValidatorStep, PlaceholdersReportNothing) {
  ProjectValidator validator{XmlNode::Ptr()};
  const XmlNode::Ptr element = ParseXml("<anything a='1'><b/></anything>");
  for (const XmlNode::Ptr& node : {element, XmlNode::Ptr()}) {
    validator.parseProperties(node);
    validator.parseBindings(node);
    validator.parseNetworkBindings(node);
    validator.parseEventManager(node);
    validator.parseVariables(node);
    validator.parseScanSchedule(node);
    validator.parsePlugins(node);
    validator.parseItemData(node);
    validator.parseState(node);
  }
  EXPECT_THAT(validator.messages(), IsEmpty());
}

// --- log ---

TEST(ProjectValidatorLog, LogsTheStepsInTraversalOrder) {
  const std::string project =
      ProjectWith(Item("2", "<itemdata/><state/><devicedata/><subitems>" + Item("3", "<zqi/>") +
                                Item("4", "") + "<item/></subitems>"));
  const tavrin_testing::LogCapture capture(log4cplus::TRACE_LOG_LEVEL);
  ProjectValidator validator(project);
  validator.valid();

  std::vector<std::pair<std::string, std::string>> lines;
  for (const tavrin_testing::LogRecord& event : capture.records()) {
    EXPECT_EQ(event.level, log4cplus::TRACE_LOG_LEVEL);
    EXPECT_EQ(event.file, "tavrin_driver/ProjectValidator");
    EXPECT_GT(event.line, 0);
    lines.emplace_back(event.function, event.message);
  }
  const auto by = [](const std::string& operation, const std::string& text) {
    return std::pair("void zq::ProjectValidator::" + operation + "(zq::XmlNode::Ptr)", text);
  };
  const std::vector<std::pair<std::string, std::string>> expected = {
      by("parseCurrentState", "Parsing currentstate"),
      by("parseProperties", "Parsing currentstate/properties"),
      by("parseProperties", "TODO: validate <iditemcurrent>"),
      by("parseProperties", "TODO: ensure no id in the project is greater than iditemcurrent"),
      by("parseSystemItems", "Parsing systemitems"),
      by("parseItem1", "Parsing systemitems/item 1"),
      by("parseItem1Data", "Parsing item 1 itemdata"),
      by("parseItem1Data", "TODO: check item 1 <itemdata>"),
      by("parseSubItems", "Parsing subitems"),
      by("parseItem", "Parsing item "),
      by("parseItemData", "TODO: validate <itemdata>"),
      by("parseState", "TODO: validate <state> data parses"),
      by("parseItem", "TODO: parse devicedata"),
      by("parseSubItems", "Parsing subitems"),
      by("parseItem", "Parsing item "),
      by("parseItem", "TODO: verify that site contains only buildings"),
      by("parseItem", "TODO: verify that building contains only floors"),
      by("parseItem", "TODO: verify that floors contains only rooms"),
      by("parseItem", "Parsing item "),
      by("parseItem", "Parsing item "),
      by("parseItem", "TODO: verify that site contains only buildings"),
      by("parseItem", "TODO: verify that building contains only floors"),
      by("parseItem", "TODO: verify that floors contains only rooms"),
      by("parseBindings", "TODO: validate <bindings>, <boundbinding>"),
      by("parseNetworkBindings", "TODO: validate <networkdbindings>"),
      by("parseEventManager", "TODO: validate <event_mgr>, <event>"),
      by("parseVariables", "TODO: validate <variables>"),
      by("parseScanSchedule", "TODO: validate <scan_schedule>"),
      by("parsePlugins", "TODO: validate <plugins>"),
  };
  EXPECT_EQ(lines, expected);
  EXPECT_THAT(validator.messages(), ElementsAre("item 4 is missing all optional elements", "id is missing"));
}

TEST(ProjectValidatorLog, IsSilentAboveTrace) {
  const tavrin_testing::LogCapture capture(log4cplus::DEBUG_LOG_LEVEL);
  ProjectValidator validator(ProjectWith(Item("0")));
  EXPECT_FALSE(validator.valid());
  EXPECT_THAT(capture.records(), IsEmpty());
}

}  // namespace
