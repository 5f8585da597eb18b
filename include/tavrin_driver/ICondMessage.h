/// @file
/// The interface of conditional messages.
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

/// A conditional of a device: a name that its driver defines, a comparison, and parameters. One of the
/// parameters contains the value to compare with. The core passes the conditional to the driver, and the
/// driver tests its current value:
///
/// @code
/// bool isTrue = conditional.Test(currentLevel, nullptr);
/// @endcode
///
/// The comparison is one of "EQUAL", "NOT_EQUAL", "LESS_THAN", "LESS_THAN_OR_EQUAL", "GREATER_THAN" and
/// "GREATER_THAN_OR_EQUAL", case-sensitive. With any other text every test returns false. The driver's value
/// is always the left operand: with "LESS_THAN" and the parameter 50, a test of 40 returns true.
///
/// ### Which test a call chooses
///
/// The six `Test` operations differ in the types of their arguments only, so the types decide:
///
/// | call                            | compares                                                          |
/// |---------------------------------|-------------------------------------------------------------------|
/// | `Test(40, nullptr)`             | 40 with the first parameter                                       |
/// | `Test(0, nullptr)`              | the number 0, which is not treated as a null pointer              |
/// | `Test(40, "LEVEL")`             | 40 with the parameter LEVEL                                       |
/// | `Test("ON", nullptr)`           | the string ON with the first parameter                            |
/// | `Test(text.c_str(), "STATE")`   | a std::string, for which there is no overload                     |
/// | `Test(true)`                    | true, without a parameter: "EQUAL" returns it                     |
/// | `Test(40, 50)`                  | 40 with 50                                                        |
/// | `Test(40.0, 50.0)`              | the same as floating-point numbers                                |
///
/// Some calls do not mean what they seem to. The compiler reports them as deprecated, with the call to use
/// instead:
///
/// - `Test("ON")` calls `Test(bool)`, and a pointer to text is true. Pass the second argument.
/// - `Test(40)` calls `Test(bool)`, too.
/// - `Test(true, nullptr)` compares the number 1.
/// - `Test(40.7, nullptr)` compares 40. Read the parameter and use `Test(double, double)`.
/// - `Test(3000000000U, 50)` compares a negative number.
///
/// The compiler does not report `Test(40, 0)`, which compares 40 with 0. `Test(40, NULL)` does the same or is
/// ambiguous, depending on the compiler. Pass `nullptr` for the first parameter.
///
/// Some calls are ambiguous and do not compile; convert their arguments:
///
/// - an integer and a floating-point number, as in `Test(40, 50.0)`
/// - two integers of types that are not `std::int32_t` and do not promote to it, such as two `std::uint32_t`
///
/// If only one of two integers has such a type, as in `Test(40U, 50)`, it is converted to `std::int32_t`.
///
/// ### Exceptions and threads
///
/// If a parameter of the same name exists, functions that add parameters keep the existing one. All
/// operations that allocate throw std::bad_alloc if memory runs out. addParam() gives the strong exception
/// guarantee. If memory runs out, functions that read or add several parameters keep those already added;
/// calling them again adds the rest.
///
/// The class is thread-compatible: different threads may use different messages. `Test` changes nothing. The
/// order of the operations is the order of the virtual table and never changes.
class TAVRIN_EXPORT ICondMessage {
 public:
  virtual ~ICondMessage() = default;

  /// Removes all parameters and reads the conditional from XML text. Name and comparison are kept if the text
  /// does not contain them. If the text is not an XML document, such as "EQUAL", it becomes the comparison.
  /// @return 0
  /// @throws zq::ZqError if an id of a parameter is not a number; everything read before is kept
  virtual std::int32_t Initialize(const std::string& xml) = 0;

  /// Reads the conditional from a parsed element of any name. @p node must not be null. Name and comparison
  /// are replaced if the element contains them. Parameters are added. @return 0
  /// @throws zq::ZqError if an id of a parameter is not a number; everything read before is kept
  virtual std::int32_t fromXml(zq::XmlNode::Ptr& node) = 0;

  /// Reads the conditional from XML text, as fromXml(zq::XmlNode::Ptr&) reads the root.
  /// @param driver not used
  /// @param xml must not be null
  /// @return 0, or -1 if the text is not an XML document; the message is then unchanged
  /// @throws zq::ZqError if an id of a parameter is not a number; everything read before is kept
  [[nodiscard]] virtual std::int32_t fromXml(IDriverX* driver, const char* xml) = 0;

