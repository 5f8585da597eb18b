#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <tavrin_platform/XmlNode.h>
#include <cstddef>
#include <string>

#include "Repeat.h"

namespace {

enum Outcome : int { document, noDocument, memoryEaten };

long PeakKibibytes() {
  rusage usage{};
  getrusage(RUSAGE_SELF, &usage);
  return usage.ru_maxrss;
}

// Ends the process with a status for the result of parsing `text`, or for a growth by more than 64 MiB.
[[noreturn]] void ParseFrugallyAndExit(const std::string& text) {
  const long before = PeakKibibytes();
  const bool isDocument = zq::CreateXmlDocument(text) != nullptr;
  const bool isFrugal = PeakKibibytes() - before < 64L * 1024;
  _exit(!isFrugal ? memoryEaten : isDocument ? document : noDocument);
}

std::string Laughs(const char* sigil, const std::string& use) {
  std::string text = "<!DOCTYPE r [<!ENTITY l0 'ha'>";
  for (int level = 1; level < 30; ++level) {
    const std::string below = "&l" + std::to_string(level - 1) + ";";
    text += "<!ENTITY ";
    text += sigil;
    text += "l" + std::to_string(level) + " '" + Repeat(below, 10) + "'>";
  }
  return text + "]>" + use;
}

TEST(XmlBombDeathTest, IsRefusedInLittleMemory) {
  const std::string block = Repeat("x", 100000);
  std::string defaults;
  for (int number = 0; number < 100; ++number) defaults += " x" + std::to_string(number) + " CDATA ''";
  const std::string bombs[] = {
      Laughs("", "<r>&l29;</r>"),
      Laughs("", "<r x='&l29;'/>"),
      "<!DOCTYPE r [<!ENTITY e '" + block + "'>]><r>" + Repeat("&e;", 100000) + "</r>",
      "<!DOCTYPE r [<!ENTITY e '" + block + "'>]><r x='" + Repeat("&e;", 100000) + "'/>",
      "<!DOCTYPE r [<!ENTITY e '" + block + "'>]><r>" + Repeat("<b>&e;</b>", 100000) + "</r>",
      "<!DOCTYPE r [<!ENTITY e '" + Repeat("<b/>", 25000) + "'>]><r>" + Repeat("&e;", 1000) + "</r>",
      // small texts that expand out of proportion
      "<!DOCTYPE r [<!ENTITY e '" + block.substr(0, 10000) + "'>]><r>" + Repeat("&e;", 300) + "</r>",
      "<!DOCTYPE r [<!ENTITY e '" + block + "'>]><r>" + Repeat("&e;", 50) + "</r>",
      "<!DOCTYPE r [<!ENTITY e '" + Repeat("<b/>", 5000) + "'>]><r>" + Repeat("&e;", 5) + "</r>",
      "<!DOCTYPE r [<!ATTLIST b" + defaults + ">]><r>" + Repeat("<b/>", 200) + "</r>",
  };
  for (const std::string& bomb : bombs)
    EXPECT_EXIT(ParseFrugallyAndExit(bomb), testing::ExitedWithCode(noDocument), "") << bomb.substr(0, 100);
}

// A default value that occurs once in the text is not copied for each element that has it.
TEST(XmlBombDeathTest, OfDefaultAttributesTakesLittleMemory) {
  const std::string text =
      "<!DOCTYPE r [<!ATTLIST b x CDATA '" + Repeat("d", 100000) + "'>]><r>" + Repeat("<b/>", 20000) + "</r>";
  const auto isFrugal = [](int status) { return WIFEXITED(status) && WEXITSTATUS(status) != memoryEaten; };
  EXPECT_EXIT(ParseFrugallyAndExit(text), isFrugal, "");
}

}  // namespace
