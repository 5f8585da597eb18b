#include <gtest/gtest.h>

#include <tavrin_driver/Version.h>
#include <string>

namespace {

TEST(Version, OfTheLibraryIsThatOfTheHeaders) {
  EXPECT_EQ(zq::LibraryVersion(), static_cast<std::uint32_t>(TAVRIN_DRIVER_VERSION));
}

TEST(Version, IsThatOfThePackages) {
  EXPECT_EQ(std::to_string(TAVRIN_DRIVER_VERSION_MAJOR) + '.' + std::to_string(TAVRIN_DRIVER_VERSION_MINOR) +
                '.' + std::to_string(TAVRIN_DRIVER_VERSION_PATCH),
            TAVRIN_VERSION);
}

// Two digits for each part are enough to order versions.
static_assert(TAVRIN_DRIVER_VERSION / 10000 == TAVRIN_DRIVER_VERSION_MAJOR);
static_assert(TAVRIN_DRIVER_VERSION / 100 % 100 == TAVRIN_DRIVER_VERSION_MINOR);
static_assert(TAVRIN_DRIVER_VERSION % 100 == TAVRIN_DRIVER_VERSION_PATCH);

}  // namespace
