// The driver of a thermostat.
#pragma once

#include <tavrin_driver/IBindMessage.h>
#include <tavrin_driver/ICmdMessage.h>
#include <tavrin_driver/ICondMessage.h>
#include <functional>

//! [interface]
// Heats when the temperature is below the set point. A temperature sensor is bound to it.
class Thermostat {
 public:
  enum class Mode { off, heat };

  // Sends a message to all devices that are bound to the thermostat.
  using Send = std::function<void(const IBindMessage&)>;

  explicit Thermostat(Send send) : send_(std::move(send)) {}

  // Executes SET_POINT and SET_MODE. A rejected command throws and changes nothing.
  void Execute(const ICmdMessage& command);

  // Follows TEMPERATURE_CHANGED, and answers the query GET_SET_POINT.
  void Receive(const IBindMessage& message);

  // Evaluates TEMPERATURE and HEATING.
  bool Evaluate(const ICondMessage& conditional) const;

 private:
  bool IsHeating() const { return mode_ == Mode::heat && temperature_ < setPoint_; }

  Send send_;
  Mode mode_ = Mode::heat;
  double setPoint_ = 20;
  double temperature_ = 20;
};
//! [interface]
