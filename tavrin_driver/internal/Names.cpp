#include "Names.h"

#include <tavrin_platform/internal/ConstantString.h>

namespace tavrin::names::strings {

#define TAVRIN_DEFINE_STRING(identifier, text) TAVRIN_CONSTANT_STRING identifier = text;
TAVRIN_NAMES(TAVRIN_DEFINE_STRING)

}  // namespace tavrin::names::strings
