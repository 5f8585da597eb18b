#pragma once

#include <tavrin_platform/XmlDiagnostics.h>

#include <boost/smart_ptr/shared_ptr.hpp>
#include <string>
#include <string_view>

#include "Tree.h"

namespace zq::xml {

// Parses a text into a tree. The result is empty when the text is not one well-formed document; `error`,
// unless null, then receives the reason.
boost::shared_ptr<Tree> Parse(std::string&& text, XmlError* error, const XmlProgress& progress);

// Parses a text that the caller keeps.
boost::shared_ptr<Tree> Parse(const std::string& text);

// Whether a text can be the name of an element or attribute.
bool IsName(std::string_view text);

}  // namespace zq::xml
