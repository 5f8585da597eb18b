// Compares the library's iterative traversal with the recursive model, for random projects.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <tavrin_driver/ProjectValidator.h>
#include <tavrin_testing/LogCapture.h>
#include <cstdint>
#include <set>
#include <string>

#include "ParseXml.h"
#include "ProjectValidatorModel.h"
#include "RandomProject.h"
#include "SameAsModel.h"

namespace {

constexpr std::uint32_t documents = 12000;

// A message without its numbers and quoted texts: which rule it comes from.
std::string Kind(const std::string& message) {
  std::string kind;
  for (const char c : message) {
    if (c >= '0' && c <= '9') {
      if (kind.empty() || kind.back() != '#') kind += '#';
    } else {
      kind += c;
    }
  }
  for (const char* tail : {", got ", " file name ", "contains duplicate ", "contains an invalid ",
                           "in project ", "in item #, ", "invalid project, "}) {
    const std::size_t at = kind.find(tail);
    if (at != std::string::npos) return kind.substr(0, at) + tail;
  }
  return kind;
}

TEST(ProjectValidatorRandom, ReportsTheSameAsARecursiveTraversal) {
  std::set<std::string> kinds;
  std::uint32_t clean = 0;
  for (std::uint32_t seed = 0; seed < documents; ++seed) {
    const std::string text = DamagedProject(seed).Text();
    SCOPED_TRACE(testing::Message() << "seed " << seed << '\n' << text);

    ProjectValidatorModel model;
    model.Project(ParseXml(text));

    const tavrin_testing::LogCapture capture(log4cplus::TRACE_LOG_LEVEL);
    zq::ProjectValidator validator(text);
    EXPECT_EQ(validator.valid(), model.messages.empty());
    ExpectSame(validator, capture, model);
    if (HasFailure()) break;

    clean += model.messages.empty() ? 1 : 0;
    for (const std::string& message : model.messages) kinds.insert(Kind(message));
  }
  EXPECT_GT(clean, documents / 10);
  EXPECT_LT(clean, documents / 2);

  // The documents reached every rule that a parsed text can break.
  EXPECT_THAT(kinds, testing::IsSupersetOf({
                         "invalid project, ",
                         "expected currentstate, got ",
                         "currentstate has attributes",
                         "properties is missing",
                         "systemitems is missing",
                         "variables is missing",
                         "scan_schedule is missing",
                         "plugins is missing",
                         "extra tags in project ",
                         "systemitems contains no items",
                         "systemitems contains more than one item, #",
                         "item # is missing majorversion",
                         "item # is missing minorversion",
                         "item # is missing buildnumber",
                         "item # is missing buildrevision",
                         "item # has extra attributes",
                         "the validator can only check #.#.# or greater",
                         "item # has an invalid major version number #",
                         "item # has an invalid minor version number #",
                         "item # hasf a invalid build number #",
                         "item # has an invalid revision number -#",
                         "itemdata is missing",
                         "subitems is missing",
                         "extra elements in item #, ",
                         "expected item, got ",
                         "item has attributes",
                         "id is missing",
                         "name is missing",
                         "type is missing",
                         "item has an invalid id #",
                         "expected item #, got ",
                         "id # is a duplicate, # of them seen so far",
                         "item # has an invalid type #",
                         "expected type #, got ",
                         "cannot happen, expected id, got ",
                         "cannot happen, expected name, got ",
                         "cannot happen, expected type, got ",
                         "item # is missing all optional elements",
                         "item # has invalid zqi file name ",
                         "item # contains both devicedata and zqi",
                         "item # contains duplicate ",
                         "item # contains an invalid ",
                     }));
}

}  // namespace
