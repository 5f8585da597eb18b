/// @file
/// Texts that the controller's programs agree on.
#pragma once

#include <string>

#include "Export.h"

TAVRIN_EXPORT extern const std::string TRUE_STRING;       ///< "true"
TAVRIN_EXPORT extern const std::string FALSE_STRING;      ///< "false"
TAVRIN_EXPORT extern const std::string VAR_TRUE_STRING;   ///< "1": how a variable holds true
TAVRIN_EXPORT extern const std::string VAR_FALSE_STRING;  ///< "0": how a variable holds false
TAVRIN_EXPORT extern const std::string EMPTY_STRING;      ///< ""
TAVRIN_EXPORT extern const char WHITESPACE[];             ///< blank, tab, CR, LF, VT, FF; NUL-terminated
