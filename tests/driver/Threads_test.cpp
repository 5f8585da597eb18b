// Distinct objects on distinct threads: several threads do the same work at the same time, each with separate
// objects, and the result of each must be that of a single thread. Also built with ThreadSanitizer, which
// reports data races that rarely have an effect.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <tavrin_driver/BindMessage.h>
#include <tavrin_driver/CmdMessage.h>
#include <tavrin_driver/CondMessage.h>
#include <tavrin_driver/ParameterExceptions.h>
#include <tavrin_driver/ProjectValidator.h>
#include <tavrin_driver/ZqColor.h>
#include <tavrin_driver/discovery_info.h>
#include <tavrin_platform/Logger.h>
#include <tavrin_platform/XmlNode.h>
#include <tavrin_testing/FakeVariables.h>
#include <tavrin_testing/LogCapture.h>
#include <algorithm>
#include <atomic>
#include <cstddef>
#include <cstdint>
#include <exception>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iterator>
#include <ostream>
#include <sstream>
#include <string>
#include <thread>
#include <vector>

#include "GlobalCharacters.h"
#include "ParseXml.h"

namespace {

namespace fs = std::filesystem;

constexpr int threadCount = 4;
constexpr int rounds = 25;

// Runs the work on several threads that begin at the same time.
void RunTogether(const std::function<void(int thread)>& work) {
  std::atomic<int> waiting{threadCount};
  std::vector<std::thread> threads;
  for (int i = 0; i < threadCount; ++i) {
    threads.emplace_back([&, i] {
      --waiting;
      while (waiting > 0) std::this_thread::yield();
      work(i);
    });
  }
  for (std::thread& thread : threads) thread.join();
}

// --- the work of the threads: each function uses separate objects and returns its results ---

// Returns the example messages of a directory, including the broken ones.
std::vector<std::string> Examples(const std::string& directory) {
  std::vector<fs::path> files;
  for (const fs::directory_entry& entry :
       fs::recursive_directory_iterator(fs::path(TAVRIN_EXAMPLES_DIR) / directory))
    if (entry.is_regular_file()) files.push_back(entry.path());
  std::sort(files.begin(), files.end());
  std::vector<std::string> texts;
  for (const fs::path& file : files) {
    std::ifstream stream(file, std::ios::binary);
    texts.emplace_back(std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>());
  }
  return texts;
}

std::string Commands() {
  static const std::vector<std::string> texts = Examples("commands");
  tavrin_testing::FakeVariables manager;
  manager.set(7, 1001, "40");
  std::ostringstream out;
  for (const std::string& text : texts) {
    CCmdMessage command(manager, 3);
    out << command.Load(text) << ' ' << command.toXml(true) << command.toXml(false);
    const boost::shared_ptr<ICmdMessage> clone = command.clone();
    clone->addParamDouble("extra", "number", 0.1);
    clone->overwriteParam("LEVEL", "number", 12);
    out << clone->toAutoNode(true)->OuterXml();
    command.print(out);
    for (const auto& [name, param] : command.GetParamMap()) {
      out << name << ' ' << command.getParam(name);
      try {
        out << command.getParamRequiredIntRanged(name, 0, 100) << command.getParamRequiredDouble(name, 2);
      } catch (const std::exception& error) {
        out << error.what();
      }
    }
  }
  return out.str();
}

std::string Bindings() {
  static const std::vector<std::string> texts = Examples("bindings");
  std::ostringstream out;
  for (const std::string& text : texts) {
    CBindMessage message;
    try {
      zq::XmlNode::Ptr root = ParseXml(text);
      out << message.fromXml(root);
    } catch (const std::exception& error) {
      out << error.what();
    }
    out << ' ' << message.getData() << message.getDataAsInteger();
    message.addParam("extra", "number", 7);
    message.AddPath("house");
    out << message.toXml() << message.toJson();
    message.print(out);
  }
  return out.str();
}

std::string Conditionals() {
  static const std::vector<std::string> texts = Examples("conditionals");
  std::ostringstream out;
  for (const std::string& text : texts) {
    CCondMessage conditional(5);
    try {
      out << conditional.fromXml(text);
    } catch (const std::exception& error) {
      out << error.what();
    }
    out << ' ' << conditional.getName() << conditional.toXml();
    for (const std::int32_t value : {0, 40, 50, 100}) out << conditional.Test(value, nullptr);
    out << conditional.Test("on", nullptr) << conditional.Test(true);
    conditional.print(out);
  }
  return out.str();
}

std::string Validators() {
  static const std::vector<std::string> texts = Examples("projects");
  std::ostringstream out;
  for (const std::string& text : texts) {
    zq::ProjectValidator validator(text);
    std::size_t items = 0;
    validator.setItemObserver([&] { ++items; });
    out << validator.valid() << ' ' << items << '\n';
    for (const std::string& message : validator.messages()) out << message << '\n';
  }
  return out.str();
}

std::string Documents() {
  static const std::vector<std::string> texts = Examples(".");
  std::ostringstream out;
  for (const std::string& text : texts) {
    const zq::XmlDocument::Ptr document = zq::CreateXmlDocument(text);
    if (!document) continue;
    const zq::XmlNode::Ptr root = document->GetRoot();
    root->SetAttribute("changed", "yes & no");
    root->AddChild("number", 7);
    out << root->OuterXml() << ParseXml(root->OuterXml())->InnerXml();
  }
  const zq::XmlNode::Ptr own = ParseXml("<!DOCTYPE r [<!ENTITY e 'x'><!ATTLIST r a CDATA 'd'>]><r>&e;</r>");
  return out.str() + own->OuterXml();
}

std::string Colors() {
  std::ostringstream out;
  for (std::int32_t kelvin = 1000; kelvin < 12000; kelvin += 500) {
    ZqColor color;
    color.fromCCT(kelvin);
    double h = 0;
    double s = 0;
    double v = 0;
    color.toHSV(h, s, v);
    out << color.toString() << ' ' << color.toCCTTable() << ' ' << h << ' ' << s << ' ' << v
        << color.nearestSRGB().toString();
    ZqColor read;
    out << read.fromString(color.toString()) << read.isValid() << read.isSRGB() << '\n';
  }
  return out.str();
}

std::string Discoveries() {
  const zq::discovery_info device("uuid", "10.0.0.7", "light", "make", "model", "sdk");
  zq::discovery_info copy;
  copy = device;
  return *copy.uuid() + *copy.model() + (copy == device ? "equal" : "different");
}

struct Work {
  const char* name;
  std::string (*run)();
};

void PrintTo(const Work& work, std::ostream* os) { *os << work.name; }

constexpr Work works[] = {
    {"Commands", Commands},       {"Bindings", Bindings},   {"Conditionals", Conditionals},
    {"Validators", Validators},   {"Documents", Documents}, {"Colors", Colors},
    {"Discoveries", Discoveries},
};

}  // namespace

