// A counted interface reference.
#pragma once

#include <unknwn.h>

#include <utility>

namespace smh {

template <typename Interface>
class ComPtr {
 public:
  ComPtr() noexcept = default;
  // Adds a reference of its own.
  explicit ComPtr(Interface* object) noexcept : object_(object) {
    if (object_ != nullptr) object_->AddRef();
  }
  // Takes over a reference that the caller owns.
  static ComPtr Adopt(Interface* object) noexcept {
    ComPtr result;
    result.object_ = object;
    return result;
  }
  ComPtr(const ComPtr& other) noexcept : ComPtr(other.object_) {}
  ComPtr(ComPtr&& other) noexcept : object_(std::exchange(other.object_, nullptr)) {}
  ComPtr& operator=(ComPtr other) noexcept {
    std::swap(object_, other.object_);
    return *this;
  }
  ~ComPtr() { Reset(); }

  explicit operator bool() const noexcept { return object_ != nullptr; }
  Interface* operator->() const noexcept { return object_; }
  Interface& operator*() const noexcept { return *object_; }
  Interface* Get() const noexcept { return object_; }
  Interface* Detach() noexcept { return std::exchange(object_, nullptr); }
  void Reset() noexcept {
    if (Interface* const old = Detach()) old->Release();
  }
  // The place for an out argument; what was held is released first.
  Interface** Put() noexcept {
    Reset();
    return &object_;
  }

 private:
  Interface* object_ = nullptr;
};

}  // namespace smh
