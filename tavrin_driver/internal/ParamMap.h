#pragma once

#include <tavrin_driver/DriverParam.h>
#include <map>
#include <string>
#include <utility>

#include "Names.h"

namespace tavrin {

using ParamMap = std::map<std::string, DriverParam>;

// The rule of every message: the first parameter of a name is kept; a later one is not even copied. Whoever
// writes a map writes it in order, so that most parameters belong at the end.
template <typename Param>
void InsertIfAbsent(ParamMap& params, Param&& param) {
  params.try_emplace(params.end(), param.name, std::forward<Param>(param));
}

// The same for a parameter that is only made where it is added; the fields are those of a constructor behind
// the name.
template <typename... Fields>
void MakeIfAbsent(ParamMap& params, const std::string& name, const Fields&... fields) {
  params.try_emplace(params.end(), name, name, fields...);
}

// Whether a child of a "params" element is a parameter, where only those count that are named so.
inline bool IsParam(const zq::XmlNode& element) { return element.IsName(names::param); }

// Reads every child element of a "params" element for which `accepts` holds.
template <typename Accepts>
void ReadParams(ParamMap& params, zq::XmlNode& paramsNode, Accepts accepts) {
  zq::XmlNodeIterator* children = paramsNode.GetIterator();
  for (zq::XmlNode::Ptr child = children->First(); child; child = children->Next()) {
    if (!accepts(*child)) continue;
    DriverParam param;
    param.fromXml(std::move(child));
    InsertIfAbsent(params, std::move(param));
  }
}

}  // namespace tavrin
