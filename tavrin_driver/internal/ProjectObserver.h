#pragma once

#include <tavrin_platform/XmlNode.h>
#include <tavrin_platform/ZqError.h>
#include <functional>

namespace tavrin {

// An item observer that lets the project check continue after numbers that cannot be read. The validator
// recognises it by its type, because neither layout nor interface of the validator can be extended.
struct ProjectObserver {
  std::function<void()> onItem;  // may be empty

  // Called with the element that contains an unreadable number, instead of ending the check: the element of
  // the number, or the item for its "id" that is read again and for its attributes. The check continues
  // without messages about the number. Returns whether to add a message about the error.
  std::function<bool(const zq::XmlNode& element, const zq::ZqError& error)> onUnreadable;

  void operator()() const {
    // GCOVR_EXCL_BR_START: only tests leave the function empty, and their code is not measured.
    if (onItem) onItem();
    // GCOVR_EXCL_BR_STOP
  }
};

}  // namespace tavrin
