/// @file
/// The implementation of binding messages.
#pragma once

#include <boost/smart_ptr/shared_ptr.hpp>

#include <tavrin_driver/IBindMessage.h>
#include <tavrin_platform/Export.h>
#include <cstdint>
#include <map>
#include <ostream>
#include <string>
#include <type_traits>

/// The implementation of IBindMessage.
///
/// @code
/// auto message = CBindMessage::Create(IBindMessage::NOTIFY, "LEVEL_CHANGED", 75);
/// message->AddPath("house/kitchen");
/// @endcode
///
/// In XML a binding message is
///
///     <bindmessage>
///      <notify>LEVEL_CHANGED</notify>
///      <query></query>
///      <data>75</data>
///     <params><param>...</param>...</params> <path>house/kitchen</path>
///     </bindmessage>
///
/// A command has "command" in place of "notify". "query" is present only in the answer to a query. Parameters
/// have the form that DriverParam documents. The reader accepts a root of any name and elements in any order,
/// and ignores other elements. The writer omits empty names, data and paths and an empty list of parameters.
/// It writes no newline after "params".
class TAVRIN_EXPORT CBindMessage : public IBindMessage {
 public:
  /// Constructs an empty message, which is neither a command nor a notification.
  CBindMessage() = default;

  /// Returns a new, empty message.
  static boost::shared_ptr<CBindMessage> Create();

  /// Returns a new message with a name of the given kind.
  static boost::shared_ptr<CBindMessage> Create(std::int32_t kind, const std::string& name);

  /// Returns a new message with a name of the given kind, and data.
  static boost::shared_ptr<CBindMessage> Create(std::int32_t kind, const std::string& name,
                                                const std::string& data);

  /// Returns a new message with a name of the given kind, and a signed decimal number as its data.
  static boost::shared_ptr<CBindMessage> Create(std::int32_t kind, const std::string& name,
                                                std::int32_t data);

  /// Returns a new message whose data is a number converted to `std::int32_t`. The conversion may change the
  /// number; the compiler warns and names alternatives.
  template <class Number, class = std::enable_if_t<zq::changesAsInt32<Number>>>
  [[deprecated(
      "the data is converted to std::int32_t; use Create with zq::ToText(data), or convert it "
      "yourself")]] static boost::shared_ptr<CBindMessage>
  Create(std::int32_t kind, const std::string& name, Number data) {
    return Create(kind, name, zq::AsInt32(data));
  }

  /// Returns a new command with the name and the parameters of a command message.
  static boost::shared_ptr<CBindMessage> Create(const ICmdMessage& cmd);

  using IBindMessage::addParam;
  using IBindMessage::Initialize;

  std::int32_t Initialize(std::int32_t kind, const std::string& name) override;
  std::int32_t Initialize(std::int32_t kind, const std::string& name, const std::string& data) override;
  std::int32_t Initialize(std::int32_t kind, const std::string& name, std::int32_t data) override;
  std::int32_t Initialize(const ICmdMessage& cmd) override;
  void AddPath(const std::string& path) override;
  std::int32_t fromXml(zq::XmlNode::Ptr& node) override;
  std::string toXml() const override;
  std::string toJson() const override;
  std::string getPath() const override;
  std::string getData() const override;
  std::int32_t getDataAsInteger() const override;
  const std::string& getCommand() const override;
  const std::string& getNotify() const override;
  void addParam(const std::string& name, const std::string& type, const std::string& value) override;
  void addParam(const std::string& name, const std::string& type, std::int32_t value) override;
  void addParamDouble(const std::string& name, const std::string& type, double value) override;
  void addParams(const std::map<std::string, DriverParam>& params) override;
  bool hasParam(const std::string& name) const override;
  std::string getParam(const std::string& name) const override;
  std::string getParamRequired(const std::string& name) const override;
  bool getParamBool(const std::string& name, bool& out) const override;
  bool getParamInt(const std::string& name, std::int32_t& out) const override;
  bool getParamUInt(const std::string& name, std::uint32_t& out) const override;
  bool getParamLong(const std::string& name, std::int32_t& out) const override;
  bool getParamULong(const std::string& name, std::uint32_t& out) const override;
  bool getParamDouble(const std::string& name, double& out) const override;
  bool hasData() const override;
  const std::map<std::string, DriverParam>& GetParamMap() const override;
  ZqTypes::BoundCallBase* getDataPtr() const override;
  void setDataPtr(ZqTypes::BoundCallBase* p) override;

  /// Returns whether the message has a command name.
  bool isCommand() const noexcept;

  /// Returns whether the message has a notification name.
  bool isNotify() const noexcept;

  /// Returns whether the message answers a query.
  bool isQueryAnswer() const noexcept { return m_bIsQueryNotify; }

  /// Returns whether the path is non-empty.
  bool hasPath() const noexcept;

  /// Returns whether the message has any parameters.
  bool hasParams() const noexcept;

  /// Writes the printed form for logs. It resembles JSON, but nothing is escaped or masked. @return @p os
  std::ostream& print(std::ostream& os) const;

 protected:
  /// Sets the name of the given kind, the data and the values read from the data. Does nothing for an unknown
  /// kind.
  void _init(std::int32_t kind, const std::string& name, const std::string& data);

 private:
  TAVRIN_HIDDEN void setData(const std::string& data);

  std::string m_strCommand;
  std::string m_strNotify;
  std::string m_strData;
  std::string m_strPath;
  std::int32_t m_nDataInt = 0;
  bool m_bDataBool = false;
  bool m_bIsQueryNotify = false;
  std::map<std::string, DriverParam> m_mapParams;
  ZqTypes::BoundCallBase* m_pvDataPointer = nullptr;
};

namespace zq {

/// Returns whether a binding message answers a query. IBindMessage has no operation for it, and adding one
/// would break drivers. The result is therefore false for messages of classes that do not derive from
/// CBindMessage.
inline bool AnswersQuery(const IBindMessage& message) {
  const auto* const binding = dynamic_cast<const CBindMessage*>(&message);
  return binding != nullptr && binding->isQueryAnswer();
}

}  // namespace zq
