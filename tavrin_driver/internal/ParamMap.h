#pragma once

#include <tavrin_driver/DriverParam.h>
#include <map>
#include <string>
#include <utility>

#include "Names.h"

namespace tavrin {

using ParamMap = std::map<std::string, DriverParam>;

// Implements the rule of every message: the first parameter of a name is kept. A later one is not even
// copied. Maps are written in the order of their names, so most parameters belong at the end.
template <typename Param>
void InsertIfAbsent(ParamMap& params, Param&& param) {
  params.try_emplace(params.end(), param.name, std::forward<Param>(param));
}

// Constructs a parameter in place if its name is absent. The fields are the constructor arguments after the
// name.
template <typename... Fields>
void MakeIfAbsent(ParamMap& params, const std::string& name, const Fields&... fields) {
  params.try_emplace(params.end(), name, name, fields...);
}

// Returns whether a child of a "params" element is named "param".
inline bool IsParam(const zq::XmlNode& element) { return element.IsName(names::param); }

// Reads every child element of a "params" element for which `accepts` returns true.
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
