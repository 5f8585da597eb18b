// Loads a module that uses the library while the process runs.
//
// host MODULE OPERATION           loads and unloads it ten times, and uses it on two threads each time
// host MODULE OPERATION at-exit   uses it when the static objects of all loaded modules are destroyed

#include <dlfcn.h>
#include <link.h>
#include <unistd.h>

#include <array>
#include <cstdlib>
#include <cstring>
#include <string>
#include <thread>

namespace {

using Run = void (*)(const char* name, std::string& result);

const char* operation;
Run run;

void Write(const std::string& text) {
  if (write(STDOUT_FILENO, text.data(), text.size()) != static_cast<ssize_t>(text.size())) _exit(1);
}

void* Load(const char* path) {
  void* const module = dlopen(path, RTLD_NOW | RTLD_LOCAL);
  if (module == nullptr) {
    Write(dlerror());
    _exit(1);
  }
  run = reinterpret_cast<Run>(dlsym(module, "RunOperationOfModule"));
  return module;
}

// Unloading log4cplus while one of its threads runs crashes now and then, so its presence is checked instead.
bool IsLog4cplusLoaded() {
  const auto isLog4cplus = [](dl_phdr_info* object, std::size_t, void*) {
    return std::strstr(object->dlpi_name, "liblog4cplus") != nullptr ? 1 : 0;
  };
  return dl_iterate_phdr(isLog4cplus, nullptr) != 0;
}

void LoadUseAndUnload(const char* path) {
  void* const module = Load(path);
  std::array<std::string, 2> results;
  {
    std::array<std::thread, 2> threads;
    for (std::size_t i = 0; i < threads.size(); ++i)
      threads[i] = std::thread([&results, i] { run(operation, results[i]); });
    for (std::thread& thread : threads) thread.join();
  }
  for (const std::string& result : results) Write(result);
  dlclose(module);
  if (!IsLog4cplusLoaded()) Write("log4cplus was unloaded");
}

}  // namespace

int main(int count, char** arguments) {
  operation = arguments[2];
  if (count == 3) {
    for (int i = 0; i < 10; ++i) LoadUseAndUnload(arguments[1]);
    return 0;
  }
  // Registered before the module's static objects are constructed, and so run after they are destroyed.
  std::atexit([] {
    std::string result;
    run(operation, result);
    Write(result);
  });
  Load(arguments[1]);
}
