#include "tools/XmlMessageLint.h"

#include <gmock/gmock.h>
#include <tavrin_driver/BindMessage.h>
#include <tavrin_driver/CondMessage.h>
#include <tavrin_platform/ZqError.h>

#include <functional>
#include <string>
#include <vector>

namespace {

using testing::ElementsAreArray;
using tool::LintBinding;
using tool::LintConditional;
using tool::LintResult;

using Lint = LintResult (*)(const std::string&);

struct Row {
  std::string text;
  std::vector<std::string> notes;
};

void ExpectNotes(Lint lint, const std::vector<Row>& rows) {
  for (const auto& [text, expected] : rows) {
    const LintResult result = lint(text);
    EXPECT_EQ(result.objection.text, "") << text;
    std::vector<std::string> notes;
    for (const tool::Finding& note : result.notes)
      notes.push_back(std::to_string(note.place.line) + ':' + std::to_string(note.place.column) + ' ' +
                      note.text);
    EXPECT_THAT(notes, ElementsAreArray(expected)) << text;
  }
}

TEST(XmlMessageLint, NotesWhatABindingHasBeyondWhatIsRead) {
  const auto binding = [](const std::string& content) {
    return "<bindmessage><notify>N</notify>\n" + content + "</bindmessage>";
  };
  ExpectNotes(
      LintBinding,
      {
          {binding(""), {}},
          {binding("<query/><data><a b='1'>c</a> d</data><path>e<f/></path><params/>"), {}},
          {"<bindmessage/>",
           {R"(1:1 there is no name in "command" or "notify": the message is neither of them)"}},
          {"<bindmessage><notify/></bindmessage>",
           {R"(1:1 there is no name in "command" or "notify": the message is neither of them)"}},
          {"<x><command>C</command></x>", {R"(1:1 the root element is "x", not "bindmessage")"}},
          {"<bindmessage><command>C</command><query/></bindmessage>",
           {"1:34 \"query\" marks an answer, but this is no notification"}},
          {binding("<command>C</command><command>D</command>"),
           {"2:21 \"command\" stands twice; the last one wins"}},
          {binding("<notify>M</notify>"), {"2:1 \"notify\" stands twice; the last one wins"}},
          {binding("<notify/>"),
           {R"(1:1 there is no name in "command" or "notify": the message is neither of them)",
            "2:1 \"notify\" stands twice; the last one wins"}},
          {"<bindmessage><command/><command>C</command></bindmessage>",
           {"1:24 \"command\" stands twice; the last one wins"}},
          {"<bindmessage><notify/><notify>N</notify><query/></bindmessage>",
           {"1:23 \"notify\" stands twice; the last one wins"}},
          {binding("<data/><data/><path/><path/><query/><query/><params/><params/>"),
           {"2:8 \"data\" stands twice; the last one wins", "2:22 \"path\" stands twice; the last one wins"}},
          {binding("<data type='n'>1</data>"), {"2:1 an attribute of \"data\" is passed over"}},
          {binding("<query>yes</query>"), {"2:1 the text directly in \"query\" is passed over"}},
          {binding("<query><a/></query>"), {R"(2:8 element "a" in "query" is passed over)"}},
          {binding("<command>C<b/></command>"), {R"(2:11 element "b" in "command" is passed over)"}},
          {binding("text"), {"1:1 the text directly in \"bindmessage\" is passed over"}},
          {binding("<Data/>"), {R"(2:1 element "Data" in "bindmessage" is passed over)"}},
          {binding("<params><x/></params>"), {R"(2:9 element "x" in "params" is passed over)"}},
          {binding("<params><param><name>A</name></param></params>"),
           {R"(2:9 parameter "A" has no value: there is no "value")"}},
          {"\xef\xbb\xbf<bindmessage><command>C</command></bindmessage>", {}},
      });
}

TEST(XmlMessageLint, NotesWhatAConditionalHasBeyondWhatIsRead) {
  const auto conditional = [](const std::string& content) {
    return "<deviceconditional><name>N</name><conditional>EQUAL</conditional>\n" + content +
           "</deviceconditional>";
  };
  const std::string none =
      " is none of EQUAL, NOT_EQUAL, LESS_THAN, LESS_THAN_OR_EQUAL, GREATER_THAN, GREATER_THAN_OR_EQUAL: "
      "every "
      "test is false";
  const std::string param = "<name>A</name><value type='n'><static>1</static></value>";
  ExpectNotes(LintConditional,
              {
                  {conditional(""), {}},
                  {conditional("<params><param>" + param + "</param></params>"), {}},
                  {conditional("<params><x>" + param + "</x></params>"), {}},
                  {conditional("<params><x>" + param + "</x><y>" + param + "</y></params>"),
                   {"2:72 parameter \"A\" stands twice; the first one, in line 2, wins"}},
                  {conditional("<conditional>LESS_THAN</conditional>"),
                   {"2:1 \"conditional\" stands twice; the last one wins"}},
                  {conditional("<conditional>equal</conditional>"),
                   {"2:1 \"conditional\" stands twice; the last one wins", "2:1 \"equal\"" + none}},
                  {"<deviceconditional><conditional/><name/></deviceconditional>", {"1:20 \"\"" + none}},
                  {"<deviceconditional/>",
                   {"1:1 there is no \"name\": the conditional's name is empty",
                    "1:1 there is no \"conditional\": every test is false"}},
                  {"<x><name/><conditional>EQUAL</conditional></x>",
                   {R"(1:1 the root element is "x", not "deviceconditional")"}},
                  {conditional("<data/>"), {R"(2:1 element "data" in "deviceconditional" is passed over)"}},
                  {"GREATER_THAN_OR_EQUAL", {"0:0 the text is no XML, and is taken for the comparison"}},
              });
}

// What the loaders take: a document whose parameters can be read, and for conditionals a comparison alone.
bool Reads(const std::string& text, const std::function<void(zq::XmlNode::Ptr&)>& read) {
  const zq::XmlDocument::Ptr document = zq::CreateXmlDocument(text);
  if (!document) return false;
  zq::XmlNode::Ptr root = document->GetRoot();
  try {
    read(root);
    return true;
  } catch (const zq::ZqError&) {
    return false;
  }
}

TEST(XmlMessageLint, ObjectsExactlyToWhatTheLoadersRefuse) {
  const auto expectAgreement = [](const std::string& text) {
    const bool isBinding = Reads(text, [](zq::XmlNode::Ptr& root) { CBindMessage().fromXml(root); });
    const bool isConditional = Reads(text, [](zq::XmlNode::Ptr& root) { CCondMessage().fromXml(root); });
    EXPECT_EQ(LintBinding(text).objection.text.empty(), isBinding) << text;
    EXPECT_EQ(LintConditional(text).objection.text.empty(), isConditional) << text;
  };
  const std::string text =
      "<m><name>N</name><notify>N</notify><conditional>EQUAL</conditional><data><a/></"
      "data><params><param><name>"
      "A</name><value type='n'><variable><deviceid>7</deviceid><variableid>8</variableid></variable></value>"
      "</param><x><name>B</name><value><variable><deviceid>9</deviceid></variable></value></x></params></"
      "m>\n";
  expectAgreement(text);
  for (std::size_t at = 0; at < text.size(); ++at) {
    expectAgreement(text.substr(0, at));
    expectAgreement(text.substr(at));
    std::string changed = text;
    for (const char byte : {'"', '<', 'x', '\0', '\xff'}) {
      changed[at] = byte;
      expectAgreement(changed);
    }
    expectAgreement(changed.erase(at, 1));
  }
}

}  // namespace
