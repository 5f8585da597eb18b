#pragma once

#include <typeinfo>

namespace tavrin {

// Returns true if the message is exactly of type `Message`, so that no override can change what `getParam()`
// returns. The string can then be read in place. Otherwise the virtual operation returns a copy, which takes
// a third of the time of reading a number, and allocates for a long string.
template <typename Message>
bool MayReadInPlace(const Message& message) {
  return typeid(message) == typeid(Message);
}

}  // namespace tavrin
