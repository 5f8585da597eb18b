#include <tavrin_platform/TextConstants.h>

const std::string TRUE_STRING = "true";
const std::string FALSE_STRING = "false";
const std::string VAR_TRUE_STRING = "1";
const std::string VAR_FALSE_STRING = "0";
const std::string EMPTY_STRING;
const char WHITESPACE[] = " \t\r\n\v\f";
