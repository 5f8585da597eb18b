#include "JsonCommand.h"

#include <boost/algorithm/string/join.hpp>
#include <fmt/format.h>
#include <json/value.h>

#include <tavrin_diagnostics/PrintableText.h>
#include <tavrin_driver/DriverParam.h>
#include <cstdint>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

#include "JsonText.h"
#include "tavrin_driver/internal/JsonId.h"
#include "tavrin_driver/internal/Limits.h"
#include "tavrin_driver/internal/Names.h"

namespace tavrin::diagnostics {
namespace {

constexpr char idsHint[] = R"(write {"deviceid": ..., "variableid": ...})";

bool Has(const Json::Value& value, const Name& key) {
  return value.isObject() && value.isMember(std::string(key.View()));
}

const Json::Value& Member(const Json::Value& value, const Name& key) {
  return Has(value, key) ? value[std::string(key.View())] : Json::Value::nullSingleton();
}

bool AreEqual(const DriverParam& left, const DriverParam& right) {
  return left.name == right.name && left.type == right.type && left.value == right.value &&
         left.bVar == right.bVar && left.idDevice == right.idDevice && left.idVariable == right.idVariable;
}

class JsonCommand {
 public:
  explicit JsonCommand(Collector& collector) : collector_(collector) {}

  void Check() {
    Json::Value root = ParseJson(collector_);
    const TextRange trailing = TrailingText(collector_.Text(), RangeOf(root).end);
    if (trailing.end != 0) Ignore("trailing-text", trailing, "the text after the JSON value is ignored");
    CheckCommand(CommandIn(root));
  }

 private:
  void Warn(std::string_view rule, const TextRange& range, const std::string& text,
            const std::string& hint = {}) {
    collector_.Add(rule, {range.begin, range.end, text, hint});
  }

  void Ignore(std::string_view rule, const TextRange& range, const std::string& text,
              const std::string& hint = {}) {
    collector_.Add(rule, {range.begin, range.end, text, hint, true});
  }

  [[noreturn]] static void Refuse(std::string_view rule, const Json::Value& value, const std::string& text,
                                  const std::string& hint = {}) {
    const TextRange range = RangeOf(value);
    throw Refusal(rule, {range.begin, range.end, text, hint});
  }

  // Reports the members that a later one of the same key replaces. Returns where the keys are.
  JsonKeys CheckKeys(const Json::Value& object) {
    const std::string_view text = collector_.Text();
    std::set<std::size_t> used;
    for (const Json::Value& member : object) used.insert(RangeOf(member).begin);
    const JsonMembers members = MembersOf(text, object);
    if (members.stray.end != 0) {
      Warn("stray-token", members.stray, "a token after a comment is read as a comma");
      return JsonKeys(members);
    }
    for (const JsonMember& member : members.list) {
      if (used.count(member.value.begin) != 0) continue;
      Ignore("duplicate-key", {member.key.begin, member.value.end},
             fmt::format("key {} occurs again and is ignored here; the last one is used",
                         Quoted(KeyOf(text, member))));
    }
    return JsonKeys(members);
  }

  // Returns the wrapper's first value, by key.
  Json::Value& CommandIn(Json::Value& root) {
    const std::string wrapped = "wrap the command as in {\"devicecommand\": {...}}";
    const char* const part = root.isArray() ? "element" : "member";
    if (root.size() > limits::jsonWrapper) {
      Refuse("wrapper-size", root,
             fmt::format("the wrapper around the command has {} {}s, and more than {} are not accepted",
                         root.size(), part, limits::jsonWrapper),
             wrapped);
    }
    if (root.empty()) Refuse("wrapper-content", root, "the wrapper is empty", wrapped);
    Json::Value& command = *root.begin();
    if (!command.isObject()) {
      Refuse("wrapper-content", command,
             fmt::format("the wrapper's first {}{} is {}, not a command object", part,
                         root.isObject() ? fmt::format(" by key, {},", Quoted(root.begin().name())) : "",
                         KindOf(command)),
             wrapped);
    }
    CheckWrapper(root);
    return command;
  }

