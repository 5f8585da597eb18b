#include <gmock/gmock.h>

#include <tavrin_diagnostics/Diagnostics.h>
#include <cstdint>
#include <stdexcept>
#include <string>
#include <vector>

#include "DescribeDiagnostics.h"
#include "ProjectText.h"

namespace tavrin::diagnostics {
namespace {

using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

ProjectDiagnosis Diagnose(const std::string& text) { return DiagnoseProject(std::string(text)); }

std::vector<std::string> RulesIn(const ProjectDiagnosis& diagnosis) {
  std::vector<std::string> rules;
  for (const Diagnostic& diagnostic : diagnosis.diagnostics) rules.emplace_back(diagnostic.rule);
  return rules;
}

std::string HintFor(const std::string& text, const std::string& rule) {
  for (const Diagnostic& diagnostic : Diagnose(text).diagnostics) {
    if (diagnostic.rule == rule) return diagnostic.hint;
  }
  ADD_FAILURE() << rule << " is not broken";
  return "";
}

TEST(ProjectDiagnosis, CountsTheItemsOfAValidProject) {
  const ProjectDiagnosis diagnosis = Diagnose(ProjectWith(Item("2") + Item("3")));
  EXPECT_THAT(diagnosis.diagnostics, IsEmpty());
  EXPECT_EQ(diagnosis.items, 3U);
  EXPECT_EQ(diagnosis.Source(), ProjectWith(Item("2") + Item("3")));
}

TEST(ProjectDiagnosis, ListsTenThousandOfMoreFindingsAndCountsAll) {
  std::string items;
  for (int i = 0; i < 10'000; ++i) items += "<item/>";
  const ProjectDiagnosis diagnosis = Diagnose(ProjectWith(items + Item("six")));
  EXPECT_EQ(diagnosis.findings, 10'001U);
  EXPECT_EQ(diagnosis.diagnostics.size(), 10'000U);
  EXPECT_EQ(diagnosis.diagnostics.back().rule, "project/missing-element");
}

TEST(ProjectDiagnosis, ReportsAllErrorsOfAProjectWithASwappedPair) {
  const ProjectDiagnosis diagnosis =
      Diagnose(ProjectWith("<item><name>Hall</name><id>5</id><type>8</type><state/></item>" + Item("0") +
                           Item("six") + Item("7", "") + Item("7")));
  EXPECT_THAT(
      RulesIn(diagnosis),
      ElementsAre("project/wrong-name", "project/unreadable-number", "project/wrong-name",
                  "project/wrong-name", "project/wrong-name", "project/invalid-id",
                  "project/unreadable-number", "project/no-optional-elements", "project/duplicate-id"));
  std::vector<bool> ends;
  for (const Diagnostic& diagnostic : diagnosis.diagnostics) ends.push_back(diagnostic.endsCheck);
  EXPECT_THAT(ends, ElementsAre(false, true, false, false, false, false, false, false, false));
}

TEST(ProjectDiagnosis, ReportsANumberThatIsReadAgainOnce) {
  EXPECT_THAT(RulesIn(Diagnose(ProjectWith(Item("six", "<state/><x/>", "10")))),
              ElementsAre("project/unreadable-number", "project/invalid-type", "project/unknown-element"));
  EXPECT_THAT(RulesIn(Diagnose(ProjectWith("<item><name>x</name><id>six</id><type>2</type><x/></item>"))),
              testing::Contains("project/unreadable-number").Times(2));
  EXPECT_THAT(RulesIn(Diagnose(ProjectWithSystemItem(
                  SystemItem(Version("x", "y"), Leading("1", "1") + "<itemdata/><subitems/>")))),
              ElementsAre("project/unreadable-number", "project/unreadable-number"));
}

TEST(ProjectDiagnosis, ReportsThePathOfNamesToAnItem) {
  const std::string room = "<item><id>4</id><name>Bad \"2\"</name><type>10</type><state/></item>";
  const std::string floor =
      "<item><id>3</id><name>Ground</name><type>4</type><subitems>" + room + "</subitems></item>";
  const std::string project = ProjectWithSystemItem(
      "<item " + Version("3", "0") + "><id>1</id><name>House</name><type>1</type><itemdata/><subitems>" +
      floor + "</subitems></item>");
  EXPECT_EQ(HintFor(project, "project/invalid-type"),
            R"(types are from 1 to 9; in "House" / "Ground" / "Bad \"2\"")");
}

TEST(ProjectDiagnosis, ReportsTheEndOfALongPath) {
  std::string items = Item("99", "<state/>", "10");
  for (int id = 98; id > 80; --id) items = Item(std::to_string(id), "<subitems>" + items + "</subitems>");
  EXPECT_THAT(HintFor(ProjectWith(items), "project/invalid-type"), HasSubstr("; in ... / \"\" / "));
}

TEST(ProjectDiagnosis, NamesTheLineOfTheFirstItemWithAnId) {
  EXPECT_EQ(HintFor(ProjectWith("\n" + Item("5") + "\n" + Item("5") + Item("5")), "project/duplicate-id"),
            R"(the first one is in line 2; in "" / "")");
}

TEST(ProjectDiagnosis, ReportsTheRangesOfNumbers) {
  EXPECT_THAT(HintFor(ProjectWith(Item("0")), "project/invalid-id"), HasSubstr("ids are from 1 to 200000"));
  EXPECT_THAT(HintFor(ProjectWith(Item("x")), "project/unreadable-number"),
              HasSubstr("ids are from 1 to 200000"));
  EXPECT_THAT(HintFor(ProjectWith(Item("2", "<state/>", "x")), "project/unreadable-number"),
              HasSubstr("types are from 1 to 9"));
  EXPECT_THAT(HintFor(ProjectWithSystemItem(
                          SystemItem(Version("6", "0"), Leading("1", "1") + "<itemdata/><subitems/>")),
                      "project/invalid-version"),
              HasSubstr("major versions are from 2 to 5"));
}

TEST(ProjectDiagnosis, SuggestsTheNameThatWasMisspelt) {
  EXPECT_EQ(HintFor("<currentstat/>", "project/wrong-name"), "did you mean \"currentstate\"?");
}

TEST(ProjectDiagnosis, NamesBothElementsOfAMismatchedTag) {
  const std::string text = "<currentstate>\n  <properties>\n    <a/>\n</currentstate>";
  const ProjectDiagnosis diagnosis = Diagnose(text);
  ASSERT_EQ(diagnosis.diagnostics.size(), 1U);
  EXPECT_EQ(Describe(diagnosis.diagnostics[0]),
            "4:3 project/not-xml: invalid project, could not parse project");
  EXPECT_EQ(
      diagnosis.diagnostics[0].hint,
      "mismatched tag: \"currentstate\" closes here, but the innermost open element is \"properties\", from "
      "line 2, column 3");
  EXPECT_EQ(diagnosis.parseError.text, "mismatched tag");
  EXPECT_EQ(diagnosis.Source(), text);
}

TEST(ProjectDiagnosis, FindsTheOpenElementAfterOtherMarkup) {
  const std::string markup =
      "<!DOCTYPE a [<!ENTITY e '>'> <!-- \"<x> --> <?p ' ?>]>\n<a x='>'><!-- <b> --><![CDATA[<c>]]><?p <d> "
      "?><e/>\n"
      "<f><g></g></a>";
  EXPECT_EQ(
      Diagnose(markup).diagnostics[0].hint,
      "mismatched tag: \"a\" closes here, but the innermost open element is \"f\", from line 3, column 1");
}

TEST(ProjectDiagnosis, ReportsTheEndsOfElements) {
  EXPECT_THAT(Describe(Diagnose(ProjectWith("\n" + Item("0") + "\n<x/>\n" + Item("3", ""))).diagnostics),
              ElementsAre("2:7-2:17 project/invalid-id: item has an invalid id 0",
                          "3:1-3:5 project/wrong-name: expected item, got x",
                          "3:1-3:5 project/wrong-name: expected item, got x",
                          "3:1-3:5 project/missing-element: id is missing",
                          "4:1-4:7 project/no-optional-elements: item 3 is missing all optional elements"));
}

TEST(ProjectDiagnosis, ReportsItsProgress) {
  std::size_t bytes = 0;
  int items = 0;
  const std::string text = ProjectWith(Item("2"));
  DiagnoseProject(std::string(text), {[&](std::size_t parsed) { bytes = parsed; }, [&] { ++items; }});
  EXPECT_EQ(bytes, text.size());
  EXPECT_EQ(items, 2);
  EXPECT_THROW(DiagnoseProject(std::string(text), {{}, [] { throw std::runtime_error("enough"); }}),
               std::runtime_error);
}

}  // namespace
}  // namespace tavrin::diagnostics
