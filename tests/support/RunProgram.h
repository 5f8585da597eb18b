// Runs a program without a shell and returns its outcome. If the environment variable TAVRIN_EMULATOR names
// an emulator and its arguments, it runs programs of this program's architecture.
#pragma once

#include <elf.h>
#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <termios.h>
#include <unistd.h>

#include <array>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <iterator>
#include <map>
#include <memory>
#include <ostream>
#include <sstream>
#include <stdexcept>
#include <string>
#include <system_error>
#include <utility>
#include <vector>

// The arguments of a run. The environment is added to that of the test; "" removes a variable.
struct ProgramRun {
  std::vector<std::string> commandLine;  // the program's path first
  std::string input;
  std::map<std::string, std::string> environment = {};
  std::string directory = ".";
  bool terminal = false;        // whether the standard output is a terminal
  std::string outputFile = {};  // receives the standard output instead of the outcome
  bool errorTerminal = false;   // whether the standard error stream is a terminal
};

// The outcome of a run.
struct ProgramOutcome {
  int status = 0;  // 128 + the number of the signal if a signal ended it
  std::string out;
  std::string err;
};

inline bool operator==(const ProgramOutcome& left, const ProgramOutcome& right) {
  return left.status == right.status && left.out == right.out && left.err == right.err;
}

inline std::ostream& operator<<(std::ostream& os, const ProgramOutcome& outcome) {
  return os << "status " << outcome.status << "\n--- out:\n" << outcome.out << "--- err:\n" << outcome.err;
}

namespace run_program {

inline void Check(int error) {
  if (error != 0) throw std::system_error(error, std::generic_category());
}

// An open temporary file without a name.
class Scratch {
 public:
  Scratch() : file_(std::tmpfile()) {
    if (file_ == nullptr) Check(errno);
  }
  Scratch(const Scratch&) = delete;
  Scratch& operator=(const Scratch&) = delete;
  ~Scratch() { static_cast<void>(std::fclose(file_)); }

  int Descriptor() const { return fileno(file_); }

  void Write(const std::string& text) const {
    if (std::fwrite(text.data(), 1, text.size(), file_) != text.size()) Check(errno);
    std::rewind(file_);
  }

  std::string Read() const {
    std::rewind(file_);
    std::string text;
    std::array<char, 65536> block;
    while (const std::size_t count = std::fread(block.data(), 1, block.size(), file_))
      text.append(block.data(), count);
    return text;
  }

 private:
  std::FILE* file_;
};

// A terminal that passes all output on, byte by byte.
class Terminal {
 public:
  Terminal() : master_(posix_openpt(O_RDWR | O_NOCTTY)) {
    if (master_ < 0 || grantpt(master_) != 0 || unlockpt(master_) != 0) Check(errno);
    slave_ = open(ptsname(master_), O_RDWR | O_NOCTTY);
    termios mode{};
    if (slave_ < 0 || tcgetattr(slave_, &mode) != 0) Check(errno);
    cfmakeraw(&mode);
    tcsetattr(slave_, TCSANOW, &mode);
  }
  Terminal(const Terminal&) = delete;
  Terminal& operator=(const Terminal&) = delete;
  ~Terminal() { close(master_); }

  int Descriptor() const { return slave_; }

  // Reads until the last program has closed the terminal.
  std::string ReadToEnd() const {
    close(slave_);
    std::string text;
    std::array<char, 4096> block;
    for (ssize_t count = 0; (count = read(master_, block.data(), block.size())) > 0;)
      text.append(block.data(), static_cast<std::size_t>(count));
    return text;
  }

