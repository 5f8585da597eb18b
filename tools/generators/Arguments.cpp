#include "Arguments.h"

#include <CLI/CLI.hpp>

namespace generators {

Arguments::Arguments(const std::string& description) : app_(std::make_unique<CLI::App>(description)) {}

Arguments::~Arguments() = default;

void Arguments::AddOperand(const std::string& name, std::string& value, const std::string& help) {
  app_->add_option(name, value, help)->required();
}

void Arguments::AddOperand(const std::string& name, std::string& value,
                           const std::vector<std::string>& choices, const std::string& help) {
  app_->add_option(name, value, help)->required()->check(CLI::IsMember(choices))->type_name("");
}

void Arguments::AddOperand(const std::string& name, std::uint32_t& value, const std::string& help) {
  app_->add_option(name, value, help)->required()->check(CLI::PositiveNumber);
}

void Arguments::AddFlag(const std::string& name, bool& value, const std::string& help) {
  app_->add_flag(name, value, help);
}

std::optional<int> Arguments::Parse(int argc, char** argv) {
  try {
    app_->parse(argc, argv);
  } catch (const CLI::ParseError& error) {
    return app_->exit(error);
  }
  return std::nullopt;
}

}  // namespace generators
