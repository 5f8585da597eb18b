#pragma once

#include <cstdint>
#include <map>
#include <string>

#include "tools/generators/project_generator/HouseWriter.h"

// The project with the given number of items; the measurements of a program share it. Projects of more than
// 200000 items contain duplicate ids: of a million items, 800000 are reported.
inline const std::string& SampleProject(std::int64_t items) {
  static std::map<std::int64_t, std::string> projects;
  const auto [project, isNew] = projects.try_emplace(items);
  if (isNew) project->second = HouseOf(static_cast<std::uint32_t>(items));
  return project->second;
}
