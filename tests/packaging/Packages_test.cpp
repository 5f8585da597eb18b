// The Debian packages, unpacked together below one directory.

#include <gmock/gmock.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <map>
#include <set>
#include <sstream>
#include <string>
#include <vector>

#include "RunProgram.h"
#include "TextFiles.h"

namespace {

namespace fs = std::filesystem;
using testing::AllOf;
using testing::ContainsRegex;
using testing::HasSubstr;
using testing::Not;

const std::string architecture = TAVRIN_ARCHITECTURE;
const std::string version = TAVRIN_VERSION;
const std::string libraryDirectory = "/usr/" TAVRIN_LIBDIR "/";
const std::string soVersion = version.substr(0, version.find('.'));
const std::string library = "libtavrin-driver" + soVersion;
const std::string development = "libtavrin-driver-dev";
const std::string documentation = "libtavrin-driver-doc";
const std::string tools = "tavrin-tools";
const bool hasDocumentation = TAVRIN_DOCS != 0;

std::set<std::string> Names() {
  std::set<std::string> made = {library, development, tools};
  if (hasDocumentation) made.insert(documentation);
  return made;
}
const std::set<std::string> names = Names();
const std::vector<std::string> libraries = {"driver", "colorimetry", "diagnostics",
                                            "logger", "support",     "xml"};

ProgramOutcome Shell(const std::string& command, const fs::path& directory = ".") {
  ProgramRun run;
  run.commandLine = {"/bin/sh", "-ec", command};
  run.directory = directory;
  run.environment = {{"LC_ALL", "C.UTF-8"}};
  return RunProgram(run);
}

class Packages : public testing::Test {
 protected:
  static void SetUpTestSuite() {
    fs::remove_all(packages);
    fs::remove_all(scratch);
    fs::create_directories(root);
    const ProgramOutcome packed = Shell(TAVRIN_CPACK, TAVRIN_BUILD_DIR);
    ASSERT_EQ(packed.status, 0) << packed;
    for (const std::string& name : names) {
      const std::string file = "'" + File(name).string() + "'";
      const ProgramOutcome unpacked =
          Shell("dpkg-deb --extract " + file + " '" + root.string() + "'; " + "dpkg-deb --control " + file +
                " '" + (scratch / name).string() + "'");
      ASSERT_EQ(unpacked, (ProgramOutcome{0, "", ""}));
    }
  }

  static std::string ArchitectureOf(const std::string& name) {
    return name == documentation ? "all" : architecture;
  }

  static fs::path File(const std::string& name) {
    return packages / (name + '_' + version + "-1_" + ArchitectureOf(name) + ".deb");
  }

  // Returns a field of the control file, or "".
  static std::string Field(const std::string& name, const std::string& field) {
    for (const std::string& line : LinesOf(ReadFile(scratch / name / "control"))) {
      if (line.rfind(field + ": ", 0) == 0) return line.substr(field.size() + 2);
    }
    return "";
  }

  // Returns the files of a package by their paths, each with mode and owner.
  static std::map<std::string, std::string> Contents(const std::string& name) {
    std::map<std::string, std::string> contents;
    for (const std::string& line : LinesOf(Shell("dpkg-deb --contents '" + File(name).string() + "'").out)) {
      std::istringstream in(line);
      std::string mode;
      std::string owner;
      std::string size;
      std::string date;
      std::string time;
      std::string path;
      in >> mode >> owner >> size >> date >> time >> path;
      contents[path.substr(1)] = mode + ' ' + owner;
    }
    return contents;
  }

  static std::set<std::string> Paths(const std::string& name) {
    std::set<std::string> paths;
    for (const auto& [path, attributes] : Contents(name)) {
      if (path.back() != '/') paths.insert(path);
    }
    return paths;
  }

  static std::set<std::string> WithOwnDocumentation(const std::string& name, std::set<std::string> paths) {
    for (const char* const file : {"/changelog.Debian.gz", "/changelog.gz", "/copyright"})
      paths.insert("/usr/share/doc/" + name + file);
    paths.insert("/usr/share/lintian/overrides/" + name);
    return paths;
  }

  static std::vector<std::string> Binaries() {
    std::vector<std::string> files = {root.string() + "/usr/bin/tavrin"};
    for (const std::string& name : libraries)
      files.push_back(root.string() + libraryDirectory + "libtavrin_" + name + ".so." + version);
    return files;
  }

