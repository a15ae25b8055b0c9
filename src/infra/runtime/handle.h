// One owner for every kind of operating-system handle: a traits struct says what "none" is and how one is
// closed.
#pragma once

#include <windows.h>

#include <utility>

namespace smh {

template <typename Traits>
class ScopedResource {
 public:
  using Type = typename Traits::Type;

  ScopedResource() noexcept = default;
  explicit ScopedResource(Type value) noexcept : value_(value) {}
  ScopedResource(ScopedResource&& other) noexcept : value_(other.Release()) {}
  ScopedResource& operator=(ScopedResource&& other) noexcept {
    Reset(other.Release());
    return *this;
  }
  ScopedResource(const ScopedResource&) = delete;
  ScopedResource& operator=(const ScopedResource&) = delete;
  ~ScopedResource() { Reset(); }

  explicit operator bool() const noexcept { return Traits::IsValid(value_); }
  Type Get() const noexcept { return value_; }
  Type Release() noexcept { return std::exchange(value_, Traits::kNone); }
  void Reset(Type value = Traits::kNone) noexcept {
    const Type old = std::exchange(value_, value);
    if (Traits::IsValid(old)) Traits::Close(old);
  }
  // The place for an out argument; what was held is closed first.
  Type* Put() noexcept {
    Reset();
    return &value_;
  }

 private:
  Type value_ = Traits::kNone;
};

// Kernel objects; CreateFileW's INVALID_HANDLE_VALUE counts as none too.
struct KernelHandleTraits {
  using Type = HANDLE;
  static constexpr Type kNone = nullptr;
  static bool IsValid(Type value) noexcept { return value != nullptr && value != INVALID_HANDLE_VALUE; }
  static void Close(Type value) noexcept { CloseHandle(value); }
};
using ScopedHandle = ScopedResource<KernelHandleTraits>;

struct FindHandleTraits {
  using Type = HANDLE;
  static constexpr Type kNone = nullptr;
  static bool IsValid(Type value) noexcept { return value != nullptr && value != INVALID_HANDLE_VALUE; }
  static void Close(Type value) noexcept { FindClose(value); }
};
using ScopedFind = ScopedResource<FindHandleTraits>;

struct RegistryKeyTraits {
  using Type = HKEY;
  static constexpr Type kNone = nullptr;
  static bool IsValid(Type value) noexcept { return value != nullptr; }
  static void Close(Type value) noexcept { RegCloseKey(value); }
};
using ScopedKey = ScopedResource<RegistryKeyTraits>;

struct ModuleTraits {
  using Type = HMODULE;
  static constexpr Type kNone = nullptr;
  static bool IsValid(Type value) noexcept { return value != nullptr; }
  static void Close(Type value) noexcept { FreeLibrary(value); }
};
using ScopedModule = ScopedResource<ModuleTraits>;

struct IconTraits {
  using Type = HICON;
  static constexpr Type kNone = nullptr;
  static bool IsValid(Type value) noexcept { return value != nullptr; }
  static void Close(Type value) noexcept { DestroyIcon(value); }
};
using ScopedIcon = ScopedResource<IconTraits>;

struct BitmapTraits {
  using Type = HBITMAP;
  static constexpr Type kNone = nullptr;
  static bool IsValid(Type value) noexcept { return value != nullptr; }
  static void Close(Type value) noexcept { DeleteObject(value); }
};
using ScopedBitmap = ScopedResource<BitmapTraits>;

}  // namespace smh
