#pragma once

#include <cstdint>
#include <string>

// The text of a project of that many items, the system item counted: a site of buildings with four floors of
// ten rooms with twenty devices each, as many as it takes, laid out as a controller writes it. The same count
// gives the same text everywhere.
//
// A project can hold 200000 ids. A larger one begins anew with the ids, and each further item is a duplicate.
std::string HouseOf(std::uint32_t items);
