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

// What stands in place of a secret value wherever one is shown.
inline constexpr char maskedValue[] = "******";

// The upper-case form of each character in the program's global locale.
struct UpperCase {
  UpperCase() {
    // One by one: a locale may override the facet's operation for a single character alone.
    // GCOVR_EXCL_BR_START: every locale has the facet, and no facet of the tests throws
    const auto& facet = std::use_facet<std::ctype<char>>(locale);
    std::iota(characters.begin(), characters.end(), '\0');
    for (char& c : characters) c = facet.toupper(c);
    // GCOVR_EXCL_BR_STOP
  }

  std::locale locale;
  std::array<char, 256> characters;
};

// Decides which parameters are secret, by their names in upper or lower case of the program's global locale.
// The two rules differ on purpose: "password" may occur anywhere in the name, while "pin" is too common a
// part of other words and has to be the whole name.
class SecretNames {
 public:
  // Each thread keeps the table of the locale that it used last: filling one for every message would take a
  // twelfth of the time of writing it.
  SecretNames() : upper_(UpperCaseCache::Take()) {
    // GCOVR_EXCL_BR_START: compiler-generated branches of a comparison that never throws
    if (!upper_ || upper_->locale != std::locale()) upper_ = std::make_unique<UpperCase>();
    // GCOVR_EXCL_BR_STOP
  }
  ~SecretNames() { UpperCaseCache::Keep(std::move(upper_)); }
  SecretNames(const SecretNames&) = delete;
  SecretNames& operator=(const SecretNames&) = delete;

  bool Contain(std::string_view name) const {
    return Occurs(password, name) || (name.size() == pin.size() && Occurs(pin, name));
  }

  // Whether the name of a secret may be a part of @p text.
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
