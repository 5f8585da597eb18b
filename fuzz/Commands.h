#pragma once

#include <tavrin_driver/CmdMessage.h>
#include <tavrin_driver/DriverParam.h>
#include <map>
#include <string>

#include "FakeVariableManager.h"

using ParamMap = std::map<std::string, DriverParam>;

bool AreSame(const DriverParam& left, const DriverParam& right);
bool AreSame(const ParamMap& left, const ParamMap& right);

// What parameters read as after they were written as XML: of a static one the ids are not written, of a
// variable one the value, and texts keep what XML can hold. The first one of a name wins.
ParamMap AfterWriting(const ParamMap& params);

// What has to hold of every command that was read.
void CheckCommand(const CCmdMessage& message, FakeVariableManager& variables);
