#pragma once

#include <tavrin_diagnostics/Diagnostics.h>
#include <cstddef>
#include <optional>
#include <string_view>
#include <vector>

namespace tavrin::diagnostics {

// An attribute in the text of a tag.
struct AttributeText {
  std::string_view name;
  std::string_view value;  // between the quotes
  std::size_t begin;
  std::size_t end;
};

// A tag in the text of a document.
struct Tag {
  std::string_view name;
  std::size_t begin;
  std::size_t end;
  bool isEnd;    // "</a>"
  bool isEmpty;  // "<a/>"
  std::vector<AttributeText> attributes;
};

// Reads the tag at `<`. Returns no value if there is none, as in an encoding that is no superset of ASCII.
std::optional<Tag> TagAt(std::string_view text, std::size_t begin);

// Returns the first tag at or after `from`. Comments, CDATA sections, processing instructions and the
// document type are skipped.
std::optional<Tag> NextTag(std::string_view text, std::size_t from);

// Returns the comments, the processing instructions and the document type of a document.
std::vector<TextRange> OtherMarkup(std::string_view text);

// The bytes of an element, from its start tag to the end of its end tag.
struct ElementText {
  std::size_t begin = 0;
  std::size_t contentBegin = 0;
  std::size_t contentEnd = 0;
  std::size_t end = 0;
};

// Returns the element whose start tag is at `begin`; an empty one if the document does not contain it.
ElementText ElementAt(std::string_view text, std::size_t begin);

// Returns the first text directly in an element that is not white space; an empty range without any.
TextRange FirstText(std::string_view text, std::size_t begin);

}  // namespace tavrin::diagnostics
