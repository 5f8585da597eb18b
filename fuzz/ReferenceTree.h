#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <utility>
#include <vector>

// The elements that Expat reports for an input, without the library, in document order. The root is the first
// one.
struct ReferenceTree {
  struct Element {
    std::string name;
    std::vector<std::pair<std::string, std::string>> attributes;
    std::string text;  // without the white space that only lays out child elements
    std::vector<std::size_t> children;
    std::size_t begin = 0;  // the position of its tag in the input, in bytes
  };

  std::vector<Element> elements;
  bool hasDoctype = false;
  bool namesEncoding = false;

  // Returns no value if the parser rejects the input.
  static std::optional<ReferenceTree> Of(const std::string& text);
};
