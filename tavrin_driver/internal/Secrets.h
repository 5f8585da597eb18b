#pragma once

#include <algorithm>
#include <array>
#include <locale>
#include <numeric>
#include <string>
#include <string_view>

namespace tavrin {

// What stands in place of a secret value wherever one is shown.
inline constexpr char maskedValue[] = "******";

// Tells which parameters hold a secret, by their names in upper or lower case of the program's global locale.
// The two rules differ on purpose: "password" may stand anywhere in the name, while "pin" is too common a
// part of other words and has to be the whole name.
class SecretNames {
 public:
  // Each thread keeps what it made for the locale that it met last: asking the locale anew for every message
  // would take a twelfth of the time of writing one.
  static const SecretNames& OfGlobalLocale() {
    static thread_local SecretNames kept;
    if (kept.locale_ != std::locale()) kept = SecretNames();
    return kept;
  }

  bool Contain(std::string_view name) const {
    constexpr std::string_view password = "password";
    constexpr std::string_view pin = "pin";
    const auto isSame = [this](char left, char right) { return Upper(left) == Upper(right); };
    return std::search(name.begin(), name.end(), password.begin(), password.end(), isSame) != name.end() ||
           std::equal(name.begin(), name.end(), pin.begin(), pin.end(), isSame);
  }

 private:
  SecretNames() {
    std::iota(upper_.begin(), upper_.end(), '\0');
    std::use_facet<std::ctype<char>>(locale_).toupper(upper_.data(), upper_.data() + upper_.size());
  }

  char Upper(char c) const { return upper_[static_cast<unsigned char>(c)]; }

  std::locale locale_;
  std::array<char, 256> upper_;  // of each character
};

inline bool IsSecret(std::string_view name) { return SecretNames::OfGlobalLocale().Contain(name); }

}  // namespace tavrin
