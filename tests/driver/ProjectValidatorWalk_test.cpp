// Compares the library's iterative traversal with the recursive model, for random projects.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <tavrin_driver/ProjectValidator.h>
#include <tavrin_platform/ZqError.h>
#include <tavrin_testing/LogCapture.h>
#include <functional>
#include <string>
#include <vector>

#include "ParseXml.h"
#include "ProjectValidatorModel.h"
#include "RandomProject.h"
#include "SameAsModel.h"

namespace {

constexpr std::uint32_t documents = 120;

// Every element of the document in turn, by the operations that can be entered from outside, on one
// validator.
void EnterEverywhere(const zq::XmlNode::Ptr& element,
                     const std::function<void(const zq::XmlNode::Ptr&)>& enter) {
  enter(element);
  std::vector<zq::XmlNode::Ptr> children;
  zq::XmlNodeIterator* walk = element->GetIterator();
  for (zq::XmlNode::Ptr child = walk->First(); child; child = walk->Next()) children.push_back(child);
  for (const zq::XmlNode::Ptr& child : children) EnterEverywhere(child, enter);
}

TEST(ProjectValidatorWalk, CanBeEnteredAnywhere) {
  using Operation = void (zq::ProjectValidator::*)(zq::XmlNode::Ptr);
  using ModelOperation = void (ProjectValidatorModel::*)(const zq::XmlNode::Ptr&);
  struct Entry {
    Operation operation;
    ModelOperation model;
  };
  const Entry entries[] = {
      {&zq::ProjectValidator::parseItem, &ProjectValidatorModel::Item},
      {&zq::ProjectValidator::parseSubItems, &ProjectValidatorModel::SubItems},
      {&zq::ProjectValidator::parseItem1, &ProjectValidatorModel::SystemItem},
      {&zq::ProjectValidator::parseSystemItems, &ProjectValidatorModel::SystemItems},
      {&zq::ProjectValidator::parseCurrentState, &ProjectValidatorModel::CurrentState},
  };
  for (std::uint32_t seed = 0; seed < documents; ++seed) {
    const std::string text = DamagedProject(seed).Text();
    SCOPED_TRACE(testing::Message() << "seed " << seed << '\n' << text);
    const tavrin_testing::LogCapture capture(log4cplus::TRACE_LOG_LEVEL);
    zq::ProjectValidator validator{zq::XmlNode::Ptr()};
    ProjectValidatorModel model;

    EnterEverywhere(ParseXml(text), [&](const zq::XmlNode::Ptr& element) {
      for (const auto& [operation, modelOperation] : entries) {
        bool threw = false;
        bool modelThrew = false;
        try {
          (validator.*operation)(element);
        } catch (const zq::ZqError&) {
          threw = true;
        }
        try {
          (model.*modelOperation)(element);
        } catch (const ProjectValidatorModel::Unreadable&) {
          modelThrew = true;
        }
        EXPECT_EQ(threw, modelThrew);
      }
    });
    ExpectSame(validator, capture, model);
    if (HasFailure()) break;
  }
}

TEST(ProjectValidatorWalk, AddsUpOverSeveralRunsAndTexts) {
  for (std::uint32_t seed = 0; seed < documents; ++seed) {
    const std::string first = DamagedProject(seed).Text();
    const std::string second = DamagedProject(seed + documents).Text();
    SCOPED_TRACE(testing::Message() << "seed " << seed << '\n' << first << '\n' << second);
    const tavrin_testing::LogCapture capture(log4cplus::TRACE_LOG_LEVEL);

    zq::ProjectValidator validator(first);
    validator.valid();
    validator.set(second);
    validator.valid();
    validator.valid();

    ProjectValidatorModel model;
    model.Project(ParseXml(first));
    model.messages.clear();
    model.places.clear();
    model.Project(ParseXml(second));
    model.Project(ParseXml(second));
    ExpectSame(validator, capture, model);
    if (HasFailure()) break;
  }
}

}  // namespace
