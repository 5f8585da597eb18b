/// @file
/// The implementation of conditional messages.
#pragma once

#include <boost/smart_ptr/shared_ptr.hpp>

#include <tavrin_driver/ICondMessage.h>
#include <tavrin_platform/Export.h>
#include <cstdint>
#include <map>
#include <ostream>
#include <string>

/// The implementation of ICondMessage.
///
/// @code
/// const auto conditional = CCondMessage::Create(R"(<deviceconditional><name>LEVEL_IS</name>
///     <conditional>LESS_THAN</conditional></deviceconditional>)");
/// conditional->addParam("LEVEL", "number", "50");
/// bool isTrue = conditional->Test(40, nullptr);
/// @endcode
///
/// In XML a conditional is, without the newlines,
///
///     <deviceconditional><name>LEVEL_IS</name><conditional>LESS_THAN</conditional>
///       <params><param>...</param>...</params></deviceconditional>
///
/// with parameters in the form that DriverParam documents. The reader accepts any name for the root and the
/// parameter elements, and elements in any order. It ignores other elements.
class TAVRIN_EXPORT CCondMessage : public ICondMessage {
 public:
  /// Constructs a conditional without name, comparison and parameters.
  explicit CCondMessage(std::uint32_t ownerId = 0);

  /// Constructs a conditional without an owner.
  CCondMessage(const std::string& name, const std::string& condition,
               const std::map<std::string, DriverParam>& params);

  /// Returns a new conditional without name, comparison and parameters.
  static boost::shared_ptr<CCondMessage> Create(std::uint32_t ownerId);

  /// Returns a new conditional with what Initialize() read from @p xml.
  /// @throws zq::ZqError as Initialize() does
  static boost::shared_ptr<CCondMessage> Create(const std::string& xml);

  /// Returns a new conditional without an owner.
  static boost::shared_ptr<CCondMessage> Create(const std::string& name, const std::string& condition,
                                                const std::map<std::string, DriverParam>& params);

  std::int32_t Initialize(const std::string& xml) override;
  std::int32_t fromXml(zq::XmlNode::Ptr& node) override;
  [[nodiscard]] std::int32_t fromXml(IDriverX* driver, const char* xml) override;
  using ICondMessage::Test;
  bool Test(const char* value, const char* paramName) const override;
  bool Test(std::int32_t value, const char* paramName) const override;
  bool Test(bool value) const override;
  bool Test(const LevelMeasure::LevelPoint& point, const char* paramName) const override;
  bool Test(std::int32_t left, std::int32_t right) const override;
  bool Test(double left, double right) const override;
  std::string getRawCondition() const override;
  const std::string& getName() const override;
  std::string getParam(const std::string& name) const override;
  bool hasParam(const std::string& name) const override;
  const std::map<std::string, DriverParam>& getParamMap() const override;
  void addParam(const std::string& name, const std::string& type, const std::string& value) override;
  void addParams(const std::map<std::string, DriverParam>& params) override;
  std::string toXml() const override;
  std::uint32_t getOwnerId() const override;

  /// Reads the conditional from XML text.
  /// @return 0, or -1 if the text is not an XML document; the text then becomes the comparison
  /// @throws zq::ZqError as Initialize() does
  [[nodiscard]] std::int32_t fromXml(const std::string& text);

  /// Writes the printed form for logs. It resembles JSON, but nothing is escaped or masked. @return @p os
  std::ostream& print(std::ostream& os) const;

 private:
  TAVRIN_HIDDEN const DriverParam* findParam(const char* name) const;
  TAVRIN_HIDDEN std::int32_t fromDocument(const zq::XmlDocument::Ptr& document);

  std::string name_;
  std::string condition_;
  std::map<std::string, DriverParam> params_;
  std::uint32_t ownerId_ = 0;
};
