/// @file
/// The interface of binding messages.
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

/// A message that is sent over a binding between two devices: a command or a notification. A notification may
/// be the answer to a query. A message has a data string, a path, named parameters, and a pointer to a call
/// object that the core attaches.
///
/// @code
/// auto message = CBindMessage::Create(IBindMessage::NOTIFY, "LEVEL_CHANGED", 75);
/// message->addParam("SOURCE", "string", "dimmer");
/// std::string xml = message->toXml();
/// @endcode
///
/// A message is a command if it has a command name, and a notification if it has a notification name. Setting
/// one name does not clear the other, so a message can be both. If a parameter of the same name exists,
/// functions that add parameters keep the existing one. Readers return the stored text of a parameter. For a
/// variable parameter that text is usually "", and never the value of the variable.
///
/// Only getParamRequired() and fromXml() report errors by exceptions. Every `Initialize` and fromXml() always
/// return 0. All operations that allocate throw std::bad_alloc if memory runs out. Functions that add one
/// parameter, and AddPath(), give the strong exception guarantee. All other functions that change the message
/// give the basic guarantee; calling them again completes the change.
///
/// The class is thread-compatible: different threads may use different messages. The order of the operations
/// is the order of the virtual table and never changes.
class TAVRIN_EXPORT IBindMessage {
 public:
  /// The kind of a name that is passed to `Initialize`. With any other value `Initialize` leaves name and
  /// data unchanged.
  enum Kind : std::int32_t {
    COMMAND = 1,  ///< a command
    NOTIFY = 2,   ///< a notification
  };

  virtual ~IBindMessage() = default;

  /// Sets the name of the given kind and clears the data.
  ///
  /// For any kind, every `Initialize` clears the mark that the message answers a query. It keeps the path,
  /// the attached call and the other name. Only `Initialize(const ICmdMessage&)` replaces the parameters; the
  /// others keep them. @return 0
  virtual std::int32_t Initialize(std::int32_t kind, const std::string& name) = 0;

  /// Sets the data and then the name of the given kind. @p data may refer to a name of this message.
  /// @return 0
  virtual std::int32_t Initialize(std::int32_t kind, const std::string& name, const std::string& data) = 0;

  /// Sets the name of the given kind, and the data to a signed decimal number. @return 0
  virtual std::int32_t Initialize(std::int32_t kind, const std::string& name, std::int32_t data) = 0;

  /// Copies the name and the parameters of a command. They replace the command name and all parameters of
  /// this message. The data is cleared. @return 0
  virtual std::int32_t Initialize(const ICmdMessage& cmd) = 0;

  /// Appends @p path to the path without a separator: "a" and then "b" make "ab".
  virtual void AddPath(const std::string& path) = 0;

  /// Reads the message from a parsed element of any name. @p node must not be null. Names, data and path in
  /// the element replace those of the message. If the element contains one of them several times, the last
  /// one is kept. Parameters are added. Afterwards the message answers a query if and only if the element has
  /// a "query" child. @return 0
  /// @throws zq::ZqError if an id of a parameter is not a number; everything read before is kept
  virtual std::int32_t fromXml(zq::XmlNode::Ptr& node) = 0;

  /// Returns the message as XML text. Names, data and path are written verbatim and not escaped. Markup in
  /// them is therefore preserved, but any other "<" or "&" makes the result malformed.
  virtual std::string toXml() const = 0;

  /// Returns the printed form for logs. It resembles JSON, but nothing in it is escaped or masked. Numbers
  /// are written with the program's global locale.
  virtual std::string toJson() const = 0;

  /// Returns a copy of the path.
  virtual std::string getPath() const = 0;

  /// Returns a copy of the data.
  virtual std::string getData() const = 0;

  /// Returns the leading decimal number of the data, clamped to 32 bits; 0 if there is none.
  virtual std::int32_t getDataAsInteger() const = 0;

  /// Returns the command name, "" if the message is not a command. The reference is valid as long as the
  /// message.
  virtual const std::string& getCommand() const = 0;

  /// Returns the notification name, "" if the message is not a notification. The reference is valid as long
  /// as the message.
  virtual const std::string& getNotify() const = 0;