 private:
  int master_;
  int slave_ = -1;
};

inline std::vector<std::string> Environment(std::map<std::string, std::string> wanted) {
  for (char** variable = environ; *variable != nullptr; ++variable) {
    const std::string text = *variable;
    const std::size_t equals = text.find('=');
    wanted.try_emplace(text.substr(0, equals), text.substr(equals + 1));
  }
  std::vector<std::string> result;
  for (const auto& [name, value] : wanted) {
    if (!value.empty()) result.emplace_back(name).append("=").append(value);
  }
  return result;
}

// Returns the processor and the class of an ELF file, or "" for another file.
inline std::string ElfMachine(const std::string& path) {
  Elf32_Ehdr header{};  // an Elf64_Ehdr begins alike
  std::ifstream(path, std::ios::binary).read(reinterpret_cast<char*>(&header), sizeof header);
  if (std::memcmp(header.e_ident, ELFMAG, SELFMAG) != 0) return "";
  return std::to_string(header.e_machine) + '/' + std::to_string(header.e_ident[EI_CLASS]);
}

// Returns the command line that runs the given one, which begins with the path of a program.
inline std::vector<std::string> Emulated(const std::vector<std::string>& commandLine) {
  std::vector<std::string> result;
  const char* const emulator = std::getenv("TAVRIN_EMULATOR");
  if (emulator != nullptr && ElfMachine(commandLine.front()) == ElfMachine("/proc/self/exe")) {
    std::istringstream words(emulator);
    result.assign(std::istream_iterator<std::string>(words), {});
  }
  result.insert(result.end(), commandLine.begin(), commandLine.end());
  return result;
}

inline std::vector<char*> Pointers(std::vector<std::string>& texts) {
  std::vector<char*> pointers;
  pointers.reserve(texts.size() + 1);
  for (std::string& text : texts) pointers.push_back(text.data());
  pointers.push_back(nullptr);
  return pointers;
}

inline pid_t Start(const ProgramRun& run, int in, int out, int err) {
  posix_spawn_file_actions_t actions;
  Check(posix_spawn_file_actions_init(&actions));
  Check(posix_spawn_file_actions_addchdir_np(&actions, run.directory.c_str()));
  Check(posix_spawn_file_actions_adddup2(&actions, in, STDIN_FILENO));
  if (run.outputFile.empty())
    Check(posix_spawn_file_actions_adddup2(&actions, out, STDOUT_FILENO));
  else
    Check(posix_spawn_file_actions_addopen(&actions, STDOUT_FILENO, run.outputFile.c_str(), O_WRONLY, 0));
  Check(posix_spawn_file_actions_adddup2(&actions, err, STDERR_FILENO));
  std::vector<std::string> commandLine = Emulated(run.commandLine);
  std::vector<std::string> environment = Environment(run.environment);
  pid_t child = 0;
  const int error = posix_spawnp(&child, commandLine.front().c_str(), &actions, nullptr,
                                 Pointers(commandLine).data(), Pointers(environment).data());
  posix_spawn_file_actions_destroy(&actions);
  Check(error);
  return child;
}

inline int WaitFor(pid_t child) {
  int status = 0;
  if (waitpid(child, &status, 0) != child) Check(errno);
  return WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
}

}  // namespace run_program

// Runs a program and waits for its end.
inline ProgramOutcome RunProgram(const ProgramRun& run) {
  using namespace run_program;
  const Scratch in;
  const Scratch out;
  const Scratch err;
  in.Write(run.input);
  ProgramOutcome outcome;
  if (run.terminal || run.errorTerminal) {
    const Terminal terminal;
    const int screen = terminal.Descriptor();
    const pid_t child = Start(run, in.Descriptor(), run.terminal ? screen : out.Descriptor(),
                              run.errorTerminal ? screen : err.Descriptor());
    (run.terminal ? outcome.out : outcome.err) = terminal.ReadToEnd();
    outcome.status = WaitFor(child);
  } else {
    outcome.status = WaitFor(Start(run, in.Descriptor(), out.Descriptor(), err.Descriptor()));
  }
  if (!run.terminal) outcome.out = out.Read();
  if (!run.errorTerminal) outcome.err = err.Read();
  return outcome;
}
