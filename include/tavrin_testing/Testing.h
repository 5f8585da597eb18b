/// @file
/// The whole test kit, for tests of drivers with GoogleTest and GoogleMock.
///
/// The kit is header-only and not part of the binary interface: it may change with every release. In CMake it
/// is the target `tavrin::testing` of `find_package(tavrin_driver REQUIRED COMPONENTS driver testing)`.
///
/// @code
/// Recorder<IBindMessage> sent;
/// Thermostat thermostat{sent.sink()};
/// thermostat.Execute(Command("SET_POINT").with("CELSIUS", 21.5));
/// EXPECT_THAT(sent.messages(), ElementsAre(IsNotification("SET_POINT_CHANGED", HasData(21.5))));
/// @endcode
#pragma once

#include <tavrin_testing/Builders.h>
#include <tavrin_testing/Errors.h>
#include <tavrin_testing/FakeLevel.h>
#include <tavrin_testing/FakeVariables.h>
#include <tavrin_testing/LogCapture.h>
#include <tavrin_testing/Matchers.h>
#include <tavrin_testing/MessageView.h>
#include <tavrin_testing/ParamValue.h>
#include <tavrin_testing/Printers.h>
#include <tavrin_testing/Recorder.h>

/// The test kit: fakes, builders, printers, matchers, a recorder and a log capture.
namespace tavrin_testing {}
