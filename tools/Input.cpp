#include "Input.h"

#include <sys/stat.h>

#include <array>
#include <cerrno>
#include <cstdio>
#include <memory>
#include <system_error>
#include <utility>

namespace tool {
namespace {

[[noreturn]] void ThrowLastError() { throw std::system_error(errno, std::generic_category()); }

std::string ReadAll(std::FILE* stream) {
  std::string content;
  // Growing a string means holding what is there twice for a moment, which large files should not.
  struct stat status {};
  if (fstat(fileno(stream), &status) == 0 && S_ISREG(status.st_mode))
    content.reserve(static_cast<std::size_t>(status.st_size));
  std::array<char, 65536> block;
  while (const std::size_t count = std::fread(block.data(), 1, block.size(), stream))
    content.append(block.data(), count);
  if (std::ferror(stream) != 0) ThrowLastError();
  return content;
}

std::string ReadFile(const std::string& file) {
  if (file == "-") return ReadAll(stdin);
  const std::unique_ptr<std::FILE, int (*)(std::FILE*)> stream(std::fopen(file.c_str(), "rb"), std::fclose);
  if (!stream) ThrowLastError();
  return ReadAll(stream.get());
}

Status VisitFile(const std::string& file,
                 const std::function<Status(const std::string& name, std::string&& content)>& visit) {
  const std::string name = file == "-" ? "<stdin>" : file;
  std::string content;
  try {
    content = ReadFile(file);
  } catch (const std::system_error& error) {
    Console::Error(name, {{}, error.code().message()});
    return Status::Unreadable;
  }
  return visit(name, std::move(content));
}

}  // namespace

Status ForEachFile(const std::vector<std::string>& files,
                   const std::function<Status(const std::string& name, std::string&& content)>& visit) {
  Status status = Status::Fine;
  for (const std::string& file : files) status = Worst(status, VisitFile(file, visit));
  return status;
}

}  // namespace tool
