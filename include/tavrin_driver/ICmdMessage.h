/// @file
/// The command message as the controller core and its drivers see it.
#pragma once

#include <tavrin_driver/DriverParam.h>
#include <tavrin_driver/Numbers.h>
#include <tavrin_driver/ParameterExceptions.h>
#include <tavrin_platform/XmlNode.h>
#include <boost/smart_ptr/shared_ptr.hpp>
#include <cstdint>
#include <map>
#include <string>
#include <type_traits>

/// A command for a driver: a name that the driver defines, and named parameters.
///
/// Whatever adds parameters keeps the first one of a name; only overwriteParam() replaces. A variable
/// parameter's value is asked of the controller's variable manager each time it is read, on the caller's
/// thread. A message is used by one thread at a time.
///
/// Plain reading never fails: an absent parameter, or a variable that cannot be read, is "". The
/// `getParamRequired...` operations throw ExceptionParameterMissing instead, which does not name the
/// parameter. Their conversions are lenient and never fail. The functions of `<tavrin_driver/Required.h>` are
/// strict, and what they throw names the parameter.
///
///     int level = command.getParamRequiredIntRanged("LEVEL", 0, 100);
///
/// When memory runs out, std::bad_alloc is thrown. What adds or overwrites one parameter, and
/// `Initialize`, then leave the message as it was; what reads or adds several leaves those that it has come
/// to, and doing it again does the rest.
///
/// The order of the operations is the order of the virtual table and never changes.
class TAVRIN_EXPORT ICmdMessage {
 public:
  virtual ~ICmdMessage() = default;

  /// Sets the command's name and removes all parameters; the owner stays. @return 0
  virtual std::int32_t Initialize(const std::string& command) = 0;

  /// Empties the command's name and removes all parameters; the owner stays.
  virtual void Clear() = 0;

  /// @return a copy of the message without its owner type.
  virtual boost::shared_ptr<ICmdMessage> clone() const = 0;

  /// Adds a static parameter. The other typed forms convert their value and call this one.
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

  /// Adds a static parameter with at most six digits after a decimal point, whatever the locale.
  virtual void addParamDouble(const std::string& name, const std::string& type, double value) = 0;

  /// Adds those of @p params whose keys are not there yet.
  virtual void addParams(const std::map<std::string, DriverParam>& params) = 0;

  /// Adds a static parameter, or puts it in the place of the one of that name, which may have been variable.
  virtual void overwriteParam(const std::string& name, const std::string& type, const std::string& value) = 0;

  /// Overwrites with a signed decimal value.
  virtual void overwriteParam(const std::string& name, const std::string& type, std::int32_t value) = 0;

  /// Reads a command from a parsed element of any name, which must not be empty: the name is replaced when
  /// the element gives one, parameters are added. @return 0
  /// @throws zq::ZqError when an id of a parameter is not a number; what was read before stays
  virtual std::int32_t fromXml(zq::XmlNode::Ptr& root) = 0;

  /// Reads a command from XML or JSON text: the name is replaced when the text gives one, parameters are
  /// added. However it ends, what was read until then stays.
  /// @return 0, or -1 when the text is neither XML nor JSON, is JSON that contains no command, or is JSON
  /// whose parameters inherit more than ten times the length of the text or 1 MiB, whichever is more
  /// @throws zq::ZqError when an id in XML is not a number
  /// @throws Json::Exception when a parameter in JSON is no object, its value an array or object, or an id
  /// not an unsigned number
  virtual std::int32_t Load(const std::string& text) = 0;

  /// @return the command as XML text.
  /// @param maskSecrets writes "******" in place of secret values: those of parameters with "password" in the
  /// name or named "pin", in upper or lower case
  virtual std::string toXml(bool maskSecrets) const = 0;

  /// @return the command as a new element, with the same masking.
  virtual zq::XmlNode::Ptr toAutoNode(bool maskSecrets) const = 0;

  /// @return the command's name; the reference lives as long as the message.
  virtual const std::string& getRawCommand() const = 0;

  /// @return the parameter's current value, "" when there is none; a static one ends at its first NUL byte.
  virtual std::string getParam(const std::string& name) const = 0;

  /// @return whether there is a parameter of that name, whatever its value.
  virtual bool hasParam(const std::string& name) const = 0;

  /// @return all parameters by name; the reference lives as long as the message.
  virtual const std::map<std::string, DriverParam>& GetParamMap() const = 0;

