#pragma once

#include <cstdint>
#include <istream>
#include <map>
#include <sstream>
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

// The same project without newlines and indentation, also shared.
inline const std::string& CompactProject(std::int64_t items) {
  static std::map<std::int64_t, std::string> projects;
  const auto [project, isNew] = projects.try_emplace(items);
  if (isNew) {
    std::istringstream lines(SampleProject(items));
    for (std::string line; std::getline(lines >> std::ws, line);) project->second += line;
  }
  return project->second;
}
