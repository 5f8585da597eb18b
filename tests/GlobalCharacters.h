#pragma once

#include <locale>

// While it exists, the byte 0xC4 is the upper case of 0xE4 in the program's global locale, as in Latin-1.
// Only the operations for a single character are overridden.
class GlobalCharacters {
 public:
  GlobalCharacters() : before_(std::locale::global(std::locale(std::locale::classic(), new Latin1))) {}
  ~GlobalCharacters() { std::locale::global(before_); }
  GlobalCharacters(const GlobalCharacters&) = delete;
  GlobalCharacters& operator=(const GlobalCharacters&) = delete;

 private:
  class Latin1 : public std::ctype<char> {
    using Base = std::ctype<char>;

    char do_tolower(char c) const override { return c == '\xC4' ? '\xE4' : Base::do_tolower(c); }
    char do_toupper(char c) const override { return c == '\xE4' ? '\xC4' : Base::do_toupper(c); }
  };

  std::locale before_;
};
