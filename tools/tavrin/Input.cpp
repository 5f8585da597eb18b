#include "Input.h"

#include <sys/mman.h>
#include <sys/stat.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <filesystem>
#include <memory>
#include <new>
#include <stdexcept>
#include <system_error>
#include <utility>

namespace tool {
namespace {

namespace fs = std::filesystem;

constexpr char standardInput[] = "-";

[[noreturn]] void ThrowLastError() { throw std::system_error(errno, std::generic_category()); }

// Reserves memory that the system may back with large pages: a file of 40 MB then causes a few page faults
// instead of ten thousand.
void ReserveInLargePages(std::string& text, std::size_t size) {
  constexpr std::size_t page = std::size_t{2} << 20U;
  text.reserve(size);
  void* memory = text.data();
  if (std::align(page, page, memory, size) != nullptr) madvise(memory, size / page * page, MADV_HUGEPAGE);
}

std::string ReadAll(std::FILE* stream) {
  constexpr std::size_t blockSize = 65536;
  std::string content;
  // A growing string temporarily needs twice its memory, which is too much for large files.
  struct stat status {};
  if (fstat(fileno(stream), &status) == 0 && S_ISREG(status.st_mode))
    ReserveInLargePages(content, static_cast<std::size_t>(status.st_size));
  const auto block = std::make_unique<char[]>(blockSize);
  while (const std::size_t count = std::fread(block.get(), 1, blockSize, stream))
    content.append(block.get(), count);
  if (std::ferror(stream) != 0) ThrowLastError();
  return content;
}

std::string ReadFile(const std::string& file) {
  if (file == standardInput) return ReadAll(stdin);
  const std::unique_ptr<std::FILE, int (*)(std::FILE*)> stream(std::fopen(file.c_str(), "rb"), std::fclose);
  if (!stream) ThrowLastError();
  return ReadAll(stream.get());
}

Status Visit(const std::string& file, const VisitFile& visit, const RefuseFile& refuse) {
  const std::string name = file == standardInput ? "<stdin>" : file;
  try {
    return visit(name, ReadFile(file));
  } catch (const std::system_error& error) {
    refuse(name, error.code().message());
  } catch (const std::bad_alloc&) {
    refuse(name, "out of memory");
  } catch (const std::length_error&) {  // more than a 32-bit program can address
    refuse(name, "out of memory");
  }
  return Status::unreadable;
}

bool HasExtension(const fs::path& path, const std::vector<std::string>& extensions) {
  return std::find(extensions.begin(), extensions.end(), path.extension()) != extensions.end();
}

}  // namespace

Status ForEachFile(const std::vector<std::string>& files, const VisitFile& visit, const RefuseFile& refuse) {
  const RefuseFile report = [](const std::string& name, const std::string& why) {
    Console::Error(name, {{}, why});
  };
  Status status = Status::success;
  for (const std::string& file : files) status = Worst(status, Visit(file, visit, refuse ? refuse : report));
  return status;
}

std::vector<std::string> FilesBelow(const std::vector<std::string>& paths,
                                    const std::vector<std::string>& extensions, const RefuseFile& refuse) {
  std::vector<std::string> files;
  for (const std::string& path : paths) {
    std::error_code error;
    if (path == standardInput || !fs::is_directory(path, error)) {
      files.push_back(path);
      continue;
    }
    std::vector<std::string> found;
    for (fs::recursive_directory_iterator entry(path, error), end; entry != end && !error;
         entry.increment(error)) {
      if (entry->is_regular_file(error) && HasExtension(entry->path(), extensions))
        found.push_back(entry->path());
    }
    if (error) {
      refuse(path, error.message());
    } else if (found.empty()) {
      std::string wanted;
      for (const std::string& extension : extensions) wanted += (wanted.empty() ? "*" : " or *") + extension;
      refuse(path, "the directory contains no " + wanted);
    }
    std::sort(found.begin(), found.end());
    files.insert(files.end(), found.begin(), found.end());
  }
  return files;
}

}  // namespace tool
