/// @file
/// The interface of command messages.
#pragma once

#include <boost/smart_ptr/shared_ptr.hpp>

#include <tavrin_driver/DriverParam.h>
#include <tavrin_driver/Numbers.h>
#include <tavrin_driver/ParameterExceptions.h>
#include <tavrin_platform/XmlNode.h>
#include <cstdint>
#include <map>
#include <string>
#include <type_traits>

/// A command for a driver: a name that the driver defines, and named parameters. CCmdMessage implements it.
///
/// @code
/// std::int32_t level = command.getParamRequiredIntRanged("LEVEL", 0, 100);
/// if (command.hasParam("RAMP_SECONDS")) ramp = command.getParamRequiredDouble("RAMP_SECONDS", 1);
/// @endcode
///
/// If a parameter of the same name exists, functions that add parameters keep the existing one; only
/// overwriteParam() replaces it. The value of a variable parameter is requested from the controller's
/// variable manager each time it is read, on the caller's thread.
///
/// getParam() returns "" for an absent parameter and for a variable that cannot be read. The
/// `getParamRequired...` operations throw ExceptionParameterMissing instead, which does not name the
/// parameter. Their conversions are lenient and never fail. The functions of `<tavrin_driver/Required.h>` are
/// strict, and their exceptions name the parameter.
///
/// All operations that allocate throw std::bad_alloc if memory runs out. Functions that change one parameter,
/// and `Initialize`, give the strong exception guarantee. If memory runs out, functions that read or add
/// several parameters keep those already added; calling them again adds the rest.
///
/// The class is thread-compatible: different threads may use different messages. The order of the operations
/// is the order of the virtual table and never changes.
class TAVRIN_EXPORT ICmdMessage {
 public:
  virtual ~ICmdMessage() = default;

  /// Sets the command name and removes all parameters. Owner id and owner type are kept. @return 0
  virtual std::int32_t Initialize(const std::string& command) = 0;

  /// Clears the command name and removes all parameters. Owner id and owner type are kept.
  virtual void Clear() = 0;

  /// Returns a copy of the message without its owner type. The copy refers to the same variable manager.
  [[nodiscard]] virtual boost::shared_ptr<ICmdMessage> clone() const = 0;

  /// Adds a static parameter. The overloads for other types convert their value and call this one.
  virtual void addParam(const std::string& name, const std::string& type, const std::string& value) = 0;

  /// Adds a static parameter with a signed decimal value.
  virtual void addParam(const std::string& name, const std::string& type, std::int32_t value) = 0;

  /// Adds a static parameter with the value "true" or "false".
  virtual void addParamBool(const std::string& name, const std::string& type, bool value) = 0;

  /// Adds a static parameter with an unsigned decimal value.
  virtual void addParamUInt(const std::string& name, const std::string& type, std::uint32_t value) = 0;

  /// Adds a static parameter with an unsigned decimal value of 32 bits.
  virtual void addParamULong(const std::string& name, const std::string& type, std::uint32_t value) = 0;

  /// Adds a static parameter with a signed decimal value of 32 bits.
  virtual void addParamLong(const std::string& name, const std::string& type, std::int32_t value) = 0;

  /// Adds a static parameter with at most six digits after the decimal point. The text is locale-independent.
  virtual void addParamDouble(const std::string& name, const std::string& type, double value) = 0;

  /// Adds those of @p params whose keys the message does not have yet.
  virtual void addParams(const std::map<std::string, DriverParam>& params) = 0;

  /// Adds a static parameter, or replaces the static or variable parameter of that name.
  virtual void overwriteParam(const std::string& name, const std::string& type, const std::string& value) = 0;

  /// Adds a static parameter with a signed decimal value, or replaces the parameter of that name by it.
  virtual void overwriteParam(const std::string& name, const std::string& type, std::int32_t value) = 0;

  /// Reads a command from a parsed element of any name. @p root must not be null. The command name is
  /// replaced if the element contains one. Parameters are added. @return 0
  /// @throws zq::ZqError if an id of a parameter is not a number; everything read before is kept
  virtual std::int32_t fromXml(zq::XmlNode::Ptr& root) = 0;

  /// Reads a command from XML or JSON text. The command name is replaced if the text contains one. Parameters
  /// are added. On failure, everything read before is kept.
  /// @return 0 on success, otherwise -1: if the text is neither XML nor JSON, if its JSON is not a command in
  /// a wrapper, or if its JSON parameters inherit more than the limit. CCmdMessage documents both
  /// @throws zq::ZqError if an id in XML is not a number
  /// @throws Json::Exception if a parameter in JSON is not an object, its static value is an array or object,
  /// an id is not an unsigned number, or the text has more than 1000 levels
  [[nodiscard]] virtual std::int32_t Load(const std::string& text) = 0;

  /// Returns the command as XML text.
  /// @param maskSecrets whether to write "******" in place of the values of parameters for which
  /// zq::isSecretParameter() returns true
  virtual std::string toXml(bool maskSecrets) const = 0;

  /// Returns the command as a new element, masked as by toXml().
  virtual zq::XmlNode::Ptr toAutoNode(bool maskSecrets) const = 0;

