#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

// The rules of numbers and characters, implemented character by character to compare the library with.
namespace naive {

// Returns the leading number after white space, clamped to the type, or 0 if there is none. A negative UInt32
// wraps.
std::int32_t Int32(const std::string& text);
std::uint32_t UInt32(const std::string& text);
double Double(const std::string& text, char point = '.');

// Returns the number that a whole string is, from -2147483648 to `max`, or no value. White space is 0.
std::optional<std::int64_t> WholeNumber(const std::string& text, std::int64_t max);

// Returns a string with each byte replaced that begins no character of XML.
std::string Writable(const std::string& text);

bool IsBlank(const std::string& text);

bool IsSecret(const std::string& name);

// Splits an input into `count` parts, which represent several strings.
std::vector<std::string> Parts(const std::string& input, std::size_t count);

}  // namespace naive
