#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

// The rules of texts once more, character by character, to compare the library with.
namespace naive {

// The leading number behind white space, clamped to the type; 0 without one. A negative UInt32 wraps.
std::int32_t Int32(const std::string& text);
std::uint32_t UInt32(const std::string& text);
double Double(const std::string& text, char point = '.');

// The number that a whole text is, from -2147483648 to `max`; nothing where it is none. Blank is 0.
std::optional<std::int64_t> WholeNumber(const std::string& text, std::int64_t max);

// A text as XML can hold it: each byte that begins no character is replaced.
std::string Writable(const std::string& text);

bool IsBlank(const std::string& text);

bool IsSecret(const std::string& name);

// The parts of an input that stands for several texts; there are always `count`.
std::vector<std::string> Parts(const std::string& input, std::size_t count);

}  // namespace naive
