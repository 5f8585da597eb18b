// The code of the guide to conditionals; conditionals.txt contains what it prints.

#include <tavrin_driver/CondMessage.h>
#include <tavrin_platform/Conversions.h>
#include <tavrin_platform/LevelMeasure.h>
#include <cstdint>
#include <iostream>
#include <locale>
#include <map>
#include <string>

#include "Sections.h"

namespace {

CCondMessage Conditional(const std::string& name, const std::string& comparison, const std::string& value) {
  CCondMessage conditional(name, comparison, {});
  conditional.addParam("VALUE", "number", value);
  return conditional;
}

//! [evaluate]
class Thermostat {
 public:
  bool Evaluate(const ICondMessage& conditional) const {
    const std::string& name = conditional.getName();
    if (name == "Heating") return conditional.Test(heating_);
    if (name == "Mode") return conditional.Test(mode_.c_str(), nullptr);
    if (name == "Setpoint") return conditional.Test(setpoint_, nullptr);
    if (name == "Temperature") {
      const std::string limit = conditional.getParam("CELSIUS");
      return conditional.Test(temperature_, zq::ToDouble(limit, std::locale::classic()));
    }
    return false;
  }

 private:
  bool heating_ = true;
  std::string mode_ = "heat";
  std::int32_t setpoint_ = 21;
  double temperature_ = 20.5;
};
//! [evaluate]

void Evaluate() {
  const Section section("evaluate");
  const Thermostat thermostat;
  //! [receive]
  const auto conditional = CCondMessage::Create(
      "<deviceconditional><name>Temperature</name><conditional>LESS_THAN</conditional><params>"
      "<param><name>CELSIUS</name><value type=\"number\"><static>20.7</static></value></param>"
      "</params></deviceconditional>");
  std::cout << std::boolalpha << thermostat.Evaluate(*conditional) << '\n';
  //! [receive]
  CCondMessage mode("Mode", "NOT_EQUAL", {});
  mode.addParam("MODE", "string", "cool");
  std::cout << thermostat.Evaluate(mode) << ' ' << thermostat.Evaluate(Conditional("Setpoint", "EQUAL", "21"))
            << ' ' << thermostat.Evaluate(CCondMessage("Heating", "EQUAL", {})) << ' '
            << thermostat.Evaluate(Conditional("Humidity", "EQUAL", "50")) << '\n';
}

void Left() {
  const Section section("left");
  const CCondMessage conditional = Conditional("Level", "LESS_THAN", "50");
  const std::int32_t currentLevel = 40;
  bool isTrue = conditional.Test(currentLevel, nullptr);
  std::cout << std::boolalpha << isTrue << '\n';
}

void Traps() {
  const Section section("traps");
  //! [traps]
  CCondMessage conditional("Level", "EQUAL", {});
  conditional.addParam("LEVEL", "number", "40");
  const double level = 40.7;

  std::cout << std::boolalpha << conditional.Test(static_cast<std::int32_t>(level), nullptr)
            << '\n'                                        // compares 40 with 40
            << conditional.Test(level, 40.0) << '\n'       // compares 40.7 with 40
            << conditional.Test("40.0", nullptr) << '\n';  // compares strings: "40.0" is not "40"
  //! [traps]
}

void Parameter() {
  const Section section("parameter");
  //! [parameter]
  CCondMessage conditional("Color", "EQUAL", {});
  std::cout << std::boolalpha << conditional.Test(0, nullptr) << ' ' << conditional.getParam("HUE") << '\n';

  conditional.addParam("HUE", "number", "120 degrees");
  conditional.addParam("SATURATION", "number", "100");
  std::cout << conditional.Test(120, nullptr) << ' ' << conditional.Test(100, "SATURATION") << ' '
            << conditional.Test(100, "VALUE") << '\n';
  //! [parameter]
}

void Names() {
  const Section section("names");
  //! [names]
  std::cout << std::boolalpha << CCondMessage("Level", "equal", {}).Test(1, 1) << ' '
            << CCondMessage("Level", "LESS_THAN", {}).Test(false) << ' '
            << CCondMessage("Level", "", {}).Test(1, 2) << '\n';
  //! [names]
}

//! [level]
class Level : public LevelMeasure::LevelPoint {
 public:
  explicit Level(std::int32_t percent) : percent_(percent) {}
  bool operator==(std::int32_t value) const override { return percent_ == value; }
  bool operator!=(std::int32_t value) const override { return percent_ != value; }
  bool operator<(std::int32_t value) const override { return percent_ < value; }
  bool operator>(std::int32_t value) const override { return percent_ > value; }
  bool operator<=(std::int32_t value) const override { return percent_ <= value; }
  bool operator>=(std::int32_t value) const override { return percent_ >= value; }

 private:
  std::int32_t percent_;
};
//! [level]

void LevelPoints() {
  const Section section("level");
  const CCondMessage conditional = Conditional("Level", "GREATER_THAN_OR_EQUAL", "50");
  std::cout << std::boolalpha << conditional.Test(Level(50), nullptr) << '\n';
}

void Written() {
  const Section section("written");
  //! [written]
  CCondMessage conditional("Level", "LESS_THAN", {});
  conditional.addParam("LEVEL", "number", "50");
  std::cout << conditional.toXml() << '\n';
  //! [written]
}

}  // namespace

int main() {
  Evaluate();
  Left();
  Traps();
  Parameter();
  Names();
  LevelPoints();
  Written();
}
