// Commands as XML: a command that was loaded, written and loaded again is equal.

#include <tavrin_driver/CmdMessage.h>
#include <tavrin_platform/XmlNode.h>
#include <tavrin_platform/ZqError.h>
#include <tavrin_testing/FakeVariables.h>
#include <exception>
#include <optional>
#include <string>

#include "DescribeParams.h"
#include "Messages.h"
#include "Require.h"
#include "Target.h"

namespace {

// Returns the result, or no value if an id is not a number.
std::optional<std::int32_t> Load(CCmdMessage& message, const std::string& text) {
  try {
    return message.Load(text);
  } catch (const zq::ZqError&) {
    return {};
  }
}

void CheckTwice(const CCmdMessage& message, tavrin_testing::FakeVariables& variables,
                const std::string& text) {
  CCmdMessage twice(message);
  Require(Load(twice, text) == 0, "what loaded once loads again");
  RequireEqual(Describe(twice), Describe(message), "and adds nothing, because the first of a name wins");
  CCmdMessage created(message.getRawCommand(), message.GetParamMap(), variables);
  RequireEqual(created.toXml(false), message.toXml(false), "the written form depends on the fields only");
}

}  // namespace

void UseInput(const std::string& input) {
  tavrin_testing::FakeVariables variables;
  CCmdMessage message(variables, 0);
  try {
    static_cast<void>(message.Load(input));
  } catch (const std::exception&) {  // the message keeps what was read before
  }
  message.toXml(true);
}

void CheckInput(const std::string& input) {
  const std::size_t first = input.find_first_not_of(" \t\r\n\v\f");
  if (first == std::string::npos || input[first] != '<') return;

  tavrin_testing::FakeVariables variables;
  CCmdMessage message(variables, 0);
  const std::optional<std::int32_t> result = Load(message, input);
  const zq::XmlDocument::Ptr document = zq::CreateXmlDocument(input);
  Require((result == -1) == !document, "exactly what is no document fails");
  if (result != 0) {
    Require(document || Describe(message) == " | ", "a text that is no document changes nothing");
    return;
  }
  RequireEqual(message.getRawCommand(), TextOfLast(document->GetRoot(), "command"), "the last name counts");
  const ParamMap expected = ReadParams(document->GetRoot(), "param");
  RequireSame(message.GetParamMap(), expected, "the parameters are those of the document");
  CheckCommand(message, variables);
  CheckTwice(message, variables, input);
}
