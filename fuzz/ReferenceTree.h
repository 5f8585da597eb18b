#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <utility>
#include <vector>

// What the XML parser underneath tells about a text, without the library: all elements in document order, so
// the root is the first one.
struct ReferenceTree {
  struct Element {
    std::string name;
    std::vector<std::pair<std::string, std::string>> attributes;
    std::string text;  // without the white space that only lays out child elements
    std::vector<std::size_t> children;
    std::size_t begin = 0;  // where its tag begins in the text, in bytes
  };

  std::vector<Element> elements;
  bool hasDoctype = false;
  bool namesEncoding = false;

  // Nothing where the parser refuses the text.
  static std::optional<ReferenceTree> Of(const std::string& text);
};
