// The code of the guide to colours; colours.txt contains what it prints.

#include <tavrin_driver/ZqColor.h>
#include <cmath>
#include <cstdint>
#include <iostream>

#include "Sections.h"

namespace {

class Lamp {
 public:
  void SetWhite(std::int32_t kelvin) { kelvin_ = kelvin; }
  std::int32_t White() const { return kelvin_; }

 private:
  std::int32_t kelvin_ = 0;
};

void Text() {
  const Section section("text");
  Lamp lamp;
  //! [text]
  ZqColor color;
  if (color.fromString("0.45,0.41,1")) lamp.SetWhite(color.toCCTTable());  // 2820 K
  std::cout << color.toString() << " is " << lamp.White() << " K\n";
  //! [text]
}

void Valid() {
  const Section section("valid");
  //! [valid]
  ZqColor color;  // the white point of sRGB
  std::cout << std::boolalpha << color.fromString("0.5,1.2,0") << ' ' << color.toString() << '\n'
            << color.fromString("0,0,0") << ' ' << color.isValid() << '\n'
            << color.fromString("0.5,0.4,2") << '\n';
  //! [valid]
}

void Rgb() {
  const Section section("rgb");
  //! [rgb]
  const ZqColor color(0.45, 0.41, ZqColor::XY);
  double hue = 0;
  double saturation = 0;
  double value = 0;
  color.toHSV(hue, saturation, value);
  std::cout << hue << " degrees, " << saturation << "%, " << value << "%\n";

  const double brightness = 0.5;  // sent together with the colour
  double red = 0;
  double green = 0;
  double blue = 0;
  ZqColor::getRGBFromHSV(hue, saturation, value * brightness, red, green, blue, 255);
  std::cout << std::lround(red) << ' ' << std::lround(green) << ' ' << std::lround(blue) << '\n';
  //! [rgb]
}

void Hsv() {
  const Section section("hsv");
  //! [hsv]
  double hue = 0;
  double saturation = 0;
  double value = 0;
  ZqColor::getHSVFromRGB(255, 255, 0, 255, hue, saturation, value);
  std::cout << hue << ' ' << saturation << ' ' << value << '\n';
  //! [hsv]
}

void Gamut() {
  const Section section("gamut");
  //! [gamut]
  const ZqColor green(0.2, 0.7, ZqColor::XY);
  const ZqColor purple(0.4, 0.1, ZqColor::XY);
  std::cout << std::boolalpha << green.isSRGB() << ' ' << green.nearestSRGB().toString() << '\n'
            << purple.isSRGB() << ' ' << purple.nearestSRGB().toString() << '\n';
  //! [gamut]
}

void Temperature() {
  const Section section("temperature");
  //! [temperature]
  ZqColor white(ZqColor::CCT);
  white.fromCCT(ZqColor::normalizeCCT(2704));
  std::cout << white.toString() << ' ' << white.toCCTTable() << " K\n";

  white.fromCCT(2709);  // truncated to 2700 K; normalizeCCT rounds up
  std::cout << white.toCCTTable() << " K, but " << ZqColor::normalizeCCT(2709) << " K\n";

  std::cout << ZqColor::SRGBWhite.toCCTTable() << " K\n";
  //! [temperature]
}

}  // namespace

int main() {
  Text();
  Valid();
  Rgb();
  Hsv();
  Gamut();
  Temperature();
}