class Threads : public testing::TestWithParam<Work> {};

TEST_P(Threads, EachComputesTheSameAsASingleThread) {
  const tavrin_testing::LogCapture log(log4cplus::OFF_LOG_LEVEL);
  const std::string alone = GetParam().run();
  ASSERT_NE(alone, "");
  std::vector<std::string> out(threadCount);
  for (int round = 0; round < rounds; ++round) {
    RunTogether([&](int thread) { out[static_cast<std::size_t>(thread)] = GetParam().run(); });
    ASSERT_THAT(out, testing::Each(alone));
  }
}

INSTANTIATE_TEST_SUITE_P(, Threads, testing::ValuesIn(works),
                         [](const auto& row) -> std::string { return row.param.name; });

// Each thread logs a warning; the first one to do so configures logging.
TEST(ThreadsThatLog, AllHaveTheirFirstRecordsWritten) {
  for (int round = 0; round < rounds; ++round) {
    const tavrin_testing::LogCapture log(log4cplus::WARN_LOG_LEVEL);
    zq::Logger::hasBeenInitialized = false;
    RunTogether([](int) {
      tavrin_testing::FakeVariables manager;
      CCmdMessage command(manager, 0);
      command.addParam("LEVEL", "number", 5);
      EXPECT_THROW(command.getParamRequiredIntRanged("LEVEL", 10, 1), ExceptionParameterInvalid);
    });
    EXPECT_TRUE(zq::Logger::hasBeenInitialized);
    const std::vector<std::string> messages = log.messages();
    ASSERT_FALSE(messages.empty());
    EXPECT_EQ(std::count(messages.begin(), messages.end(), messages.front()), threadCount);
  }
}

// Each round changes the global locale, so that no thread reuses characters of an earlier locale.
TEST(ThreadsThatMask, UseTheCharactersOfTheGlobalLocale) {
  tavrin_testing::FakeVariables manager;
  CCmdMessage command(manager, 0);
  command.addParam("qin", "text", "4711");
  const std::string shown = command.toXml(true);
  ASSERT_THAT(shown, testing::HasSubstr("4711"));
  for (int round = 0; round < rounds; ++round) {
    const GlobalCharacters otherCharacters('q', 'P');
    std::vector<std::string> masked(threadCount);
    RunTogether([&](int thread) {
      tavrin_testing::FakeVariables none;
      masked[static_cast<std::size_t>(thread)] = CCmdMessage(command, none).toXml(true);
    });
    EXPECT_THAT(masked, testing::Each(testing::Not(testing::HasSubstr("4711"))));
  }
  EXPECT_EQ(command.toXml(true), shown);
}

// One thread at a time uses a message that is passed on; another thread uses its clone at the same time.
TEST(ThreadsWithClones, DoNotDisturbEachOther) {
  tavrin_testing::FakeVariables manager;
  CCmdMessage command(manager, 0);
  command.Initialize("SET_LEVEL");
  command.addParam("LEVEL", "number", 1);
  std::vector<boost::shared_ptr<ICmdMessage>> clones;
  for (int i = 0; i < threadCount; ++i) clones.push_back(command.clone());
  RunTogether([&](int thread) {
    const boost::shared_ptr<ICmdMessage> own = clones[static_cast<std::size_t>(thread)];
    for (std::int32_t level = 0; level < 100; ++level) {
      own->overwriteParam("LEVEL", "number", thread * 100 + level);
      ASSERT_EQ(own->getParamRequiredInt("LEVEL"), thread * 100 + level);
    }
  });
  EXPECT_EQ(command.getParam("LEVEL"), "1");
}
