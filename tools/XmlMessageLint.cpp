#include "XmlMessageLint.h"

#include <fmt/format.h>

#include <tavrin_platform/XmlPosition.h>
#include <boost/algorithm/string/join.hpp>
#include <boost/range/adaptor/transformed.hpp>

#include "Text.h"
#include "XmlLint.h"
#include "tavrin_driver/internal/Comparison.h"

using zq::XmlNode;

namespace tool {
namespace {

// A document never begins with any other character of ASCII. Everything else is for the parser to judge.
bool BeginsLikeXml(const std::string& text) {
  const char first = text[BeginningOf(text)];
  return first == '<' || first < ' ' || first > '~';
}

zq::XmlDocument::Ptr ParseMessage(const std::string& text, const std::string& expected) {
  if (!BeginsLikeXml(text)) ObjectToBeginning(text, BeginningOf(text), expected);
  return ParseXml(text);
}

// The child that counts of those with that name, empty without one.
XmlNode::Ptr LastChild(XmlNode& element, const std::string& name) {
  XmlNode::Ptr last;
  zq::XmlNodeIterator* const children = element.GetIterator();
  for (XmlNode::Ptr child = children->First(); child; child = children->Next()) {
    if (child->IsName(name)) last = child;
  }
  return last;
}

bool HasText(XmlNode& element, const std::string& childName) {
  const XmlNode::Ptr child = LastChild(element, childName);
  return child && !child->GetData().empty();
}

void WalkBinding(const std::string& text, Findings& notes) {
  const auto document = ParseMessage(text, R"(a binding message is XML, which begins with "<")");
  XmlNode& root = *document->GetRoot();
  XmlLint(notes).CheckMessage(root,
                              {"bindmessage", {"command", "notify"}, {"data", "path"}, {"query"}, false});

  const bool isNotification = HasText(root, "notify");
  if (!isNotification && !HasText(root, "command")) {
    notes.push_back({zq::PositionOf(root),
                     R"(there is no name in "command" or "notify": the message is neither of them)"});
  }
  const XmlNode::Ptr query = root.GetChild("query");
  if (query && !isNotification)
    notes.push_back({zq::PositionOf(*query), "\"query\" marks an answer, but this is no notification"});
}

std::string NoComparison(const std::string& text) {
  const auto names = tavrin::comparisonNames | boost::adaptors::transformed([](const auto& comparison) {
                       return std::string(comparison.name);
                     });
  return fmt::format("{} is none of {}", Quoted(text), boost::algorithm::join(names, ", "));
}

bool IsComparison(const std::string& text) {
  return tavrin::ComparisonOf(text) != tavrin::Comparison::unknown;
}

void WalkConditional(const std::string& text, Findings& notes) {
  if (IsComparison(text)) {
    notes.push_back({{}, "the text is no XML, and is taken for the comparison"});
    return;
  }
  const auto document =
      ParseMessage(text, "a conditional is XML, which begins with \"<\", or a comparison alone, and " +
                             NoComparison(text));
  XmlNode& root = *document->GetRoot();
  XmlLint(notes).CheckMessage(root, {"deviceconditional", {"name", "conditional"}, {}, {}, true});

  if (!root.GetChild("name"))
    notes.push_back({zq::PositionOf(root), "there is no \"name\": the conditional's name is empty"});
  const XmlNode::Ptr comparison = LastChild(root, "conditional");
  if (!comparison)
    notes.push_back({zq::PositionOf(root), "there is no \"conditional\": every test is false"});
  else if (!IsComparison(comparison->GetData()))
    notes.push_back({zq::PositionOf(*comparison),
                     fmt::format("{}: every test is false", NoComparison(comparison->GetData()))});
}

}  // namespace

LintResult LintBinding(const std::string& text) {
  return Collect([&text](Findings& notes) { WalkBinding(text, notes); });
}

LintResult LintConditional(const std::string& text) {
  return Collect([&text](Findings& notes) { WalkConditional(text, notes); });
}

}  // namespace tool
