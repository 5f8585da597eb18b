#pragma once

#include <fmt/color.h>
#include <json/value.h>

#include <tavrin_platform/XmlPosition.h>
#include <cstdint>
#include <iosfwd>
#include <string>

namespace tool {

// A position in a file; zeros if it is unknown.

// A message about a file.
struct Finding {
  zq::XmlPosition place;
  std::string text;
};

// The output of the program: results to the standard output, everything else to the standard error stream.
class Console {
 public:
  // The value of --color; "auto" colours terminals unless NO_COLOR is set or TERM is dumb.
  std::string colorChoice = "auto";

  // Results.
  static std::ostream& Out();

  // Messages about results.
  static std::ostream& Err();

  // A document on one line, in ASCII.
  static std::string JsonText(const Json::Value& value);

  // Writes a result for scripts: one document per line, in ASCII.
  static void WriteJson(const Json::Value& value);

  // "FILE:LINE:COLUMN: text": a result with a position.
  static void WriteFinding(const std::string& file, const Finding& finding);

  // "tavrin: FILE: text": the result for a file, in one line.
  static void Summarize(const std::string& file, const std::string& text);

  // "tavrin: FILE:LINE:COLUMN: text": the reason why there is no result.
  static void Error(const std::string& file, const Finding& finding);

  // The same with "note: ": additional information about a result.
  void Note(const std::string& file, const Finding& finding) const;

  // The text in a style when results are coloured, otherwise unchanged.
  std::string Paint(const std::string& text, const fmt::text_style& style) const;

  // The same for what is written to the descriptor of an output stream.
  std::string Paint(const std::string& text, const fmt::text_style& style, int descriptor) const;

  // A patch of a colour when results are coloured, "" otherwise.
  std::string Swatch(std::uint8_t red, std::uint8_t green, std::uint8_t blue) const;

 private:
  bool Colours(int descriptor) const;
};

}  // namespace tool
