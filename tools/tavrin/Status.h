#pragma once

#include <algorithm>

namespace tool {

// How the program ends, the same for every subcommand.
enum class Status : int {
  Fine = 0,
  No = 1,          // all could be read, and the answer to what was asked is no
  Usage = 2,       // the command line makes no sense
  Unreadable = 3,  // a file cannot be read or has the wrong content, or the output cannot be written
};

// The description in --help.
inline constexpr char statusHelp[] =
    "Exit status (of several files the worst one counts):\n"
    "  0  ok\n"
    "  1  a check failed: a required parameter is missing or invalid, a conditional is\n"
    "     false, a project has findings, or with --strict there are warnings\n"
    "  2  usage error\n"
    "  3  a file or a colour cannot be read or has the wrong content, or the output\n"
    "     cannot be written\n";

inline Status Worst(Status one, Status other) { return std::max(one, other); }

}  // namespace tool
