/// @file
/// The binding message as the controller core and its drivers see it.
#pragma once

#include <tavrin_driver/DriverParam.h>
#include <tavrin_driver/ICmdMessage.h>
#include <tavrin_driver/Numbers.h>
#include <tavrin_driver/ParameterExceptions.h>
#include <tavrin_platform/Export.h>
#include <tavrin_platform/XmlNode.h>
#include <tavrin_platform/ZqTypes.h>
#include <cstdint>
#include <map>
#include <string>
#include <type_traits>

/// What travels over a binding between two devices: a command, or a notification, which may be the answer to
/// a query. It carries a data text, a path, named parameters, and the address of a call that the core
/// attaches.
///
/// A message is a command when it has a command's name and a notification when it has a notification's name;
/// giving it the one does not take the other away, so it can be both. Whatever adds parameters keeps the
/// first one of a name. Parameters are read as they stand: of a variable one the text that it holds, which is
/// usually "", and never the variable's value. A message is used by one thread at a time.
///
/// Only getParamRequired() throws of its own. Every `Initialize` and fromXml() returns 0, always. When memory
/// runs out, std::bad_alloc is thrown. What adds one parameter, and AddPath(), then leave the message as it
/// was; everything else that changes it leaves what it has done, and doing it again does the rest.
///
/// The order of the operations is the order of the virtual table and never changes.
class TAVRIN_EXPORT IBindMessage {
 public:
  /// What a name given to `Initialize` names. Any other kind makes `Initialize` leave name and data alone.
  enum Kind : std::int32_t {
    COMMAND = 1,  ///< a command
    NOTIFY = 2,   ///< a notification
  };

  virtual ~IBindMessage() = default;

  /// Sets the name of that kind, with empty data. Like every `Initialize` it makes the message no answer to a
  /// query, whatever the kind, and leaves the path, the data pointer and the other name alone; the parameters
  /// stay unless they come from a command message.
  virtual std::int32_t Initialize(std::int32_t kind, const std::string& name) = 0;

  /// Sets the data, and then the name of that kind, so that @p data may be a name of this message.
  virtual std::int32_t Initialize(std::int32_t kind, const std::string& name, const std::string& data) = 0;

  /// Sets the name of that kind, and the data to a signed decimal number.
  virtual std::int32_t Initialize(std::int32_t kind, const std::string& name, std::int32_t data) = 0;

  /// Takes over the command's name, and its parameters in place of those that were there; the data is empty.
  virtual std::int32_t Initialize(const ICmdMessage& cmd) = 0;

  /// Appends to the path as it stands, without a separator: "a" and then "b" make "ab".
  virtual void AddPath(const std::string& path) = 0;

  /// Reads the message from a parsed element of any name, which must not be empty. Names, data and path that
  /// the element gives replace those that were there, and the last one of a kind counts; parameters are
  /// added. The message answers a query when the element says so, and otherwise does not.
  /// @throws zq::ZqError when an id of a parameter is not a number; what was read before stays
  virtual std::int32_t fromXml(zq::XmlNode::Ptr& node) = 0;

  /// @return the message as XML text. Names, data and path are written as they stand, so data that is markup
  /// survives, and a text that holds "<" or "&" without being markup makes the whole no XML.
  virtual std::string toXml() const = 0;

  /// @return the printed form for logs, which looks like JSON; nothing in it is escaped or masked.
  virtual std::string toJson() const = 0;

  /// @return a copy of the path.
  virtual std::string getPath() const = 0;

  /// @return a copy of the data.
  virtual std::string getData() const = 0;

  /// @return the leading decimal number of the data clamped to 32 bits, 0 without one.
  virtual std::int32_t getDataAsInteger() const = 0;

  /// @return the command's name, "" when this is no command; the reference lives as long as the message.
  virtual const std::string& getCommand() const = 0;

  /// @return the notification's name, "" when this is none; the reference lives as long as the message.
  virtual const std::string& getNotify() const = 0;

