#pragma once

#include <tavrin_platform/internal/ThreadCache.h>
#include <algorithm>
#include <array>
#include <locale>
#include <memory>
#include <numeric>
#include <string>
#include <string_view>
#include <utility>

namespace tavrin {

// The text that masked output shows instead of a secret value.
inline constexpr char maskedValue[] = "******";

// The upper-case form of each character in the program's global locale.
struct UpperCase {
  UpperCase() {
    // One by one, because a locale may override only the facet's operation for single characters.
    // GCOVR_EXCL_BR_START: every locale has this facet, so the look-up cannot fail.
    const auto& facet = std::use_facet<std::ctype<char>>(locale);
    std::iota(characters.begin(), characters.end(), '\0');
    for (char& c : characters) c = facet.toupper(c);
    // GCOVR_EXCL_BR_STOP
  }

  std::locale locale;
  std::array<char, 256> characters;
};

// Decides which parameters are secret by their names, case-insensitively in the program's global locale. The
// two rules differ intentionally: "password" may occur anywhere in the name. "pin" is part of many other
// words, so it must be the whole name.
class SecretNames {
 public:
  // Each thread caches the table of the last locale. Filling a table for every message would take a twelfth
  // of the time of writing the message.
  SecretNames() : upper_(UpperCaseCache::Take()) {
    // GCOVR_EXCL_BR_START: the comparison cannot throw, but the compiler adds branches for that.
    if (!upper_ || upper_->locale != std::locale()) upper_ = std::make_unique<UpperCase>();
    // GCOVR_EXCL_BR_STOP
  }
  ~SecretNames() { UpperCaseCache::Keep(std::move(upper_)); }
  SecretNames(const SecretNames&) = delete;
  SecretNames& operator=(const SecretNames&) = delete;

  bool Contain(std::string_view name) const {
    return Occurs(password, name) || (name.size() == pin.size() && Occurs(pin, name));
  }

  // Returns whether @p text may contain the name of a secret.
  bool MayOccurIn(std::string_view text) const { return Occurs(password, text) || Occurs(pin, text); }

 private:
  static constexpr std::string_view password = "password";
  static constexpr std::string_view pin = "pin";

  using UpperCaseCache = zq::internal::ThreadCache<UpperCase>;

  bool Occurs(std::string_view word, std::string_view text) const {
    return std::search(text.begin(), text.end(), word.begin(), word.end(),
                       [this](char left, char right) { return Upper(left) == Upper(right); }) != text.end();
  }

  char Upper(char c) const { return upper_->characters[static_cast<unsigned char>(c)]; }

  std::unique_ptr<UpperCase> upper_;
};

inline bool IsSecret(std::string_view name) { return SecretNames().Contain(name); }

}  // namespace tavrin
