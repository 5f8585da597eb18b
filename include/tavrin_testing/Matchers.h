/// @file
/// Matchers for messages and findings, for EXPECT_THAT.
///
/// @code
/// EXPECT_THAT(command, IsCommand("SET_POINT", HasParam("CELSIUS", 21.5)));
/// EXPECT_THAT(sent.messages(), ElementsAre(IsNotification("SET_POINT_CHANGED", HasData(21.5))));
/// EXPECT_THAT(sent.messages(), ElementsAre(EqualTo(Answer("SET_POINT", 20))));
/// EXPECT_THAT(validator, HasFinding("properties", 2));
/// @endcode
///
/// They accept a message as its interface or its class, by reference, pointer or smart pointer; a null
/// pointer matches nothing. A string argument may be a matcher of GoogleTest, such as HasSubstr("LEVEL"). A
/// value may be a number, which is compared as its text: 21.5 is "21.5" and not "21.50". No variable is read.
#pragma once

#include <gmock/gmock.h>

#include <tavrin_driver/ProjectValidator.h>
#include <tavrin_testing/MessageView.h>
#include <tavrin_testing/Printers.h>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <ostream>
#include <sstream>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

namespace tavrin_testing {

/// @cond INTERNAL
namespace details {

using Text = testing::Matcher<std::string>;

template <class T>
Text TextMatcher(const T& expected) {
  if constexpr (std::is_arithmetic_v<T>)
    return zq::ToText(expected);
  else
    return expected;
}

template <class T>
std::string DescriptionOf(const testing::Matcher<T>& matcher) {
  std::ostringstream description;
  matcher.DescribeTo(&description);
  return description.str();
}

// Returns what is compared: the fields of a message, or the value itself.
template <class T>
auto Compared(const T& value) {
  if constexpr (isMessage<T>)
    return ViewOf(value);
  else
    return value;
}

template <class T, class = void>
struct IsPointer : std::false_type {};
template <class T>
struct IsPointer<
    T, std::void_t<decltype(*std::declval<const T&>()), decltype(std::declval<const T&>() == nullptr)>>
    : std::true_type {};

// Calls `match` with the comparable form of a value or of the target of a pointer.
template <class T, class Match>
bool Dereferenced(const T& value, testing::MatchResultListener* listener, const Match& match) {
  if constexpr (IsPointer<T>::value) {
    if (value == nullptr) {
      *listener << "which is null";
      return false;
    }
    const auto target = Compared(*value);
    testing::StringMatchResultListener inner;
    const bool matches = match(target, &inner);
    if (std::is_pointer_v<T>) *listener << "which points to " << testing::PrintToString(target);
    if (!inner.str().empty()) *listener << (std::is_pointer_v<T> ? ", " : "") << inner.str();
    return matches;
  } else {
    return match(Compared(value), listener);
  }
}

// A condition on a message.
struct OnMessage {
  std::string description;
  std::string negation;
  std::function<bool(const MessageView&, testing::MatchResultListener*)> check;

  void DescribeTo(std::ostream* os) const { *os << description; }
  void DescribeNegationTo(std::ostream* os) const { *os << negation; }

  template <class T>
  bool MatchAndExplain(const T& value, testing::MatchResultListener* listener) const {
    return Dereferenced(value, listener, check);
  }
};

using MessageMatcher = testing::PolymorphicMatcher<OnMessage>;

// A condition on one text of a message, which `what` names, with `article` before it.
inline MessageMatcher OnText(const std::string& article, const std::string& what, const Text& expected,
                             std::string (*textOf)(const MessageView&)) {
  const auto check = [what, expected, textOf](const MessageView& view,
                                              testing::MatchResultListener* listener) {
    const std::string text = textOf(view);
    if (expected.Matches(text)) return true;
    *listener << "whose " << what << " is " << Quoted(text);
    return false;
  };
  const std::string description = "has " + article + what + " that ";
  std::ostringstream negation;
  expected.DescribeNegationTo(&negation);
  return testing::MakePolymorphicMatcher(
      OnMessage{description + DescriptionOf(expected), description + negation.str(), check});
}

// A message of one kind with a name, which meets all of some conditions.
template <class... Conditions>
MessageMatcher OnNamed(const std::string& kind, std::string (*nameOf)(const MessageView&), const Text& name,
                       const Conditions&... conditions) {
  const std::vector<testing::Matcher<const MessageView&>> all = {
      testing::SafeMatcherCast<const MessageView&>(conditions)...};
  const auto check = [kind, nameOf, name, all](const MessageView& view,
                                               testing::MatchResultListener* listener) {
    const std::string actual = nameOf(view);
    if (actual.empty()) {
      *listener << "which is no " << kind;
      return false;
    }
    if (!name.Matches(actual)) {
      *listener << "whose name is " << Quoted(actual);
      return false;
    }
    for (const auto& condition : all) {
      testing::StringMatchResultListener inner;
      if (condition.MatchAndExplain(view, &inner)) continue;
      *listener << inner.str();
      return false;
    }
    return true;
  };
  std::string description = "a " + kind + " whose name " + DescriptionOf(name);
  for (const auto& condition : all) description += " and " + DescriptionOf(condition);
  return testing::MakePolymorphicMatcher(OnMessage{"is " + description, "is not " + description, check});
}

// Equality that lists the differences.
template <class Expected>
struct EqualToValue {
  Expected expected;

