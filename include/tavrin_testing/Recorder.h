/// @file
/// A recorder of the messages that a driver sends.
#pragma once

#include <boost/smart_ptr/shared_ptr.hpp>

#include <tavrin_driver/Clone.h>
#include <cstddef>
#include <functional>
#include <mutex>
#include <vector>

namespace tavrin_testing {

/// Keeps copies of the messages that a driver sends, in their order. @p Message is the interface by which it
/// sends them:
///
/// @code
/// Recorder<IBindMessage> sent;
/// Thermostat thermostat{sent.sink()};
/// EXPECT_THAT(sent.messages(), ElementsAre(IsNotification("SET_POINT_CHANGED", HasData(21.5))));
/// @endcode
///
/// All operations are thread-safe.
template <class Message>
class Recorder {
 public:
  /// Keeps a copy of a message.
  void operator()(const Message& message) {
    const std::lock_guard<std::mutex> lock(mutex_);
    messages_.push_back(zq::Clone(message));
  }

  /// Returns a function that keeps a copy of the message that it is called with. The recorder outlives it.
  std::function<void(const Message&)> sink() {
    return [this](const Message& message) { (*this)(message); };
  }

  /// Returns the copies.
  std::vector<boost::shared_ptr<const Message>> messages() const {
    const std::lock_guard<std::mutex> lock(mutex_);
    return messages_;
  }

  /// Returns the copy of the last message, null when nothing was sent.
  boost::shared_ptr<const Message> last() const {
    const std::lock_guard<std::mutex> lock(mutex_);
    return messages_.empty() ? boost::shared_ptr<const Message>() : messages_.back();
  }

  /// Returns how many messages were sent.
  std::size_t size() const {
    const std::lock_guard<std::mutex> lock(mutex_);
    return messages_.size();
  }

  /// Removes all messages.
  void clear() {
    const std::lock_guard<std::mutex> lock(mutex_);
    messages_.clear();
  }

 private:
  mutable std::mutex mutex_;
  std::vector<boost::shared_ptr<const Message>> messages_;
};

}  // namespace tavrin_testing