  /// Adds a static parameter. The overloads for other types convert their value and call this one.
  virtual void addParam(const std::string& name, const std::string& type, const std::string& value) = 0;

  /// Adds a static parameter with a signed decimal value.
  virtual void addParam(const std::string& name, const std::string& type, std::int32_t value) = 0;

  /// Adds a static parameter with at most six digits after the decimal point. The text is locale-independent.
  virtual void addParamDouble(const std::string& name, const std::string& type, double value) = 0;

  /// Adds those of @p params whose keys the message does not have yet.
  virtual void addParams(const std::map<std::string, DriverParam>& params) = 0;

  /// Returns whether a parameter of that name exists, with any value.
  virtual bool hasParam(const std::string& name) const = 0;

  /// Returns the text of the parameter, "" if it is absent. The typed readers convert what this function
  /// returns.
  virtual std::string getParam(const std::string& name) const = 0;

  /// Returns the text of the parameter, which may be empty.
  /// @throws ExceptionParameterMissing if the parameter is absent; what() ends with the name
  virtual std::string getParamRequired(const std::string& name) const = 0;

  /// Reads a truth value: "true" (case-insensitive), "1" and "Y" are true, every other non-empty text is
  /// false.
  /// @return false if the text is empty; @p out then keeps its value, here and in all typed readers
  virtual bool getParamBool(const std::string& name, bool& out) const = 0;

  /// Reads the leading decimal number, clamped to 32 bits; 0 if there is none.
  /// @return false if the text is empty
  virtual bool getParamInt(const std::string& name, std::int32_t& out) const = 0;

  /// Reads the leading decimal number as zq::ToUInt32 does. @return false if the text is empty
  virtual bool getParamUInt(const std::string& name, std::uint32_t& out) const = 0;

  /// Reads the same number as getParamInt(). @return false if the text is empty
  virtual bool getParamLong(const std::string& name, std::int32_t& out) const = 0;

  /// Reads the same number as getParamUInt(). @return false if the text is empty
  virtual bool getParamULong(const std::string& name, std::uint32_t& out) const = 0;

  /// Reads the leading number with a decimal point; 0 if there is none. @return false if the text is empty
  virtual bool getParamDouble(const std::string& name, double& out) const = 0;

  /// Returns whether the data is non-empty.
  virtual bool hasData() const = 0;

  /// Returns all parameters by name. The reference is valid as long as the message.
  virtual const std::map<std::string, DriverParam>& GetParamMap() const = 0;

  /// Returns the attached call, null if none is attached. The pointer is non-owning, and the message never
  /// dereferences it.
  virtual ZqTypes::BoundCallBase* getDataPtr() const = 0;

  /// Attaches a call in place of the one that was attached before. The message does not take ownership.
  virtual void setDataPtr(ZqTypes::BoundCallBase* p) = 0;

  /// Sets the name of the given kind, and the data to a number converted to `std::int32_t`. The conversion
  /// may change the number; the compiler warns and names alternatives. @return 0
  template <class Number, class = std::enable_if_t<zq::changesAsInt32<Number>>>
  [[deprecated(
      "the data is converted to std::int32_t; use Initialize with zq::ToText(data), or convert it "
      "yourself")]] std::int32_t
  Initialize(std::int32_t kind, const std::string& name, Number data) {
    return Initialize(kind, name, zq::AsInt32(data));
  }

  /// Adds the value converted to `std::int32_t`. The conversion may change the value; the compiler warns and
  /// names alternatives.
  template <class Number, class = std::enable_if_t<zq::changesAsInt32<Number>>>
  [[deprecated(
      "the value is converted to std::int32_t; use addParamDouble for a fraction, addParam with "
      "zq::ToText(value) for a truth value or an unsigned number, or convert it yourself")]] void
  addParam(const std::string& name, const std::string& type, Number value) {
    addParam(name, type, zq::AsInt32(value));
  }

 protected:
  /// Constructs the base of an implementation. Only implementations construct, copy and assign: a copy
  /// through the interface would be empty. Use the copy constructor of the class instead.
  IBindMessage() = default;
  IBindMessage(const IBindMessage&) = default;             ///< for implementations only
  IBindMessage& operator=(const IBindMessage&) = default;  ///< for implementations only
};