  void DescribeTo(std::ostream* os) const { *os << "is equal to " << testing::PrintToString(expected); }
  void DescribeNegationTo(std::ostream* os) const {
    *os << "is not equal to " << testing::PrintToString(expected);
  }

  template <class T>
  bool MatchAndExplain(const T& value, testing::MatchResultListener* listener) const {
    return Dereferenced(value, listener,
                        [this](const auto& actual, testing::MatchResultListener* explanation) {
                          const std::vector<Difference> differences = Differences(actual, expected);
                          const char* separator = "where ";
                          for (const Difference& difference : differences) {
                            *explanation << separator << difference.what << " is " << difference.actual
                                         << " instead of " << difference.expected;
                            separator = ", ";
                          }
                          return differences.empty();
                        });
  }
};

}  // namespace details
/// @endcond

/// Matches a message that has a parameter of that name.
inline auto HasParam(const std::string& name) {
  const auto check = [name](const details::MessageView& view, testing::MatchResultListener* listener) {
    const auto found = view.params.find(name);
    if (found != view.params.end())
      *listener << "which has the parameter " << details::Describe(found->second);
    else
      *listener << "which has no parameter " << details::Quoted(name);
    return found != view.params.end();
  };
  return testing::MakePolymorphicMatcher(details::OnMessage{
      "has a parameter " + details::Quoted(name), "has no parameter " + details::Quoted(name), check});
}

/// Matches a message that has a static parameter of that name and value.
template <class ValueMatcher>
auto HasParam(const std::string& name, const ValueMatcher& value) {
  const details::Text expected = details::TextMatcher(value);
  const auto check = [name, expected](const details::MessageView& view,
                                      testing::MatchResultListener* listener) {
    const auto found = view.params.find(name);
    if (found == view.params.end()) {
      *listener << "which has no parameter " << details::Quoted(name);
      return false;
    }
    if (!found->second.bVar && expected.Matches(found->second.value)) return true;
    *listener << "whose parameter " << details::Quoted(name) << " is "
              << details::DescribeValue(found->second);
    return false;
  };
  const std::string description =
      "a parameter " + details::Quoted(name) + " that " + details::DescriptionOf(expected);
  return testing::MakePolymorphicMatcher(
      details::OnMessage{"has " + description, "does not have " + description, check});
}

/// Matches a message whose parameter of that name is this variable of this device.
inline auto HasVariable(const std::string& name, std::uint32_t device, std::uint32_t variable) {
  const auto check = [=](const details::MessageView& view, testing::MatchResultListener* listener) {
    const auto found = view.params.find(name);
    if (found == view.params.end()) {
      *listener << "which has no parameter " << details::Quoted(name);
      return false;
    }
    const DriverParam& param = found->second;
    if (param.bVar && param.idDevice == device && param.idVariable == variable) return true;
    *listener << "whose parameter " << details::Quoted(name) << " is " << details::DescribeValue(param);
    return false;
  };
  const std::string description = "a parameter " + details::Quoted(name) + " that is variable " +
                                  std::to_string(variable) + " of device " + std::to_string(device);
  return testing::MakePolymorphicMatcher(
      details::OnMessage{"has " + description, "does not have " + description, check});
}

/// Matches a message without parameters.
inline auto HasNoParams() {
  const auto check = [](const details::MessageView& view, testing::MatchResultListener* listener) {
    if (!view.params.empty()) *listener << "which has the parameters" << details::Describe(view.params);
    return view.params.empty();
  };
  return testing::MakePolymorphicMatcher(details::OnMessage{"has no parameters", "has parameters", check});
}

/// Matches a binding message with that data.
template <class ValueMatcher>
auto HasData(const ValueMatcher& data) {
  return details::OnText("", "data", details::TextMatcher(data),
                         [](const details::MessageView& view) { return view.data; });
}

/// Matches a binding message with that path.
inline auto HasPath(const testing::Matcher<std::string>& path) {
  return details::OnText("a ", "path", path, [](const details::MessageView& view) { return view.path; });
}

/// Matches a conditional with that comparison.
inline auto HasComparison(const testing::Matcher<std::string>& comparison) {
  return details::OnText("a ", "comparison", comparison,
                         [](const details::MessageView& view) { return view.comparison; });
}

/// Matches a binding message that answers a query.
inline auto AnswersAQuery() {
  const auto check = [](const details::MessageView& view, testing::MatchResultListener* listener) {
    if (!view.answersQuery) *listener << "which answers no query";
    return view.answersQuery;
  };
  return testing::MakePolymorphicMatcher(details::OnMessage{"answers a query", "answers no query", check});
}

/// Matches a command message, or a binding message that is a command, with that name. It must also match all
/// @p conditions.
template <class... Conditions>
auto IsCommand(const testing::Matcher<std::string>& name, const Conditions&... conditions) {
  return details::OnNamed(
      "command", [](const details::MessageView& view) { return view.command; }, name, conditions...);
}

/// Matches a notification with that name. It must also match all @p conditions.
template <class... Conditions>
auto IsNotification(const testing::Matcher<std::string>& name, const Conditions&... conditions) {
  return details::OnNamed(
      "notification", [](const details::MessageView& view) { return view.notification; }, name,
      conditions...);
}

/// Matches a conditional with that name. It must also match all @p conditions.
template <class... Conditions>
auto IsConditional(const testing::Matcher<std::string>& name, const Conditions&... conditions) {
  return details::OnNamed(
      "conditional", [](const details::MessageView& view) { return view.conditional; }, name, conditions...);
}

/// Matches a value that equals a message, parameter, map of parameters, colour or discovery record, and lists
/// the differences. It keeps a copy of @p expected. Messages are equal if all fields that their interfaces
/// expose are equal.
template <class Expected>
auto EqualTo(const Expected& expected) {
  return testing::MakePolymorphicMatcher(
      details::EqualToValue<decltype(details::Compared(expected))>{details::Compared(expected)});
}

/// A finding about a document.
struct FindingView {
  std::string rule;        ///< the id of its rule, "" for none
  std::string text;        ///< its message
  std::uint32_t line = 0;  ///< its line in the document, 0 for none
};

/// Writes line, text and rule of a finding.
inline void PrintTo(const FindingView& finding, std::ostream* os) {
  *os << "line " << finding.line << ": " << finding.text;
  if (!finding.rule.empty()) *os << " [" << finding.rule << ']';
}

/// Returns the findings of a project that was checked.
inline std::vector<FindingView> FindingsOf(const zq::ProjectValidator& validator) {
  std::vector<FindingView> findings;
  for (std::size_t i = 0; i < validator.messages().size(); ++i)
    findings.push_back({"", validator.messages()[i], validator.places()[i].line});
  return findings;
}

/// @cond INTERNAL
namespace details {

struct OnFindings {
  std::string ruleOrText;
  std::optional<std::uint32_t> line;