  /// Returns the command name. The reference is valid as long as the message.
  virtual const std::string& getRawCommand() const = 0;

  /// Returns the current value of the parameter, "" if there is none. A static value ends at its first NUL
  /// byte.
  virtual std::string getParam(const std::string& name) const = 0;

  /// Returns whether a parameter of that name exists, with any value.
  virtual bool hasParam(const std::string& name) const = 0;

  /// Returns all parameters by name. The reference is valid as long as the message.
  virtual const std::map<std::string, DriverParam>& GetParamMap() const = 0;

  /// Adds a variable parameter.
  virtual void addVarParam(const std::string& name, const std::string& type, const std::uint32_t& idDevice,
                           const std::uint32_t& idVariable) = 0;

  /// Returns the current value of the parameter, which may be empty. A static value ends at its first NUL
  /// byte.
  /// @throws ExceptionParameterMissing if the parameter is absent or its variable cannot be read
  virtual std::string getParamRequired(const std::string& name) const = 0;

  /// Returns the leading decimal number of the value, clamped to 32 bits; 0 if there is none.
  /// @throws ExceptionParameterMissing as getParamRequired() does
  virtual std::int32_t getParamRequiredInt(const std::string& name) const = 0;

  /// Returns whether the value begins with "T", "t" or "1".
  /// @throws ExceptionParameterMissing as getParamRequired() does
  virtual bool getParamRequiredBool(const std::string& name) const = 0;

  /// Returns the same number as getParamRequiredInt() if it is from @p min to @p max, both included. If
  /// @p min is above @p max, a warning is logged, and no number is in the range.
  /// @throws ExceptionParameterMissing as getParamRequiredInt() does
  /// @throws ExceptionParameterInvalid if the number is out of range
  virtual std::int32_t getParamRequiredIntRanged(const std::string& name, std::int32_t min,
                                                 std::int32_t max) const = 0;

  /// Returns the device id of a variable parameter, converted to signed. The variable is not read. For a
  /// static parameter, and for an id of 0, the function logs a warning and still returns the id.
  /// @throws ExceptionParameterMissing if the parameter is absent
  virtual std::int32_t getParamRequiredVarDeviceID(const std::string& name) const = 0;

  /// Returns the variable id of a variable parameter, with the conversion and warnings of
  /// getParamRequiredVarDeviceID().
  /// @throws ExceptionParameterMissing if the parameter is absent
  virtual std::int32_t getParamRequiredVarVariableID(const std::string& name) const = 0;

  /// Returns the same number as getParamRequiredInt(), converted to unsigned: "-1" is 4294967295, and every
  /// number above 2147483647 is 2147483647.
  /// @throws ExceptionParameterMissing as getParamRequired() does
  virtual std::uint32_t getParamRequiredULong(const std::string& name) const = 0;

  /// Returns the leading number of the value, with a decimal point or comma; 0 if there is none.
  /// @param name the parameter
  /// @param precision the number of decimals to round to, halves away from zero; negative: no rounding. The
  /// number is multiplied by the double nearest to 10^precision, rounded, and divided by it. The result is
  /// the same on every machine
  /// @throws ExceptionParameterMissing as getParamRequired() does
  virtual double getParamRequiredDouble(const std::string& name, std::int32_t precision) const = 0;

  /// Returns the id of the message's owner, 0 if none was set.
  virtual std::uint32_t getOwnerId() const = 0;

  /// Sets the id of the message's owner.
  virtual void setOwnerId(std::uint32_t id) = 0;

  /// Sets the type of the owner. No operation returns it, and copies do not contain it.
  virtual void setOwnerType(std::string type) = 0;

  /// Adds the value converted to `std::int32_t`. The conversion may change the value; the compiler warns and
  /// names alternatives.
  template <class Number, class = std::enable_if_t<zq::changesAsInt32<Number>>>
  [[deprecated(
      "the value is converted to std::int32_t; use addParamDouble for a fraction, addParamBool for a "
      "truth value, addParamUInt for an unsigned number, or convert it yourself")]] void
  addParam(const std::string& name, const std::string& type, Number value) {
    addParam(name, type, zq::AsInt32(value));
  }

  /// Overwrites a parameter with the value converted to `std::int32_t`. The conversion may change the value;
  /// the compiler warns and names alternatives.
  template <class Number, class = std::enable_if_t<zq::changesAsInt32<Number>>>
  [[deprecated(
      "the value is converted to std::int32_t; use overwriteParam with zq::ToText(value), or convert "
      "it yourself")]] void
  overwriteParam(const std::string& name, const std::string& type, Number value) {
    overwriteParam(name, type, zq::AsInt32(value));
  }

 protected:
  /// Constructs the base of an implementation. Only implementations construct, copy and assign: a copy
  /// through the interface would be empty. Use clone() instead.
  ICmdMessage() = default;
  ICmdMessage(const ICmdMessage&) = default;             ///< for implementations only
  ICmdMessage& operator=(const ICmdMessage&) = default;  ///< for implementations only
};
