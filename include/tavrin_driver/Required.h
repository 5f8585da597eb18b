/// @file
/// Typed, strict reads of parameters, with exceptions that name the error.
///
/// The operations of the messages convert leniently, and the exceptions of commands do not name the
/// parameter. These functions read a command, a binding message or a conditional strictly: they reject a
/// value that the driver does not allow. what() of their exceptions names the message, the parameter, the
/// value and the allowed values. It masks the values of parameters for which zq::isSecretParameter() returns
/// true.
///
/// @code
/// const double celsius = zq::RequireDouble(command, "CELSIUS", {5, 30});
/// const Mode mode = zq::RequireEnum<Mode>(command, "MODE", {{"HEAT", Mode::heat}, {"OFF", Mode::off}});
/// const double seconds = zq::OptionalDouble(command, "RAMP_SECONDS", 0, {0, 60});
/// @endcode
///
/// A command with CELSIUS "many" throws
///
///     command "SET_POINT": parameter "CELSIUS" is "many", expected a number from 5 to 30
///
/// - A whole number consists of an optional sign and decimal digits. A number may also have a fraction and an
/// exponent.
/// - **The decimal separator is a point or a comma**, in all functions: "21.5" and "21,5" are 21.5.
/// - Digits are not grouped: "1,234" is 1.234, and "1,234.5" is rejected.
/// - A truth value is "true", "false" (case-insensitive), "1" or "0". All kinds of messages read these forms
///   the same way.
/// - White space around a value is ignored, except in RequireText() and OptionalText().
/// - No value is read differently in another locale.
///
/// All functions throw RequiredParameterMissing when a parameter is absent or its variable cannot be read,
/// and RequiredParameterInvalid when its value is not allowed. The `Optional` forms return the default when
/// the parameter is absent, and only then: an empty or malformed value throws. A variable parameter of a
/// command is read from the variable manager, once. Only commands can do that: the variable parameter of a
/// binding message or conditional cannot be read.
///
/// The functions are inline and not part of the binary interface. They are reentrant, and are as thread-safe
/// as the operations of the message.
#pragma once

