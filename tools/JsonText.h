#pragma once

#include <json/value.h>

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "Console.h"

namespace tool {

// Finds the places of a text that stays alive and unchanged meanwhile.
class Places {
 public:
  explicit Places(const std::string& text);

  // The place of a byte.
  Place At(std::size_t offset) const;

  // The place of a value that was parsed from the text.
  Place Of(const Json::Value& value) const { return At(static_cast<std::size_t>(value.getOffsetStart())); }

 private:
  std::vector<std::size_t> lineStarts_ = {0};
};

// Parses a text as the library does, or, with the name of a setting of Json::CharReaderBuilder, more
// strictly.
// @return why the text is no JSON, nothing when it is
std::optional<Finding> ParseJson(const std::string& text, Json::Value& root,
                                 const char* strictness = nullptr);

// "a string", "an array" ...
const char* KindOf(const Json::Value& value);

}  // namespace tool
