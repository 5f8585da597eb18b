/// @file
/// Functions that print messages, parameters, colours, discovery records and findings of failing tests.
///
/// GoogleTest finds these functions automatically if the header is included. Secrets are not masked.
///
///     command "SET_POINT" {CELSIUS = "21.5" (number), LEVEL = variable 1001 of device 7 (number)}
///     notification "LEVEL_CHANGED", data "75", path "house/hall" {SOURCE = "dimmer" (string)}
///     conditional "TEMPERATURE" LESS_THAN {CELSIUS = "21.5" (number)}
#pragma once

#include <boost/smart_ptr/shared_ptr.hpp>

#include <tavrin_driver/BindMessage.h>
#include <tavrin_driver/CmdMessage.h>
#include <tavrin_driver/CondMessage.h>
#include <tavrin_driver/DriverParam.h>
#include <tavrin_driver/ProjectValidator.h>
#include <tavrin_driver/ZqColor.h>
#include <tavrin_driver/discovery_info.h>
#include <tavrin_testing/MessageView.h>
#include <cstddef>
#include <ostream>
#include <type_traits>

/// Writes a command as one line.
inline std::ostream& operator<<(std::ostream& os, const ICmdMessage& message) {
  return os << tavrin_testing::details::ViewOf(message);
}

/// Writes a binding message as one line.
inline std::ostream& operator<<(std::ostream& os, const IBindMessage& message) {
  return os << tavrin_testing::details::ViewOf(message);
}

/// Writes a conditional as one line.
inline std::ostream& operator<<(std::ostream& os, const ICondMessage& message) {
  return os << tavrin_testing::details::ViewOf(message);
}

/// Writes the message that a pointer refers to in brackets, or "null".
template <class Message, class = std::enable_if_t<tavrin_testing::details::isMessage<Message>>>
void PrintTo(const boost::shared_ptr<Message>& message, std::ostream* os) {
  if (message)
    *os << '[' << *message << ']';
  else
    *os << "null";
}

/// Writes a parameter: `CELSIUS = "21.5" (number)`.
inline void PrintTo(const DriverParam& param, std::ostream* os) {
  *os << tavrin_testing::details::Describe(param);
}

/// Writes a colour: `x 0.3127, y 0.329, mode XY`, with as many digits as distinguish it from other colours.
inline void PrintTo(const ZqColor& color, std::ostream* os) {
  *os << tavrin_testing::details::Describe(color);
}

namespace zq {

/// Writes the protocol and the fields that are present: `device found by UPnP {ip "10.0.0.7"}`.
inline void PrintTo(const discovery_info& device, std::ostream* os) {
  *os << tavrin_testing::details::Describe(device);
}

/// Writes the messages with their positions, one a line.
inline void PrintTo(const ProjectValidator& validator, std::ostream* os) {
  *os << "a project with " << validator.messages().size() << " findings";
  for (std::size_t i = 0; i < validator.messages().size(); ++i)
    *os << "\n    line " << validator.places()[i].line << ": " << validator.messages()[i];
}

/// Writes "line 3, column 5".
inline void PrintTo(const XmlPosition& position, std::ostream* os) {
  *os << "line " << position.line << ", column " << position.column;
}

}  // namespace zq