  void CheckWrapper(const Json::Value& root) {
    std::optional<JsonKeys> keys;
    if (root.isObject()) keys = CheckKeys(root);
    for (auto other = std::next(root.begin()); other != root.end(); ++other) {
      Ignore("wrapper-extra", keys ? keys->MemberOf(*other) : RangeOf(*other),
             keys ? fmt::format("member {} of the wrapper is ignored; the first one by key, {}, is used",
                                Quoted(other.name()), Quoted(root.begin().name()))
                  : fmt::format("element {} of the wrapper is ignored; the first one is used",
                                other.index() + 1));
    }
  }

  void CheckCommand(Json::Value& command) {
    const JsonKeys keys = CheckKeys(command);
    for (auto member = command.begin(); member != command.end(); ++member) {
      const std::string key = member.name();
      if (member->isArray() && key == names::params.View()) {
        CheckParams(*member);
      } else if (!member->isString()) {
        Refuse("member-type", *member,
               fmt::format("{} is {}; a command object contains strings and the array \"params\"",
                           Quoted(key), KindOf(*member)),
               SpellingHint(key, {"params", "command"}));
      } else if (key != names::command.View()) {
        Ignore("unknown-key", keys.MemberOf(*member),
               fmt::format("key {} of the command is ignored", Quoted(key)),
               SpellingHint(key, {"command", "params"}));
      }
    }
    if (!Has(command, names::command))
      Warn("no-name", {RangeOf(command).begin, RangeOf(command).begin + 1},
           "there is no \"command\": the command's name is empty");
  }

  void CheckParams(Json::Value& entries) {
    CheckInheritedSize(entries);
    DriverParam param;  // one for all entries, as in the loader
    for (Json::ArrayIndex index = 0; index < entries.size(); ++index) {
      Json::Value& entry = entries[index];
      if (!entry.isObject() && !entry.isNull())
        Refuse("entry-type", entry,
               fmt::format("an entry of \"params\" is {}, not an object", KindOf(entry)));
      CheckEntry(entry);
      CheckInherited(entry, param);
      const DriverParam before = ReplacedFields(param, entry);
      param.fromJson(entry);
      CheckName(entry, param, [&] {
        return index + 1 == entries.size() ||
               HasNoEffect(before, ReplacedFields(param, entry), entries[index + 1]);
      });
      CheckNul(entry, param);
    }
  }

  // Returns the fields of the record that the entry replaces. Copying all of them for each entry would take
  // quadratic time and memory.
  static DriverParam ReplacedFields(const DriverParam& param, const Json::Value& entry) {
    DriverParam replaced;
    replaced.bVar = param.bVar;
    replaced.idDevice = param.idDevice;
    replaced.idVariable = param.idVariable;
    if (Member(entry, names::name).isString()) replaced.name = param.name;
    if (Member(entry, names::type).isString()) replaced.type = param.type;
    if (Has(Member(entry, names::value), names::fixed)) replaced.value = param.value;
    return replaced;
  }

  // Refuses what the loader refuses for its size, before there is a warning for each entry that inherits.
  void CheckInheritedSize(Json::Value& entries) {
    const std::uint64_t most = limits::MaxInherited(collector_.Text().size());
    std::uint64_t inherited = 0;
    std::set<std::string> names;
    DriverParam param;
    for (Json::ArrayIndex index = 0; index < entries.size(); ++index) {
      Json::Value& entry = entries[index];
      if (!entry.isObject() && !entry.isNull()) return;
      const bool inheritsType = !Member(entry, names::type).isString();
      const bool inheritsValue = !Has(Member(entry, names::value), names::fixed);
      try {
        param.fromJson(entry);
      } catch (const Json::Exception&) {
        return;
      }
      const bool inheritsName = index != 0 && !Member(entry, names::name).isString();
      if (inheritsName || !names.insert(param.name).second) continue;
      inherited += (inheritsType ? param.type.size() : 0) + (inheritsValue ? param.value.size() : 0);
      if (inherited > most) {
        Refuse("inherited-size", entry,
               fmt::format(
                   "up to this entry the parameters inherit {} bytes from each other, and more than {} are "
                   "not accepted",
                   inherited, most),
               "give every entry its own type and value");
      }
    }
  }

