// The installed library as authors of drivers use it: outside the tree, with CMake and pkg-config. Everything
// is built and run below one temporary directory, to which the installation was moved.

#include <gmock/gmock.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <map>
#include <set>
#include <string>
#include <vector>

#include "RunProgram.h"
#include "TextFiles.h"

namespace {

namespace fs = std::filesystem;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

// The compiler options of the build also apply to projects that use the installation. For another
// architecture, the libraries of the system are in a separate directory.
// NOLINTBEGIN(readability-redundant-string-init): empty in some builds
const std::string compiler = TAVRIN_CXX_COMPILER;
const std::string compilerFlags = TAVRIN_CXX_FLAGS;
const std::string toolchain = TAVRIN_TOOLCHAIN;
const std::string libraryDirectory = TAVRIN_LIBDIR;
const std::string systemLibraries = TAVRIN_SYSTEM_LIBRARIES;
// NOLINTEND(readability-redundant-string-init)
const fs::path build = TAVRIN_BUILD_DIR;

ProgramOutcome Execute(const std::vector<std::string>& commandLine, const std::string& directory = ".") {
  ProgramRun run;
  run.commandLine = commandLine;
  run.directory = directory;
  // An environment that refers to the tree would hide what an installation lacks.
  run.environment = {
      {"LD_LIBRARY_PATH", systemLibraries}, {"CMAKE_PREFIX_PATH", ""}, {"PKG_CONFIG_PATH", ""}};
  return RunProgram(run);
}

ProgramOutcome Shell(const std::string& command, const std::string& directory = ".") {
  return Execute({"/bin/sh", "-ec", command}, directory);
}

std::string Quoted(const fs::path& path) { return "'" + path.string() + "'"; }

class Installation : public testing::Test {
 protected:
  static void SetUpTestSuite() {
    fs::remove_all(scratch);
    fs::create_directories(scratch);
    const ProgramOutcome outcome =
        Execute({TAVRIN_CMAKE, "--install", build, "--strip", "--prefix", scratch / "first"});
    ASSERT_EQ(outcome.status, 0) << outcome;
    fs::rename(scratch / "first", prefix);
  }

  static std::vector<fs::path> InstalledFiles() {
    std::vector<fs::path> files;
    for (const auto& entry : fs::recursive_directory_iterator(prefix)) {
      if (entry.is_regular_file() && !entry.is_symlink()) files.push_back(entry.path());
    }
    return files;
  }

  static std::set<std::string> InstalledHeaders() {
    std::set<std::string> headers;
    for (const auto& entry : fs::recursive_directory_iterator(prefix / "include")) {
      if (entry.is_regular_file()) headers.insert(fs::relative(entry.path(), prefix / "include"));
    }
    return headers;
  }

  // Writes a source file that includes all headers.
  static fs::path SourceWithAllHeaders() {
    fs::path source = scratch / "headers.cpp";
    std::ofstream file(source);
    for (const std::string& header : InstalledHeaders()) file << "#include <" << header << ">\n";
    return source;
  }

  static fs::path CMakePackage() { return prefix / libraryDirectory / "cmake/tavrin_driver"; }

  static std::string PkgConfig(const std::string& arguments) {
    const std::string system =
        systemLibraries.empty() ? "" : "PKG_CONFIG_LIBDIR=" + Quoted(systemLibraries + "/pkgconfig") + ' ';
    return system + "PKG_CONFIG_PATH=" + Quoted(prefix / libraryDirectory / "pkgconfig") + " pkg-config " +
           arguments;
  }

  // Checks that the sample programs print the same as those in the tree.
  static void ExpectToRunAsInTheTree(const fs::path& programs) {
    const std::string commands = prefix / TAVRIN_DOCDIR / "examples/commands";
    const auto run = [&](const fs::path& directory, const char* name) {
      return Execute({directory / name, "light_on.xml", "light_level.json", "../bindings/level_changed.xml",
                      "../conditionals/level_below.xml", "../broken/truncated.xml"},
                     commands);
    };
    for (const char* const name : {"first_command", "light_driver"}) {
      const ProgramOutcome outcome = run(programs, name);
      EXPECT_EQ(outcome, run(build / "examples", name));
      EXPECT_THAT(outcome.out, Not(IsEmpty()));
    }
    EXPECT_EQ(Execute({programs / "lamp_color", "#ffaa00"}),
              (ProgramOutcome{0, "#ffaa00: x 0.4950, y 0.4451\n", ""}));
  }

