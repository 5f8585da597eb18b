#include <tavrin_diagnostics/Diagnostics.h>

#include "XmlMessage.h"
#include "tavrin_driver/internal/Names.h"

namespace tavrin::diagnostics {
namespace {

bool HasText(zq::XmlNode& element, const Name& childName) {
  const zq::XmlNode::Ptr child = LastChild(element, childName);
  return child && !child->GetData().empty();
}

void CheckBinding(Collector& collector, const std::string& text) {
  RequireXml(text, R"(a binding message is XML, which begins with "<")");
  XmlMessage message(collector, text);
  message.Check(
      {"bindmessage", {names::command, names::notify}, {names::data, names::path}, {names::query}, false});

  zq::XmlNode& root = message.Root();
  const bool isNotification = HasText(root, names::notify);
  if (!isNotification && !HasText(root, names::command)) {
    message.ReportTag("no-name", root,
                      R"(there is no name in "command" or "notify": the message is neither of them)");
  }
  const zq::XmlNode::Ptr query = root.GetChild(names::query);
  if (query && !isNotification) {
    message.ReportElement("query-without-notify", *query,
                          "\"query\" marks an answer, but this message is no notification");
  }
}

}  // namespace

Diagnostics DiagnoseBinding(const std::string& text) {
  return Collect(Subject::binding, text, [&](Collector& collector) { CheckBinding(collector, text); });
}

}  // namespace tavrin::diagnostics
