#pragma once

#include <functional>
#include <string>
#include <vector>

#include "Console.h"
#include "Status.h"

namespace tool {

using VisitFile = std::function<Status(const std::string& name, std::string&& content)>;
using RefuseFile = std::function<void(const std::string& name, const std::string& why)>;

// Reads every file, "-" being the standard input, whatever came of the ones before, and calls
// visit(name, content) with each, whose content it may take. A file that cannot be read, or whose visit runs
// out of memory, is refused and counts as Unreadable; without `refuse` that is an error on the console.
// Returns the worst status.
Status ForEachFile(const std::vector<std::string>& files, const VisitFile& visit,
                   const RefuseFile& refuse = {});

// Replaces directories by the files below them that end in one of the extensions, in the order of their
// names. Links to directories are not followed. A directory without such files is refused.
std::vector<std::string> FilesBelow(const std::vector<std::string>& paths,
                                    const std::vector<std::string>& extensions, const RefuseFile& refuse);

}  // namespace tool
