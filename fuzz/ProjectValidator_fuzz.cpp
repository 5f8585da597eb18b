// The validator, compared with the recursive model of its tests.

#include <tavrin_driver/ProjectValidator.h>
#include <tavrin_platform/XmlNode.h>
#include <tavrin_testing/LogCapture.h>
#include <iostream>
#include <string>
#include <vector>

#include "ProjectValidatorModel.h"
#include "Require.h"
#include "Target.h"

namespace {

std::vector<ProjectValidatorModel::LogLine> Lines(const tavrin_testing::LogCapture& capture) {
  std::vector<ProjectValidatorModel::LogLine> lines;
  for (const tavrin_testing::LogRecord& event : capture.records())
    lines.push_back({event.function, event.message});
  return lines;
}

void RequireSame(const zq::ProjectValidator& validator, const ProjectValidatorModel& model) {
  if (validator.messages() != model.messages) {
    for (const std::string& message : validator.messages()) std::cerr << "actual:   " << message << '\n';
    for (const std::string& message : model.messages) std::cerr << "expected: " << message << '\n';
  }
  Require(validator.messages() == model.messages, "the findings are those of the model");
  Require(validator.places() == model.places, "they are found where the model finds them");
}

}  // namespace

void UseInput(const std::string& input) {
  zq::ProjectValidator validator(input);
  validator.valid();
}

void CheckInput(const std::string& input) {
  const tavrin_testing::LogCapture capture(log4cplus::TRACE_LOG_LEVEL);
  zq::ProjectValidator validator(input);
  const bool isValid = validator.valid();
  RequireEqual(isValid, validator.messages().empty(), "a project without findings is valid");

  zq::ProjectValidator another(input);
  another.valid();
  Require(another.messages() == validator.messages() && another.places() == validator.places(),
          "the same text has the same findings");

  const zq::XmlDocument::Ptr document = zq::CreateXmlDocument(input);
  if (!document) {
    Require(validator.messages() == std::vector<std::string>{"invalid project, could not parse project"},
            "a text that is no document is one finding");
    return;
  }
  ProjectValidatorModel model;
  model.Project(document->GetRoot());
  RequireSame(validator, model);
  std::vector<ProjectValidatorModel::LogLine> log = model.log;
  log.insert(log.end(), model.log.begin(), model.log.end());
  Require(Lines(capture) == log, "each run logs what the model logs");

  validator.valid();
  model.Project(document->GetRoot());
  RequireSame(validator, model);

  zq::ProjectValidator ofRoot(document->GetRoot());
  RequireEqual(ofRoot.valid(), isValid, "a parsed project is the same project");
}
