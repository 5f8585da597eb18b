// How the programs of the guides print: what a section prints stands between two lines with its name, the way
// the pages find it in the text beside the program.
#pragma once

#include <iostream>

// A section lasts as long as this object.
class Section {
 public:
  explicit Section(const char* name) : name_(name) { std::cout << '[' << name_ << "]\n"; }
  Section(const Section&) = delete;
  Section& operator=(const Section&) = delete;
  ~Section() { std::cout << '[' << name_ << "]\n"; }

 private:
  const char* name_;
};
