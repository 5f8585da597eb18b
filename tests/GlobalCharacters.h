#pragma once

#include <locale>

// While it lives, the program's global locale takes the byte 0xC4 for the upper case of 0xE4, as Latin-1
// does.
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

    const char* do_tolower(char* begin, const char* end) const override {
      for (; begin != end; ++begin) *begin = do_tolower(*begin);
      return end;
    }

    const char* do_toupper(char* begin, const char* end) const override {
      for (; begin != end; ++begin) *begin = do_toupper(*begin);
      return end;
    }
  };

  std::locale before_;
};
