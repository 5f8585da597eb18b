#pragma once

#include <json/value.h>

#include <tavrin_driver/DriverParam.h>
#include <cstddef>

namespace tavrin {

// What an entry of "params" in JSON has itself and does not inherit from the entry before it.
struct OwnFields {
  bool hasName = false;
  std::size_t bytes = 0;  // of type and value
};

// Reads an entry as DriverParam::fromJson() does.
OwnFields ReadJson(DriverParam& param, Json::Value& object);

}  // namespace tavrin
