#pragma once

#include <memory>
#include <utility>

namespace zq::internal {

// Keeps one object per thread from call to call, where constructing it costs more than using it.
//
//     std::unique_ptr<Workspace> workspace = ThreadCache<Workspace>::Take();
//     if (!workspace) workspace = std::make_unique<Workspace>();
//     ...
//     ThreadCache<Workspace>::Keep(std::move(workspace));
//
// Both functions work at any moment on any thread. The kept object is destroyed with the thread's other
// thread_local objects. After that, nothing is kept: each call constructs its own object and destroys it.
// The exception is a thread that keeps its first object in a destructor of a POSIX key: those run last, and
// nobody destroys the object.
template <typename T>
class ThreadCache {
 public:
  // Returns the kept object, or null if there is none or if it is in use further up the call stack.
  static std::unique_ptr<T> Take() { return std::unique_ptr<T>(std::exchange(ThisThread().kept, nullptr)); }

  // Keeps the object for the next call, in place of one that is kept already.
  static void Keep(std::unique_ptr<T> object) {
    Slot& slot = ThisThread();
    static thread_local const Closer closer{slot};
    if (slot.closed) return;
    const std::unique_ptr<T> previous(std::exchange(slot.kept, object.release()));
  }

 private:
  // Has neither constructor nor destructor, so that it is valid from the thread's first moment to its last.
  struct Slot {
    T* kept;
    bool closed;
  };

  struct Closer {
    Slot& slot;
    ~Closer() {
      slot.closed = true;
      Take();
    }
  };

  static Slot& ThisThread() {
    static thread_local Slot slot;
    return slot;
  }
};

}  // namespace zq::internal
