// The code of the guide to testing that is not in examples/thermostat; testing.txt contains what it prints.

#include <gmock/gmock.h>
#include <gtest/gtest-spi.h>

#include <tavrin_driver/ProjectValidator.h>
#include <tavrin_testing/Diagnostics.h>
#include <tavrin_testing/Testing.h>
#include <iostream>
#include <string>
#include <string_view>

#include "Sections.h"
#include "examples/thermostat/Thermostat.h"

namespace {

using namespace tavrin_testing;
using testing::ElementsAre;
using testing::HasSubstr;

// Prints the messages of the expectations that fail in a call.
template <class Call>
void Show(const char* name, const Call& expectations) {
  testing::TestPartResultArray failures;
  {
    const testing::ScopedFakeTestPartResultReporter reporter(
        testing::ScopedFakeTestPartResultReporter::INTERCEPT_ONLY_CURRENT_THREAD, &failures);
    expectations();
  }
  const Section section(name);
  for (int i = 0; i < failures.size(); ++i) {
    // Some versions of GoogleTest end a message with a line break.
    const std::string_view message = failures.GetTestPartResult(i).message();
    std::cout << message.substr(0, message.find_last_not_of('\n') + 1) << '\n';
  }
}

void Mismatch() {
  Show("mismatch", [] {
    //! [mismatch]
    const Command command = Command("SET_POINT").with("CELSIUS", 21).with("MODE", "HEAT");
    EXPECT_THAT(command, IsCommand("SET_POINT", HasParam("CELSIUS", 21.5)));
    EXPECT_THAT(Notification("SET_POINT", 20), EqualTo(Answer("SET_POINT", 20.5)));
    //! [mismatch]
  });
}

void Tools() {
  Show("tools", [] {
    Recorder<IBindMessage> sent;
    Thermostat thermostat{sent.sink()};
    thermostat.Receive(Notification("TEMPERATURE_CHANGED", 19.5).with("SENSOR", "hall"));
    FakeVariables variables{{7, 1001, 19.5}};
    thermostat.Execute(Command("SET_POINT", variables).withVariable("CELSIUS", 7, 1001));
    {
      //! [error]
      const Command command = Command("SET_POINT").with("CELSIUS", "hot");
      const std::string error = ErrorOf<ExceptionParameterInvalid>([&] { thermostat.Execute(command); });
      EXPECT_THAT(error, HasSubstr("expected a number from 5 to 30"));
      //! [error]
    }
    {
      //! [log]
      const Command command = Command("SET_POINT").with("CELSIUS", 21);
      LogCapture log;
      EXPECT_THROW(command.getParamRequiredIntRanged("CELSIUS", 30, 5), ExceptionParameterInvalid);
      EXPECT_THAT(log.warnings(), ElementsAre(HasSubstr("Incorrect range")));
      //! [log]
    }
    //! [finding]
    zq::ProjectValidator validator("<currentstate>\n  <property/>\n</currentstate>");
    EXPECT_FALSE(validator.valid());
    EXPECT_THAT(validator, HasFinding("properties", 2));
    //! [finding]
    //! [diagnostics]
    const std::string text = "<devicecommand>\n<command></devicecommand>";
    EXPECT_THAT(tavrin::diagnostics::DiagnoseCommand(text), HasFinding("command/malformed-xml", 2));
    //! [diagnostics]
  });
}

}  // namespace

int main() {
  Mismatch();
  Tools();
}
