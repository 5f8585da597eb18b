#include <boost/optional/optional_io.hpp>  // for messages of failed assertions
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <tavrin_driver/discovery_info.h>
#include <map>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

namespace {

using zq::discovery_info;
using Fields = std::map<std::string, std::string>;

static_assert(std::has_virtual_destructor_v<discovery_info>);

const std::vector<std::pair<std::string, boost::optional<std::string> (discovery_info::*)() const>> getters =
    {
        {"uuid", &discovery_info::uuid},
        {"host", &discovery_info::host},
        {"ip", &discovery_info::ip},
        {"type", &discovery_info::type},
        {"driver", &discovery_info::driver},
        {"manufacturer", &discovery_info::manufacturer},
        {"model", &discovery_info::model},
        {"primary_proxy", &discovery_info::primary_proxy},
        {"proxies", &discovery_info::proxies},
        {"make", &discovery_info::make},
        {"sdk_class", &discovery_info::sdk_class},
        {"name", &discovery_info::name},
        {"description", &discovery_info::description},
        {"location", &discovery_info::location},
};

// Lists the fields that are present.
Fields FieldsOf(const discovery_info& record) {
  Fields fields;
  for (const auto& [name, getter] : getters)
    if (const auto text = (record.*getter)()) fields[name] = *text;
  return fields;
}

// "brel", "kimo", "upnp ssdp" or "".
std::string ProtocolOf(const discovery_info& record) {
  std::vector<std::string> names;
  if (record.is_brel()) names.emplace_back("brel");
  if (record.is_kimo()) names.emplace_back("kimo");
  if (record.is_upnp()) names.emplace_back("upnp");
  if (record.is_ssdp()) names.emplace_back("ssdp");
  std::string protocol;
  for (const std::string& name : names) protocol += (protocol.empty() ? "" : " ") + name;
  return protocol;
}

using Texts = std::vector<std::string>;

discovery_info Brel(const Texts& t) {
  return {t.at(0), t.at(1), t.at(2), t.at(3), t.at(4), t.at(5), t.at(6), t.at(7), t.at(8)};
}
discovery_info Upnp(const Texts& t) {
  return {t.at(0), t.at(1), t.at(2), t.at(3), t.at(4), t.at(5), t.at(6), t.at(7)};
}
discovery_info Kimo(const Texts& t) { return {t.at(0), t.at(1), t.at(2), t.at(3), t.at(4), t.at(5)}; }

// A constructor for a protocol, and the fields that its arguments are stored in.
struct Protocol {
  std::string name;
  discovery_info (*make)(const Texts&);
  Texts arguments;
};

const std::vector<Protocol> protocols = {
    {"brel",
     Brel,
     {"uuid", "host", "ip", "type", "driver", "manufacturer", "model", "primary_proxy", "proxies"}},
    {"upnp ssdp", Upnp, {"uuid", "ip", "type", "manufacturer", "model", "name", "description", "location"}},
    {"kimo", Kimo, {"uuid", "ip", "type", "make", "model", "sdk_class"}},
};

Texts TextsFor(const Protocol& protocol) {
  Texts texts;
  for (const std::string& argument : protocol.arguments) texts.push_back("the " + argument);
  return texts;
}

// --- operations that the record does not have ---

template <typename Use>
constexpr bool Compiles(Use /*use*/) {
  return std::is_invocable_v<Use, discovery_info&>;
}

#define TAVRIN_COMPILES(use) Compiles([](auto& record) -> decltype(static_cast<void>(use)) {})
#define TAVRIN_HAS_NO_SETTER(field)               \
  static_assert(TAVRIN_COMPILES(record.field())); \
  static_assert(!TAVRIN_COMPILES(record.field("text")) && !TAVRIN_COMPILES(record.set_##field("text")))

static_assert(TAVRIN_COMPILES(record == record));
static_assert(!TAVRIN_COMPILES(record != record));
static_assert(!TAVRIN_COMPILES(record.protocol()));
TAVRIN_HAS_NO_SETTER(uuid);
TAVRIN_HAS_NO_SETTER(host);
TAVRIN_HAS_NO_SETTER(ip);
TAVRIN_HAS_NO_SETTER(type);
TAVRIN_HAS_NO_SETTER(driver);
TAVRIN_HAS_NO_SETTER(manufacturer);
TAVRIN_HAS_NO_SETTER(model);
TAVRIN_HAS_NO_SETTER(primary_proxy);
TAVRIN_HAS_NO_SETTER(proxies);
TAVRIN_HAS_NO_SETTER(make);
TAVRIN_HAS_NO_SETTER(sdk_class);
TAVRIN_HAS_NO_SETTER(name);
TAVRIN_HAS_NO_SETTER(description);
TAVRIN_HAS_NO_SETTER(location);

TEST(discovery_info, IsEmptyAtFirst) {
  EXPECT_EQ(FieldsOf(discovery_info()), Fields());
  EXPECT_EQ(ProtocolOf(discovery_info()), "");
}

TEST(discovery_info, ContainsTheFieldsOfItsProtocol) {
  for (const Protocol& protocol : protocols) {
    Fields expected;
    for (const std::string& argument : protocol.arguments) expected[argument] = "the " + argument;
    const discovery_info record = protocol.make(TextsFor(protocol));
    EXPECT_EQ(FieldsOf(record), expected);
    EXPECT_EQ(ProtocolOf(record), protocol.name);
  }
}

TEST(discovery_info, LacksEveryFieldWhoseTextIsEmpty) {
  for (const Protocol& protocol : protocols) {
    for (std::size_t i = 0; i < protocol.arguments.size(); ++i) {
      Texts texts = TextsFor(protocol);
      Fields expected = FieldsOf(protocol.make(texts));
      texts[i].clear();
      expected.erase(protocol.arguments[i]);
      EXPECT_EQ(FieldsOf(protocol.make(texts)), expected) << protocol.name;
    }
  }
}

TEST(discovery_info, KeepsStringsVerbatim) {
  const std::string odd(" \t\0\xffUuid\n ", 10);
  EXPECT_EQ(Kimo({odd, "not an address", " ", "", "", ""}).uuid(), odd);
  EXPECT_EQ(Kimo({odd, "not an address", " ", "", "", ""}).ip(), std::string("not an address"));
  EXPECT_EQ(Kimo({odd, "not an address", " ", "", "", ""}).type(), std::string(" "));
}

TEST(discovery_info, EqualsItsCopies) {
  for (const Protocol& protocol : protocols) {
    const discovery_info record = protocol.make(TextsFor(protocol));
    const discovery_info copy = record;  // NOLINT(performance-unnecessary-copy-initialization): it is tested
    EXPECT_TRUE(copy == record) << protocol.name;
    EXPECT_EQ(FieldsOf(copy), FieldsOf(record));
    EXPECT_EQ(ProtocolOf(copy), protocol.name);
  }
}

TEST(discovery_info, TakesOverEveryFieldInAnAssignment) {
  std::vector<discovery_info> records = {discovery_info()};
  for (const Protocol& protocol : protocols) records.push_back(protocol.make(TextsFor(protocol)));
  for (const discovery_info& source : records) {
    for (const discovery_info& before : records) {
      discovery_info target = before;
      EXPECT_EQ(&(target = source), &target);
      EXPECT_TRUE(target == source);
      EXPECT_EQ(FieldsOf(target), FieldsOf(source));
      EXPECT_EQ(ProtocolOf(target), ProtocolOf(source));
    }
  }
}

TEST(discovery_info, SurvivesItsOwnAssignment) {
  discovery_info record = Kimo({"u", "i", "t", "mk", "md", "c"});
  const discovery_info& same = record;
  record = same;
  EXPECT_TRUE(record == Kimo({"u", "i", "t", "mk", "md", "c"}));
}

TEST(discovery_info, DiffersByAnyField) {
  for (const Protocol& protocol : protocols) {
    const discovery_info record = protocol.make(TextsFor(protocol));
    for (std::size_t i = 0; i < protocol.arguments.size(); ++i) {
      for (const std::string& other : {std::string(), std::string("other"), TextsFor(protocol)[i] + '\0'}) {
        Texts texts = TextsFor(protocol);
        texts[i] = other;
        EXPECT_FALSE(protocol.make(texts) == record) << protocol.name << ' ' << protocol.arguments[i];
        EXPECT_FALSE(record == protocol.make(texts)) << protocol.name << ' ' << protocol.arguments[i];
      }
    }
  }
}

TEST(discovery_info, DiffersByItsProtocol) {
  const std::vector<discovery_info> records = {discovery_info(), Brel(Texts(9)), Upnp(Texts(8)),
                                               Kimo(Texts(6))};
  for (const discovery_info& a : records) {
    EXPECT_EQ(FieldsOf(a), Fields());
    for (const discovery_info& b : records) EXPECT_EQ(a == b, &a == &b);
  }
}

TEST(discovery_info, IsDeletedThroughADerivedClass) {
  static bool deleted = false;
  struct Derived : discovery_info {
    ~Derived() override { deleted = true; }
  };
  const discovery_info* record = new Derived;
  delete record;
  EXPECT_TRUE(deleted);
}

}  // namespace
