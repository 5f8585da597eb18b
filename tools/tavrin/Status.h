#pragma once

#include <algorithm>

namespace tool {

// The exit status of the program, the same for every subcommand.
enum class Status : int {
  success = 0,
  checkFailed = 1,  // all input could be read, but a requested check failed
  usage = 2,        // a usage error
  unreadable = 3,   // a file cannot be read, a message or a colour is malformed, or output is lost
};

// The description in --help.
inline constexpr char statusHelp[] =
    "Exit status (of several files, the highest one):\n"
    "  0  success\n"
    "  1  a check failed: a required parameter is missing or invalid, a conditional is\n"
    "     false, a project has findings, or, with --strict, there are warnings\n"
    "  2  usage error\n"
    "  3  a file cannot be read, a message or a colour is malformed, or the output\n"
    "     cannot be written\n";

inline Status Worst(Status one, Status other) { return std::max(one, other); }

}  // namespace tool