#include <tavrin_driver/DriverParam.h>
#include <tavrin_driver/IBindMessage.h>
#include <tavrin_driver/ICmdMessage.h>
#include <tavrin_driver/ICondMessage.h>
#include <tavrin_driver/Numbers.h>
#include <tavrin_driver/ParameterExceptions.h>
#include <tavrin_platform/Conversions.h>
#include <tavrin_platform/Export.h>
#include <tavrin_platform/TextConstants.h>
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <locale>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace zq {

/// Thrown if a parameter is absent or its variable cannot be read; what() names message and parameter.
class TAVRIN_EXPORT RequiredParameterMissing : public ExceptionParameterMissing {
 public:
  /// Constructs an exception. what() returns @p text.
  explicit RequiredParameterMissing(const std::string& text) : ExceptionParameterMissing(text) {}
};

/// Thrown if a value is not allowed; what() names message, parameter (or the data), value and the allowed
/// values.
class TAVRIN_EXPORT RequiredParameterInvalid : public ExceptionParameterInvalid {
 public:
  /// Constructs an exception. what() returns @p text.
  explicit RequiredParameterInvalid(const std::string& text) : ExceptionParameterInvalid(text) {}
};

/// The allowed numbers, both bounds included; by default all numbers of the type.
template <class Number>
struct Range {
  Number min = std::numeric_limits<Number>::lowest();  ///< the smallest allowed number
  Number max = std::numeric_limits<Number>::max();     ///< the greatest allowed number
};

/// How words are compared.
enum class Case : std::int32_t {
  exact,    ///< byte by byte
  ignored,  ///< case-insensitive for the letters A to Z
};

/// A non-owning reference to a message of any kind: the argument of the functions in this header.
class ReadableMessage {
 public:
  /// Refers to a command.
  ReadableMessage(const ICmdMessage& command) : command_(&command), params_(command.GetParamMap()) {}

  /// Refers to a binding message.
  ReadableMessage(const IBindMessage& binding) : binding_(&binding), params_(binding.GetParamMap()) {}

  /// Refers to a conditional.
  ReadableMessage(const ICondMessage& conditional)
      : conditional_(&conditional), params_(conditional.getParamMap()) {}

  /// Returns whether the message has the parameter, whatever its value.
  bool has(const std::string& name) const {
    return command_ != nullptr   ? command_->hasParam(name)
           : binding_ != nullptr ? binding_->hasParam(name)
                                 : conditional_->hasParam(name);
  }

  /// Returns the value of a parameter, which must be present; std::nullopt when its variable cannot be read.
  std::optional<std::string> read(const std::string& name) const {
    if (command_ == nullptr && variable(name) != nullptr) return {};
    try {
      return command_ != nullptr   ? command_->getParamRequired(name)
             : binding_ != nullptr ? binding_->getParam(name)
                                   : conditional_->getParam(name);
    } catch (const ExceptionParameterMissing&) {
      return {};
    }
  }

  /// Returns the record of a variable parameter, null when the parameter is static or absent.
  const DriverParam* variable(const std::string& name) const {
    const auto found = params_.find(name);
    return found != params_.end() && found->second.bVar ? &found->second : nullptr;
  }

  /// Returns kind and name of the message for error messages: `command "SET_POINT"`.
  std::string title() const;

 private:
  const ICmdMessage* command_ = nullptr;
  const IBindMessage* binding_ = nullptr;
  const ICondMessage* conditional_ = nullptr;
  const std::map<std::string, DriverParam>& params_;
};

/// @cond INTERNAL
namespace required {

// Returns an untrusted string for a line of a log: quoted, truncated to 64 bytes, control characters escaped.
inline std::string Quoted(std::string_view text) {
  constexpr std::size_t limit = 64;
  constexpr std::string_view hex = "0123456789abcdef";
  std::size_t end = std::min(text.size(), limit);
  // Does not split a UTF-8 character.
  while (end < text.size() && end > limit - 4 && (static_cast<unsigned char>(text[end]) & 0xC0U) == 0x80U)
    --end;
  std::string quoted = "\"";
  for (const char character : text.substr(0, end)) {
    const auto byte = static_cast<unsigned char>(character);
    if (byte < 0x20 || byte == 0x7F)
      quoted.append("\\x").append(1, hex[byte / 16U]).append(1, hex[byte % 16U]);
    else
      quoted += character;
  }
  return quoted.append(end < text.size() ? "\"..." : "\"");
}

inline std::string_view Trimmed(std::string_view text) {
  const std::size_t begin = text.find_first_not_of(WHITESPACE);
  return begin == std::string_view::npos ? std::string_view()
                                         : text.substr(begin, text.find_last_not_of(WHITESPACE) + 1 - begin);
}

inline bool IsSame(std::string_view left, std::string_view right, Case letters) {
  const auto lower = [letters](char c) {
    return letters == Case::ignored && c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
  };
  return std::equal(left.begin(), left.end(), right.begin(), right.end(),
                    [&](char a, char b) { return lower(a) == lower(b); });
}

// Removes the leading decimal digits of a string and returns their number.
inline std::size_t TakeDigits(std::string_view& text) {
  const std::size_t count = std::min(text.find_first_not_of("0123456789"), text.size());
  text.remove_prefix(count);
  return count;
}

inline bool TakeOneOf(std::string_view& text, std::string_view characters) {
  if (text.empty() || characters.find(text.front()) == std::string_view::npos) return false;
  text.remove_prefix(1);
  return true;
}

inline std::optional<std::int32_t> ParseInt(std::string_view text) {
  const bool isNegative = !text.empty() && text.front() == '-';
  TakeOneOf(text, "+-");
  std::string_view rest = text;
  if (TakeDigits(rest) == 0 || !rest.empty()) return {};
  constexpr std::int64_t max = std::numeric_limits<std::int32_t>::max();
  std::int64_t value = 0;
  for (const char digit : text) {
    value = value * 10 + (digit - '0');
    if (value > max + 1) return {};
  }
  if (isNegative) value = -value;
  if (value > max) return {};
  return static_cast<std::int32_t>(value);
}

inline std::optional<double> ParseDouble(std::string_view text) {
  std::string_view rest = text;
  TakeOneOf(rest, "+-");
  std::size_t digits = TakeDigits(rest);
  if (TakeOneOf(rest, ".,")) digits += TakeDigits(rest);
  if (digits == 0) return {};
  if (TakeOneOf(rest, "eE")) {
    TakeOneOf(rest, "+-");
    if (TakeDigits(rest) == 0) return {};
  }
  if (!rest.empty()) return {};
  std::string number(text);
  std::replace(number.begin(), number.end(), ',', '.');
  const double value = ToDouble(number, std::locale::classic());
  constexpr double max = std::numeric_limits<double>::max();
  if (value <= -max || value >= max) return {};  // ToDouble clamps to these
  return value;
}

inline std::optional<bool> ParseBool(std::string_view text) {
  if (text == "1" || IsSame(text, "true", Case::ignored)) return true;
  if (text == "0" || IsSame(text, "false", Case::ignored)) return false;
  return {};
}

template <class Number>
std::string Describe(const char* what, const Range<Number>& range) {
  const bool hasMin = range.min > std::numeric_limits<Number>::lowest();
  const bool hasMax = range.max < std::numeric_limits<Number>::max();
  if (std::is_floating_point_v<Number> && !hasMin && !hasMax) return what;
  if (std::is_floating_point_v<Number> && !hasMax) return std::string(what) + " from " + ToText(range.min);
  if (std::is_floating_point_v<Number> && !hasMin) return std::string(what) + " up to " + ToText(range.max);
  return std::string(what) + " from " + ToText(range.min) + " to " + ToText(range.max);
}

// Returns words as a list: "A", "B" or "C".
template <class Words, class WordOf>
std::string List(const Words& words, WordOf wordOf, Case letters) {
  std::string list;
  std::size_t left = words.size();
  for (const auto& word : words) {
    if (!list.empty()) list += left == 1 ? " or " : ", ";
    list += Quoted(wordOf(word));
    --left;
  }
  return letters == Case::ignored ? list + " in upper or lower case" : list;
}

[[noreturn]] inline void ThrowMissing(const ReadableMessage& message, const std::string& name,
                                      const std::string& expected) {
  std::string text = message.title() + ": parameter " + Quoted(name);
  const DriverParam* const variable = message.variable(name);
  if (variable == nullptr)
    text += message.has(name) ? " cannot be read" : " is missing";
  else
    text += " cannot be read from variable " + ToText(variable->idVariable) + " of device " +
            ToText(variable->idDevice);
  throw RequiredParameterMissing(expected.empty() ? text : text + ", expected " + expected);
}

[[noreturn]] inline void ThrowInvalid(const std::string& title, const std::string& what,
                                      const std::string& shown, const std::string& expected) {
  throw RequiredParameterInvalid(title + ": " + what + " is " + shown + ", expected " + expected);
}

// Reads a parameter. `parse` returns an optional result of the trimmed value. `expected` returns a
// description of the allowed values; it is called only for an error message.
template <class Parse, class Expected>
auto Read(const ReadableMessage& message, const std::string& name, Parse parse, Expected expected) {
  const std::optional<std::string> text = message.has(name) ? message.read(name) : std::nullopt;
  if (!text) ThrowMissing(message, name, expected());
  const auto value = parse(Trimmed(*text));
  if (!value) {
    const std::string shown = isSecretParameter(name) ? "\"******\"" : Quoted(*text);
    ThrowInvalid(message.title(), "parameter " + Quoted(name), shown, expected());
  }
  return *value;
}

template <class Number>
std::optional<Number> Within(std::optional<Number> value, const Range<Number>& range) {
  return value && *value >= range.min && *value <= range.max ? value : std::nullopt;
}

}  // namespace required
/// @endcond

inline std::string ReadableMessage::title() const {
  if (command_ != nullptr) return "command " + required::Quoted(command_->getRawCommand());
  if (conditional_ != nullptr) return "conditional " + required::Quoted(conditional_->getName());
  if (binding_->getNotify().empty()) return "binding command " + required::Quoted(binding_->getCommand());
  return "notification " + required::Quoted(binding_->getNotify());
}

/// Returns the parameter's value unchanged; it may be empty.
/// @throws RequiredParameterMissing when the parameter is absent or its variable cannot be read
inline std::string RequireText(const ReadableMessage& message, const std::string& name) {
  const std::optional<std::string> text = message.has(name) ? message.read(name) : std::nullopt;
  if (!text) required::ThrowMissing(message, name, "");
  return *text;
}

/// Returns the parameter's value, a whole number of 32 bits within @p range.
/// @throws RequiredParameterMissing when the parameter is absent or its variable cannot be read
/// @throws RequiredParameterInvalid when the value is not such a number
inline std::int32_t RequireInt(const ReadableMessage& message, const std::string& name,
                               const Range<std::int32_t>& range = {}) {
  return required::Read(
      message, name, [&](std::string_view text) { return required::Within(required::ParseInt(text), range); },
      [&] { return required::Describe("a whole number", range); });
}

/// Returns the parameter's value, a number within @p range, with a decimal point or comma.
/// @throws RequiredParameterMissing when the parameter is absent or its variable cannot be read
/// @throws RequiredParameterInvalid when the value is not such a number
inline double RequireDouble(const ReadableMessage& message, const std::string& name,
                            const Range<double>& range = {}) {
  return required::Read(
      message, name,
      [&](std::string_view text) { return required::Within(required::ParseDouble(text), range); },
      [&] { return required::Describe("a number", range); });
}

/// Returns the parameter's value, a truth value.
/// @throws RequiredParameterMissing when the parameter is absent or its variable cannot be read
/// @throws RequiredParameterInvalid when the value is anything but "true", "false", "1" or "0"
inline bool RequireBool(const ReadableMessage& message, const std::string& name) {
  return required::Read(message, name, required::ParseBool, [] { return R"("true", "false", "1" or "0")"; });
}

/// Returns the meaning of the parameter's value, which must be one of the words in @p meanings:
///
/// @code
/// const Mode mode = zq::RequireEnum<Mode>(command, "MODE", {{"HEAT", Mode::heat}, {"OFF", Mode::off}});
/// @endcode
///
/// @param message the message to read
/// @param name the parameter
/// @param meanings the allowed words with their meanings
/// @param letters whether upper and lower case differ
/// @throws RequiredParameterMissing when the parameter is absent or its variable cannot be read
/// @throws RequiredParameterInvalid when the value is not one of the words
template <class Meaning>
Meaning RequireEnum(const ReadableMessage& message, const std::string& name,
                    const std::vector<std::pair<std::string, Meaning>>& meanings,
                    Case letters = Case::exact) {
  const auto parse = [&](std::string_view text) -> std::optional<Meaning> {
    const auto found = std::find_if(meanings.begin(), meanings.end(), [&](const auto& meaning) {
      return required::IsSame(meaning.first, text, letters);
    });
    if (found == meanings.end()) return {};
    return found->second;
  };
  const auto wordOf = [](const auto& meaning) { return meaning.first; };
  return required::Read(message, name, parse, [&] { return required::List(meanings, wordOf, letters); });
}

/// Returns the parameter's value, which must be one of @p words, in the spelling of that list.
/// @param message the message to read
/// @param name the parameter
/// @param words the allowed words
/// @param letters whether upper and lower case differ
/// @throws RequiredParameterMissing when the parameter is absent or its variable cannot be read
/// @throws RequiredParameterInvalid when the value is not one of the words
inline std::string RequireWord(const ReadableMessage& message, const std::string& name,
                               const std::vector<std::string>& words, Case letters = Case::exact) {
  std::vector<std::pair<std::string, std::string>> meanings;
  meanings.reserve(words.size());
  for (const std::string& word : words) meanings.emplace_back(word, word);
  return RequireEnum<std::string>(message, name, meanings, letters);
}

/// Returns what RequireText() returns, or @p absent for an absent parameter.
/// @throws RequiredParameterMissing when the parameter's variable cannot be read
inline std::string OptionalText(const ReadableMessage& message, const std::string& name,
                                const std::string& absent) {
  return message.has(name) ? RequireText(message, name) : absent;
}

/// Returns what RequireInt() returns, or @p absent for an absent parameter; @p absent may be out of range.
/// @throws RequiredParameterMissing when the parameter's variable cannot be read
/// @throws RequiredParameterInvalid as RequireInt() does
inline std::int32_t OptionalInt(const ReadableMessage& message, const std::string& name, std::int32_t absent,
                                const Range<std::int32_t>& range = {}) {
  return message.has(name) ? RequireInt(message, name, range) : absent;
}

/// Returns what RequireDouble() returns, or @p absent for an absent parameter; @p absent may be out of range.
/// @throws RequiredParameterMissing when the parameter's variable cannot be read
/// @throws RequiredParameterInvalid as RequireDouble() does
inline double OptionalDouble(const ReadableMessage& message, const std::string& name, double absent,
                             const Range<double>& range = {}) {
  return message.has(name) ? RequireDouble(message, name, range) : absent;
}

/// Returns what RequireBool() returns, or @p absent for an absent parameter.
/// @throws RequiredParameterMissing when the parameter's variable cannot be read
/// @throws RequiredParameterInvalid as RequireBool() does
inline bool OptionalBool(const ReadableMessage& message, const std::string& name, bool absent) {
  return message.has(name) ? RequireBool(message, name) : absent;
}

/// Returns what RequireEnum() returns, or @p absent for an absent parameter.
/// @throws RequiredParameterMissing when the parameter's variable cannot be read
/// @throws RequiredParameterInvalid as RequireEnum() does
template <class Meaning>
Meaning OptionalEnum(const ReadableMessage& message, const std::string& name, Meaning absent,
                     const std::vector<std::pair<std::string, Meaning>>& meanings,
                     Case letters = Case::exact) {
  return message.has(name) ? RequireEnum<Meaning>(message, name, meanings, letters) : absent;
}

/// Returns what RequireWord() returns, or @p absent for an absent parameter.
/// @throws RequiredParameterMissing when the parameter's variable cannot be read
/// @throws RequiredParameterInvalid as RequireWord() does
inline std::string OptionalWord(const ReadableMessage& message, const std::string& name,
                                const std::string& absent, const std::vector<std::string>& words,
                                Case letters = Case::exact) {
  return message.has(name) ? RequireWord(message, name, words, letters) : absent;
}

/// Returns the number in the data of a binding message, read as RequireDouble() reads a parameter.
/// @throws RequiredParameterMissing when the message has no data
/// @throws RequiredParameterInvalid when the data is not a number within @p range
inline double RequireDataDouble(const IBindMessage& message, const Range<double>& range = {}) {
  const std::string expected = required::Describe("a number", range);
  const std::string title = ReadableMessage(message).title();
  if (!message.hasData())
    throw RequiredParameterMissing(title + ": the data is missing, expected " + expected);
  const std::string data = message.getData();
  const std::optional<double> number =
      required::Within(required::ParseDouble(required::Trimmed(data)), range);
  if (!number) required::ThrowInvalid(title, "the data", required::Quoted(data), expected);
  return *number;
}

/// Returns what RequireDataDouble() returns, or @p absent for a message without data.
/// @throws RequiredParameterInvalid as RequireDataDouble() does
inline double OptionalDataDouble(const IBindMessage& message, double absent,
                                 const Range<double>& range = {}) {
  return message.hasData() ? RequireDataDouble(message, range) : absent;
}

}  // namespace zq