  /// Adds a static parameter. The other typed forms convert their value and call this one.
  virtual void addParam(const std::string& name, const std::string& type, const std::string& value) = 0;

  /// Adds a static parameter with a signed decimal value.
  virtual void addParam(const std::string& name, const std::string& type, std::int32_t value) = 0;

  /// Adds a static parameter with at most six digits after a decimal point, whatever the locale.
  virtual void addParamDouble(const std::string& name, const std::string& type, double value) = 0;

  /// Adds those of @p params whose keys are not there yet.
  virtual void addParams(const std::map<std::string, DriverParam>& params) = 0;

  /// @return whether there is a parameter of that name, whatever its value.
  virtual bool hasParam(const std::string& name) const = 0;

  /// @return the parameter's text, "" when there is no such parameter. The typed readers take it from here.
  virtual std::string getParam(const std::string& name) const = 0;

  /// @return the parameter's text, which may be empty.
  /// @throws ExceptionParameterMissing when there is no such parameter; its text ends with the name
  virtual std::string getParamRequired(const std::string& name) const = 0;

  /// Reads a truth value: "true" in upper or lower case, "1" and "Y" are true, every other text is false.
  /// @return false when the text is empty; @p out then keeps its value, here and in all typed readers
  virtual bool getParamBool(const std::string& name, bool& out) const = 0;

  /// Reads the leading decimal number clamped to 32 bits, 0 without one. @return false when the text is empty
  virtual bool getParamInt(const std::string& name, std::int32_t& out) const = 0;

  /// Reads the leading decimal number as zq::ToUInt32 does. @return false when the text is empty
  virtual bool getParamUInt(const std::string& name, std::uint32_t& out) const = 0;

  /// Reads what getParamInt() reads.
  virtual bool getParamLong(const std::string& name, std::int32_t& out) const = 0;

  /// Reads what getParamUInt() reads.
  virtual bool getParamULong(const std::string& name, std::uint32_t& out) const = 0;

  /// Reads the leading number with a decimal point, 0 without one. @return false when the text is empty
  virtual bool getParamDouble(const std::string& name, double& out) const = 0;

  /// @return whether the data is not empty.
  virtual bool hasData() const = 0;

  /// @return all parameters by name; the reference lives as long as the message.
  virtual const std::map<std::string, DriverParam>& GetParamMap() const = 0;

  /// @return the attached call, null unless it was set. The message neither uses nor owns it.
  virtual ZqTypes::BoundCallBase* getDataPtr() const = 0;

  /// Attaches a call, and forgets the one that was attached before.
  virtual void setDataPtr(ZqTypes::BoundCallBase* p) = 0;

  /// Sets the data to the value converted to `std::int32_t`, which may change it, as the deprecation reports.
  template <class Number, class = std::enable_if_t<zq::changesAsInt32<Number>>>
  [[deprecated(
      "the data is converted to std::int32_t; use Initialize with zq::ToText(data), or convert it "
      "yourself")]] std::int32_t
  Initialize(std::int32_t kind, const std::string& name, Number data) {
    return Initialize(kind, name, static_cast<std::int32_t>(data));
  }

  /// Adds the value converted to `std::int32_t`, which may change it, as the deprecation reports.
  template <class Number, class = std::enable_if_t<zq::changesAsInt32<Number>>>
  [[deprecated(
      "the value is converted to std::int32_t; use addParamDouble for a fraction, addParam with "
      "zq::ToText(value) for a truth value or an unsigned number, or convert it yourself")]] void
  addParam(const std::string& name, const std::string& type, Number value) {
    addParam(name, type, static_cast<std::int32_t>(value));
  }

 protected:
  /// Only implementations construct, copy and assign: through the interface, nothing of the message would be
  /// copied (use the copy constructor of the class instead).
  IBindMessage() = default;
  IBindMessage(const IBindMessage&) = default;             ///< for implementations only
  IBindMessage& operator=(const IBindMessage&) = default;  ///< for implementations only
};
