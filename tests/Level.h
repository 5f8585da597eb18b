#pragma once

#include <tavrin_platform/LevelMeasure.h>

#include <cstdint>

// A level that compares as its number does.
class Level : public LevelMeasure::LevelPoint {
 public:
  explicit Level(std::int32_t level) : level_(level) {}
  bool operator==(std::int32_t value) const override { return level_ == value; }
  bool operator!=(std::int32_t value) const override { return level_ != value; }
  bool operator<(std::int32_t value) const override { return level_ < value; }
  bool operator>(std::int32_t value) const override { return level_ > value; }
  bool operator<=(std::int32_t value) const override { return level_ <= value; }
  bool operator>=(std::int32_t value) const override { return level_ >= value; }

 private:
  std::int32_t level_;
};
