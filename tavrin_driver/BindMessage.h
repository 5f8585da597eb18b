/// @file
/// The binding message of the library.
#pragma once

#include <tavrin_driver/IBindMessage.h>
#include <tavrin_platform/Export.h>
#include <boost/smart_ptr/shared_ptr.hpp>
#include <cstdint>
#include <map>
#include <ostream>
#include <string>
#include <type_traits>

/// The implementation of IBindMessage.
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
/// with "command" in place of "notify" for a command, "query" for the answer to a query only, and parameters
/// as DriverParam has them. When it is read the root may have any name, the elements any order, and others
/// are passed over. What is empty is not written, and no line ends behind "params".
class TAVRIN_EXPORT CBindMessage : public IBindMessage {
 public:
  /// A message that is neither command nor notification, with nothing in it.
  CBindMessage() = default;

  /// @return a new message with nothing in it.
  static boost::shared_ptr<CBindMessage> Create();

  /// @return a new message with a name of that kind.
  static boost::shared_ptr<CBindMessage> Create(std::int32_t kind, const std::string& name);

  /// @return a new message with a name of that kind, and data.
  static boost::shared_ptr<CBindMessage> Create(std::int32_t kind, const std::string& name,
                                                const std::string& data);

  /// @return a new message with a name of that kind, and a signed decimal number as its data.
  static boost::shared_ptr<CBindMessage> Create(std::int32_t kind, const std::string& name,
                                                std::int32_t data);

  /// Returns a new message whose data is the value converted to `std::int32_t`, which may change it, as the
  /// deprecation reports.
  template <class Number, class = std::enable_if_t<zq::changesAsInt32<Number>>>
  [[deprecated(
      "the data is converted to std::int32_t; use Create with zq::ToText(data), or convert it "
      "yourself")]] static boost::shared_ptr<CBindMessage>
  Create(std::int32_t kind, const std::string& name, Number data) {
    return Create(kind, name, static_cast<std::int32_t>(data));
  }

  /// @return a new command with the name and the parameters of a command message.
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

  /// @return whether the message has a command's name.
  bool isCommand() const;

  /// @return whether the message has a notification's name.
  bool isNotify() const;

  /// Returns whether the message answers a query.
  bool isQueryAnswer() const { return m_bIsQueryNotify; }

  /// @return whether the path is not empty.
  bool hasPath() const;

  /// @return whether there is any parameter.
  bool hasParams() const;

  /// Writes the printed form for logs, which looks like JSON. It escapes and masks nothing. @return @p os
  std::ostream& print(std::ostream& os) const;

 protected:
  /// Sets the name of that kind, and the data with its readings; nothing when there is no such kind.
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

/// Returns whether a binding message answers a query. IBindMessage has no operation for it, and cannot gain
/// one without breaking drivers, so only messages of CBindMessage and of classes derived from it are known
/// to.
inline bool AnswersQuery(const IBindMessage& message) {
  const auto* const binding = dynamic_cast<const CBindMessage*>(&message);
  return binding != nullptr && binding->isQueryAnswer();
}

}  // namespace zq
