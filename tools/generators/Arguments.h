#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace CLI {
class App;
}

namespace generators {

// The command line of a generator, with --help. Compiles CLI11 once for all generators. The values must
// outlive it.
class Arguments {
 public:
  explicit Arguments(const std::string& description);
  Arguments(const Arguments&) = delete;
  Arguments& operator=(const Arguments&) = delete;
  ~Arguments();

  // Adds a required operand: any text, one of the choices, or a number above 0.
  void AddOperand(const std::string& name, std::string& value, const std::string& help);
  void AddOperand(const std::string& name, std::string& value, const std::vector<std::string>& choices,
                  const std::string& help);
  void AddOperand(const std::string& name, std::uint32_t& value, const std::string& help);

  void AddFlag(const std::string& name, bool& value, const std::string& help);

  // Sets the values. Returns the exit status if the program must end, because help or a usage error was
  // printed.
  std::optional<int> Parse(int argc, char** argv);

 private:
  std::unique_ptr<CLI::App> app_;
};

}  // namespace generators
