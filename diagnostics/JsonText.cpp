#include "JsonText.h"

#include <fmt/format.h>
#include <json/reader.h>

#include <tavrin_diagnostics/PrintableText.h>
#include <tavrin_platform/XmlPosition.h>
#include <algorithm>
#include <iterator>
#include <memory>
#include <new>
#include <sstream>

namespace tavrin::diagnostics {
namespace {

bool StartsWith(std::string_view text, std::string_view what, std::size_t at) {
  return text.substr(at, what.size()) == what;
}

// Returns the position after white space and comments. A comment without an end is none.
std::size_t AfterBlanks(std::string_view text, std::size_t at) {
  while (true) {
    at = std::min(text.find_first_not_of(" \t\r\n", at), text.size());
    std::size_t end = at;
    if (StartsWith(text, "//", at)) end = std::min(text.find_first_of("\r\n", at), text.size());
    if (StartsWith(text, "/*", at)) {
      const std::size_t close = text.find("*/", at + 2);
      if (close != std::string_view::npos) end = close + 2;
    }
    if (end == at) return at;
    at = end;
  }
}

std::size_t AfterString(std::string_view text, std::size_t at) {
  for (++at; at < text.size() && text[at] != '"'; ++at) {
    if (text[at] == '\\') ++at;
  }
  return std::min(at + 1, text.size());
}

// Returns the position after a value; containers are skipped without recursion.
std::size_t AfterValue(std::string_view text, std::size_t at) {
  std::size_t depth = 0;
  do {
    at = AfterBlanks(text, at);
    if (at >= text.size()) break;
    const char c = text[at];
    if (c == '"') {
      at = AfterString(text, at);
    } else if (c == '{' || c == '[') {
      ++depth;
      ++at;
    } else if (c == '}' || c == ']') {
      --depth;
      ++at;
    } else if (c == ',' || c == ':') {
      ++at;
    } else {
      at = std::min(text.find_first_of(" \t\r\n,:]}/\"", at + 1), text.size());
    }
  } while (depth > 0);
  return at;
}

// Reads the first entry of JsonCpp's report, "* Line 1, Column 2\n  what\n".
Finding FirstError(const SourceText& source, const std::string& report) {
  zq::XmlPosition position;
  std::istringstream stream(report);
  std::string word;
  char comma = 0;
  stream >> word >> word >> position.line >> comma >> word >> position.column >> std::ws;
  std::string what;
  std::getline(stream, what);
  return {source.OffsetOf(position), 0, ErrorText(what)};
}

// JsonCpp does not report where a document is nested too deep.
Finding TooDeep(std::string_view text, std::size_t mostLevels) {
  std::size_t depth = 0;
  std::size_t at = 0;
  while ((at = AfterBlanks(text, at)) < text.size()) {
    const char c = text[at];
    if ((c == '{' || c == '[') && ++depth > mostLevels) break;
    if (c == '}' || c == ']') --depth;
    at = c == '"' ? AfterString(text, at) : at + 1;
  }
  return {at, at + 1, fmt::format("the JSON is nested more than {} levels deep", mostLevels),
          "a command needs no more than seven levels"};
}

}  // namespace

Json::Value ParseJson(const Collector& collector) {
  Json::CharReaderBuilder builder;
  builder["collectComments"] = false;
  const std::unique_ptr<Json::CharReader> reader(builder.newCharReader());
  const std::string_view text = collector.Text();
  Json::Value root;
  std::string report;
  try {
    if (reader->parse(text.data(), text.data() + text.size(), &root, &report)) return root;
  } catch (const Json::RuntimeError& error) {
    if (std::string_view(error.what()).find("Failed to allocate") != std::string_view::npos)
      throw std::bad_alloc();
    throw Refusal("nested-too-deep", TooDeep(text, builder["stackLimit"].asUInt()));
  }
  throw Refusal("malformed-json", FirstError(collector.Source(), report));
}

TextRange RangeOf(const Json::Value& value) {
  return {static_cast<std::size_t>(value.getOffsetStart()), static_cast<std::size_t>(value.getOffsetLimit())};
}

JsonMembers MembersOf(std::string_view text, const Json::Value& object) {
  JsonMembers members;
  const TextRange range = RangeOf(object);
  std::size_t at = AfterBlanks(text, range.begin + 1);
  while (at < range.end && text[at] == '"') {
    const TextRange key{at, AfterString(text, at)};
    const std::size_t colon = AfterBlanks(text, key.end);
    const std::size_t begin = AfterBlanks(text, colon + 1);
    members.list.push_back({key, {begin, AfterValue(text, begin)}});
    at = AfterBlanks(text, members.list.back().value.end);
    if (StartsWith(text, ",", at)) at = AfterBlanks(text, at + 1);
  }
  if (at + 1 != range.end) members.stray = {std::min(at, range.end - 1), std::min(at, range.end - 1) + 1};
  return members;
}

std::string KeyOf(std::string_view text, const JsonMember& member) {
  const char* const begin = text.data() + member.key.begin;
  const char* const end = text.data() + member.key.end;
  if (std::find(begin, end, '\\') == end) return {begin + 1, end - 1};
  Json::Value key;
  const std::unique_ptr<Json::CharReader> reader(Json::CharReaderBuilder().newCharReader());
  reader->parse(begin, end, &key, nullptr);
  return key.asString();
}

JsonKeys::JsonKeys(const JsonMembers& members) : isComplete_(members.stray.end == 0) {
  for (const JsonMember& member : members.list) keyBegins_[member.value.begin] = member.key.begin;
}

TextRange JsonKeys::MemberOf(const Json::Value& value) const {
  const TextRange range = RangeOf(value);
  const auto found = keyBegins_.find(range.begin);
  const std::size_t begin = found == keyBegins_.end() ? range.begin : found->second;
  return {begin, isComplete_ ? range.end : begin};
}

std::vector<TextRange> ScalarsIn(std::string_view text, const TextRange& range) {
  std::vector<TextRange> scalars;
  for (std::size_t at = AfterBlanks(text, range.begin); at < range.end; at = AfterBlanks(text, at)) {
    const std::size_t begin = at;
    if (text[at] == '{' || text[at] == '[' || text[at] == '}' || text[at] == ']' || text[at] == ',' ||
        text[at] == ':') {
      ++at;
      continue;
    }
    at = AfterValue(text, at);
    const bool isKey = StartsWith(text, ":", AfterBlanks(text, at));
    if (!isKey) scalars.push_back({begin, at});
  }
  return scalars;
}

std::vector<TextRange> CommentsIn(std::string_view text) {
  std::vector<TextRange> comments;
  for (std::size_t at = text.find_first_of("\"/"); at < text.size(); at = text.find_first_of("\"/", at)) {
    const std::size_t begin = at;
    at = text[at] == '"' ? AfterString(text, at) : std::max(AfterBlanks(text, at), at + 1);
    if (text[begin] == '/') comments.push_back({begin, at});
  }
  return comments;
}

TextRange TrailingText(std::string_view text, std::size_t afterValue) {
  const std::size_t begin = AfterBlanks(text, afterValue);
  return begin < text.size() ? TextRange{begin, text.size()} : TextRange();
}

const char* KindOf(const Json::Value& value) {
  switch (value.type()) {
    case Json::nullValue:
      return "null";
    case Json::stringValue:
      return "a string";
    case Json::booleanValue:
      return "a boolean";
    case Json::arrayValue:
      return "an array";
    case Json::objectValue:
      return "an object";
    default:
      return "a number";
  }
}

}  // namespace tavrin::diagnostics
