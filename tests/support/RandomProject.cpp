#include "RandomProject.h"

#include <algorithm>

namespace {

constexpr std::uint32_t maxDepth = 5;

const std::vector<std::string> names = {
    "item",
    "id",
    "name",
    "type",
    "itemdata",
    "state",
    "zqi",
    "subitems",
    "devicedata",
    "room",
    "data",
    "sub",
    "e",
    "Item",
    "bindings",
    "systemitems",
    "variables",
    "scan_schedule",
    "plugins",
    "properties",
    "currentstate",
    "event_mgr",
    "foo",
    "xdata",
    "zqidevicedata",
    "networkbindings",
};

const std::vector<std::string> texts = {
    "0",           "1",
    "2",           "5",
    "7",           "9",
    "10",          "200000",
    "200001",      "-1",
    "4294967295",  "4294967296",
    "abc",         "",
    " 3 ",         "+4",
    "light.zqi",   "Light.ZQZ",
    "light.zqi.x", "Light.xml",
    "zqi",         "1 2",
    "-2147483648", "2147483648",
    "-2147483649", "\xC3\x84.Zqi",
};

const std::vector<std::string> attributeNames = {"majorversion", "minorversion", "buildnumber",
                                                 "buildrevision", "extra"};

const std::vector<std::string> versions = {"0",   "1",  "2",   "3",          "5", "6", "100",
                                           "101", "-1", "500", "2147483647", "x", "",  "-2147483648"};

void Collect(ProjectElement& element, std::vector<ProjectElement*>& all) {
  all.push_back(&element);
  for (ProjectElement& child : element.children) Collect(child, all);
}

ProjectElement Leaf(const std::string& name, const std::string& text = {}) { return {name, text, {}, {}}; }

}  // namespace

RandomProject::RandomProject(std::uint32_t seed) : engine_(seed) {
  ProjectElement system{
      "item",
      {},
      {{"majorversion", std::to_string(2 + Below(4))},
       {"minorversion", std::to_string(1 + Below(9))},
       {"buildnumber", std::to_string(Below(101))},
       {"buildrevision", std::to_string(Below(1000))}},
      {Leaf("id", "1"), Leaf("name", "system"), Leaf("type", "1"), Leaf("itemdata"), SubItems(0)}};
  root_ = {"currentstate",
           {},
           {},
           {Leaf("properties"),
            {"systemitems", {}, {}, {std::move(system)}},
            Leaf("bindings"),
            Leaf("networkbindings"),
            Leaf("event_mgr"),
            Leaf("variables")}};
  if (!OneIn(4)) root_.children.push_back(Leaf("scan_schedule"));
  root_.children.push_back(Leaf("plugins"));
}

ProjectElement RandomProject::SubItems(std::uint32_t depth) {
  ProjectElement subitems = Leaf("subitems");
  for (std::uint32_t count = Below(4); count > 0; --count) subitems.children.push_back(Item(depth + 1));
  return subitems;
}

ProjectElement RandomProject::Item(std::uint32_t depth) {
  ProjectElement item = Leaf("item");
  auto& children = item.children;
  children = {Leaf("id", std::to_string(++lastId_)), Leaf("name", "Hall"),
              Leaf("type", std::to_string(1 + Below(9)))};
  if (OneIn(2)) children.push_back(Leaf("itemdata"));
  if (OneIn(2)) children.push_back(Leaf("state"));
  switch (Below(3)) {
    case 0:
      children.push_back(Leaf("zqi", OneIn(2) ? "Light.ZQZ" : "dimmer.zqi"));
      break;
    case 1:
      children.push_back(Leaf("devicedata"));
      break;
    default:
      break;
  }
  if (children.size() == 3 || (depth < maxDepth && OneIn(2))) {
    children.push_back(depth < maxDepth ? SubItems(depth) : Leaf("subitems"));
  }
  return item;
}

void RandomProject::Damage() {
  std::vector<ProjectElement*> all;
  Collect(root_, all);
  // Some rules apply only to the system item, which has the attributes.
  const auto system =
      std::find_if(all.begin(), all.end(), [](const auto* e) { return !e->attributes.empty(); });
  const bool pickSystem = system != all.end() && OneIn(8);
  ProjectElement& element = pickSystem ? **system : *Any(all);
  auto& children = element.children;
  const auto count = static_cast<std::uint32_t>(children.size());
  const auto child = [&] { return children.begin() + Below(count); };

  switch (Below(count > 0 ? 8 : 4)) {
    case 0:
      element.name = Any(names);
      break;
    case 1:
      element.text = Any(texts);
      break;
    case 2:
      DamageAttributes(element);
      break;
    case 3:
      children.insert(children.begin() + Below(count + 1), Leaf(Any(names), Any(texts)));
      break;
    case 4:
      std::iter_swap(child(), child());
      break;
    case 5:
      children.erase(child());
      break;
    case 6: {
      const ProjectElement copy = *child();
      children.insert(children.begin() + Below(count + 1), copy);
      break;
    }
    default:
      children.resize(Below(count));
  }
}

void RandomProject::DamageAttributes(ProjectElement& element) {
  auto& attributes = element.attributes;
  switch (Below(attributes.empty() ? 1 : 3)) {
    case 0: {
      const std::string& name = Any(attributeNames);
      const bool taken = std::any_of(attributes.begin(), attributes.end(),
                                     [&](const auto& attribute) { return attribute.first == name; });
      if (!taken) attributes.emplace_back(name, Any(versions));
      break;
    }
    case 1:
      attributes.erase(attributes.begin() + Below(static_cast<std::uint32_t>(attributes.size())));
      break;
    default:
      Any(attributes).second = Any(versions);
  }
}

std::string RandomProject::Text() {
  std::string text;
  Write(root_, text);
  return text;
}

void RandomProject::Write(const ProjectElement& element, std::string& text) {
  const auto layOut = [&] {
    if (OneIn(2)) text.append(1, '\n').append(Below(4), ' ');
  };
  text += '<' + element.name;
  for (const auto& [name, value] : element.attributes) {
    text.append(1, ' ').append(name).append("=\"").append(value).append(1, '"');
  }
  text += '>' + element.text;
  for (const ProjectElement& child : element.children) {
    layOut();
    Write(child, text);
  }
  if (!element.children.empty()) layOut();
  text += "</" + element.name + '>';
}

RandomProject DamagedProject(std::uint32_t seed) {
  RandomProject project(seed);
  for (std::uint32_t damage = project.Below(5); damage > 0; --damage) project.Damage();
  return project;
}
