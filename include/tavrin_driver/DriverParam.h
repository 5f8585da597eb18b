/// @file
/// The parameter record of all messages, and helper functions for maps of parameters.
#pragma once

#include <boost/smart_ptr/shared_ptr.hpp>
#include <json/forwards.h>

#include <tavrin_platform/Export.h>
#include <tavrin_platform/XmlNode.h>
#include <cstdint>
#include <map>
#include <ostream>
#include <string>

/// A parameter of a message. A static parameter stores its value; a variable parameter names the device
/// variable that contains the value.
///
/// @code
/// DriverParam level("LEVEL", "number", "50");
/// DriverParam follow("LEVEL", "number", 7, 1001);  // variable 1001 of device 7
/// std::string xml = level.toXml();
/// @endcode
///
/// Strings are stored verbatim. The class is thread-compatible.
///
/// In XML a parameter is written as
///
///     <param><name>LEVEL</name><value type="number"><static>50</static></value></param>
///     <param><name>LEVEL</name><value type="number"><variable>
///       <deviceid>7</deviceid><variableid>1001</variableid></variable></value></param>
///
/// fromXml() also reads an older layout, in which "type" is an element and "value" contains a "valuetype"
/// around "static" or "variable". In JSON a parameter is written as
///
///     {"name": "LEVEL", "type": "number", "value": {"static": "50"}}
///     {"name": "LEVEL", "type": "number", "value": {"variable": {"deviceid": 7, "variableid": 1001}}}
class TAVRIN_EXPORT DriverParam {
 public:
  std::string name;              ///< the key of the parameter in a map
  std::string type;              ///< the sender's name for the type of the value; never interpreted
  bool bVar = false;             ///< whether the parameter is variable
  std::string value;             ///< the value of a static parameter; may contain XML markup
  std::uint32_t idDevice = 0;    ///< the device of a variable parameter, 0 otherwise
  std::uint32_t idVariable = 0;  ///< the variable of that device, 0 otherwise

  /// Constructs a static parameter with empty strings.
  DriverParam() = default;

  /// Constructs a static parameter.
  DriverParam(const std::string& name, const std::string& type, const std::string& value);

  /// Constructs a variable parameter.
  DriverParam(const std::string& name, const std::string& type, std::uint32_t idDevice,
              std::uint32_t idVariable);

  /// Reads the fields from the XML element of a parameter. @p node must not be null. `name` is always set, to
  /// "" if the element has no "name" child. Every other field keeps its value if the element does not contain
  /// it.
  /// @throws zq::ZqError if an id is not a number; the fields read before keep their new values
  void fromXml(boost::shared_ptr<zq::XmlNode> node);

  /// Reads the fields from the JSON object of a parameter. Fields that the object does not contain keep their
  /// values.
  /// @throws Json::Exception if a static value is an array or object, or an id is not an unsigned number; the
  /// fields read before keep their new values
  void fromJson(Json::Value& object);

  /// Returns the parameter as the text of an XML element named "param".
  std::string toXml() const;

  /// Writes the printed form of the record. It resembles JSON, but nothing is escaped or masked. Ids are
  /// written with the locale of @p os. @return @p os
  std::ostream& print(std::ostream& os) const;
};

/// Appends the parameter to @p parent as a child element named @p elementName.
TAVRIN_EXPORT void toXml(const DriverParam& param, zq::XmlNode::Ptr& parent, const char* elementName);

/// Returns a copy of @p s in lower case, converted character by character with the program's global locale.
TAVRIN_EXPORT std::string ToLower(const std::string& s);

namespace zq {

/// Returns whether a parameter named @p name contains a secret: the name contains "password" or is "pin".
/// The comparison is case-insensitive in the program's global locale. Masked output shows "******" in place
/// of a secret.
TAVRIN_EXPORT bool isSecretParameter(const std::string& name);

/// Returns @p s verbatim between double quotes. Nothing in it is escaped.
TAVRIN_EXPORT std::string jsonQuoteValue(const std::string& s);

/// Writes the printed form of a parameter map. A separator follows the second and every later entry, as
/// programs that read the logs expect. There is therefore none between the first two entries, and one before
/// the closing bracket. @return @p os
TAVRIN_EXPORT std::ostream& print(std::ostream& os, const std::map<std::string, DriverParam>& params);

}  // namespace zq
