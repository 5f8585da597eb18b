// The operations that depend on the sRGB triangle read the exported constants, which this program replaces.

#include <gtest/gtest.h>

#include <tavrin_driver/ZqColor.h>
#include <tavrin_platform/Export.h>

// AddressSanitizer reports the same global object in two modules, which is the purpose here.
// NOLINTBEGIN(readability-identifier-naming): the name of AddressSanitizer
extern "C" TAVRIN_EXPORT const char* __asan_default_options();
extern "C" TAVRIN_EXPORT const char* __asan_default_options() { return "detect_odr_violation=0"; }
// NOLINTEND(readability-identifier-naming)

const ZqColor ZqColor::SRGBRed(0.5, 0.3, XY);
const ZqColor ZqColor::SRGBGreen(0.3, 0.5, XY);
const ZqColor ZqColor::SRGBBlue(0.2, 0.2, XY);
const ZqColor ZqColor::SRGBWhite(XY);
const ZqColor ZqColor::BLACK(0, 0, XY);

namespace {

const ZqColor insideOfSRGBOnly(0.6, 0.34, ZqColor::XY);
const ZqColor insideOfBoth(0.35, 0.35, ZqColor::XY);

}  // namespace

TEST(ZqColorConstants, DecideWhatIsInsideOfTheTriangle) {
  EXPECT_FALSE(insideOfSRGBOnly.isSRGB());
  EXPECT_TRUE(insideOfBoth.isSRGB());
}

TEST(ZqColorConstants, AreTheCornersOfTheTriangle) {
  const ZqColor beyondRed = ZqColor(0.6, 0.3, ZqColor::XY).nearestSRGB();
  EXPECT_EQ(beyondRed.x, 0.5);
  EXPECT_EQ(beyondRed.y, 0.3);
  const ZqColor beyondGreen = ZqColor(0.3, 0.8, ZqColor::XY).nearestSRGB();
  EXPECT_EQ(beyondGreen.x, 0.3);
  EXPECT_EQ(beyondGreen.y, 0.5);
  const ZqColor beyondBlue = ZqColor(0.1, 0.1, ZqColor::XY).nearestSRGB();
  EXPECT_EQ(beyondBlue.x, 0.2);
  EXPECT_EQ(beyondBlue.y, 0.2);
}
