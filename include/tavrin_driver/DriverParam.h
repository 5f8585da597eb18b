/// @file
/// The parameter record that every message carries, and the helpers for maps of parameters.
#pragma once

#include <json/value.h>

#include <tavrin_platform/Export.h>
#include <tavrin_platform/XmlNode.h>
#include <boost/smart_ptr/shared_ptr.hpp>
#include <cstdint>
#include <map>
#include <ostream>
#include <string>

/// A parameter of a message: static, with its value in the record, or variable, naming the device variable
/// that holds the value.
///
/// In XML a parameter is written as
///
///     <param><name>LEVEL</name><value type="number"><static>50</static></value></param>
///     <param><name>LEVEL</name><value type="number"><variable>
///       <deviceid>7</deviceid><variableid>1001</variableid></variable></value></param>
///
/// and an older layout, in which "type" is an element and "value" holds a "valuetype" around "static" or
/// "variable", is read as well. In JSON it is
///
///     {"name": "LEVEL", "type": "number", "value": {"static": "50"}}
///     {"name": "LEVEL", "type": "number", "value": {"variable": {"deviceid": 7, "variableid": 1001}}}
class TAVRIN_EXPORT DriverParam {
 public:
  std::string name;              ///< the key of the parameter in a map
  std::string type;              ///< what the sender calls the type of the value; carried, never interpreted
  bool bVar = false;             ///< whether the parameter is variable
  std::string value;             ///< the value of a static parameter; may hold XML markup
  std::uint32_t idDevice = 0;    ///< the device of a variable parameter, 0 otherwise
  std::uint32_t idVariable = 0;  ///< the variable of that device, 0 otherwise

  /// An empty static parameter.
  DriverParam() = default;

  /// A static parameter.
  DriverParam(const std::string& name, const std::string& type, const std::string& value);

  /// A variable parameter.
  DriverParam(const std::string& name, const std::string& type, std::uint32_t idDevice,
              std::uint32_t idVariable);

  /// Reads the parameter's own XML element, which must not be empty. `name` is always set ("" without a
  /// "name" child); every other field keeps its value where the element does not give it.
  /// @throws zq::ZqError when an id is not a number; what was read before stays. It is the platform's error:
  /// the library has none of its own for that, in messages as in projects
  void fromXml(boost::shared_ptr<zq::XmlNode> node);

  /// Reads the parameter's own JSON object; fields that it does not give keep their values.
  /// @throws Json::Exception when a static value is an array or object, or an id is not an unsigned number;
  /// what was read before stays
  void fromJson(Json::Value& object);

  /// @return the parameter as an XML element named "param", whatever its own name is.
  std::string toXml() const;

  /// Writes the record's printed form. It looks like JSON, but nothing is escaped.
  std::ostream& print(std::ostream& os) const;
};

/// Appends the parameter to @p parent as a child element named @p elementName.
TAVRIN_EXPORT void toXml(const DriverParam& param, zq::XmlNode::Ptr& parent, const char* elementName);

/// @return a copy of @p s with each character in lower case by the program's global locale.
TAVRIN_EXPORT std::string ToLower(const std::string& s);

namespace zq {

/// Returns whether the parameter @p name holds a secret, which masked output shows as "******": its name
/// contains "password" or is "pin", case-insensitively by the program's global locale.
TAVRIN_EXPORT bool isSecretParameter(const std::string& name);

/// @return @p s between double quotes, as it stands: nothing in it is escaped.
TAVRIN_EXPORT std::string jsonQuoteValue(const std::string& s);

/// Writes the printed form of a parameter map. The separator follows the second and every later entry, so the
/// first two stand back to back and one stands before the closing bracket; readers of the logs rely on it.
TAVRIN_EXPORT std::ostream& print(std::ostream& os, const std::map<std::string, DriverParam>& params);

}  // namespace zq
