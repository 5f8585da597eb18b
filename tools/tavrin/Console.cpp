#include "Console.h"

#include <fmt/format.h>
#include <json/writer.h>
#include <unistd.h>

#include <cstdlib>
#include <iostream>
#include <limits>
#include <string_view>

#include "Text.h"

namespace tool {
namespace {

// Returns an environment variable, or "" if it is not set.
std::string_view Environment(const char* name) {
  const char* const value = std::getenv(name);
  return value != nullptr ? value : "";
}

std::string Styled(const std::string& text, const fmt::text_style& style, bool coloured) {
  return coloured ? fmt::format(style, "{}", text) : text;
}

std::string Line(const std::string& file, const Finding& finding, const std::string& label) {
  const auto& [line, column] = finding.place;
  const std::string place = finding.place != zq::XmlPosition{} ? fmt::format("{}:{}:", line, column) : "";
  return fmt::format("{}:{} {}{}\n", Printable(file), place, label, finding.text);
}

// Writes each line with one call, because the stream is not buffered.
void Say(const std::string& file, const Finding& finding, const std::string& label) {
  std::cerr << "tavrin: " + Line(file, finding, label);
}

}  // namespace

std::ostream& Console::Out() { return std::cout; }

std::ostream& Console::Err() { return std::cerr; }

std::string Console::JsonText(const Json::Value& value) {
  Json::StreamWriterBuilder builder;
  builder["indentation"] = "";
  // The number of digits that every decimal number keeps; with more, 0.66 would end in a 3.
  builder["precision"] = std::numeric_limits<double>::digits10;
  return Json::writeString(builder, value);
}

void Console::WriteJson(const Json::Value& value) { Out() << JsonText(value) << '\n'; }

void Console::WriteFinding(const std::string& file, const Finding& finding) {
  Out() << Line(file, finding, "");
}

void Console::Summarize(const std::string& file, const std::string& text) { Say(file, {{}, text}, ""); }

void Console::Error(const std::string& file, const Finding& finding) { Say(file, finding, ""); }

void Console::Note(const std::string& file, const Finding& finding) const {
  Say(file, finding, Styled("note: ", fmt::fg(fmt::terminal_color::cyan), Colours(STDERR_FILENO)));
}

std::string Console::Paint(const std::string& text, const fmt::text_style& style) const {
  return Styled(text, style, Colours(STDOUT_FILENO));
}

std::string Console::Paint(const std::string& text, const fmt::text_style& style, int descriptor) const {
  return Styled(text, style, Colours(descriptor));
}

std::string Console::Swatch(std::uint8_t red, std::uint8_t green, std::uint8_t blue) const {
  return Colours(STDOUT_FILENO) ? Paint("    ", fmt::bg(fmt::rgb(red, green, blue))) : "";
}

bool Console::Colours(int descriptor) const {
  if (colorChoice != "auto") return colorChoice == "always";
  return isatty(descriptor) != 0 && Environment("NO_COLOR").empty() && Environment("TERM") != "dumb";
}

}  // namespace tool
