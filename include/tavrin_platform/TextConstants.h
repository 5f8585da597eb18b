/// @file
/// Strings that all programs of the controller share.
///
/// @code
/// const bool isOn = value == VAR_TRUE_STRING;  // the value of a variable
/// const std::string& shown = isOn ? TRUE_STRING : FALSE_STRING;
/// const bool isBlank = value.find_first_not_of(WHITESPACE) == std::string::npos;
/// @endcode
#pragma once

#include <tavrin_platform/Export.h>
#include <string>

TAVRIN_EXPORT extern const std::string TRUE_STRING;       ///< "true"
TAVRIN_EXPORT extern const std::string FALSE_STRING;      ///< "false"
TAVRIN_EXPORT extern const std::string VAR_TRUE_STRING;   ///< "1": the value of a variable that is true
TAVRIN_EXPORT extern const std::string VAR_FALSE_STRING;  ///< "0": the value of a variable that is false
TAVRIN_EXPORT extern const std::string EMPTY_STRING;      ///< ""
TAVRIN_EXPORT extern const char WHITESPACE[];             ///< space, tab, CR, LF, VT, FF; NUL-terminated
