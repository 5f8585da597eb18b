#pragma once

#include <cstddef>
#include <cstdint>

// The limits that the loaders and the validator check.
namespace tavrin::limits {

// The maximum number of entries of the wrapper of a JSON command.
inline constexpr std::size_t jsonWrapper = 3;

// Returns the number of bytes that the entries of "params" may inherit in total in a JSON text of that
// length.
constexpr std::uint64_t MaxInherited(std::uint64_t textLength) {
  constexpr std::uint64_t factor = 10;
  constexpr std::uint64_t always = std::uint64_t{1} << 20U;
  return textLength > always / factor ? textLength * factor : always;
}

// Ids and types of a project's items.
inline constexpr std::uint32_t minId = 1;
inline constexpr std::uint32_t maxId = 200000;
inline constexpr std::int32_t minType = 1;
inline constexpr std::int32_t maxType = 9;

// The item that represents the whole system.
inline constexpr std::uint32_t systemItemId = 1;
inline constexpr std::int32_t systemItemType = 1;

// The version of a project.
inline constexpr std::int32_t maxMajor = 5;
inline constexpr std::int32_t maxMajorForMinor = 100;
inline constexpr std::int32_t maxBuild = 100;

}  // namespace tavrin::limits
