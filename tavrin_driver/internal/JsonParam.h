#pragma once

#include <json/value.h>

#include <tavrin_driver/DriverParam.h>
#include <cstddef>

namespace tavrin {

// The fields of an entry of "params" in JSON that it contains itself and does not inherit.
struct OwnFields {
  bool hasName = false;
  std::size_t bytes = 0;  // of type and value
};

// Reads an entry as DriverParam::fromJson() does.
OwnFields ReadJson(DriverParam& param, Json::Value& object);

}  // namespace tavrin
