// Binding messages: a message that was read, written and read again is equal.

#include <tavrin_driver/BindMessage.h>
#include <tavrin_platform/XmlNode.h>
#include <tavrin_platform/ZqError.h>
#include <sstream>
#include <string>
#include <vector>

#include "DescribeParams.h"
#include "Messages.h"
#include "Naive.h"
#include "Require.h"
#include "Target.h"

namespace {

// Names are written verbatim. Markup is therefore lost, and so are line endings that a parser normalises.
bool CanBeWritten(const std::string& name) {
  return name.find_first_of("<&\r") == std::string::npos && name.find("]]>") == std::string::npos;
}

bool TrueOrFalse(const std::string& text) {
  std::string lower;
  for (const char c : text) lower += c >= 'A' && c <= 'Z' ? static_cast<char>(c + ('a' - 'A')) : c;
  return text == "1" || text == "Y" || lower == "true";
}

void CheckReading(const CBindMessage& message) {
  RequireEqual(message.getDataAsInteger(), naive::Int32(message.getData()), "the data is read as a number");
  for (const auto& [key, param] : message.GetParamMap()) {
    RequireEqual(message.getParam(key), param.value, "a parameter reads as its text");
    RequireEqual(message.getParamRequired(key), param.value, "so does a required one");
    bool truth = false;
    std::int32_t integer = -7;
    std::int32_t longInteger = -7;
    std::uint32_t unsignedInteger = 7;
    std::uint32_t unsignedLong = 7;
    double number = -7;
    const bool expected = !param.value.empty();
    Require(message.getParamBool(key, truth) == expected && message.getParamInt(key, integer) == expected &&
                message.getParamLong(key, longInteger) == expected &&
                message.getParamUInt(key, unsignedInteger) == expected &&
                message.getParamULong(key, unsignedLong) == expected &&
                message.getParamDouble(key, number) == expected,
            "exactly an empty text has no value");
    RequireEqual(truth, expected && TrueOrFalse(param.value), "a truth value is one of few words");
    RequireEqual(integer, expected ? naive::Int32(param.value) : -7, "an integer is the leading number");
    RequireEqual(longInteger, integer, "whichever way it is asked for");
    RequireEqual(unsignedInteger, expected ? naive::UInt32(param.value) : 7, "an unsigned integer wraps");
    RequireEqual(unsignedLong, unsignedInteger, "whichever way it is asked for");
    RequireEqual(number, expected ? naive::Double(param.value) : -7, "a number is the leading one");
  }
}

void CheckPrinted(const CBindMessage& message, bool isQuery) {
  const auto isTrue = [](bool value) { return value ? "true" : "false"; };
  const std::string printed = message.toJson();
  std::ostringstream fields;
  fields << R"({, "Command": ")" << message.getCommand() << R"(", "Notify": ")" << message.getNotify()
         << R"(", "Data": ")" << message.getData() << R"(", "Path": ")" << message.getPath()
         << R"(", "DataInt": )" << message.getDataAsInteger() << R"(, "DataBool": )"
         << isTrue(message.getDataAsInteger() != 0) << R"(, "IsQueryNotify": )" << isTrue(isQuery)
         << R"(, "m_mapParams": [)";
  const std::string begin = fields.str();
  RequireEqual(printed.substr(0, begin.size()), begin, "the printed form contains all fields");
  const std::string end = R"(], "m_pvDataPointer": 0})";
  RequireEqual(printed.substr(printed.size() - end.size()), end, "the printed form ends");
}

// Only a notification is written with its flag for answers to queries.
void CheckWritten(const CBindMessage& message, bool isQuery) {
  if (!CanBeWritten(message.getCommand()) || !CanBeWritten(message.getNotify())) return;
  const std::string written = message.toXml();
  const zq::XmlDocument::Ptr document = zq::CreateXmlDocument(written);
  if (!document) std::cerr << written;
  Require(document != nullptr, "what is written parses");
  zq::XmlNode::Ptr root = document->GetRoot();
  CBindMessage loaded;
  loaded.fromXml(root);
  RequireEqual(loaded.getCommand(), message.getCommand(), "the command survives");
  RequireEqual(loaded.getNotify(), message.getNotify(), "the notification survives");
  RequireEqual(loaded.getData(), message.getData(), "the data survives, be it markup");
  RequireEqual(loaded.getPath(), message.getPath(), "the path survives");
  const ParamMap expected = AfterWriting(message.GetParamMap());
  RequireSame(loaded.GetParamMap(), expected, "the parameters survive");
  CheckPrinted(loaded, isQuery && message.isNotify());
}

void CheckDocument(zq::XmlNode::Ptr root) {
  CBindMessage message;
  try {
    RequireEqual(message.fromXml(root), 0, "a message is read");
  } catch (const zq::ZqError&) {  // an id is not a number
    return;
  }
  RequireEqual(message.getCommand(), TextOfLast(root, "command"), "the last command counts");
  RequireEqual(message.getNotify(), TextOfLast(root, "notify"), "the last notification counts");
  RequireEqual(message.getData(), MarkupOfLast(root, "data"), "the data is markup");
  RequireEqual(message.getPath(), MarkupOfLast(root, "path"), "the path is markup");
  RequireSame(message.GetParamMap(), ReadParams(root, "param"), "the parameters are those of the document");
  const bool isQuery = root->GetChild("query") != nullptr;
  CheckReading(message);
  CheckPrinted(message, isQuery);
  CheckWritten(message, isQuery);

  const std::string once = Describe(message);
  message.fromXml(root);
  RequireEqual(Describe(message), once, "reading twice adds nothing");
}

void CheckAnyTexts(const std::string& input) {
  const std::vector<std::string> part = naive::Parts(input, 6);
  CBindMessage message;
  message.Initialize(IBindMessage::COMMAND, part[0], part[1]);
  RequireEqual(message.getData(), part[1], "the data is what was given");
  CheckReading(message);
  message.Initialize(IBindMessage::NOTIFY, part[0]);
  Require(message.getNotify() == part[0] && message.getCommand() == part[0] && !message.hasData(),
          "a message can be both, and its data is the last one given");

  message.AddPath(part[2]);
  message.AddPath(part[3]);
  RequireEqual(message.getPath(), part[2] + part[3], "a path is what was added");

  message.addParam(part[4], part[0], part[5]);
  message.addParam(part[4], part[1], part[2]);
  Require(AreSame(message.GetParamMap(), {{part[4], {part[4], part[0], part[5]}}}),
          "the first of a name wins");
  CheckReading(message);
  CheckPrinted(message, false);
}

}  // namespace

void UseInput(const std::string& input) {
  const zq::XmlDocument::Ptr document = zq::CreateXmlDocument(input);
  if (!document) return;
  zq::XmlNode::Ptr root = document->GetRoot();
  CBindMessage message;
  try {
    message.fromXml(root);
  } catch (const zq::ZqError&) {  // the message keeps what was read before
  }
  message.toXml();
  message.toJson();
}

void CheckInput(const std::string& input) {
  if (const zq::XmlDocument::Ptr document = zq::CreateXmlDocument(input)) CheckDocument(document->GetRoot());
  CheckAnyTexts(input);
}
