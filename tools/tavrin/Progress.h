#pragma once

#include <chrono>
#include <cstddef>
#include <functional>
#include <iosfwd>
#include <string>

namespace tool {

// A line on a terminal that shows the progress of long work and is removed when the work is done. Work that
// takes less than half a second shows none.
class Progress {
 public:
  using Clock = std::chrono::steady_clock;

  // Writes nothing if the stream is not a terminal.
  Progress(std::ostream& stream, bool isTerminal, std::function<Clock::time_point()> now = Clock::now);
  Progress(const Progress&) = delete;
  Progress& operator=(const Progress&) = delete;
  ~Progress() { Done(); }

  bool IsEverShown() const { return isTerminal_; }

  // Shows text() if the time of the next update has come.
  void Update(const std::function<std::string()>& text);

  // Removes the line. The delay begins again for the next task.
  void Done();

 private:
  void Erase();

  std::ostream& stream_;
  const bool isTerminal_;
  const std::function<Clock::time_point()> now_;
  Clock::time_point next_;      // the time of the next update
  std::size_t shownWidth_ = 0;  // the current width of the line
};

}  // namespace tool