  /// Adds a variable parameter.
  virtual void addVarParam(const std::string& name, const std::string& type, const std::uint32_t& idDevice,
                           const std::uint32_t& idVariable) = 0;

  /// @return the parameter's current value, which may be empty; a static one ends at its first NUL byte.
  /// @throws ExceptionParameterMissing when there is no such parameter or its variable cannot be read
  virtual std::string getParamRequired(const std::string& name) const = 0;

  /// @return the leading decimal number of the value clamped to 32 bits, 0 without one.
  /// @throws ExceptionParameterMissing as getParamRequired() does
  virtual std::int32_t getParamRequiredInt(const std::string& name) const = 0;

  /// @return whether the value begins with "T", "t" or "1".
  /// @throws ExceptionParameterMissing as getParamRequired() does
  virtual bool getParamRequiredBool(const std::string& name) const = 0;

  /// @return the number of getParamRequiredInt(), which lies within @p min and @p max, both included. A @p
  /// min above @p max is logged as a warning, and no number lies within.
  /// @throws ExceptionParameterMissing as getParamRequiredInt() does
  /// @throws ExceptionParameterInvalid when the number lies outside
  virtual std::int32_t getParamRequiredIntRanged(const std::string& name, std::int32_t min,
                                                 std::int32_t max) const = 0;

  /// @return the device id of a variable parameter, converted to signed; its variable is not read. A static
  /// parameter and an id of 0 are logged as warnings, and the id is returned all the same.
  /// @throws ExceptionParameterMissing when there is no such parameter
  virtual std::int32_t getParamRequiredVarDeviceID(const std::string& name) const = 0;

  /// @return the variable id of a variable parameter, converted and with warnings as the device id.
  /// @throws ExceptionParameterMissing when there is no such parameter
  virtual std::int32_t getParamRequiredVarVariableID(const std::string& name) const = 0;

  /// @return the number of getParamRequiredInt() as unsigned: "-1" is 4294967295, and everything above
  /// 2147483647 is 2147483647.
  /// @throws ExceptionParameterMissing as getParamRequired() does
  virtual std::uint32_t getParamRequiredULong(const std::string& name) const = 0;

  /// @return the leading number of the value, with a decimal point or comma, 0 without one.
  /// @param name the parameter
  /// @param precision digits after the point to round to, halves away from zero; negative: no rounding. The
  /// number is multiplied by the double nearest to that power of ten, rounded and divided again, with the
  /// same result on every machine
  /// @throws ExceptionParameterMissing as getParamRequired() does
  virtual double getParamRequiredDouble(const std::string& name, std::int32_t precision) const = 0;

  /// @return the id of the message's owner, 0 unless it was given.
  virtual std::uint32_t getOwnerId() const = 0;

  /// Sets the id of the message's owner.
  virtual void setOwnerId(std::uint32_t id) = 0;

  /// Sets what kind of owner it is. Nothing reads it back, and no copy carries it.
  virtual void setOwnerType(std::string type) = 0;

  /// Adds the value converted to `std::int32_t`, which may change it, as the deprecation reports.
  template <class Number, class = std::enable_if_t<zq::changesAsInt32<Number>>>
  [[deprecated(
      "the value is converted to std::int32_t; use addParamDouble for a fraction, addParamBool for a "
      "truth value, addParamUInt for an unsigned number, or convert it yourself")]] void
  addParam(const std::string& name, const std::string& type, Number value) {
    addParam(name, type, static_cast<std::int32_t>(value));
  }

  /// Overwrites with the value converted to `std::int32_t`, which may change it, as the deprecation reports.
  template <class Number, class = std::enable_if_t<zq::changesAsInt32<Number>>>
  [[deprecated(
      "the value is converted to std::int32_t; use overwriteParam with zq::ToText(value), or convert "
      "it yourself")]] void
  overwriteParam(const std::string& name, const std::string& type, Number value) {
    overwriteParam(name, type, static_cast<std::int32_t>(value));
  }

 protected:
  /// Only implementations construct, copy and assign: through the interface, nothing of the message would be
  /// copied (use clone() instead).
  ICmdMessage() = default;
  ICmdMessage(const ICmdMessage&) = default;             ///< for implementations only
  ICmdMessage& operator=(const ICmdMessage&) = default;  ///< for implementations only
};
