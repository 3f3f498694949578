#pragma once

#include <llvm/ADT/STLFunctionalExtras.h>

#include <memory>
#include <string>

namespace qv::native {

/// Calls `work`. Where LLVM finds that it cannot go on, for which it would end the process, `work` is left,
/// and the result is false with LLVM's words in `error`. Throws std::bad_alloc where LLVM runs out of memory.
/// What LLVM takes for impossible, and never tells, is beyond it.
bool survives(llvm::function_ref<void()> work, std::string& error);

/// An object of LLVM's that is let go of, not destroyed, when `survives` leaves what it was used for: nobody
/// knows what state it is in.
template <typename Object>
class Abandonable {
  public:
    explicit Abandonable(std::unique_ptr<Object> object) : object_(std::move(object)) {}
    ~Abandonable() {
        if (std::uncaught_exceptions() > exceptions_) static_cast<void>(object_.release());
    }
    Abandonable(const Abandonable&) = delete;
    Abandonable& operator=(const Abandonable&) = delete;
    Object* operator->() const { return object_.get(); }
    Object& operator*() const { return *object_; }
    explicit operator bool() const { return object_ != nullptr; }

  private:
    std::unique_ptr<Object> object_;
    const int exceptions_ = std::uncaught_exceptions();
};

}  // namespace qv::native
