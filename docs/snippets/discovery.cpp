// The code of the guide to discovery; discovery.txt contains what it prints.

#include <tavrin_driver/discovery_info.h>
#include <iostream>
#include <string>

#include "Sections.h"

namespace {

void Offer(const std::string& model) { std::cout << "a driver for " << model << "?\n"; }

void Found() {
  const Section section("found");
  const std::string uuid = "5ae21b6c-0d5e-4c4b-9d54-3a1f6d2f7a10";
  const std::string ip = "192.0.2.17";
  const std::string type = "light";
  const std::string make = "Lumen";
  const std::string model = "LB-3";
  const std::string sdkClass = "dimmer";
  //! [found]
  zq::discovery_info device(uuid, ip, type, make, model, sdkClass);
  if (device.is_kimo() && device.model()) Offer(*device.model());
  //! [found]
}

void Absent() {
  const Section section("absent");
  //! [absent]
  const zq::discovery_info device("", "192.0.2.17", "light", "Lumen", "LB-3", "");
  std::cout << std::boolalpha << device.uuid().has_value() << ' ' << device.host().has_value() << '\n'
            << device.uuid().value_or("(no id)") << '\n';
  //! [absent]
}

void Same() {
  const Section section("same");
  //! [same]
  const zq::discovery_info before("", "192.0.2.17", "light", "Lumen", "LB-3", "dimmer");
  const zq::discovery_info now("", "192.0.2.18", "light", "Lumen", "LB-3", "dimmer");
  std::cout << std::boolalpha << (before == now) << '\n';
  //! [same]
}

}  // namespace

int main() {
  Found();
  Absent();
  Same();
}