  /// Compares @p value with the text of a parameter, byte by byte. Only "EQUAL" and "NOT_EQUAL" can be true.
  /// A variable parameter has the text "".
  /// @param value must not be null
  /// @param paramName the parameter, or null for the first one by name
  /// @return whether the comparison is true; false if the parameter is absent
  virtual bool Test(const char* value, const char* paramName) const = 0;

  /// Compares @p value with the leading decimal number of a parameter, clamped to 32 bits: "50.7" is 50;
  /// "abc" and a variable parameter are 0.
  /// @param value the left operand
  /// @param paramName the parameter, or null for the first one by name
  /// @return whether the comparison is true; false if the parameter is absent
  virtual bool Test(std::int32_t value, const char* paramName) const = 0;

  /// Returns @p value for "EQUAL", its negation for "NOT_EQUAL", and false for any other comparison.
  virtual bool Test(bool value) const = 0;

  /// Compares a level with the leading decimal number of a parameter, using the operators of the level.
  /// @param point the left operand
  /// @param paramName the parameter, or null for the first one by name
  /// @return whether the comparison is true; false if the parameter is absent
  virtual bool Test(const LevelMeasure::LevelPoint& point, const char* paramName) const = 0;

  /// Compares @p left with @p right. The parameters are not used. @return whether the comparison is true
  virtual bool Test(std::int32_t left, std::int32_t right) const = 0;

  /// Compares @p left with @p right exactly, without tolerance. The parameters are not used. With a NaN only
  /// "NOT_EQUAL" is true. @return whether the comparison is true
  virtual bool Test(double left, double right) const = 0;

  /// Returns a copy of the comparison.
  virtual std::string getRawCondition() const = 0;

  /// Returns the name of the conditional. The reference is valid as long as the message.
  virtual const std::string& getName() const = 0;

  /// Returns the text of the parameter, "0" if it is absent. For a variable parameter it is the stored text,
  /// which is usually "".
  virtual std::string getParam(const std::string& name) const = 0;

  /// Returns whether a parameter of that name exists, with any value.
  virtual bool hasParam(const std::string& name) const = 0;

  /// Returns all parameters by name. The reference is valid as long as the message.
  virtual const std::map<std::string, DriverParam>& getParamMap() const = 0;

  /// Adds a static parameter.
  virtual void addParam(const std::string& name, const std::string& type, const std::string& value) = 0;

  /// Adds those of @p params whose keys the message does not have yet.
  virtual void addParams(const std::map<std::string, DriverParam>& params) = 0;

  /// Returns the conditional as XML text, in one line. Name and comparison are written verbatim and not
  /// escaped.
  virtual std::string toXml() const = 0;

  /// Returns the id of the device or driver that owns the conditional, 0 if none was set.
  virtual std::uint32_t getOwnerId() const = 0;

  /// Tests the value converted to `std::int32_t`. The conversion may change the value; the compiler warns and
  /// names alternatives.
  template <class Number, class Name,
            class = std::enable_if_t<zq::changesAsInt32<Number> && std::is_convertible_v<Name, const char*> &&
                                     (std::is_pointer_v<Name> || std::is_null_pointer_v<Name>)>>
  [[deprecated(
      "the value is converted to std::int32_t; use Test(double, double) with the number of the "
      "parameter, Test(bool) for a truth value, or convert it yourself")]] bool
  Test(Number value, Name paramName) const {
    return Test(zq::AsInt32(value), static_cast<const char*>(paramName));
  }

  /// Compares two numbers, both converted to `std::int32_t`. The conversion may change one of them; the
  /// compiler warns and names alternatives.
  template <class Left, class Right, class = std::enable_if_t<zq::comparesAsInt32<Left, Right>>, class = void>
  [[deprecated(
      "the numbers are converted to std::int32_t; use Test(double, double), or convert them "
      "yourself")]] bool
  Test(Left left, Right right) const {
    return Test(zq::AsInt32(left), zq::AsInt32(right));
  }

  /// Tests the value converted to bool: true unless it is zero or null. The compiler warns and names
  /// alternatives.
  template <class Value, class = std::enable_if_t<!std::is_same_v<Value, bool> &&
                                                  (std::is_arithmetic_v<Value> || std::is_pointer_v<Value>)>>
  [[deprecated(
      "the value is converted to bool; use Test(value, nullptr) to compare it with the first "
      "parameter")]] bool
  Test(Value value) const {
    return Test(static_cast<bool>(value));
  }

 protected:
  /// Constructs the base of an implementation. Only implementations construct, copy and assign: a copy
  /// through the interface would be empty. Use the copy constructor of the class instead.
  ICondMessage() = default;
  ICondMessage(const ICondMessage&) = default;             ///< for implementations only
  ICondMessage& operator=(const ICondMessage&) = default;  ///< for implementations only
};
