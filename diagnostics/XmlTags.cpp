#include "XmlTags.h"

#include <algorithm>

namespace tavrin::diagnostics {
namespace {

constexpr std::string_view whiteSpace = " \t\r\n";

// Returns the position after the next occurrence of a string.
std::size_t After(std::string_view text, std::string_view what, std::size_t from) {
  const std::size_t found = text.find(what, from);
  return found == std::string_view::npos ? text.size() : found + what.size();
}

bool StartsWith(std::string_view text, std::string_view what, std::size_t at) {
  return text.substr(at, what.size()) == what;
}

// Quoted strings and comments may contain brackets.
std::size_t AfterDoctype(std::string_view text, std::size_t at) {
  std::size_t depth = 0;
  while (at < text.size()) {
    const char c = text[at];
    if (StartsWith(text, "<!--", at)) {
      at = After(text, "-->", at + 4);
      continue;
    }
    if (StartsWith(text, "<?", at)) {
      at = After(text, "?>", at);
      continue;
    }
    if (c == '"' || c == '\'') {
      at = After(text, text.substr(at, 1), at + 1);
      continue;
    }
    ++at;
    if (c == '<') ++depth;
    if (c == '>' && --depth == 0) break;
  }
  return at;
}

// Returns the end of markup that is not a tag, or `at`.
std::size_t AfterOtherMarkup(std::string_view text, std::size_t at) {
  if (StartsWith(text, "<!--", at)) return After(text, "-->", at + 4);
  if (StartsWith(text, "<![CDATA[", at)) return After(text, "]]>", at);
  if (StartsWith(text, "<?", at)) return After(text, "?>", at);
  if (StartsWith(text, "<!", at)) return AfterDoctype(text, at);
  return at;
}

}  // namespace

std::optional<Tag> TagAt(std::string_view text, std::size_t begin) {
  if (!StartsWith(text, "<", begin)) return {};
  Tag tag{};
  tag.begin = begin;
  tag.isEnd = StartsWith(text, "</", begin);
  std::size_t at = begin + (tag.isEnd ? 2 : 1);
  const auto skip = [&](std::string_view characters) {
    at = std::min(text.find_first_not_of(characters, at), text.size());
  };
  const auto readUpTo = [&](std::string_view characters) {
    const std::size_t end = std::min(text.find_first_of(characters, at), text.size());
    const std::string_view read = text.substr(at, end - at);
    at = end;
    return read;
  };
  tag.name = readUpTo(" \t\r\n/><=\"'");
  if (tag.name.empty() || tag.name.find('\0') != std::string_view::npos) return {};
  for (skip(whiteSpace); at < text.size() && text[at] != '>' && text[at] != '/'; skip(whiteSpace)) {
    AttributeText attribute{};
    attribute.begin = at;
    attribute.name = readUpTo(" \t\r\n=/><");
    skip(whiteSpace);
    if (attribute.name.empty() || !StartsWith(text, "=", at)) return {};
    skip("= \t\r\n");
    if (at == text.size() || (text[at] != '"' && text[at] != '\'')) return {};
    const std::string_view quote = text.substr(at++, 1);
    attribute.value = readUpTo(quote);
    attribute.end = std::min(++at, text.size());
    tag.attributes.push_back(attribute);
  }
  tag.isEmpty = StartsWith(text, "/", at);
  tag.end = After(text, ">", at);
  return tag;
}

std::optional<Tag> NextTag(std::string_view text, std::size_t from) {
  for (std::size_t at = text.find('<', from); at != std::string_view::npos; at = text.find('<', at)) {
    const std::size_t after = AfterOtherMarkup(text, at);
    if (after == at) return TagAt(text, at);
    at = after;
  }
  return {};
}

std::vector<TextRange> OtherMarkup(std::string_view text) {
  std::vector<TextRange> found;
  for (std::size_t at = text.find('<'); at != std::string_view::npos; at = text.find('<', at)) {
    const std::size_t after = AfterOtherMarkup(text, at);
    if (after != at && !StartsWith(text, "<![CDATA[", at)) found.push_back({at, after});
    at = std::max(after, at + 1);
  }
  return found;
}

ElementText ElementAt(std::string_view text, std::size_t begin) {
  std::optional<Tag> tag = TagAt(text, begin);
  if (!tag || tag->isEnd) return {};
  const std::size_t contentBegin = tag->end;
  if (tag->isEmpty) return {begin, contentBegin, contentBegin, contentBegin};
  for (std::size_t depth = 1; depth > 0;) {
    tag = NextTag(text, tag->end);
    if (!tag) return {};
    if (tag->isEnd)
      --depth;
    else if (!tag->isEmpty)
      ++depth;
  }
  return {begin, contentBegin, tag->begin, tag->end};
}

TextRange FirstText(std::string_view text, std::size_t begin) {
  const ElementText element = ElementAt(text, begin);
  std::size_t at = element.contentBegin;
  while ((at = std::min(text.find_first_not_of(whiteSpace, at), element.contentEnd)) < element.contentEnd) {
    if (text[at] != '<') return {at, text.find('<', at)};
    const std::size_t after = AfterOtherMarkup(text, at);
    if (StartsWith(text, "<![CDATA[", at)) return {at, after};
    at = after != at ? after : ElementAt(text, at).end;
  }
  return {};
}

}  // namespace tavrin::diagnostics