  void CheckEntry(const Json::Value& entry) {
    if (!entry.isObject()) return;
    const JsonKeys keys = CheckKeys(entry);
    for (auto member = entry.begin(); member != entry.end(); ++member) {
      const std::string key = member.name();
      if (key == names::value.View()) {
        CheckValue(*member, keys.MemberOf(*member));
      } else if (key != names::name.View() && key != names::type.View()) {
        Ignore("unknown-key", keys.MemberOf(*member),
               fmt::format("key {} of a parameter is ignored", Quoted(key)),
               SpellingHint(key, {"name", "type", "value"}));
      } else if (!member->isString()) {
        Ignore("ignored-value", keys.MemberOf(*member),
               fmt::format("{} is {}, not a string, and is ignored", Quoted(key), KindOf(*member)));
      }
    }
  }

  void CheckValue(const Json::Value& value, const TextRange& whole) {
    if (!value.isObject()) {
      return Ignore("ignored-value", whole,
                    fmt::format(R"("value" is {}, not an object with "static" or "variable", and is ignored)",
                                KindOf(value)),
                    value.isString() ? R"(write {"static": ...})" : "");
    }
    const JsonKeys keys = CheckKeys(value);
    if (Has(value, names::fixed) && Has(value, names::variable)) {
      Warn("static-and-variable", RangeOf(value),
           R"("value" contains "static" and "variable"; the parameter is variable)",
           "write only one of them");
    }
    for (auto member = value.begin(); member != value.end(); ++member) {
      const std::string key = member.name();
      if (key == names::variable.View()) {
        CheckVariable(*member);
      } else if (key != names::fixed.View()) {
        Ignore("unknown-key", keys.MemberOf(*member),
               fmt::format("key {} of a value is ignored", Quoted(key)),
               SpellingHint(key, {"static", "variable"}));
      } else if (member->isArray() || member->isObject()) {
        Refuse("value-type", *member, fmt::format("\"static\" is {}, which is no text", KindOf(*member)));
      }
    }
  }

  void CheckVariable(const Json::Value& variable) {
    if (!variable.isObject()) {
      // JsonCpp iterates over arrays, too; their elements have no keys.
      return Warn("no-ids", RangeOf(variable),
                  fmt::format("\"variable\" is {}, not an object, and contains no ids", KindOf(variable)),
                  idsHint);
    }
    const JsonKeys keys = CheckKeys(variable);
    for (auto member = variable.begin(); member != variable.end(); ++member) {
      const std::string key = member.name();
      if (key == names::deviceid.View() || key == names::variableid.View()) {
        CheckId(key, *member);
      } else {
        Ignore("unknown-key", keys.MemberOf(*member),
               fmt::format("key {} of a variable is ignored", Quoted(key)),
               SpellingHint(key, {"deviceid", "variableid"}));
      }
    }
  }

  void CheckId(const std::string& key, const Json::Value& id) {
    constexpr char range[] = "ids are whole numbers from 0 to 4294967295";
    try {
      const std::uint32_t kept = IdOf(id);
      if (!id.isUInt())
        Warn("id-wraps", RangeOf(id),
             fmt::format("{} {} is read as {}", Quoted(key),
                         ErrorText(id.isNumeric() ? id.asString() : KindOf(id)), kept),
             range);
    } catch (const Json::Exception&) {
      Refuse("invalid-id", id,
             fmt::format("{} is {}; an id is an unsigned number", Quoted(key),
                         id.isNumeric() ? id.asString() : KindOf(id)),
             range);
    }
  }

