#pragma once

#include <locale>

// While an object exists, the program's global locale has an upper case for one more character: by default
// byte 0xC4 for 0xE4, as in Latin-1. Only the operations for a single character are overridden.
class GlobalCharacters {
 public:
  explicit GlobalCharacters(char small = '\xE4', char capital = '\xC4')
      : before_(std::locale::global(std::locale(std::locale::classic(), new OneMore(small, capital)))) {}
  ~GlobalCharacters() { std::locale::global(before_); }
  GlobalCharacters(const GlobalCharacters&) = delete;
  GlobalCharacters& operator=(const GlobalCharacters&) = delete;

 private:
  class OneMore : public std::ctype<char> {
    using Base = std::ctype<char>;

   public:
    OneMore(char small, char capital) : small_(small), capital_(capital) {}

   private:
    char do_tolower(char c) const override { return c == capital_ ? small_ : Base::do_tolower(c); }
    char do_toupper(char c) const override { return c == small_ ? capital_ : Base::do_toupper(c); }

    char small_;
    char capital_;
  };

  std::locale before_;
};
