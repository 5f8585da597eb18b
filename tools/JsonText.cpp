#include "JsonText.h"

#include <fmt/format.h>
#include <json/reader.h>

#include <algorithm>
#include <boost/iterator/counting_iterator.hpp>
#include <memory>
#include <sstream>
#include <string_view>

#include "Text.h"

namespace tool {
namespace {

Json::CharReaderBuilder ReaderBuilder() {
  Json::CharReaderBuilder builder;
  builder["collectComments"] = false;
  return builder;
}

// Takes the first entry of JsonCpp's report, "* Line 1, Column 2\n  what\n".
Finding FirstError(const std::string& report) {
  Finding finding;
  std::istringstream stream(report);
  std::string word;
  char comma = 0;
  stream >> word >> word >> finding.place.line >> comma >> word >> finding.place.column >> std::ws;
  std::getline(stream, finding.text);
  finding.text = ErrorText(finding.text);
  return finding;
}

bool IsTooDeep(Json::CharReader& reader, std::string_view text) {
  try {
    Json::Value root;
    reader.parse(text.data(), text.data() + text.size(), &root, nullptr);
    return false;
  } catch (const Json::RuntimeError&) {
    return true;
  }
}

// JsonCpp refuses deep nesting without naming the place, but the shortest beginning of the text that it
// refuses ends there.
Finding TooDeep(Json::CharReader& reader, const std::string& text, const std::string& limit) {
  using Length = boost::counting_iterator<std::size_t>;
  const Length shortest =
      std::partition_point(Length(0), Length(text.size()), [&reader, &text](std::size_t length) {
        return !IsTooDeep(reader, std::string_view(text).substr(0, length));
      });
  return {Places(text).At(*shortest), fmt::format("the JSON is nested more than {} levels deep", limit)};
}

}  // namespace

Places::Places(const std::string& text) {
  for (std::size_t end = text.find('\n'); end != std::string::npos; end = text.find('\n', end + 1))
    lineStarts_.push_back(end + 1);
}

Place Places::At(std::size_t offset) const {
  const auto line = std::upper_bound(lineStarts_.begin(), lineStarts_.end(), offset) - 1;
  return {static_cast<std::uint32_t>(line - lineStarts_.begin() + 1),
          static_cast<std::uint32_t>(offset - *line + 1)};
}

std::optional<Finding> ParseJson(const std::string& text, Json::Value& root, const char* strictness) {
  Json::CharReaderBuilder builder = ReaderBuilder();
  if (strictness != nullptr) builder[strictness] = true;
  const std::unique_ptr<Json::CharReader> reader(builder.newCharReader());
  try {
    std::string report;
    if (reader->parse(text.data(), text.data() + text.size(), &root, &report)) return std::nullopt;
    return FirstError(report);
  } catch (const Json::RuntimeError&) {
    return TooDeep(*reader, text, builder["stackLimit"].asString());
  }
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

}  // namespace tool
