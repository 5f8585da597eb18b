#pragma once

#include <string>
#include <string_view>

// The names of elements, attributes and JSON members that the library reads and writes.
namespace tavrin {

// A name that is a compile-time constant and also a std::string, as zq::XmlNode requires. Neither needs
// initialisation or destruction, so names can be used at any time and at no cost.
class Name {
 public:
  constexpr Name(std::string_view view, const std::string& string) : view_(view), string_(string) {}

  constexpr std::string_view View() const { return view_; }
  constexpr operator std::string_view() const { return view_; }
  operator const std::string&() const { return string_; }

 private:
  std::string_view view_;
  const std::string& string_;
};

inline bool operator==(std::string_view text, const Name& name) { return text == name.View(); }

// At most 15 characters each, which a std::string stores without allocating.
#define TAVRIN_NAMES(NAME)                                             \
  /* Messages */                                                       \
  NAME(devicecommand, "devicecommand")                                 \
  NAME(command, "command")                                             \
  NAME(notify, "notify")                                               \
  NAME(query, "query")                                                 \
  NAME(data, "data")                                                   \
  NAME(path, "path")                                                   \
  NAME(conditional, "conditional")                                     \
  NAME(params, "params")                                               \
  NAME(param, "param")                                                 \
  /* Parameters; messages and items have a name, items a type, too. */ \
  NAME(name, "name")                                                   \
  NAME(type, "type")                                                   \
  NAME(value, "value")                                                 \
  NAME(valuetype, "valuetype")                                         \
  NAME(fixed, "static")                                                \
  NAME(variable, "variable")                                           \
  NAME(deviceid, "deviceid")                                           \
  NAME(variableid, "variableid")                                       \
  /* Projects */                                                       \
  NAME(currentstate, "currentstate")                                   \
  NAME(properties, "properties")                                       \
  NAME(systemitems, "systemitems")                                     \
  NAME(bindings, "bindings")                                           \
  NAME(networkbindings, "networkbindings")                             \
  NAME(event_mgr, "event_mgr")                                         \
  NAME(variables, "variables")                                         \
  NAME(scan_schedule, "scan_schedule")                                 \
  NAME(plugins, "plugins")                                             \
  /* Items */                                                          \
  NAME(item, "item")                                                   \
  NAME(id, "id")                                                       \
  NAME(itemdata, "itemdata")                                           \
  NAME(state, "state")                                                 \
  NAME(zqi, "zqi")                                                     \
  NAME(devicedata, "devicedata")                                       \
  NAME(subitems, "subitems")                                           \
  /* The attributes of the system item */                              \
  NAME(majorversion, "majorversion")                                   \
  NAME(minorversion, "minorversion")                                   \
  NAME(buildnumber, "buildnumber")                                     \
  NAME(buildrevision, "buildrevision")

namespace names {

namespace strings {
#define TAVRIN_DECLARE_STRING(identifier, text) extern const std::string identifier;
TAVRIN_NAMES(TAVRIN_DECLARE_STRING)
#undef TAVRIN_DECLARE_STRING
}  // namespace strings

#define TAVRIN_DEFINE_NAME(identifier, text) inline constexpr Name identifier{text, strings::identifier};
TAVRIN_NAMES(TAVRIN_DEFINE_NAME)
#undef TAVRIN_DEFINE_NAME

}  // namespace names
}  // namespace tavrin
