// What happens when memory runs out: each allocation fails once, and everything goes on from there.

#include <gtest/gtest.h>
#include <tavrin_driver/CmdMessage.h>

#include <tavrin_platform/XmlNode.h>
#include <cstddef>
#include <cstdlib>
#include <functional>
#include <limits>
#include <new>

#include <string>

#include "DescribeParams.h"
#include "FakeVariableManager.h"
#include "ParseXml.h"

namespace {

constexpr std::size_t never = std::numeric_limits<std::size_t>::max();

// How many allocations succeed before one fails.
std::size_t allocationsLeft = never;

void* Allocate(std::size_t size) {
  if (allocationsLeft == 0) {
    allocationsLeft = never;
    throw std::bad_alloc();
  }
  if (allocationsLeft != never) --allocationsLeft;
  if (void* memory = std::malloc(size)) return memory;
  throw std::bad_alloc();
}

}  // namespace

// Not inlined, since GCC would then see free() called on what operator new returned.
[[gnu::noinline]] void* operator new(std::size_t size) { return Allocate(size); }
[[gnu::noinline]] void* operator new(std::size_t size, std::align_val_t /*at most malloc's*/) {
  return Allocate(size);
}
[[gnu::noinline]] void operator delete(void* memory) noexcept { std::free(memory); }
[[gnu::noinline]] void operator delete(void* memory, std::size_t /*size*/) noexcept { std::free(memory); }
[[gnu::noinline]] void operator delete(void* memory, std::align_val_t /*alignment*/) noexcept {
  std::free(memory);
}
[[gnu::noinline]] void operator delete(void* memory, std::size_t /*size*/,
                                       std::align_val_t /*alignment*/) noexcept {
  std::free(memory);
}

namespace {

using zq::XmlNode;

// Runs `work` with its first allocation failing, then with its second, until nothing fails any more, and
// `check` after each failure. @return how often it failed
std::size_t FailEachAllocation(const std::function<void()>& work, const std::function<void()>& check) {
  for (std::size_t count = 0;; ++count) {
    allocationsLeft = count;
    try {
      work();
      allocationsLeft = never;
      return count;
    } catch (const std::bad_alloc&) {
      allocationsLeft = never;
    }
    check();
  }
}

TEST(FailingAllocations, EndTheParsingOfXmlAndNothingElse) {
  const std::string name(3000, 'n');
  const std::string texts[] = {
      "<a/>",
      "<a x='1' y='&lt;'>text<b/>&amp;<![CDATA[<]]>\r\n<" + name + "/>&#8364;</a>",
      "<!DOCTYPE a [<!ENTITY e '<c x=\"&#38;lt;\">t</c>'><!ATTLIST b x CDATA 'd'>]><a>&e;<b/>&e;</a>",
      "<?xml version='1.0' encoding='ISO-8859-1'?><\xE9 \xE9='\xE9'>" + std::string(3000, '\xE9') + "</\xE9>",
      "<?xml version='1.0' encoding='ISO-8859-1'?><" + std::string(3000, '\xE9') + "/>",
      "<a><b>" + std::string(3000, '\r') + "</a>",
  };
  for (const std::string& text : texts) {
    SCOPED_TRACE(text.substr(0, 100));
    const auto parse = [&text] { return zq::CreateXmlDocument(text); };
    const bool isDocument = parse() != nullptr;
    zq::XmlDocument::Ptr document;
    const std::size_t failures = FailEachAllocation([&] { document = parse(); },
                                                    [] { EXPECT_EQ(ParseXml("<a>t</a>")->GetData(), "t"); });
    EXPECT_GE(failures, 1U);
    EXPECT_EQ(document != nullptr, isDocument);
  }
}

TEST(FailingAllocations, LeaveAnElementAsItWas) {
  const std::string name(3000, 'n');
  const std::string value(3000, 'v');
  const std::function<void(XmlNode&)> changes[] = {
      [&](XmlNode& node) { node.AddChild(name, value); },
      [&](XmlNode& node) { node.SetAttribute(name, value); },
      [&](XmlNode& node) { node.SetAttribute("x", value); },
      [&](XmlNode& node) { node.Initialize(name, value); },
  };
  for (const auto& change : changes) {
    const std::string before = "<a  x='1'>text</a >";
    XmlNode::Ptr node;
    const std::size_t failures = FailEachAllocation(
        [&] {
          node = ParseXml(before);
          change(*node);
        },
        [&] {
          EXPECT_EQ(node ? node->OuterXml() : before, before);
          node.reset();
        });
    EXPECT_GE(failures, 3U);
    EXPECT_NE(node->OuterXml(), before);
  }
}

TEST(FailingAllocations, LeaveAMessageWithWhatItHasRead) {
  const std::string value(100, 'v');
  const std::string xml = "<c><command>" + value +
                          "</command><params><param><name>a</name><value type='t'><static>" + value +
                          "</static></value></param></params></c>";
  const std::string json = R"({"c": {"command": ")" + value +
                           R"(", "params": [{"name": "a", "type": "t", "value": {"static": ")" + value +
                           R"("}}]}})";
  for (const std::string& text : {xml, json}) {
    SCOPED_TRACE(text);
    FakeVariableManager manager;
    CCmdMessage whole(manager, 0);
    ASSERT_EQ(whole.Load(text), 0);
    CCmdMessage message(manager, 0);
    const std::size_t failures = FailEachAllocation([&] { ASSERT_EQ(message.Load(text), 0); },
                                                    [&] {
                                                      const std::string& command = message.getRawCommand();
                                                      EXPECT_TRUE(command.empty() || command == value);
                                                      EXPECT_LE(message.GetParamMap().size(), 1U);
                                                    });
    EXPECT_GE(failures, 5U);
    EXPECT_EQ(Describe(message), Describe(whole));

    std::string written;
    FailEachAllocation([&] { written = message.toXml(true); },
                       [&] { EXPECT_EQ(Describe(message), Describe(whole)); });
    EXPECT_EQ(written, whole.toXml(true));
  }
}

}  // namespace
