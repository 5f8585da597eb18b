/// @file
/// The conditional message as the controller core and its drivers see it.
#pragma once

#include <tavrin_driver/DriverParam.h>
#include <tavrin_driver/Numbers.h>
#include <tavrin_platform/Export.h>
#include <tavrin_platform/IDriverX.h>
#include <tavrin_platform/LevelMeasure.h>
#include <tavrin_platform/XmlNode.h>
#include <cstdint>
#include <map>
#include <string>
#include <type_traits>

/// A conditional of a device: a name that its driver defines, a comparison, and parameters, of which one
/// holds the value to compare with. The core hands it to the driver, and the driver tests its current value:
///
///     bool isTrue = conditional.Test(currentLevel, nullptr);
///
/// The comparison is one of "EQUAL", "NOT_EQUAL", "LESS_THAN", "LESS_THAN_OR_EQUAL", "GREATER_THAN" and
/// "GREATER_THAN_OR_EQUAL", compared exactly. With any other text every test is false, also the one for
/// inequality. The driver's value is always the left side: with "LESS_THAN" and 50, 40 passes.
///
/// ### Which test a call chooses
///
/// The six `Test` operations differ in the types of their arguments only, so the types decide:
///
/// | call                            | compares                                                          |
/// |---------------------------------|-------------------------------------------------------------------|
/// | `Test(40, nullptr)`             | 40 with the first parameter                                       |
/// | `Test(0, nullptr)`              | the number 0, which is not taken for a null text                  |
/// | `Test(40, "LEVEL")`             | 40 with the parameter LEVEL                                       |
/// | `Test("ON", nullptr)`           | the text ON with the first parameter                              |
/// | `Test(text.c_str(), "STATE")`   | a std::string, which has no test of its own                       |
/// | `Test(true)`                    | true with nothing: "EQUAL" asks for true                          |
/// | `Test(40, 50)`                  | 40 with 50                                                        |
/// | `Test(40.0, 50.0)`              | the same as floating-point numbers                                |
///
/// Some calls mean something else. The compiler reports them as deprecated, with the call to use instead:
///
/// - `Test("ON")` is `Test(bool)` of a pointer, and so of true. Give the second argument.
/// - `Test(40)` is `Test(bool)`, too.
/// - `Test(true, nullptr)` compares the number 1.
/// - `Test(40.7, nullptr)` compares 40. Read the parameter and use `Test(double, double)`.
/// - `Test(3000000000U, 50)` compares a negative number.
///
/// Not reported: `Test(40, 0)` compares 40 with 0, and `Test(40, NULL)` does so, or is ambiguous, as the
/// compiler has it. The first parameter is always `nullptr`.
///
/// Ambiguous, so that they do not compile, are a whole and a floating-point number, as in `Test(40, 50.0)`,
/// and two integers that neither are nor promote to `std::int32_t`, as two of type `std::uint32_t`; convert
/// them. Only one such integer, as in `Test(40U, 50)`, is converted to `std::int32_t`.
///
/// Whatever adds parameters keeps the first one of a name. A message is used by one thread at a time; tests
/// change nothing. When memory runs out, std::bad_alloc is thrown. addParam() then leaves the message as it
/// was; what reads or adds several parameters leaves what it has done, and doing it again does the rest.
///
/// The order of the operations is the order of the virtual table and never changes.
class TAVRIN_EXPORT ICondMessage {
 public:
  virtual ~ICondMessage() = default;

  /// Removes all parameters and reads the conditional from XML text; name and comparison stay where the text
  /// does not give them. A text that is no XML document, as "EQUAL", becomes the comparison. @return 0
  /// @throws zq::ZqError when an id of a parameter is not a number; what was read before stays
  virtual std::int32_t Initialize(const std::string& xml) = 0;

  /// Reads the conditional from a parsed element of any name, which must not be empty: name and comparison
  /// are replaced where the element gives them, parameters are added. @return 0
  /// @throws zq::ZqError when an id of a parameter is not a number; what was read before stays
  virtual std::int32_t fromXml(zq::XmlNode::Ptr& node) = 0;

  /// Reads the conditional from XML text as above.
  /// @param driver not used
  /// @param xml must not be null
  /// @return 0, or -1 when the text is no XML document, which changes nothing
  /// @throws zq::ZqError when an id of a parameter is not a number; what was read before stays
  virtual std::int32_t fromXml(IDriverX* driver, const char* xml) = 0;

