#include <tavrin_driver/ZqColor.h>

// In a separate file, so that the compiler cannot replace the constants by their values: users of the
// triangle read the exported constants.
const ZqColor ZqColor::SRGBRed(0.64, 0.33, XY);
const ZqColor ZqColor::SRGBGreen(0.3, 0.6, XY);
const ZqColor ZqColor::SRGBBlue(0.15, 0.06, XY);
const ZqColor ZqColor::SRGBWhite(XY);
const ZqColor ZqColor::BLACK(0, 0, XY);