  static const fs::path packages;
  static const fs::path scratch;
  static const fs::path root;
};

const fs::path Packages::packages = TAVRIN_BUILD_DIR "/packages";
const fs::path Packages::scratch = TAVRIN_BUILD_DIR "/tests/packages";
const fs::path Packages::root = scratch / "root";

TEST_F(Packages, AreOneForEachPurpose) {
  std::set<fs::path> expected;
  for (const std::string& name : names) expected.insert(File(name));
  std::set<fs::path> found;
  for (const auto& entry : fs::directory_iterator(packages)) {
    if (entry.is_regular_file()) found.insert(entry.path());
  }
  EXPECT_EQ(found, expected);
}

TEST_F(Packages, AreDescribed) {
  const std::map<std::string, std::pair<std::string, std::string>> sections = {
      {library, {"libs", "same"}},
      {development, {"libdevel", "same"}},
      {documentation, {"doc", "foreign"}},
      {tools, {"utils", "foreign"}}};
  for (const std::string& name : names) {
    SCOPED_TRACE(name);
    EXPECT_EQ(Field(name, "Package"), name);
    EXPECT_EQ(Field(name, "Version"), version + "-1");
    EXPECT_EQ(Field(name, "Architecture"), ArchitectureOf(name));
    EXPECT_EQ(Field(name, "Priority"), "optional");
    EXPECT_EQ(Field(name, "Section"), sections.at(name).first);
    EXPECT_EQ(Field(name, "Multi-Arch"), sections.at(name).second);
    EXPECT_THAT(Field(name, "Maintainer"), ContainsRegex("^.+ <.+@.+>$"));
    EXPECT_THAT(Field(name, "Description"), HasSubstr("home-automation controller"));
  }
}

TEST_F(Packages, DependOnWhatTheyNeed) {
  const std::string sameLibrary = library + " (= " + version + "-1)";
  const std::string depends = Field(library, "Depends");
  // The names of some libraries contain a version, which differs between releases of Debian.
  for (const std::string needed : {"libc6", "libexpat1", "libfmt[0-9]+", "libgcc-s1", "libjsoncpp[0-9]+",
                                   "liblog4cplus-[0-9.]+(t64)?", "libstdc\\+\\+6"})
    EXPECT_THAT(depends, ContainsRegex("(^|, )" + needed + " \\(>= "));
  EXPECT_THAT(depends, Not(HasSubstr("tavrin")));
  EXPECT_EQ(Field(development, "Depends"), sameLibrary + ", libboost-dev (>= 1.72), libjsoncpp-dev");
  EXPECT_EQ(Field(development, "Suggests"), "libgmock-dev, liblog4cplus-dev, " + documentation + ", pkgconf");
  EXPECT_THAT(Field(tools, "Depends"), AllOf(HasSubstr(sameLibrary), ContainsRegex("libjsoncpp[0-9]+ \\(>= "),
                                             HasSubstr("libstdc++6 (>= "), HasSubstr("libc6 (>= ")));
  if (hasDocumentation) {
    EXPECT_EQ(Field(documentation, "Depends"), "");
  }
}

TEST_F(Packages, ContainTheLibraries) {
  std::set<std::string> shared;
  std::set<std::string> links;
  for (const std::string& name : libraries) {
    const std::string file = libraryDirectory + "libtavrin_" + name + ".so";
    shared.insert({file + '.' + soVersion, file + '.' + version});
    links.insert(file);
  }
  EXPECT_EQ(Paths(library), WithOwnDocumentation(library, shared));

  std::set<std::string> expected = WithOwnDocumentation(development, links);
  for (const std::string header : {"BindMessage.h", "CmdMessage.h", "CondMessage.h"})
    expected.insert("/usr/include/tavrin_driver/" + header);
  for (const auto& entry : fs::recursive_directory_iterator(TAVRIN_SOURCE_DIR "/include")) {
    if (entry.path().extension() == ".h" && entry.path().parent_path().filename() != "internal")
      expected.insert("/usr/include/" + fs::relative(entry.path(), TAVRIN_SOURCE_DIR "/include").string());
  }
  for (const char* const module : {"driver", "colorimetry", "diagnostics"})
    expected.insert(libraryDirectory + "pkgconfig/tavrin_" + module + ".pc");
  for (const char* const file : {"config", "config-version", "targets", "targets-relwithdebinfo", "testing"})
    expected.insert(libraryDirectory + "cmake/tavrin_driver/tavrin_driver-" + file + ".cmake");
  EXPECT_EQ(Paths(development), expected);
}

TEST_F(Packages, ContainTheToolAndItsManual) {
  EXPECT_EQ(
      Paths(tools),
      WithOwnDocumentation(
          tools, {"/usr/bin/tavrin", "/usr/share/bash-completion/completions/tavrin",
                  "/usr/share/fish/vendor_completions.d/tavrin.fish", "/usr/share/tavrin/report.schema.json",
                  "/usr/share/man/man1/tavrin.1.gz", "/usr/share/zsh/vendor-completions/_tavrin"}));
  EXPECT_EQ(Shell("zcat '" + root.string() + "/usr/share/man/man1/tavrin.1.gz'").out,
            ReadFile(TAVRIN_BUILD_DIR "/tools/tavrin/tavrin.1"));
}

TEST_F(Packages, ContainTheDocumentationAndEveryExample) {
  const std::string directory = "/usr/share/doc/" + documentation + '/';
  std::set<std::string> pages;
  std::set<std::string> examples;
  std::set<std::string> others;
  for (const std::string& path : Paths(documentation)) {
    const std::string place = path.rfind(directory, 0) == 0 ? path.substr(directory.size()) : "";
    (place.rfind("html/", 0) == 0       ? pages
     : place.rfind("examples/", 0) == 0 ? examples
                                        : others)
        .insert(path);
  }
  EXPECT_THAT(pages,
              testing::IsSupersetOf({directory + "html/index.html", directory + "html/docs/guides/tool.html",
                                     directory + "html/reference/classICmdMessage.html"}));
  std::set<std::string> texts = {directory + "README.md", directory + "CHANGELOG.md"};
  for (const auto& entry : fs::recursive_directory_iterator(TAVRIN_SOURCE_DIR "/docs")) {
    if (entry.path().extension() == ".md" || entry.path().extension() == ".svg")
      texts.insert(directory + fs::relative(entry.path(), TAVRIN_SOURCE_DIR).string());
  }
  EXPECT_EQ(others, WithOwnDocumentation(documentation, texts));
  std::set<std::string> expected;
  for (const auto& entry : fs::recursive_directory_iterator(TAVRIN_SOURCE_DIR "/examples")) {
    if (entry.is_regular_file())
      expected.insert(directory + fs::relative(entry.path(), TAVRIN_SOURCE_DIR).string());
  }
  EXPECT_EQ(examples, expected);
}

TEST_F(Packages, BelongToRootAndAreReadableForAll) {
  const std::set<std::string> programs = {"/usr/bin/tavrin",
                                          "/usr/share/doc/" + documentation + "/examples/show"};
  for (const std::string& name : names) {
    for (const auto& [path, attributes] : Contents(name)) {
      const bool isLink = attributes.front() == 'l';
      const std::string mode = path.back() == '/'         ? "drwxr-xr-x"
                               : isLink                   ? "lrwxrwxrwx"
                               : programs.count(path) > 0 ? "-rwxr-xr-x"
                                                          : "-rw-r--r--";
      EXPECT_EQ(attributes, mode + " root/root") << path;
    }
  }
}

TEST_F(Packages, ContainNoDeadLinks) {
  std::size_t count = 0;
  for (const auto& entry : fs::recursive_directory_iterator(root)) {
    if (!entry.is_symlink()) continue;
    ++count;
    EXPECT_TRUE(fs::exists(entry.path())) << entry.path();
    EXPECT_TRUE(fs::read_symlink(entry.path()).is_relative()) << entry.path();
  }
  EXPECT_EQ(count, 2 * libraries.size());
}

TEST_F(Packages, ContainProgramsWithoutSymbolsAndPathsOfTheBuild) {
  for (const std::string& file : Binaries()) {
    SCOPED_TRACE(file);
    const std::string sections = Shell("readelf --wide --sections '" + file + "'").out;
    EXPECT_THAT(sections, AllOf(HasSubstr(".dynsym"), Not(HasSubstr(".symtab")), Not(HasSubstr(".debug"))));
    const std::string dynamic = Shell("readelf --dynamic '" + file + "'").out;
    EXPECT_THAT(dynamic, AllOf(HasSubstr("NEEDED"), Not(HasSubstr("RUNPATH")), Not(HasSubstr("RPATH"))));
    EXPECT_THAT(ReadFile(file), Not(HasSubstr(TAVRIN_SOURCE_DIR)));
  }
}

TEST_F(Packages, ContainAToolThatRuns) {
  ProgramRun run;
  run.commandLine = {root.string() + "/usr/bin/tavrin", "--version"};
  run.environment = {{"LD_LIBRARY_PATH", root.string() + libraryDirectory + ":" TAVRIN_SYSTEM_LIBRARIES}};
  EXPECT_EQ(RunProgram(run), (ProgramOutcome{0, "tavrin " + version + "\n", ""}));
}

TEST_F(Packages, ListTheSymbolsOfTheLibraries) {
  const fs::path source = scratch / "gensymbols";
  fs::create_directories(source / "debian");
  std::ofstream(source / "debian/control")
      << "Source: tavrin-driver\n\nPackage: " << library << "\nArchitecture: any\n";
  const std::string control = (scratch / library).string();
  // Reports every symbol that only the libraries or only the file contain, and every such library.
  const ProgramOutcome compared =
      Shell("DEB_HOST_ARCH=" + architecture + " dpkg-gensymbols -p" + library + " -v" + version +
                "-1 -c4 -P'" + root.string() + "' -I'" + control + "/symbols' -O'" + control + "/generated'",
            source);
  EXPECT_EQ(compared, (ProgramOutcome{0, "", ""}));

  std::string expected;
  for (const std::string& name : libraries)
    expected += "libtavrin_" + name + ' ' + soVersion + ' ' + library + " (>= " + version + ")\n";
  EXPECT_EQ(ReadFile(control + "/shlibs"), expected);
  const std::string symbols = ReadFile(control + "/symbols");
  for (const std::string& line : LinesOf(symbols)) {
    if (line.front() == ' ')
      EXPECT_THAT(line, ContainsRegex("^ [^ ]+@[^ ]+ [0-9]+\\.[0-9]+\\.[0-9]+$"));
    else
      EXPECT_THAT(line, ContainsRegex("^libtavrin_[a-z]+\\.so\\.[0-9]+ " + library + " #MINVER#$"));
  }
}

TEST_F(Packages, RunNoScriptsAndUpdateTheLibraryCacheByTrigger) {
  EXPECT_EQ(ReadFile(scratch / library / "triggers"), "activate-noawait ldconfig\n");
  for (const std::string& name : names) {
    for (const char* const script : {"preinst", "postinst", "prerm", "postrm"})
      EXPECT_FALSE(fs::exists(scratch / name / script)) << name << ' ' << script;
    EXPECT_EQ(fs::exists(scratch / name / "triggers"), name == library);
  }
}

TEST_F(Packages, HaveChecksumsOfAllFiles) {
  for (const std::string& name : names) {
    const std::string sums = ReadFile(scratch / name / "md5sums");
    const auto contents = Contents(name);
    EXPECT_EQ(static_cast<std::size_t>(std::count(sums.begin(), sums.end(), '\n')),
              static_cast<std::size_t>(std::count_if(contents.begin(), contents.end(), [](const auto& file) {
                return file.second.front() == '-';
              })));
    EXPECT_EQ(Shell("md5sum --check --quiet '" + (scratch / name / "md5sums").string() + "'", root),
              (ProgramOutcome{0, "", ""}));
  }
}

TEST_F(Packages, ContainTheChangelogOfTheirVersion) {
  for (const std::string& name : names) {
    EXPECT_THAT(Shell("zcat '" + root.string() + "/usr/share/doc/" + name + "/changelog.Debian.gz'").out,
                testing::StartsWith("tavrin-driver (" + version + "-1) "));
    EXPECT_THAT(Shell("zcat '" + root.string() + "/usr/share/doc/" + name + "/changelog.gz'").out,
                HasSubstr("\n## " + version + "\n"));
  }
}

TEST_F(Packages, WorkWithTheSystemsPkgConfig) {
  for (const std::string module : {"driver", "colorimetry", "diagnostics"})
    EXPECT_THAT(ReadFile(root.string() + libraryDirectory + "pkgconfig/tavrin_" + module + ".pc"),
                AllOf(HasSubstr("prefix=/usr\n"), HasSubstr("libdir=${prefix}/" TAVRIN_LIBDIR "\n")));
}

TEST_F(Packages, PassLintian) {
  EXPECT_EQ(Shell("lintian --allow-root --fail-on error,warning *.deb", packages),
            (ProgramOutcome{0, "", ""}));
}

}  // namespace
