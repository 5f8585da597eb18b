#pragma once

#include <functional>
#include <string>
#include <vector>

#include "Console.h"
#include "Status.h"

namespace tool {

using VisitFile = std::function<Status(const std::string& name, std::string&& content)>;
using RefuseFile = std::function<void(const std::string& name, const std::string& why)>;

// Reads every file, where "-" is the standard input, and calls visit(name, content) for each; the function
// may move from the content. A file that cannot be read, or that needs more memory than is available, is
// passed to `refuse`, by default an error on the console, and has the status Unreadable. The other files are
// still read. Returns the worst status.
Status ForEachFile(const std::vector<std::string>& files, const VisitFile& visit,
                   const RefuseFile& refuse = {});

// Replaces directories by the files below them with one of the extensions, sorted by name. Links to
// directories are not followed. A directory without such files is passed to `refuse`.
std::vector<std::string> FilesBelow(const std::vector<std::string>& paths,
                                    const std::vector<std::string>& extensions, const RefuseFile& refuse);

}  // namespace tool
