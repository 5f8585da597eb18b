#pragma once

#include <functional>
#include <string>
#include <vector>

#include "Console.h"
#include "Status.h"

namespace tool {

// Reads every file, "-" being the standard input, whatever came of the ones before, and calls
// visit(name, content) with each, whose content it may take. A file that cannot be read is told of and counts
// as Unreadable.
// @return the worst status
Status ForEachFile(const std::vector<std::string>& files,
                   const std::function<Status(const std::string& name, std::string&& content)>& visit);

}  // namespace tool
