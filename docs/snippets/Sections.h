// Marks regions in the output of the programs of the guides: docs/embed.py copies the lines between two lines
// with the name of the section into the pages.
#pragma once

#include <iostream>

// Writes the name of a section when it is constructed and when it is destroyed.
class Section {
 public:
  explicit Section(const char* name) : name_(name) { std::cout << '[' << name_ << "]\n"; }
  Section(const Section&) = delete;
  Section& operator=(const Section&) = delete;
  ~Section() { std::cout << '[' << name_ << "]\n"; }

 private:
  const char* name_;
};