  static const fs::path scratch;
  static const fs::path prefix;
};

const fs::path Installation::scratch = build / "tests/installation scratch";
const fs::path Installation::prefix = scratch / "prefix";

TEST_F(Installation, ContainsTheToolAndItsLibrariesBelowAnyPrefix) {
  const ProgramOutcome tool = Execute({prefix / "bin/tavrin", "--version"});
  EXPECT_EQ(tool, (ProgramOutcome{0, "tavrin " TAVRIN_VERSION "\n", ""}));
  const auto librariesOf = [](const fs::path& file) { return Shell(TAVRIN_LDD " " + Quoted(file)).out; };
  const std::string driver = "libtavrin_driver.so.1";
  EXPECT_THAT(librariesOf(prefix / "bin/tavrin"),
              HasSubstr("/prefix/bin/../" + libraryDirectory + '/' + driver));
  for (const std::string name : {"xml", "support", "logger"}) {
    EXPECT_THAT(librariesOf(prefix / libraryDirectory / driver),
                HasSubstr("/prefix/" + libraryDirectory + "/libtavrin_" + name + ".so.1 "));
  }
}

TEST_F(Installation, ContainsTheManualPageAndTheCompletions) {
  EXPECT_THAT(ReadFile(prefix / "share/man/man1/tavrin.1"), HasSubstr(".Nm tavrin"));
  EXPECT_THAT(ReadFile(prefix / "share/bash-completion/completions/tavrin"), HasSubstr("complete -F"));
  EXPECT_THAT(ReadFile(prefix / "share/zsh/site-functions/_tavrin"), HasSubstr("#compdef tavrin"));
  EXPECT_THAT(ReadFile(prefix / "share/fish/vendor_completions.d/tavrin.fish"),
              HasSubstr("complete -c tavrin"));
}

TEST_F(Installation, HasDocumentationWithoutDeadLinks) {
  const fs::path directory = prefix / TAVRIN_DOCDIR;
  for (const char* const page :
       {"README.md", "CHANGELOG.md", "docs/guides/commands.md", "html/docs/guides/commands.html"})
    EXPECT_TRUE(fs::exists(directory / page)) << page;
  EXPECT_EQ(Execute({TAVRIN_SOURCE_DIR "/docs/check_links.py", directory}), (ProgramOutcome{0, "", ""}));
}

TEST_F(Installation, ContainsNoPathOfTheBuild) {
  const std::vector<fs::path> files = InstalledFiles();
  EXPECT_GT(files.size(), 30U);
  for (const fs::path& file : files) {
    const std::string content = ReadFile(file);
    EXPECT_EQ(content.find(TAVRIN_SOURCE_DIR), std::string::npos) << file;
    EXPECT_EQ(content.find(build.string()), std::string::npos) << file;
  }
}

TEST_F(Installation, ContainsExactlyThePublicHeaders) {
  std::set<std::string> expected = {"tavrin_driver/BindMessage.h", "tavrin_driver/CmdMessage.h",
                                    "tavrin_driver/CondMessage.h"};
  for (const auto& entry : fs::recursive_directory_iterator(TAVRIN_SOURCE_DIR "/include")) {
    if (entry.path().extension() == ".h" && entry.path().parent_path().filename() != "internal")
      expected.insert(fs::relative(entry.path(), TAVRIN_SOURCE_DIR "/include"));
  }
  EXPECT_EQ(InstalledHeaders(), expected);
}

// With warnings that the author of a driver may have enabled, and no other header included before.
TEST_F(Installation, HasHeadersThatCompileAlone) {
  const fs::path sources = scratch / "headers";
  fs::create_directories(sources);
  for (const std::string& header : InstalledHeaders()) {
    std::string name = header + ".cpp";
    std::replace(name.begin(), name.end(), '/', '_');
    std::ofstream(sources / name) << "#include <" << header << ">\n#include <" << header << ">\n";
  }
  EXPECT_EQ(Shell("printf '%s\\n' *.cpp | xargs -n 1 -P $(nproc) " + compiler + ' ' + compilerFlags +
                      " -std=c++17 -Wall -Wextra -Wpedantic -Wconversion -Wshadow -Werror -fsyntax-only"
                      " -isystem /usr/include/jsoncpp -I" +
                      Quoted(prefix / "include"),
                  sources),
            (ProgramOutcome{0, "", ""}));
}

// Checks a file with the installed headers.
ProgramOutcome Compile(const std::string& command, const fs::path& source, const fs::path& prefix) {
  return Shell(command + ' ' + compilerFlags + " -fsyntax-only -isystem /usr/include/jsoncpp -I" +
               Quoted(prefix / "include") + ' ' + Quoted(source));
}

TEST_F(Installation, HasHeadersForLaterStandards) {
  const fs::path source = SourceWithAllHeaders();
  for (const std::string standard : {"c++20", "c++23"}) {
    EXPECT_EQ(Compile(compiler + " -Wall -Wextra -Wpedantic -Wconversion -Wshadow -Werror -std=" + standard,
                      source, prefix),
              (ProgramOutcome{0, "", ""}))
        << standard;
  }
}

// GCC 12 does not warn if a virtual function is called through a reference.
TEST_F(Installation, LetsClangWarnOfIgnoredFailuresAndOnlyDeclaresJsonCpp) {
  const fs::path source = scratch / "results.cpp";
  const std::vector<std::string> calls = {"command.Load(text)",
                                          "message.Load(text)",
                                          "message.loadXml(text)",
                                          "message.loadJson(text)",
                                          "message.parseJsonObject(object)",
                                          "command.clone()",
                                          "zq::Clone(command)",
                                          "conditional.fromXml(driver, \"\")",
                                          "condition.fromXml(driver, \"\")",
                                          "condition.fromXml(text)",
                                          "color.fromString(text)",
                                          "color.nearestSRGB()"};
  std::ofstream file(source);
  file << "#include <tavrin_driver/Clone.h>\n"
          "#include <tavrin_driver/CmdMessage.h>\n"
          "#include <tavrin_driver/ZqColor.h>\n"
          "template <class Type, class = void> constexpr bool isComplete = false;\n"
          "template <class Type> constexpr bool isComplete<Type, std::void_t<decltype(sizeof(Type))>> = "
          "true;\n"
          "static_assert(isComplete<CCmdMessage> && !isComplete<Json::Value>);\n"
          "void Use(ICmdMessage& command, CCmdMessage& message, ICondMessage& conditional, CCondMessage& "
          "condition,\n"
          "         ZqColor& color, const std::string& text, Json::Value& object, IDriverX* driver) {\n";
  for (const std::string& call : calls) file << call << ";\n";
  file << "}\n";
  file.close();
  const ProgramOutcome outcome = Compile("clang++ -std=c++17", source, prefix);
  EXPECT_EQ(outcome.status, 0) << outcome;
  for (std::size_t i = 0; i < calls.size(); ++i)
    EXPECT_THAT(outcome.err, HasSubstr("results.cpp:" + std::to_string(9 + i) + ":")) << calls[i];
}

// In each standard, and with the checks of documentation comments that Clang has in -Weverything.
TEST_F(Installation, HasHeadersThatClangAcceptsWithTheirDocumentation) {
  const fs::path source = SourceWithAllHeaders();
  for (const std::string standard : {"c++17", "c++20", "c++2b"}) {
    EXPECT_EQ(
        Compile(
            "clang++ -Wall -Wextra -Wpedantic -Wconversion -Wshadow -Wdocumentation -Wdocumentation-pedantic"
            " -Wdocumentation-unknown-command -Werror -std=" +
                standard,
            source, prefix),
        (ProgramOutcome{0, "", ""}))
        << standard;
  }
}

TEST_F(Installation, PassesOnlyTheLanguageStandardToItsConsumers) {
  const std::string targets = ReadFile(CMakePackage() / "tavrin_driver-targets.cmake");
  EXPECT_THAT(targets, HasSubstr("INTERFACE_COMPILE_FEATURES \"cxx_std_17\""));
  EXPECT_THAT(targets, Not(HasSubstr("INTERFACE_COMPILE_OPTIONS")));
  EXPECT_THAT(targets, Not(HasSubstr("INTERFACE_LINK_OPTIONS")));
  EXPECT_THAT(targets, Not(HasSubstr("INTERFACE_COMPILE_DEFINITIONS")));
}

// Configures and builds a project of the installed examples, which finds the installed library.
void BuildWithCMake(const fs::path& source, const fs::path& consumer, const fs::path& prefix) {
  const fs::path package = prefix / libraryDirectory / "cmake/tavrin_driver";
  std::vector<std::string> configure = {TAVRIN_CMAKE,
                                        "-S",
                                        source,
                                        "-B",
                                        consumer,
                                        "-GNinja",
                                        "-DCMAKE_CXX_COMPILER=" + compiler,
                                        "-DCMAKE_CXX_FLAGS=" + compilerFlags};
  // A tool chain file looks for packages only in its own root.
  if (toolchain.empty()) {
    configure.push_back("-DCMAKE_PREFIX_PATH=" + prefix.string());
  } else {
    configure.push_back("-DCMAKE_TOOLCHAIN_FILE=" + toolchain);
    configure.emplace_back("-DTAVRIN_ARCHITECTURE=" TAVRIN_ARCHITECTURE);
    configure.push_back("-Dtavrin_driver_DIR:PATH=" + package.string());
  }
  const ProgramOutcome configured = Execute(configure);
  ASSERT_EQ(configured.status, 0) << configured;
  EXPECT_EQ(configured.err, "");
  EXPECT_THAT(ReadFile(consumer / "CMakeCache.txt"), HasSubstr("tavrin_driver_DIR:PATH=" + package.string()));

  const ProgramOutcome built = Execute({TAVRIN_CMAKE, "--build", consumer});
  ASSERT_EQ(built.status, 0) << built;
  EXPECT_THAT(built.out, Not(HasSubstr("warning")));
}

TEST_F(Installation, BuildsTheSamplesWithCMake) {
  const fs::path consumer = scratch / "cmake";
  BuildWithCMake(prefix / TAVRIN_DOCDIR / "examples", consumer, prefix);
  ExpectToRunAsInTheTree(consumer);
}

TEST_F(Installation, BuildsATestedDriverWithTheTestKit) {
  const fs::path consumer = scratch / "thermostat";
  BuildWithCMake(prefix / TAVRIN_DOCDIR / "examples/thermostat", consumer, prefix);
  const ProgramOutcome outcome = Execute({consumer / "thermostat_test"});
  EXPECT_EQ(outcome.status, 0) << outcome;
  EXPECT_THAT(outcome.out, HasSubstr("[  PASSED  ] 8 tests."));
}

TEST_F(Installation, IsCompatibleWithinAMajorVersionForCMake) {
  const fs::path script = scratch / "version.cmake";
  std::ofstream(script) << "include(${package}/tavrin_driver-config-version.cmake)\n"
                           "message(STATUS \"compatible: ${PACKAGE_VERSION_COMPATIBLE}\")\n";
  const auto isCompatible = [&](const std::string& version) {
    const ProgramOutcome outcome =
        Execute({TAVRIN_CMAKE, "-DPACKAGE_FIND_VERSION=" + version,
                 "-DPACKAGE_FIND_VERSION_MAJOR=" + version.substr(0, version.find('.')),
                 "-Dpackage=" + CMakePackage().string(), "-P", script});
    EXPECT_EQ(outcome.status, 0) << outcome;
    return outcome.out == "-- compatible: TRUE\n";
  };
  EXPECT_TRUE(isCompatible("1.0.0"));
  EXPECT_FALSE(isCompatible("1.999.0"));
  EXPECT_FALSE(isCompatible("2.0.0"));
  EXPECT_FALSE(isCompatible("0.9.0"));
}

TEST_F(Installation, BuildsTheSamplesWithPkgConfig) {
  const fs::path consumer = scratch / "pkg-config";
  fs::create_directories(consumer);
  EXPECT_EQ(Shell(PkgConfig("--modversion tavrin_driver")), (ProgramOutcome{0, TAVRIN_VERSION "\n", ""}));
  const std::string systemFlags =
      systemLibraries.empty() ? "" : "-L" + systemLibraries + " -Wl,-rpath-link," + systemLibraries;
  for (const auto& [name, module] : std::map<std::string, std::string>{{"first_command", "tavrin_driver"},
                                                                       {"lamp_color", "tavrin_colorimetry"},
                                                                       {"light_driver", "tavrin_driver"}}) {
    // The output of pkg-config is for a shell, which handles the space in the name of the directory.
    const ProgramOutcome built =
        Shell("flags=$(" + PkgConfig("--cflags --libs " + module) + ")\n" + "eval \"" + compiler + ' ' +
              compilerFlags + " -std=c++17 -o " + Quoted(consumer / name) + ' ' +
              Quoted(prefix / TAVRIN_DOCDIR / "examples" / (name + ".cpp")) + " $flags " + systemFlags +
              " -Wl,-rpath," + Quoted(prefix / libraryDirectory) + '"');
    ASSERT_EQ(built, (ProgramOutcome{0, "", ""}));
  }
  ExpectToRunAsInTheTree(consumer);
}

}  // namespace
