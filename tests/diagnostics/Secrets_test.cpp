#include <gmock/gmock.h>

#include <tavrin_diagnostics/Diagnostics.h>
#include <string>
#include <vector>

namespace tavrin::diagnostics {
namespace {

std::string Masked(Subject subject, std::string text) {
  const std::vector<TextRange> secrets = SecretsIn(subject, text);
  for (auto secret = secrets.rbegin(); secret != secrets.rend(); ++secret)
    text.replace(secret->begin, secret->end - secret->begin, "*");
  return text;
}

TEST(Secrets, AreTheValuesOfParametersWithSecretNames) {
  const struct {
    Subject subject;
    std::string text;
    std::string masked;
  } rows[] = {
      {Subject::command, "<a><name>PIN</name><value type=\"s\"><static>4711</static></value></a>",
       "<a><name>PIN</name><value type=\"s\"><static>*</static></value></a>"},
      {Subject::command, "<a><name>PINS</name><value>4711</value></a>",
       "<a><name>PINS</name><value>4711</value></a>"},
      {Subject::binding, "<a><name>Wifi&#80;assword</name><value x='4711'>47<b>11</b></value></a>",
       "<a><name>Wifi&#80;assword</name><value x='*'>*<b>*</b></value></a>"},
      {Subject::binding, "<a><name>WifiPassword</name><value x='4711'>47<b>11</b></value></a>",
       "<a><name>WifiPassword</name><value x='*'>*<b>*</b></value></a>"},
      {Subject::conditional, "<a><nane> x</nane><vlaue>4711</vlaue></a>",
       "<a><nane> x</nane><vlaue>4711</vlaue></a>"},
      {Subject::conditional, "<a><nane>pin</nane><vlaue>4711<!--8--></vlaue></a>",
       "<a><nane>pin</nane><vlaue>*</vlaue></a>"},
      {Subject::project, "<a password='4711'><pin> 4711 </pin><b>1</b></a>",
       "<a password='*'><pin> * </pin><b>1</b></a>"},
      {Subject::command,
       R"([{"params": [{"name": "PIN", "type": "n", "value": {"static": "4711", "static": 12}}]}])",
       R"([{"params": [{"name": "PIN", "type": "n", "value": {"static": *, "static": *}}]}])"},
      {Subject::command,
       R"([{"params": [{"name": "pin"}, {"value": {"static": 1}}, {"name": "B", "value": 2}]}])",
       R"([{"params": [{"name": "pin"}, {"value": {"static": *}}, {"name": "B", "value": 2}]}])"},
      {Subject::command, R"({"a": {"password": "4711", "b": [true /* c */]}})",
       R"({"a": {"password": *, "b": [true /* c */]}})"},
      {Subject::command, R"({"name": "PIN", "value": )", "*"},
      {Subject::command, R"({"name": "A", "value": )", R"({"name": "A", "value": )"},
      {Subject::command, "<a><name>PIN</name><value>4711", "*"},
      {Subject::command, "", ""},
      {Subject::command, "<p><name>P&#73;N</name><value>4711</value></p>",
       "<p><name>P&#73;N</name><value>*</value></p>"},
      {Subject::command, R"([{"name": "P\u0049N", "value": "4711"}])",
       R"([{"name": "P\u0049N", "value": *}])"},
      {Subject::command, "<p><name>P&#73;N</name><value>4711", "*"},
      {Subject::command, R"({"P\u0049N": "4711", "a": "b"})", R"({"P\u0049N": *, "a": "b"})"},
      {Subject::command, R"({"a\"": "b", "\u0070in": {"a\u0062": 4711, "c": [1]}})",
       R"({"a\"": "b", "\u0070in": {"a\u0062": *, "c": [*]}})"},
      {Subject::command, R"([{"n\u0061me": "PIN", "\u0074ype": "n", "v\u0061lue": "4711"}])",
       R"([{"n\u0061me": "PIN", "\u0074ype": "n", "v\u0061lue": *}])"},
  };
  for (const auto& row : rows) EXPECT_EQ(Masked(row.subject, row.text), row.masked);
}

