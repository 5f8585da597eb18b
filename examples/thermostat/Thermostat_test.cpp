#include "Thermostat.h"

#include <gmock/gmock.h>

#include <tavrin_testing/Testing.h>

namespace {

using namespace tavrin_testing;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

//! [fixture]
class ThermostatTest : public testing::Test {
 protected:
  FakeVariables variables{{7, 1001, 19.5}};
  Recorder<IBindMessage> sent;
  Thermostat thermostat{sent.sink()};
};
//! [fixture]

//! [command]
TEST_F(ThermostatTest, SetPointIsSentWithItsFraction) {
  thermostat.Execute(Command("SET_POINT").with("CELSIUS", 21.5));
  EXPECT_THAT(sent.messages(), ElementsAre(IsNotification("SET_POINT_CHANGED", HasData(21.5))));
}
//! [command]

//! [variable]
TEST_F(ThermostatTest, SetPointFollowsAVariable) {
  const Command follow = Command("SET_POINT", variables).withVariable("CELSIUS", 7, 1001);
  thermostat.Execute(follow);
  variables.set(7, 1001, "22,5");
  thermostat.Execute(follow);
  EXPECT_THAT(sent.messages(), ElementsAre(HasData(19.5), HasData(22.5)));
  EXPECT_EQ(variables.reads(7, 1001), 2);
}

TEST_F(ThermostatTest, SetPointNeedsItsVariable) {
  variables.fail(7, 1001);
  const Command follow = Command("SET_POINT", variables).withVariable("CELSIUS", 7, 1001);
  EXPECT_THAT(ErrorOf<ExceptionParameterMissing>([&] { thermostat.Execute(follow); }),
              HasSubstr("variable 1001 of device 7"));
}
//! [variable]

//! [refused]
TEST_F(ThermostatTest, RefusedSetPointChangesNothing) {
  const Command tooHot = Command("SET_POINT").with("CELSIUS", 31);
  EXPECT_THAT(ErrorOf<ExceptionParameterInvalid>([&] { thermostat.Execute(tooHot); }),
              HasSubstr("\"CELSIUS\" is \"31\", expected a number from 5 to 30"));
  EXPECT_THAT(sent.messages(), IsEmpty());
  thermostat.Receive(BindingCommand("GET_SET_POINT"));
  EXPECT_THAT(sent.last(), IsNotification("SET_POINT", HasData(20)));
}
//! [refused]

//! [answer]
TEST_F(ThermostatTest, QueryIsAnswered) {
  thermostat.Receive(BindingCommand("GET_SET_POINT"));
  EXPECT_THAT(sent.messages(), ElementsAre(EqualTo(Answer("SET_POINT", 20))));
}
//! [answer]

//! [conditional]
TEST_F(ThermostatTest, TemperatureIsComparedWithItsFraction) {
  thermostat.Receive(Notification("TEMPERATURE_CHANGED", 19.5));
  EXPECT_TRUE(thermostat.Evaluate(DeviceConditional("TEMPERATURE").lessThan("CELSIUS", 19.6)));
  EXPECT_FALSE(thermostat.Evaluate(DeviceConditional("TEMPERATURE").lessThan("CELSIUS", 19.5)));
  EXPECT_TRUE(thermostat.Evaluate(DeviceConditional("TEMPERATURE").equal("CELSIUS", 19.5)));
}
//! [conditional]

TEST_F(ThermostatTest, HeatsBelowTheSetPointUnlessItIsOff) {
  const DeviceConditional isHeating("HEATING", "EQUAL");
  EXPECT_FALSE(thermostat.Evaluate(isHeating));
  thermostat.Receive(Notification("TEMPERATURE_CHANGED", 19.5));
  EXPECT_TRUE(thermostat.Evaluate(isHeating));
  thermostat.Execute(Command("SET_MODE").with("MODE", "off"));
  EXPECT_FALSE(thermostat.Evaluate(isHeating));
}

TEST_F(ThermostatTest, BrokenSensorIsReportedAndIgnored) {
  const BindingMessage broken = Notification("TEMPERATURE_CHANGED", "n/a");
  EXPECT_THAT(ErrorOf<ExceptionParameterInvalid>([&] { thermostat.Receive(broken); }),
              HasSubstr("the data is \"n/a\""));
  EXPECT_TRUE(thermostat.Evaluate(DeviceConditional("TEMPERATURE").equal("CELSIUS", 20)));
}

}  // namespace