  std::string Description() const {
    return "finding " + Quoted(ruleOrText) + (line ? " in line " + std::to_string(*line) : "");
  }
  void DescribeTo(std::ostream* os) const { *os << "has a " << Description(); }
  void DescribeNegationTo(std::ostream* os) const { *os << "has no " << Description(); }

  template <class T>
  bool MatchAndExplain(const T& checked, testing::MatchResultListener* listener) const {
    std::string elsewhere;
    for (const FindingView& finding : FindingsOf(checked)) {
      if (finding.rule != ruleOrText && finding.text.find(ruleOrText) == std::string::npos) continue;
      if (!line || finding.line == *line) return true;
      elsewhere += (elsewhere.empty() ? "" : ", ") + std::to_string(finding.line);
    }
    if (elsewhere.empty())
      *listener << "which has no such finding";
    else
      *listener << "which has such a finding in line " << elsewhere;
    return false;
  }
};

}  // namespace details
/// @endcond

/// Matches a checked document that has a finding whose rule has this id or whose message contains this text.
inline auto HasFinding(const std::string& ruleOrText) {
  return testing::MakePolymorphicMatcher(details::OnFindings{ruleOrText, {}});
}

/// Matches a checked document that has such a finding, whose position is in that line.
inline auto HasFinding(const std::string& ruleOrText, std::uint32_t line) {
  return testing::MakePolymorphicMatcher(details::OnFindings{ruleOrText, line});
}

}  // namespace tavrin_testing
