#pragma once

#include <string>

#include "Tree.h"

namespace zq::xml {

std::string InnerXml(const Element& element);
std::string OuterXml(const Element& element);

}  // namespace zq::xml
