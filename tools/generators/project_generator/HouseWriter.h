#pragma once

#include <cstdint>
#include <string>

// Returns the text of a project with the given number of items, including the system item: a site with
// buildings of four floors with ten rooms with twenty devices each, indented as a controller writes it. The
// same number results in the same text everywhere.
//
// A project can contain 200000 ids. In a larger one the ids repeat, and each further item is a duplicate.
std::string HouseOf(std::uint32_t items);
