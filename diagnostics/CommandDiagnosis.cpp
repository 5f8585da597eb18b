#include <tavrin_diagnostics/Diagnostics.h>

#include "JsonCommand.h"
#include "XmlMessage.h"
#include "tavrin_driver/internal/Names.h"

namespace tavrin::diagnostics {
namespace {

void CheckXmlCommand(Collector& collector, const std::string& text) {
  XmlMessage message(collector, text);
  message.Check({names::devicecommand, {names::command}, {}, {}, false});
  if (!message.Root().GetChild(names::command)) {
    message.ReportTag("no-name", message.Root(), "there is no \"command\": the command's name is empty");
  }
}

void CheckCommand(Collector& collector, const std::string& text) {
  constexpr std::string_view byteOrderMark = "\xef\xbb\xbf";
  const std::size_t first = BeginningOf(text);
  if (text[first] == '<') return CheckXmlCommand(collector, text);
  if (text[first] == '{' || text[first] == '[') return CheckJsonCommand(collector);
  if (text.compare(first, byteOrderMark.size(), byteOrderMark) == 0) {
    throw Refusal("wrong-format", {first, first + byteOrderMark.size(),
                                   "the text begins with a byte order mark, which is not accepted"});
  }
  RefuseBeginning(text, first,
                  R"(a command is XML, which begins with "<", or JSON, which begins with "{" or "[")");
}

}  // namespace

Diagnostics DiagnoseCommand(const std::string& text) {
  return Collect(Subject::command, text, [&](Collector& collector) { CheckCommand(collector, text); });
}

}  // namespace tavrin::diagnostics
