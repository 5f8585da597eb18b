#pragma once

#include <boost/algorithm/string/predicate.hpp>
#include <string>

namespace tavrin {

// What stands in place of a secret value wherever one is shown.
inline constexpr char maskedValue[] = "******";

// Whether a parameter of that name holds a secret. The two rules differ on purpose: "password" may stand
// anywhere in the name, while "pin" is too common a part of other words and has to be the whole name.
inline bool IsSecret(const std::string& name) {
  return boost::algorithm::icontains(name, "password") || boost::algorithm::iequals(name, "pin");
}

}  // namespace tavrin
