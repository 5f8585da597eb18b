#include "tavrin_platform/TextConstants.h"

#include <tavrin_platform/internal/ConstantString.h>

TAVRIN_CONSTANT_STRING TRUE_STRING = "true";
TAVRIN_CONSTANT_STRING FALSE_STRING = "false";
TAVRIN_CONSTANT_STRING VAR_TRUE_STRING = "1";
TAVRIN_CONSTANT_STRING VAR_FALSE_STRING = "0";
TAVRIN_CONSTANT_STRING EMPTY_STRING;
const char WHITESPACE[] = " \t\r\n\v\f";
