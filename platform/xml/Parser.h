#pragma once

#include <boost/smart_ptr/shared_ptr.hpp>

#include <tavrin_platform/XmlDiagnostics.h>
#include <string>
#include <string_view>

#include "Tree.h"

namespace zq::xml {

// Parses a string into a tree. Returns null if it is not one well-formed document. `error` then receives
// the reason, unless it is null.
boost::shared_ptr<Tree> Parse(std::string&& text, XmlError* error, const XmlProgress& progress);

// Parses a string that the caller owns.
boost::shared_ptr<Tree> Parse(const std::string& text);

// Returns whether a string is a valid name of an element or attribute.
bool IsName(std::string_view text);

}  // namespace zq::xml
