// Conditionals: reading, writing and testing.

#include <tavrin_driver/CondMessage.h>
#include <tavrin_platform/XmlNode.h>
#include <tavrin_platform/ZqError.h>
#include <tavrin_testing/FakeLevel.h>
#include <limits>
#include <string>
#include <vector>

#include "DescribeParams.h"
#include "Messages.h"
#include "Naive.h"
#include "Require.h"
#include "Target.h"

namespace {

template <typename Value>
bool Holds(const std::string& condition, const Value& left, const Value& right) {
  if (condition == "EQUAL") return left == right;
  if (condition == "NOT_EQUAL") return left != right;
  if (condition == "LESS_THAN") return left < right;
  if (condition == "LESS_THAN_OR_EQUAL") return left <= right;
  if (condition == "GREATER_THAN") return left > right;
  if (condition == "GREATER_THAN_OR_EQUAL") return left >= right;
  return false;
}

bool HoldsOfTexts(const std::string& condition, const std::string& left, const std::string& right) {
  return condition == "EQUAL" ? left == right : condition == "NOT_EQUAL" && left != right;
}

// Returns the part of a string that is passed as a C string.
std::string UpToNul(const std::string& text) { return text.substr(0, text.find('\0')); }

// The given number and its neighbours.
std::vector<std::int32_t> Around(std::int32_t number) {
  using Limits = std::numeric_limits<std::int32_t>;
  std::vector<std::int32_t> numbers = {0, Limits::min(), Limits::max(), number};
  if (number > Limits::min()) numbers.push_back(number - 1);
  if (number < Limits::max()) numbers.push_back(number + 1);
  return numbers;
}

void CheckAgainst(const CCondMessage& message, const DriverParam& param, const char* name) {
  const std::string condition = message.getRawCondition();
  const std::string text = param.bVar ? "" : param.value;
  const std::int32_t right = naive::Int32(text);
  for (const std::int32_t left : Around(right)) {
    const bool expected = Holds(condition, left, right);
    RequireEqual(message.Test(left, name), expected, "a number is compared with the parameter");
    RequireEqual(message.Test(tavrin_testing::FakeLevel(left), name), expected, "so is a level");
    RequireEqual(message.Test(left, right), expected, "and so are two numbers");
    RequireEqual(message.Test(left / 2.0, right / 2.0), expected, "of either kind");
  }
  for (const std::string& left : {text, text + " ", std::string()}) {
    RequireEqual(message.Test(left.c_str(), name), HoldsOfTexts(condition, UpToNul(left), text),
                 "texts are compared byte by byte");
  }
}

void CheckTests(const CCondMessage& message) {
  const std::string condition = message.getRawCondition();
  const ParamMap& params = message.getParamMap();
  for (const bool value : {false, true})
    RequireEqual(message.Test(value), HoldsOfTexts(condition, value ? "1" : "0", "1"), "a state is tested");
  const double nothing = std::numeric_limits<double>::quiet_NaN();
  RequireEqual(message.Test(nothing, nothing), condition == "NOT_EQUAL", "NaN only differs");

  for (const auto& [key, param] : params) {
    Require(message.hasParam(key) && message.getParam(key) == param.value, "every parameter is there");
    if (key.find('\0') == std::string::npos) CheckAgainst(message, param, key.c_str());
  }
  if (!params.empty()) CheckAgainst(message, params.begin()->second, nullptr);
  const char* const absent = params.empty() ? nullptr : "no parameter has this name";
  if (absent != nullptr && message.hasParam(absent)) return;
  Require(!message.Test(0, absent) && !message.Test("", absent) &&
              !message.Test(tavrin_testing::FakeLevel(0), absent),
          "without a parameter every test is false");
}

// Name and condition are written verbatim. Markup is therefore lost, and so are line endings that a parser
// normalises.
bool CanBeWritten(const std::string& text) {
  return text.find_first_of("<&\r") == std::string::npos && text.find("]]>") == std::string::npos;
}

void CheckWritten(const CCondMessage& message) {
  if (!CanBeWritten(message.getName()) || !CanBeWritten(message.getRawCondition())) return;
  CCondMessage loaded;
  RequireEqual(loaded.fromXml(message.toXml()), 0, "what is written parses");
  RequireEqual(loaded.getName(), message.getName(), "the name survives");
  RequireEqual(loaded.getRawCondition(), message.getRawCondition(), "the condition survives");
  const ParamMap expected = AfterWriting(message.getParamMap());
  RequireSame(loaded.getParamMap(), expected, "the parameters survive");
}

void CheckBareCondition(const std::string& input) {
  const boost::shared_ptr<CCondMessage> message = CCondMessage::Create(input);
  Require(message->getRawCondition() == input && message->getName().empty() && message->getParamMap().empty(),
          "a text that is no document is the condition");
  DriverParam variable("VARIABLE", "number", 7, 1001);
  variable.value = input;  // ignored by the tests of conditionals
  message->addParams({{"VALUE", {"VALUE", "number", input}}, {"VARIABLE", variable}});
  CheckTests(*message);

  if (zq::CreateXmlDocument(UpToNul(input))) return;
  CCondMessage untouched;
  Require(untouched.fromXml(static_cast<IDriverX*>(nullptr), input.c_str()) == -1 &&
              untouched.getRawCondition().empty(),
          "but not where a driver reads it");
}

void CheckDocument(const std::string& input) {
  CCondMessage message;
  try {
    RequireEqual(message.fromXml(input), 0, "a conditional is read");
  } catch (const zq::ZqError&) {  // an id is not a number
    return;
  }
  const zq::XmlNode::Ptr root = zq::CreateXmlDocument(input)->GetRoot();
  RequireEqual(message.getName(), TextOfLast(root, "name"), "the last name counts");
  RequireEqual(message.getRawCondition(), TextOfLast(root, "conditional"), "the last condition counts");
  RequireSame(message.getParamMap(), ReadParams(root, anyName), "the parameters are those of the document");
  CheckTests(message);
  CheckWritten(message);

  const std::string once = Describe(message);
  message.addParam("left over", "", "");
  RequireEqual(message.Initialize(input), 0, "it can be read again");
  RequireEqual(Describe(message), once, "as the same conditional");
}

}  // namespace

void UseInput(const std::string& input) {
  CCondMessage message;
  try {
    message.Initialize(input);
  } catch (const zq::ZqError&) {  // the conditional keeps what was read before
  }
  message.toXml();
}

void CheckInput(const std::string& input) {
  if (zq::CreateXmlDocument(input))
    CheckDocument(input);
  else
    CheckBareCondition(input);
}