  // All entries are read into one record.
  void CheckInherited(const Json::Value& entry, const DriverParam& before) {
    const Json::Value& value = Member(entry, names::value);
    const Json::Value& variable = Member(value, names::variable);
    const bool hasVariable = Has(value, names::variable);
    std::vector<std::string> inherited;
    const auto inherits = [&](bool condition, const std::string& what) {
      if (condition) inherited.push_back(what);
    };
    inherits(!Member(entry, names::name).isString() && !before.name.empty(), "name " + Quoted(before.name));
    inherits(!Member(entry, names::type).isString() && !before.type.empty(), "type " + Quoted(before.type));
    inherits(before.bVar && !hasVariable, fmt::format("variable {}:{}", before.idDevice, before.idVariable));
    const auto inheritsId = [&](const Name& id, std::uint32_t idBefore, const char* what) {
      if (!variable.isObject() || Has(variable, id)) return;
      if (idBefore == 0)
        Warn("missing-id", RangeOf(variable), fmt::format("\"variable\" has no \"{}\": it is 0", id.View()),
             idsHint);
      inherits(idBefore != 0, fmt::format("{} id {}", what, idBefore));
    };
    inheritsId(names::deviceid, before.idDevice, "device");
    inheritsId(names::variableid, before.idVariable, "variable");
    inherits(!before.bVar && !hasVariable && !Has(value, names::fixed) && !before.value.empty(), "value");
    if (inherited.empty()) {
      if (!Has(entry, names::value) || (value.isObject() && value.empty()))
        Warn("no-value", FirstByte(entry), "the entry has no value");
      return;
    }
    Warn(
        "inherited", FirstByte(entry),
        fmt::format("the entry inherits from the one before it: {}", boost::algorithm::join(inherited, ", ")),
        "give every entry its own name, type and value");
  }

  // Returns whether the next entry reads the same without an unused entry before it.
  static bool HasNoEffect(DriverParam without, DriverParam with, Json::Value& next) {
    try {
      without.fromJson(next);
      with.fromJson(next);
    } catch (const Json::Exception&) {
      return false;
    }
    return AreEqual(without, with);
  }

  template <typename HasNoEffect>
  void CheckName(const Json::Value& entry, const DriverParam& param, HasNoEffect hasNoEffect) {
    const std::size_t begin = RangeOf(entry).begin;
    bool isNew = false;
    if (names_.empty() || Member(entry, names::name).isString())
      std::tie(first_, isNew) = names_.try_emplace(param.name, collector_.Source().PositionAt(begin));
    if (isNew) {
      if (!Has(entry, names::name) && param.name.empty())
        Warn("unnamed-parameter", FirstByte(entry), "a parameter without \"name\" has an empty name");
      return;
    }
    const std::string where =
        fmt::format("the first one of that name, in line {}, is used", first_->second.line);
    if (hasNoEffect()) {
      return Ignore("duplicate-parameter", RangeOf(entry),
                    fmt::format("parameter {} is ignored here; {}", Quoted(param.name), where));
    }
    Warn("duplicate-parameter", RangeOf(entry),
         fmt::format("parameter {} occurs again; {}, and later entries inherit from this one",
                     Quoted(param.name), where));
  }

  void CheckNul(const Json::Value& entry, const DriverParam& param) {
    if (Has(Member(entry, names::value), names::fixed)) hasNul_ = param.value.find('\0') != std::string::npos;
    if (param.bVar || !hasNul_) return;
    Warn("truncated-value", FirstByte(entry),
         fmt::format("the value of parameter {} is read up to its first NUL byte", Quoted(param.name)));
  }

  static TextRange FirstByte(const Json::Value& value) {
    const std::size_t begin = RangeOf(value).begin;
    return {begin, begin + 1};
  }

  Collector& collector_;
  std::map<std::string, zq::XmlPosition> names_;
  std::map<std::string, zq::XmlPosition>::iterator first_;  // of the current name
  bool hasNul_ = false;                                     // in the current value
};

}  // namespace

void CheckJsonCommand(Collector& collector) { JsonCommand(collector).Check(); }

}  // namespace tavrin::diagnostics
