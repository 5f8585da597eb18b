// The validator with huge projects, which the compact tree of the bundled platform makes possible.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <tavrin_driver/ProjectValidator.h>
#include <cstdint>
#include <string>
#include <vector>

#include "ParseXml.h"
#include "ProjectText.h"
#include "Scale.h"
#include "SmallStack.h"

namespace {

using testing::SizeIs;
using zq::ProjectValidator;
using zq::XmlNode;

using Messages = std::vector<std::string>;

Messages MessagesOf(const std::string& project) {
  ProjectValidator validator(project);
  validator.valid();
  return validator.messages();
}

std::string ItemWith(const std::string& optional) { return ProjectWith(Item("7", optional)); }

std::string Repeat(std::uint32_t count, const std::string& text) {
  std::string all;
  all.reserve(count * text.size());
  for (std::uint32_t i = 0; i < count; ++i) all += text;
  return all;
}

TEST(ProjectValidatorSize, ChecksAnyDepthOnASmallStack) {
  constexpr std::uint32_t ids = largeCount / 5;
  std::string items;
  for (std::uint32_t i = 0; i < largeCount; ++i) {
    items += "<item><id>" + std::to_string(i % ids + 1) + "</id><name/><type>2</type><subitems>";
  }
  items += Repeat(largeCount, "</subitems></item>");
  const std::string project = ProjectWith(items);
  RunOnSmallStack([&] {
    ProjectValidator validator(project);
    EXPECT_FALSE(validator.valid());
    // Each id occurs five times, and the first one is also the id of the system item.
    EXPECT_THAT(validator.messages(), SizeIs(4 * ids + 1));
    EXPECT_EQ(validator.messages().front(), "id 1 is a duplicate, 1 of them seen so far");
    EXPECT_EQ(validator.messages().back(),
              "id " + std::to_string(ids) + " is a duplicate, 4 of them seen so far");
  });
  RunOnSmallStack([root = ParseXml(items)] {
    ProjectValidator validator{XmlNode::Ptr()};
    validator.parseItem(root);
    EXPECT_THAT(validator.messages(), SizeIs(4 * ids));
  });
}

TEST(ProjectValidatorSize, CountsManyDuplicates) {
  ProjectValidator validator(ProjectWith(Repeat(largeCount, Item("5"))));
  EXPECT_FALSE(validator.valid());
  ASSERT_THAT(validator.messages(), SizeIs(largeCount - 1));
  EXPECT_EQ(validator.messages().back(),
            "id 5 is a duplicate, " + std::to_string(largeCount - 1) + " of them seen so far");
  EXPECT_EQ(validator.places().back().line, 1U);
}

TEST(ProjectValidatorSize, ChecksAnItemWithManyChildren) {
  EXPECT_EQ(MessagesOf(ItemWith("<zqi/>" + Repeat(100000, "<foo/>"))),
            Messages{"item 7 contains an invalid foo"});
  EXPECT_EQ(MessagesOf(ItemWith("<subitems>" + Repeat(100000, "<item/>") + "</subitems>")).size(), 100000U);
}

TEST(ProjectValidatorSize, ChecksLongNamesAndManyAttributes) {
  const std::string name(1'000'000, 'n');
  EXPECT_EQ(MessagesOf(ItemWith("<" + name + "/>")), Messages{"item 7 contains an invalid " + name});
  EXPECT_EQ(MessagesOf(ItemWith(Element("zqi", name))), Messages{"item 7 has invalid zqi file name " + name});

  std::string attributes;
  for (int i = 0; i < 5000; ++i) attributes += " a" + std::to_string(i) + "='1'";
  EXPECT_EQ(MessagesOf(ProjectWith("<item" + attributes + ">" + Leading("7", "2") + "<state/></item>")),
            Messages{"item has attributes"});
  EXPECT_EQ(MessagesOf(ProjectWithSystemItem(
                SystemItem(Version("2", "1") + attributes, Leading("1", "1") + "<itemdata/><subitems/>"))),
            Messages{"item 1 has extra attributes"});
}

TEST(ProjectValidatorSize, RefusesEntityBombs) {
  std::string declarations = "<!ENTITY e0 'eeeeeeeeee'>";
  for (int i = 1; i < 10; ++i) {
    declarations +=
        "<!ENTITY e" + std::to_string(i) + " '" + Repeat(10, "&e" + std::to_string(i - 1) + ";") + "'>";
  }
  EXPECT_EQ(MessagesOf("<!DOCTYPE currentstate [" + declarations + "]>" + ItemWith("<zqi>&e9;</zqi>")),
            Messages{"invalid project, could not parse project"});
}

}  // namespace
