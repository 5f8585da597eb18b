/// @file
/// The implementation of command messages.
#pragma once

#include <boost/smart_ptr/shared_ptr.hpp>
#include <json/forwards.h>

#include <tavrin_driver/ICmdMessage.h>
#include <tavrin_platform/Export.h>
#include <tavrin_platform/IVariableManager.h>
#include <cstdint>
#include <map>
#include <ostream>
#include <string>

/// The implementation of ICmdMessage.
///
/// @code
/// CCmdMessage command(variables, ownerId);
/// if (command.Load(text) == 0) std::cout << command.toXml(true) << std::endl;  // true: secrets are masked
/// @endcode
///
/// A message refers to the variable manager that was passed to its constructor. The reference is non-owning;
/// the manager outlives the message.
///
/// In XML a command is
///
///     <devicecommand><command>SET_LEVEL</command><params><param>...</param>...</params></devicecommand>
///
/// with parameters in the form that DriverParam documents. The root may have any name. In JSON a command is
/// an object in a wrapper object or array of at most three entries. The first entry (by key) is read:
///
///     {"devicecommand": {"command": "SET_LEVEL", "params": [...]}}
///
/// The entries of "params" are read into one record, so an entry that omits a field inherits it from the
/// previous entry. In total the entries inherit at most ten times the length of the text, or 1 MiB if that is
/// more. Ordinary messages stay far below that limit; without it a short text could exhaust memory.
class TAVRIN_EXPORT CCmdMessage : public ICmdMessage {
 public:
  /// Constructs a message without a command name and parameters.
  CCmdMessage(zq::IVariableManager& vm, std::uint32_t ownerId);

  /// Constructs a command without parameters.
  CCmdMessage(const std::string& command, zq::IVariableManager& vm);

  /// Constructs a command with parameters.
  CCmdMessage(const std::string& command, const std::map<std::string, DriverParam>& params,
              zq::IVariableManager& vm);

  /// Copies command name, parameters and owner id of any message. The copy uses the variable manager @p vm.
  CCmdMessage(const ICmdMessage& other, zq::IVariableManager& vm);

  /// Copies command name, parameters, owner id and variable manager of a message, but not its owner type.
  CCmdMessage(const CCmdMessage& other);

  CCmdMessage& operator=(const CCmdMessage&) = delete;

  /// Returns a new message without a command name and parameters.
  static boost::shared_ptr<ICmdMessage> Create(zq::IVariableManager& vm, std::uint32_t ownerId);

  /// Returns a new command with parameters.
  static boost::shared_ptr<ICmdMessage> Create(const std::string& command,
                                               const std::map<std::string, DriverParam>& params,
                                               zq::IVariableManager& vm);

  /// Returns a new command without parameters.
  static boost::shared_ptr<ICmdMessage> CreateFromName(const std::string& command, zq::IVariableManager& vm);

  /// Returns a new message with what Load() read from @p text. If Load() returned -1, that is everything
  /// before the failure.
  /// @throws zq::ZqError as Load() does
  /// @throws Json::Exception as Load() does
  static boost::shared_ptr<ICmdMessage> CreateFromString(const std::string& text, zq::IVariableManager& vm);

  using ICmdMessage::addParam;
  using ICmdMessage::overwriteParam;

  std::int32_t Initialize(const std::string& command) override;
  void Clear() override;
  [[nodiscard]] boost::shared_ptr<ICmdMessage> clone() const override;
  void addParam(const std::string& name, const std::string& type, const std::string& value) override;
  void addParam(const std::string& name, const std::string& type, std::int32_t value) override;
  void addParamBool(const std::string& name, const std::string& type, bool value) override;
  void addParamUInt(const std::string& name, const std::string& type, std::uint32_t value) override;
  void addParamULong(const std::string& name, const std::string& type, std::uint32_t value) override;
  void addParamLong(const std::string& name, const std::string& type, std::int32_t value) override;
  void addParamDouble(const std::string& name, const std::string& type, double value) override;
  void addParams(const std::map<std::string, DriverParam>& params) override;
  void overwriteParam(const std::string& name, const std::string& type, const std::string& value) override;
  void overwriteParam(const std::string& name, const std::string& type, std::int32_t value) override;
  std::int32_t fromXml(zq::XmlNode::Ptr& root) override;
  [[nodiscard]] std::int32_t Load(const std::string& text) override;
  std::string toXml(bool maskSecrets) const override;
  zq::XmlNode::Ptr toAutoNode(bool maskSecrets) const override;
  const std::string& getRawCommand() const override;
  std::string getParam(const std::string& name) const override;
  bool hasParam(const std::string& name) const override;
  const std::map<std::string, DriverParam>& GetParamMap() const override;
  void addVarParam(const std::string& name, const std::string& type, const std::uint32_t& idDevice,
                   const std::uint32_t& idVariable) override;
  std::string getParamRequired(const std::string& name) const override;
  std::int32_t getParamRequiredInt(const std::string& name) const override;
  bool getParamRequiredBool(const std::string& name) const override;
  std::int32_t getParamRequiredIntRanged(const std::string& name, std::int32_t min,
                                         std::int32_t max) const override;
  std::int32_t getParamRequiredVarDeviceID(const std::string& name) const override;
  std::int32_t getParamRequiredVarVariableID(const std::string& name) const override;
  std::uint32_t getParamRequiredULong(const std::string& name) const override;
  double getParamRequiredDouble(const std::string& name, std::int32_t precision) const override;
  std::uint32_t getOwnerId() const override;
  void setOwnerId(std::uint32_t id) override;
  void setOwnerType(std::string type) override;

  /// Reads a command from XML text. @return 0, or -1 if the text is not one well-formed document
  /// @throws zq::ZqError as Load() does
  [[nodiscard]] std::int32_t loadXml(const std::string& text);

  /// Reads a command from JSON text.
  /// @return 0, or -1 if the text is not JSON, is not a command in a wrapper, or its parameters inherit more
  /// than the limit; the parameters read before are kept
  /// @throws Json::Exception as Load() does
  [[nodiscard]] std::int32_t loadJson(const std::string& text);

  /// Reads a command from its JSON object, member by member in the order of the keys. The limit of inherited
  /// fields depends on the length of the text that JsonCpp parsed the object from. For an object that was
  /// built in code it is 1 MiB.
  /// @return 0, or -1 at the first member that is neither a string nor the array "params", and at the first
  /// parameter that exceeds the limit
  /// @throws Json::Exception as Load() does
  [[nodiscard]] std::int32_t parseJsonObject(Json::Value& object);

  /// Appends the element "params" with all parameters, masked as in toXml().
  void InsertParamsIntoNode(zq::XmlNode::Ptr& node, bool maskSecrets) const;

  /// Writes the printed form for logs. It resembles JSON, but nothing is escaped or masked. @return @p os
  std::ostream& print(std::ostream& os) const;

 private:
  TAVRIN_HIDDEN std::int32_t readJsonObject(Json::Value& object, std::uint64_t textLength);

  zq::IVariableManager& varManager_;
  std::string command_;
  std::map<std::string, DriverParam> params_;
  std::uint32_t ownerId_ = 0;
  std::string ownerType_;
};
