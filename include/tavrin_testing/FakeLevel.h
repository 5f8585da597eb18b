/// @file
/// A level for tests.
#pragma once

#include <tavrin_platform/LevelMeasure.h>
#include <cstdint>

namespace tavrin_testing {

/// A level that compares as its number does.
///
/// @code
/// EXPECT_TRUE(conditional.Test(tavrin_testing::FakeLevel(40), nullptr));
/// @endcode
class FakeLevel : public LevelMeasure::LevelPoint {
 public:
  /// Constructs a level of the given number.
  explicit FakeLevel(std::int32_t level) : level_(level) {}

  bool operator==(std::int32_t value) const override { return level_ == value; }
  bool operator!=(std::int32_t value) const override { return level_ != value; }
  bool operator<(std::int32_t value) const override { return level_ < value; }
  bool operator>(std::int32_t value) const override { return level_ > value; }
  bool operator<=(std::int32_t value) const override { return level_ <= value; }
  bool operator>=(std::int32_t value) const override { return level_ >= value; }

 private:
  std::int32_t level_;
};

}  // namespace tavrin_testing
