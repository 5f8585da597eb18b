#pragma once

#include <gmock/gmock.h>

#include <tavrin_driver/ProjectValidator.h>
#include <tavrin_testing/LogCapture.h>
#include <vector>

#include "ProjectValidatorModel.h"

inline std::vector<ProjectValidatorModel::LogLine> Lines(const tavrin_testing::LogCapture& capture) {
  std::vector<ProjectValidatorModel::LogLine> lines;
  for (const tavrin_testing::LogRecord& event : capture.records())
    lines.push_back({event.function, event.message});
  return lines;
}

// Expects the findings and log records of the model.
inline void ExpectSame(const zq::ProjectValidator& validator, const tavrin_testing::LogCapture& capture,
                       const ProjectValidatorModel& model) {
  EXPECT_EQ(validator.messages(), model.messages);
  EXPECT_EQ(validator.places(), model.places);
  EXPECT_EQ(Lines(capture), model.log);
}
