#pragma once

#include <tavrin_platform/XmlNode.h>
#include <tavrin_platform/ZqError.h>
#include <functional>

namespace tavrin {

// An item observer that has the project check continue behind numbers that cannot be read. The validator
// recognises it by its type, since neither its layout nor its interface can grow.
struct ProjectObserver {
  std::function<void()> onItem;  // may be empty

  // Called in place of ending the check, with the element that holds the unreadable number: the number's own
  // element, or the item for its "id" that is read again and for its attributes. The check continues without
  // messages about the number. Returns whether to add a message about the error.
  std::function<bool(const zq::XmlNode& element, const zq::ZqError& error)> onUnreadable;

  void operator()() const {
    if (onItem) onItem();  // GCOVR_EXCL_BR_LINE: only tests leave it empty, and they are not instrumented
  }
};

}  // namespace tavrin
