#pragma once

// The messages of the project validator, as fmt format strings. The diagnostics recognise messages by these
// formats.
namespace tavrin::message {

inline constexpr char notParsed[] = "invalid project, could not parse project";
inline constexpr char noRoot[] = "invalid project, xml document root is nullptr";
inline constexpr char unreadable[] = "invalid project, {}";

inline constexpr char missing[] = "{} is missing";
inline constexpr char missingItem[] = "item {} is missing";
inline constexpr char wrongName[] = "expected {}, got {}";
inline constexpr char hasAttributes[] = "{} has attributes";
inline constexpr char extraSection[] = "extra tags in project {}";

inline constexpr char noSystemItem[] = "systemitems contains no items";
inline constexpr char moreSystemItems[] = "systemitems contains more than one item, {}";
inline constexpr char extraInSystemItem[] = "extra elements in item 1, {}";

inline constexpr char noVersion[] = "item 1 is missing {}";
inline constexpr char extraAttributes[] = "item 1 has extra attributes";
inline constexpr char oldVersion[] = "the validator can only check 2.1.0 or greater";
inline constexpr char invalidMajor[] = "item 1 has an invalid major version number {}";
inline constexpr char invalidMinor[] = "item 1 has an invalid minor version number {}";
inline constexpr char invalidBuild[] = "item 1 hasf a invalid build number {}";
inline constexpr char invalidRevision[] = "item 1 has an invalid revision number {}";

inline constexpr char noElements[] = "item has no elements";
inline constexpr char invalidId[] = "item has an invalid id {}";
inline constexpr char wrongId[] = "expected item {}, got item {}";
inline constexpr char duplicateId[] = "id {} is a duplicate, {} of them seen so far";
inline constexpr char invalidType[] = "item {} has an invalid type {}";
inline constexpr char wrongType[] = "expected type {}, got {}";
inline constexpr char wrongLeading[] = "cannot happen, expected {}, got {}";
inline constexpr char noOptional[] = "item {} is missing all optional elements";
inline constexpr char invalidDriverFile[] = "item {} has invalid zqi file name {}";
inline constexpr char twoDrivers[] = "item {} contains both devicedata and zqi";
inline constexpr char duplicateElement[] = "item {} contains duplicate {}";
inline constexpr char unknownElement[] = "item {} contains an invalid {}";

}  // namespace tavrin::message
