#include <gtest/gtest.h>

#include <tavrin_diagnostics/Diagnostics.h>
#include <cstdint>
#include <string>

#include "ProjectText.h"
#include "Scale.h"
#include "SmallStack.h"

namespace tavrin::diagnostics {
namespace {

TEST(ProjectDiagnosisSize, SurvivesProjectsOfAnyDepth) {
  std::string items;
  constexpr std::uint32_t levels = largeCount / 10;
  for (std::uint32_t i = 0; i < levels; ++i) items += "<item><id>0</id><name/><type>2</type><subitems>";
  for (std::uint32_t i = 0; i < levels; ++i) items += "</subitems></item>";
  RunOnSmallStack([&] { EXPECT_EQ(DiagnoseProject(ProjectWith(items)).findings, 2 * levels - 1); });
}

}  // namespace
}  // namespace tavrin::diagnostics
