#pragma once

#include <json/value.h>

#include <tavrin_diagnostics/Diagnostics.h>
#include <cstddef>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "Collector.h"

namespace tavrin::diagnostics {

// A member of an object, in the text.
struct JsonMember {
  TextRange key;  // with its quotes
  TextRange value;
};

// Parses a document as the loader of commands does. Throws a Refusal if it is not JSON.
Json::Value ParseJson(const Collector& collector);

// The bytes of a value that was parsed from a document.
TextRange RangeOf(const Json::Value& value);

// The members of an object in the text, also those that a later one of the same key has replaced. JsonCpp
// reads any token after a comment as a comma; where it does, `stray` is that token, and members may be
// missing.
struct JsonMembers {
  std::vector<JsonMember> list;
  TextRange stray;
};

// Returns the members of an object of a document that JsonCpp has accepted.
JsonMembers MembersOf(std::string_view text, const Json::Value& object);

// Returns the key of a member, with its escapes decoded.
std::string KeyOf(std::string_view text, const JsonMember& member);

// The bytes of each key of an object, by where its value begins.
class JsonKeys {
 public:
  explicit JsonKeys(const JsonMembers& members);

  // The bytes from a member's key to the end of its value. With a stray token only the beginning is known.
  TextRange MemberOf(const Json::Value& value) const;

 private:
  std::map<std::size_t, std::size_t> keyBegins_;
  bool isComplete_;
};

// Returns the strings, numbers and words in a part of a document that JsonCpp has accepted, except for keys.
std::vector<TextRange> ScalarsIn(std::string_view text, const TextRange& range);

// Returns the comments of a document that JsonCpp has accepted, with white space after them.
std::vector<TextRange> CommentsIn(std::string_view text);

// Returns what follows a JSON value that is neither white space nor a comment; empty where there is nothing.
TextRange TrailingText(std::string_view text, std::size_t afterValue);

// "a string", "an array" ...
const char* KindOf(const Json::Value& value);

}  // namespace tavrin::diagnostics
