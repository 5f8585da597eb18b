#include "Progress.h"

#include <ostream>
#include <string>
#include <utility>

#include "Text.h"

namespace tool {
namespace {

using std::chrono_literals::operator""ms;

constexpr auto patience = 500ms;
constexpr auto interval = 100ms;

// A longer line would wrap on common terminals, and could not be removed.
constexpr std::size_t maxWidth = 79;

}  // namespace

Progress::Progress(std::ostream& stream, bool isTerminal, std::function<Clock::time_point()> now)
    : stream_(stream), isTerminal_(isTerminal), now_(std::move(now)), next_(now_() + patience) {}

void Progress::Update(const std::function<std::string()>& text) {
  if (!isTerminal_) return;
  const Clock::time_point now = now_();
  if (now < next_) return;
  next_ = now + interval;

  const std::string line = text();
  const std::size_t width = DisplayWidth(line);
  if (width > maxWidth) return;
  Erase();
  stream_ << line << std::flush;
  shownWidth_ = width;
}

void Progress::Done() {
  Erase();
  next_ = now_() + patience;
}

void Progress::Erase() {
  if (shownWidth_ == 0) return;
  stream_ << '\r' << std::string(shownWidth_, ' ') << '\r' << std::flush;
  shownWidth_ = 0;
}

}  // namespace tool
