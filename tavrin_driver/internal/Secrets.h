#pragma once

#include <locale>
#include <string>

namespace tavrin {

// What stands in place of a secret value wherever one is shown.
inline constexpr char maskedValue[] = "******";

// Tells which parameters hold a secret, by their names in upper or lower case of the program's global locale.
// The two rules differ on purpose: "password" may stand anywhere in the name, while "pin" is too common a
// part of other words and has to be the whole name.
class SecretNames {
 public:
  bool Contain(const std::string& name) const {
    const std::string upper = Upper(name);
    return upper.find(password_) != std::string::npos || upper == pin_;
  }

 private:
  std::string Upper(std::string text) const {
    characters_.toupper(text.data(), text.data() + text.size());
    return text;
  }

  const std::locale locale_;
  // Fetching the facet costs more than looking at a name; Boost's icontains does it for each character.
  const std::ctype<char>& characters_ = std::use_facet<std::ctype<char>>(locale_);
  const std::string password_ = Upper("password");
  const std::string pin_ = Upper("pin");
};

inline bool IsSecret(const std::string& name) { return SecretNames().Contain(name); }

}  // namespace tavrin
