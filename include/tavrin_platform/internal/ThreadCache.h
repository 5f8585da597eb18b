#pragma once

#include <memory>
#include <utility>

namespace zq::internal {

// Caches one object per thread between calls, for objects that cost more to construct than to use.
//
//     std::unique_ptr<Workspace> workspace = ThreadCache<Workspace>::Take();
//     if (!workspace) workspace = std::make_unique<Workspace>();
//     ...
//     ThreadCache<Workspace>::Keep(std::move(workspace));
//
// Both functions may be called at any time on any thread. The cached object is destroyed with the other
// thread_local objects of the thread. After that nothing is cached: each call constructs and destroys its own
// object. If a thread caches its first object in a destructor of a POSIX key, the object leaks, because those
// destructors run last.
template <typename T>
class ThreadCache {
 public:
  // Returns the cached object, or null if there is none or if it is in use further up the call stack.
  static std::unique_ptr<T> Take() { return std::unique_ptr<T>(std::exchange(ThisThread().kept, nullptr)); }

  // Caches the object for the next call, in place of one that is already cached.
  static void Keep(std::unique_ptr<T> object) {
    Slot& slot = ThisThread();
    static thread_local const Closer closer{slot};
    if (slot.closed) return;
    const std::unique_ptr<T> previous(std::exchange(slot.kept, object.release()));
  }

 private:
  // Trivial, so that it is valid for the whole lifetime of the thread.
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