  /// Whether @p value compares as "EQUAL" or "NOT_EQUAL" with the text of a parameter, byte by byte; any
  /// other comparison is false. A variable parameter has the text "".
  /// @param value must not be null
  /// @param paramName the parameter, or null for the first one by name; false without such a parameter
  virtual bool Test(const char* value, const char* paramName) const = 0;

  /// Whether @p value compares with the leading decimal number of a parameter, clamped to 32 bits: "50.7" is
  /// 50, "abc" is 0, and so is a variable parameter.
  /// @param value the left side
  /// @param paramName the parameter, or null for the first one by name; false without such a parameter
  virtual bool Test(std::int32_t value, const char* paramName) const = 0;

  /// "EQUAL" is @p value and "NOT_EQUAL" its opposite; any other comparison is false.
  virtual bool Test(bool value) const = 0;

  /// Whether a level compares with the number of a parameter, read as above. The level's own comparison
  /// decides.
  /// @param point the left side
  /// @param paramName the parameter, or null for the first one by name; false without such a parameter
  virtual bool Test(const LevelMeasure::LevelPoint& point, const char* paramName) const = 0;

  /// Whether @p left compares with @p right; the parameters do not matter.
  virtual bool Test(std::int32_t left, std::int32_t right) const = 0;

  /// Whether @p left compares with @p right exactly, without tolerance; the parameters do not matter. With a
  /// NaN only "NOT_EQUAL" is true.
  virtual bool Test(double left, double right) const = 0;

  /// @return a copy of the comparison's name.
  virtual std::string getRawCondition() const = 0;

  /// @return the conditional's name; the reference lives as long as the message.
  virtual const std::string& getName() const = 0;

  /// @return the parameter's text, "0" when there is no such parameter. Of a variable parameter it is the
  /// text that it holds, which is usually "".
  virtual std::string getParam(const std::string& name) const = 0;

  /// @return whether there is a parameter of that name, whatever its value.
  virtual bool hasParam(const std::string& name) const = 0;

  /// @return all parameters by name; the reference lives as long as the message.
  virtual const std::map<std::string, DriverParam>& getParamMap() const = 0;

  /// Adds a static parameter.
  virtual void addParam(const std::string& name, const std::string& type, const std::string& value) = 0;

  /// Adds those of @p params whose keys are not there yet.
  virtual void addParams(const std::map<std::string, DriverParam>& params) = 0;

  /// @return the conditional as XML text, in one line. Name and comparison are written as they stand.
  virtual std::string toXml() const = 0;

  /// @return the id of the device or driver that owns the conditional, 0 unless it was given.
  virtual std::uint32_t getOwnerId() const = 0;

  /// Tests the value converted to `std::int32_t`, which may change it, as the deprecation reports.
  template <class Number, class Name,
            class = std::enable_if_t<zq::changesAsInt32<Number> && std::is_convertible_v<Name, const char*> &&
                                     (std::is_pointer_v<Name> || std::is_null_pointer_v<Name>)>>
  [[deprecated(
      "the value is converted to std::int32_t; use Test(double, double) with the number of the "
      "parameter, Test(bool) for a truth value, or convert it yourself")]] bool
  Test(Number value, Name paramName) const {
    return Test(static_cast<std::int32_t>(value), static_cast<const char*>(paramName));
  }

  /// Tests one number against another, both converted to `std::int32_t`, which may change one of them, as the
  /// deprecation reports.
  template <class Left, class Right, class = std::enable_if_t<zq::comparesAsInt32<Left, Right>>, class = void>
  [[deprecated(
      "the numbers are converted to std::int32_t; use Test(double, double), or convert them "
      "yourself")]] bool
  Test(Left left, Right right) const {
    return Test(static_cast<std::int32_t>(left), static_cast<std::int32_t>(right));
  }

  /// Tests whether the value is anything but zero or null, as the deprecation reports.
  template <class Value, class = std::enable_if_t<!std::is_same_v<Value, bool> &&
                                                  (std::is_arithmetic_v<Value> || std::is_pointer_v<Value>)>>
  [[deprecated(
      "the value is converted to bool; use Test(value, nullptr) to compare it with the first "
      "parameter")]] bool
  Test(Value value) const {
    return Test(static_cast<bool>(value));
  }

 protected:
  /// Only implementations construct, copy and assign: through the interface, nothing of the message would be
  /// copied (use the copy constructor of the class instead).
  ICondMessage() = default;
  ICondMessage(const ICondMessage&) = default;             ///< for implementations only
  ICondMessage& operator=(const ICondMessage&) = default;  ///< for implementations only
};
