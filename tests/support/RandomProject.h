#pragma once

#include <cstdint>
#include <random>
#include <string>
#include <utility>
#include <vector>

// A document as a tree that can be modified and written.
struct ProjectElement {
  std::string name;
  std::string text;
  std::vector<std::pair<std::string, std::string>> attributes;
  std::vector<ProjectElement> children;
};

// Generates valid projects and damages them as people and programs do. The same seed generates the same
// projects everywhere.
class RandomProject {
 public:
  explicit RandomProject(std::uint32_t seed);

  // Swaps, removes, duplicates, renames or rewrites a part at a random position.
  void Damage();

  // Returns the document with random white space between the elements.
  std::string Text();

  std::uint32_t Below(std::uint32_t limit) { return static_cast<std::uint32_t>(engine_() % limit); }

 private:
  ProjectElement Item(std::uint32_t depth);
  ProjectElement SubItems(std::uint32_t depth);
  bool OneIn(std::uint32_t n) { return Below(n) == 0; }
  template <typename List>
  auto& Any(List& list) {
    return list[Below(static_cast<std::uint32_t>(list.size()))];
  }
  void DamageAttributes(ProjectElement& element);
  void Write(const ProjectElement& element, std::string& text);

  std::mt19937 engine_;
  std::uint32_t lastId_ = 1;
  ProjectElement root_;
};

// A random project with up to four damages.
RandomProject DamagedProject(std::uint32_t seed);
