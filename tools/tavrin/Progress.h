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

  // On a stream that is no terminal nothing is ever shown.
  Progress(std::ostream& stream, bool isTerminal, std::function<Clock::time_point()> now = Clock::now);
  Progress(const Progress&) = delete;
  Progress& operator=(const Progress&) = delete;
  ~Progress() { Done(); }

  bool IsEverShown() const { return isTerminal_; }

  // Shows what text() returns, if it is time to.
  void Update(const std::function<std::string()>& text);

  // Removes the line. What follows is another piece of work.
  void Done();

 private:
  void Erase();

  std::ostream& stream_;
  const bool isTerminal_;
  const std::function<Clock::time_point()> now_;
  Clock::time_point next_;      // when there is something to show
  std::size_t shownWidth_ = 0;  // what the line takes now
};

}  // namespace tool
