#pragma once

#include <tavrin_driver/DriverParam.h>
#include <ostream>
#include <string>

// Parts of the printed form that every message writes for logs. It resembles JSON, but nothing is escaped and
// some separators are in unusual positions. Programs that read the logs depend on both.
namespace tavrin {

inline constexpr char separator[] = ", ";

struct Key {
  const char* name;
};

inline std::ostream& operator<<(std::ostream& os, Key key) { return os << '"' << key.name << "\": "; }

inline const char* TrueOrFalse(bool value) { return value ? "true" : "false"; }

}  // namespace tavrin
