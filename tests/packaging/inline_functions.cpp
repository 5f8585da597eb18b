// Calls the inline functions that calculate with floating-point numbers. A driver compiles them with its own
// options.

#include <tavrin_colorimetry/Colorimetry.h>
#include <tavrin_driver/Numbers.h>
#include <tavrin_driver/Required.h>
#include <cstdint>
#include <string>

double Mired(double kelvin) { return tavrin::colorimetry::ToMired(kelvin); }

double Kelvin(double mired) { return tavrin::colorimetry::FromMired(mired); }

bool IsMeaningful(const tavrin::colorimetry::ColorTemperature& temperature) {
  return temperature.IsMeaningful();
}

std::int32_t Integer(double number) { return zq::AsInt32(number); }

std::string Text(double number) { return zq::ToText(number); }

double Required(const zq::ReadableMessage& message) {
  return zq::RequireDouble(message, "LEVEL", {0, 100}) +
         zq::OptionalDouble(message, "RAMP_SECONDS", 0, {0, 60});
}

double Data(const IBindMessage& message) {
  return zq::RequireDataDouble(message, {0, 100}) + zq::OptionalDataDouble(message, 0, {0, 100});
}
