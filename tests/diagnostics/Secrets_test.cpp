#include <tavrin_diagnostics/Diagnostics.h>

#include <gmock/gmock.h>

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
  };
  for (const auto& row : rows) EXPECT_EQ(Masked(row.subject, row.text), row.masked);
}

TEST(Secrets, AreShownAsMessagesShowThem) { EXPECT_EQ(MaskedValue(), "******"); }

TEST(NearestName, IsTheCandidateWithTheFewestTypingMistakes) {
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
  EXPECT_THAT(hints(DiagnoseConditional("<deviceconditional><name/><conditional>LESS_THEN</conditional>"
                                        "</deviceconditional>")),
              ElementsAre("did you mean \"LESS_THAN\"?"));
}

TEST(Diagnostics, StopListingWarningsAtAThousand) {
  std::string text = "<devicecommand><command>X</command>";
  for (int i = 0; i < 1500; ++i) text += "<x/>";
  const Diagnostics diagnostics = DiagnoseCommand(text + "</devicecommand>");
  ASSERT_EQ(diagnostics.size(), 1000U);
  EXPECT_EQ(diagnostics.back().hint, "500 more warnings are not listed");
}

}  // namespace
}  // namespace tavrin::diagnostics