TEST(Secrets, AreAlsoFoundInIgnoredParts) {
  const struct {
    Subject subject;
    std::string text;
    std::string masked;
  } rows[] = {
      {Subject::command, "<a><!-- <pin>4711</pin> --><!--x--><b/></a>", "<a>*<!--x--><b/></a>"},
      {Subject::binding, "<a><?login password='4711'?></a>", "<a>*</a>"},
      {Subject::project, "<!DOCTYPE a [<!ENTITY pin '4711'>]><a/>", "*<a/>"},
      {Subject::command, "<a><b name='PI&#78;' type='n' value='4711'/><b name='x' value='1'/></a>",
       "<a><b name='PI&#78;' type='n' value='*'/><b name='x' value='1'/></a>"},
      {Subject::command, "<a><b name='pin'><static>4711</static></b></a>",
       "<a><b name='pin'><static>*</static></b></a>"},
      {Subject::command, "<a><b>pin</b><b>pin</b><c>4711</c></a>", "<a><b>pin</b><b>*</b><c>*</c></a>"},
      {Subject::command, R"([{"a": 1 /* "pin": 4711 */, "b": "/* pin */"}])",
       R"([{"a": 1 *, "b": "/* pin */"}])"},
      {Subject::command, "[{}] // \"password\": 4711\n ", "[{}] *\n "},
      {Subject::command, R"([{}] {"password": 4711} )", "[{}] * "},
      {Subject::command, "[{}] {pin", "[{}] *"},
      {Subject::command, R"([{"a": {"pin": 4711}, "a": 1}])", R"([{"a": {"pin": *}, "a": *}])"},
      {Subject::command, R"([{"name": "pin", "name": "x", "value": 4711}])",
       R"([{"name": "pin", "name": "x", "value": *}])"},
      {Subject::project, std::string("\xff\xfe<\0p\0i\0n\0/\0>\0", 14), "*"},
      {Subject::project, std::string("\xfe\xff\0<\0p\0i\0n\0/\0>", 14), "*"},
  };
  for (const auto& row : rows) EXPECT_EQ(Masked(row.subject, row.text), row.masked);
}

TEST(Secrets, AreMaskedAsInMessages) { EXPECT_EQ(MaskedValue(), "******"); }

// Diagnostics are printed without masking.
TEST(Diagnostics, ContainNoParameterValues) {
  const std::string param = "<param><name>PIN</name><value type='t'><static>4711</static></value></param>";
  const auto element = [](const std::string& name, const std::string& content) {
    return "<" + name + ">" + content + "</" + name + ">";
  };
  const auto replaced = [&](const std::string& with) {
    std::string other = param;
    return other.replace(other.find("<static>"), 21, with);
  };
  std::vector<std::string> params = {param,
                                     param + param,
                                     "4711" + param,
                                     element("parm", "4711"),
                                     replaced("4711"),
                                     replaced("<statik>4711</statik>"),
                                     replaced("<static x='4711'>4711</static>4711"),
                                     replaced("<static>4711</static><static>4711</static>"),
                                     replaced("<static>4711<b>4711</b></static>")};
  for (const std::string& text : params) {
    const std::string body = element("command", "X") + element("params", text);
    for (const Diagnostics& found :
         {DiagnoseCommand(element("devicecommand", body)), DiagnoseBinding(element("bindmessage", body)),
          DiagnoseConditional(
              element("deviceconditional", element("name", "A") + element("conditional", "EQUAL") + body))}) {
      for (const Diagnostic& diagnostic : found)
        EXPECT_THAT(diagnostic.text + diagnostic.hint, testing::Not(testing::HasSubstr("4711"))) << text;
    }
  }
  for (const char* entry :
       {R"({"name": "PIN", "value": {"static": "4711"}}, {"name": "A"}, {"name": "PIN", "value": "4711"})",
        R"({"name": "PIN", "value": {"static": 4711}, "x": "4711"})", R"({"name": "PIN", "value": "4711"})",
        R"({"name": "PIN", "value": ["4711"]})", R"({"name": "PIN", "value": {"static": ["4711"]}})",
        R"({"name": "PIN", "value": {"statik": "4711"}})", R"({"name": "PIN", "velue": "4711"})",
        R"({"name": "PIN", "value": {"static": "4711", "static": "4711"}})"}) {
    const Diagnostics found =
        DiagnoseCommand(std::string(R"([{"command": "X", "params": [)") + entry + "]}]");
    EXPECT_FALSE(found.empty()) << entry;
    for (const Diagnostic& diagnostic : found)
      EXPECT_THAT(diagnostic.text + diagnostic.hint, testing::Not(testing::HasSubstr("4711"))) << entry;
  }
}

