#include <gmock/gmock.h>

#include <tavrin_diagnostics/Diagnostics.h>
#include <string>
#include <utility>
#include <vector>

#include "DescribeDiagnostics.h"

namespace tavrin::diagnostics {
namespace {

using testing::ElementsAreArray;

std::string Text(const Diagnostic& diagnostic) {
  return std::to_string(diagnostic.begin.line) + ':' + std::to_string(diagnostic.begin.column) + ' ' +
         diagnostic.text;
}

struct Row {
  std::string text;
  std::vector<std::string> warnings;
};

void ExpectWarnings(Diagnostics (*diagnose)(const std::string&), const std::vector<Row>& rows) {
  for (const auto& [text, expected] : rows) {
    const Diagnostics diagnostics = diagnose(text);
    EXPECT_FALSE(HasError(diagnostics)) << text;
    std::vector<std::string> warnings;
    for (const Diagnostic& diagnostic : diagnostics) warnings.push_back(Text(diagnostic));
    EXPECT_THAT(warnings, ElementsAreArray(expected)) << text;
  }
}

TEST(XmlMessageDiagnosis, ReportsWhatTheLoaderIgnoresOfABinding) {
  const auto binding = [](const std::string& content) {
    return "<bindmessage><notify>N</notify>\n" + content + "</bindmessage>";
  };
  ExpectWarnings(DiagnoseBinding,
                 {
                     {binding(""), {}},
                     {binding("<query/><data><a b='1'>c</a> d</data><path>e<f/></path><params/>"), {}},
                     {"<bindmessage/>",
                      {R"(1:1 there is no name in "command" or "notify": the message is neither of them)"}},
                     {"<bindmessage><notify/></bindmessage>",
                      {R"(1:1 there is no name in "command" or "notify": the message is neither of them)"}},
                     {"<x><command>C</command></x>", {R"(1:1 the root element is "x", not "bindmessage")"}},
                     {"<bindmessage><command>C</command><query/></bindmessage>",
                      {R"(1:34 "query" marks an answer, but this message is no notification)"}},
                     {binding("<command>C</command><command>D</command>"),
                      {R"(2:1 "command" occurs again in line 2 and is ignored here; the last one is used)"}},
                     {binding("<notify>M</notify>"),
                      {R"(1:14 "notify" occurs again in line 2 and is ignored here; the last one is used)"}},
                     {binding("<notify/>"),
                      {R"(1:1 there is no name in "command" or "notify": the message is neither of them)",
                       R"(1:14 "notify" occurs again in line 2 and is ignored here; the last one is used)"}},
                     {"<bindmessage><command/><command>C</command></bindmessage>",
                      {R"(1:14 "command" occurs again in line 1 and is ignored here; the last one is used)"}},
                     {"<bindmessage><notify/><notify>N</notify><query/></bindmessage>",
                      {R"(1:14 "notify" occurs again in line 1 and is ignored here; the last one is used)"}},
                     {binding("<data/><data/><path/><path/><query/><query/><params/><params/>"),
                      {R"(2:1 "data" occurs again in line 2 and is ignored here; the last one is used)",
                       R"(2:15 "path" occurs again in line 2 and is ignored here; the last one is used)"}},
                     {binding("<data type='n'>1</data>"), {R"(2:7 attribute "type" of "data" is ignored)"}},
                     {binding("<query>yes</query>"), {R"(2:8 the text directly in "query" is ignored)"}},
                     {binding("<query><a/></query>"), {R"(2:8 element "a" in "query" is ignored)"}},
                     {binding("<command>C<b/></command>"), {R"(2:11 element "b" in "command" is ignored)"}},
                     {binding("text"), {R"(2:1 the text directly in "bindmessage" is ignored)"}},
                     {binding("<Data/>"), {R"(2:1 element "Data" in "bindmessage" is ignored)"}},
                     {binding("<params><x/></params>"), {R"(2:9 element "x" in "params" is ignored)"}},
                     {binding("<params><param><name>A</name></param></params>"),
                      {R"(2:9 parameter "A" has no value: there is no "value")"}},
                     {"\xef\xbb\xbf<bindmessage><command>C</command></bindmessage>", {}},
                 });
}

TEST(XmlMessageDiagnosis, ReportsWhatTheLoaderIgnoresOfAConditional) {
  const auto conditional = [](const std::string& content) {
    return "<deviceconditional><name>N</name><conditional>EQUAL</conditional>\n" + content +
           "</deviceconditional>";
  };
  const std::string none =
      " is none of EQUAL, NOT_EQUAL, LESS_THAN, LESS_THAN_OR_EQUAL, GREATER_THAN, GREATER_THAN_OR_EQUAL: "
      "every "
      "test is false";
  const std::string param = "<name>A</name><value type='n'><static>1</static></value>";
  ExpectWarnings(
      DiagnoseConditional,
      {
          {conditional(""), {}},
          {conditional("<params><param>" + param + "</param></params>"), {}},
          {conditional("<params><x>" + param + "</x></params>"), {}},
          {conditional("<params><x>" + param + "</x><y>" + param + "</y></params>"),
           {R"(2:72 parameter "A" is ignored here; the first one of that name, in line 2, is used)"}},
          {conditional("<conditional>LESS_THAN</conditional>"),
           {R"(1:34 "conditional" occurs again in line 2 and is ignored here; the last one is used)"}},
          {conditional("<conditional>equal</conditional>"),
           {R"(1:34 "conditional" occurs again in line 2 and is ignored here; the last one is used)",
            R"(2:1 "equal" is none of EQUAL, NOT_EQUAL, LESS_THAN, LESS_THAN_OR_EQUAL, GREATER_THAN, GREATER_THAN_OR_EQUAL: every test is false)"}},
          {"<deviceconditional><conditional/><name/></deviceconditional>",
           {R"(1:20 "" is none of EQUAL, NOT_EQUAL, LESS_THAN, LESS_THAN_OR_EQUAL, GREATER_THAN, GREATER_THAN_OR_EQUAL: every test is false)"}},
          {"<deviceconditional/>",
           {R"(1:1 there is no "name": the conditional's name is empty)",
            R"(1:1 there is no "conditional": every test is false)"}},
          {"<x><name/><conditional>EQUAL</conditional></x>",
           {R"(1:1 the root element is "x", not "deviceconditional")"}},
          {conditional("<data/>"), {R"(2:1 element "data" in "deviceconditional" is ignored)"}},
          {"GREATER_THAN_OR_EQUAL", {"0:0 the text is not XML, and is read as the comparison alone"}},
      });
}

}  // namespace
}  // namespace tavrin::diagnostics
