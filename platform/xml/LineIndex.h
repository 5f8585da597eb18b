#pragma once

#include <tavrin_platform/XmlPosition.h>
#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

namespace zq::xml {

// Finds lines and columns in a string of at most 4 GiB. The constructor reads the string once. After that
// every look-up reads at most one stretch of it, in constant time. Lines end at LF, CR LF or CR, in UTF-16
// and in single-byte encodings.
class LineIndex {
 public:
  explicit LineIndex(std::string_view text);

  XmlPosition At(std::size_t offset) const;

 private:
  struct Mark {
    std::uint32_t line = 1;
    std::uint32_t lineBegin = 0;
  };

  static constexpr std::size_t stretchSize = 512;

  // Returns the mark at `to`, given the one at `from`.
  Mark Advance(Mark mark, std::size_t from, std::size_t to) const;
  char16_t UnitAt(std::size_t offset) const;

  std::string_view text_;
  std::size_t unitSize_;
  std::size_t lowByte_;      // of a unit of two bytes
  std::vector<Mark> marks_;  // one for the beginning of each stretch
};

}  // namespace zq::xml
