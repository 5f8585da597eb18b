#pragma once

#include <locale>
#include <string>

// While an object exists, the program's global locale writes numbers as 1.234,5.
class GlobalNumbers {
 public:
  GlobalNumbers() : before_(std::locale::global(std::locale(std::locale::classic(), new Commas))) {}
  ~GlobalNumbers() { std::locale::global(before_); }
  GlobalNumbers(const GlobalNumbers&) = delete;
  GlobalNumbers& operator=(const GlobalNumbers&) = delete;

 private:
  struct Commas : std::numpunct<char> {
    char do_decimal_point() const override { return ','; }
    char do_thousands_sep() const override { return '.'; }
    std::string do_grouping() const override { return "\3"; }
  };

  std::locale before_;
};
