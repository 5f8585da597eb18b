#include "HouseWriter.h"

#include <fmt/format.h>

#include <algorithm>
#include <iterator>
#include <limits>
#include <string_view>

namespace {

constexpr std::uint32_t ids = 200000;
constexpr std::size_t bytesPerItem = 425;  // slightly more than the average

// A kind of item, and the number of items of the next kind that it contains.
struct Kind {
  std::string_view tag;
  std::string_view name;
  std::uint32_t type;
  std::uint32_t children;
};

constexpr Kind kinds[] = {
    {R"(item majorversion="3" minorversion="2" buildnumber="1" buildrevision="17")", "System", 1, 1},
    {"item", "Site", 2, std::numeric_limits<std::uint32_t>::max()},
    {"item", "Building", 3, 4},
    {"item", "Floor", 4, 10},
    {"item", "Room", 8, 20},
};

struct Driver {
  std::string_view name;
  std::string_view file;
  std::string_view state;
};

constexpr Driver drivers[] = {
    {"Dimmer", "dimmer.zqi", "<level>35</level><ramp_rate>250</ramp_rate>"},
    {"Switch", "switch.zqi", "<on>false</on>"},
    {"Thermostat", "Thermostat.ZQZ", "<setpoint unit=\"C\">21.5</setpoint><mode>heat</mode>"},
    {"Blind", "blind.zqz", "<position>100</position>"},
    {"Colour lamp", "lamp_colour.zqi", "<level>80</level><color>0.3127,0.329,0</color>"},
};
constexpr std::uint32_t deviceType = 7;

class HouseWriter {
 public:
  explicit HouseWriter(std::uint32_t items) : left_(items) {
    text_.reserve(std::size_t{items} * bytesPerItem + 1000);
  }

  std::string Write() {
    const std::uint32_t largestId = std::min(left_, ids);
    Line(0, R"(<?xml version="1.0" encoding="UTF-8"?>)");
    Line(0, "<currentstate>");
    Line(1, fmt::format("<properties><iditemcurrent>{}</iditemcurrent></properties>", largestId));
    Line(1, "<systemitems>");
    Place(0);
    Line(1, "</systemitems>");
    for (const char* section :
         {"bindings", "networkbindings", "event_mgr", "variables", "scan_schedule", "plugins"})
      Line(1, fmt::format("<{}/>", section));
    Line(0, "</currentstate>");
    return std::move(text_);
  }

 private:
  void Line(std::size_t depth, std::string_view line) {
    text_.append(2 * depth, ' ').append(line).append(1, '\n');
  }

  // Writes an item of the kind of that level with its items of the next one.
  void Place(std::size_t level) {
    const std::size_t depth = 2 + 2 * level;
    if (level == std::size(kinds)) return Device(depth);
    const Kind& kind = kinds[level];
    BeginItem(depth, kind.tag, kind.name, kind.type);
    Line(depth + 1, "<itemdata/>");
    Line(depth + 1, "<subitems>");
    for (std::uint32_t child = 0; child < kind.children && left_ > 0; ++child) Place(level + 1);
    Line(depth + 1, "</subitems>");
    Line(depth, "</item>");
  }

  void Device(std::size_t depth) {
    const Driver& driver = drivers[written_ % std::size(drivers)];
    BeginItem(depth, "item", driver.name, deviceType);
    Line(depth + 1,
         fmt::format("<itemdata><icon>{}.png</icon><hidden>false</hidden></itemdata>", driver.file));
    Line(depth + 1, fmt::format("<state>{}</state>", driver.state));
    Line(depth + 1, fmt::format("<zqi>{}</zqi>", driver.file));
    Line(depth, "</item>");
  }

  void BeginItem(std::size_t depth, std::string_view tag, std::string_view name, std::uint32_t type) {
    const std::uint32_t id = written_ % ids + 1;
    ++written_;
    --left_;
    Line(depth, fmt::format("<{}>", tag));
    Line(depth + 1, fmt::format("<id>{}</id>", id));
    Line(depth + 1, fmt::format("<name>{} {}</name>", name, id));
    Line(depth + 1, fmt::format("<type>{}</type>", type));
  }

  std::string text_;
  std::uint32_t left_;
  std::uint32_t written_ = 0;
};

}  // namespace

std::string HouseOf(std::uint32_t items) { return HouseWriter(std::max(items, 1U)).Write(); }