TEST(NearestName, IsTheCandidateWithTheSmallestEditDistance) {
  const std::vector<std::string> candidates = {"command", "params", "name", "static", "variable"};
  const struct {
    const char* name;
    const char* nearest;
  } rows[] = {{"comand", "command"},
              {"Command", "command"},
              {"nane", "name"},
              {"statc", "static"},
              {"sattic", "static"},
              {"parameters", "params"},
              {"param", "params"},
              {"xyz", ""},
              {"", ""},
              {"n", ""},
              {"varable", "variable"}};
  for (const auto& [name, nearest] : rows) EXPECT_EQ(NearestName(name, candidates), nearest) << name;
  EXPECT_EQ(NearestName(std::string(1000, 'x'), candidates), "");
}

TEST(Hints, SuggestTheNameThatWasMisspelt) {
  const auto hints = [](const Diagnostics& diagnostics) {
    std::vector<std::string> list;
    for (const Diagnostic& diagnostic : diagnostics) {
      if (!diagnostic.hint.empty()) list.push_back(diagnostic.hint);
    }
    return list;
  };
  using testing::ElementsAre;
  EXPECT_THAT(
      hints(DiagnoseCommand("<devicecommand><comand>X</comand><params><param><nane>A</nane><value><statc>1"
                            "</statc></value></param></params></devicecommand>")),
      ElementsAre("did you mean \"command\"?", "did you mean \"name\"?", "did you mean \"static\"?"));
  EXPECT_THAT(hints(DiagnoseCommand("<bindmessage><command/></bindmessage>")),
              ElementsAre("it is the root element of a binding message"));
  EXPECT_THAT(hints(DiagnoseCommand(R"([{"command": "X", "prams": "A"}])")),
              ElementsAre("did you mean \"params\"?"));
  EXPECT_THAT(hints(DiagnoseCommand(R"([{"command": "X", "params": "A"}])")), ElementsAre());
  EXPECT_THAT(hints(DiagnoseConditional("less_then\n")), ElementsAre("did you mean \"LESS_THAN\"?"));
  EXPECT_THAT(hints(DiagnoseConditional("EQUAL\n")), ElementsAre("remove the white space"));
  EXPECT_THAT(hints(DiagnoseConditional("nothing")), ElementsAre());
  EXPECT_THAT(hints(DiagnoseConditional("<deviceconditional><name/><conditional>LESS_THEN</conditional>"
                                        "</deviceconditional>")),
              ElementsAre("did you mean \"LESS_THAN\"?"));
}

TEST(Hints, DescribeTheFormOfVariableIds) {
  const auto hint = [](const std::string& text) {
    const Diagnostics diagnostics = DiagnoseCommand(text);
    return diagnostics.empty() ? "" : diagnostics.front().hint;
  };
  const auto json = [](const std::string& variable) {
    return R"([{"command": "X", "params": [{"name": "A", "type": "n", "value": {"variable": )" + variable +
           "}}]}]";
  };
  const std::string ids = R"(write {"deviceid": ..., "variableid": ...})";
  EXPECT_EQ(hint(json("[]")), ids);
  EXPECT_EQ(hint(json("7")), ids);
  EXPECT_EQ(hint(json(R"({"variableid": 1})")), ids);
  EXPECT_EQ(hint(json(R"({"deviceid": 1})")), ids);
  const auto xml = [](const std::string& variable) {
    return "<devicecommand><command/><params><param><name>A</name><value><variable>" + variable +
           "</variable></value></param></params></devicecommand>";
  };
  EXPECT_EQ(hint(xml("<deviceid>1</deviceid>")), R"("variable" contains "deviceid" and "variableid")");
  EXPECT_EQ(hint(xml("<variableid>1</variableid>")), R"("variable" contains "deviceid" and "variableid")");
}

TEST(Diagnostics, ListAtMostAThousandWarnings) {
  std::string text = "<devicecommand><command>X</command>";
  for (int i = 0; i < 1500; ++i) text += "<x/>";
  const Diagnostics diagnostics = DiagnoseCommand(text + "</devicecommand>");
  ASSERT_EQ(diagnostics.size(), 1000U);
  EXPECT_EQ(diagnostics.back().hint, "500 more warnings are not listed");
}

}  // namespace
}  // namespace tavrin::diagnostics
