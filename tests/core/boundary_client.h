// The library as a foreign host meets it: loaded at run time and called by slot number, with function types
// written down here once more. Nothing of this shares a declaration with the library, so that a slot that
// moved or a type that changed in both the library and its header is still noticed.
#pragma once

#include "infra/runtime/handle.h"

#include <windows.h>
#include <oaidl.h>
#include <gtest/gtest.h>

#include <cstdint>
#include <optional>
#include <stdexcept>
#include <string>
#include <utility>

namespace smh::test {

inline constexpr wchar_t kFactsId[] = L"{E7FF0A82-5825-4742-9F44-863F32DD5000}";
inline constexpr wchar_t kManagerId[] = L"{E8C7F189-6EBA-407B-A55E-97C824EC0201}";

// Ordinals of locations.
inline constexpr std::int32_t kNoLocation = 0;
inline constexpr std::int32_t kUserFolder = 1;
inline constexpr std::int32_t kUserRun = 5;
inline constexpr std::int32_t kCommonRun = 8;
inline constexpr std::int32_t kCommonRunOnce = 9;
inline constexpr std::int32_t kAllMenus = 11;

// A text that the library handed out; released at the end. Begins as garbage, as a host's variable may.
class OutText {
 public:
  OutText() = default;
  ~OutText();
  OutText(const OutText&) = delete;
  OutText& operator=(const OutText&) = delete;

  const wchar_t** Put() noexcept { return &text_; }
  const wchar_t* Get() const noexcept { return text_; }
  std::wstring Text() const;
  // The words before the text, the terminator and the heap are as agreed; a null text is.
  testing::AssertionResult IsWellFormed() const;

 private:
  static const wchar_t kGarbage[];
  const wchar_t* text_ = kGarbage;
};

// A variant that the library filled; begins as one that must not be cleared.
class OutVariant {
 public:
  OutVariant() noexcept;
  // What the entry answers for a property.
  OutVariant(const class RawEntry& entry, std::int32_t index);
  ~OutVariant();
  OutVariant(const OutVariant&) = delete;
  OutVariant& operator=(const OutVariant&) = delete;

  VARIANT* Put() noexcept { return &value_; }
  VARTYPE Type() const noexcept { return value_.vt; }
  const VARIANT* operator->() const noexcept { return &value_; }
  std::wstring Text() const;

 private:
  VARIANT value_;
};

// Owns one reference to an object of the library. A call without object throws std::logic_error.
class RawObject {
 public:
  RawObject() noexcept = default;
  RawObject(RawObject&& other) noexcept : object_(std::exchange(other.object_, nullptr)) {}
  RawObject& operator=(RawObject&& other) noexcept {
    std::swap(object_, other.object_);
    return *this;
  }
  ~RawObject() { Reset(); }

  void** Put() noexcept {
    Reset();
    return &object_;
  }
  void* Address() const noexcept { return object_; }
  explicit operator bool() const noexcept { return object_ != nullptr; }
  void Reset() noexcept {
    if (object_ != nullptr) Release();
    object_ = nullptr;
  }

  HRESULT QueryInterface(const GUID* id, void** object) const { return Call<HRESULT>(0, id, object); }
  std::uint32_t AddRef() const { return Call<std::uint32_t>(1); }
  std::uint32_t Release() const { return Call<std::uint32_t>(2); }

 protected:
  template <typename Result, typename... Arguments>
  Result Call(int slot, Arguments... arguments) const {
    if (object_ == nullptr) throw std::logic_error("a call without object");
    using Function = Result(__stdcall*)(void*, Arguments...);
    void* const* const table = *static_cast<void* const* const*>(object_);
    return reinterpret_cast<Function>(table[slot])(object_, arguments...);
  }
  // The object that a call hands out; throws std::runtime_error when there is none.
  template <typename Object, typename Getter>
  static Object Given(Getter get) {
    Object object;
    if (get(object.Put()) != S_OK) throw std::runtime_error("no object");
    return object;
  }

 private:
  void* object_ = nullptr;
};

// The further interface of an entry, which QueryInterface answers.
class RawFacts : public RawObject {
 public:
  // Throws std::runtime_error for an entry without.
  explicit RawFacts(const RawObject& entry);
  HRESULT GetFact(std::int32_t index, VARIANT* value) const { return Call<HRESULT>(3, index, value); }
  HRESULT SetSwitchedOff(std::uint32_t off) const { return Call<HRESULT>(4, off); }
};

// What startup items and default programs have in common.
class RawEntry : public RawObject {
 public:
  std::int32_t GetIndex() const { return Call<std::int32_t>(3); }
  HRESULT GetName(const wchar_t** name) const { return Call<HRESULT>(5, name); }
  std::uint32_t ReadChanged() const { return Call<std::uint32_t>(6); }
  std::int32_t GetImageIndex() const { return Call<std::int32_t>(7); }
  HRESULT GetProperty(std::int32_t index, VARIANT* value) const { return Call<HRESULT>(8, index, value); }

  std::wstring Name() const;
  // A number's digits, 0 or 1, a text in brackets, whether a date is set, or "-" for VT_NULL.
  std::wstring Fact(std::int32_t index) const;
  std::wstring PropertyText(std::int32_t index) const { return OutVariant(*this, index).Text(); }
};

class RawItem : public RawEntry {
 public:
  std::uint32_t GetLocation() const { return Call<std::uint32_t>(4); }
  std::uint32_t CanDo(std::int32_t action) const { return Call<std::uint32_t>(9, action); }
  std::uint32_t CanMoveTo(std::int32_t location) const { return Call<std::uint32_t>(10, location); }
  HRESULT Delete() const { return Call<HRESULT>(11); }
  HRESULT Enable() const { return Call<HRESULT>(12); }
  HRESULT Disable() const { return Call<HRESULT>(13); }
  HRESULT MoveTo(std::int32_t location) const { return Call<HRESULT>(14, location); }
  HRESULT ChangeCommand(const wchar_t* command) const { return Call<HRESULT>(15, command); }
  HRESULT Execute(void* window) const { return Call<HRESULT>(16, window); }
  HRESULT ShowFileDetails(void* window) const { return Call<HRESULT>(17, window); }
  HRESULT ShowLocation() const { return Call<HRESULT>(18); }
};

// What both collections begin with.
template <typename Entry>
class RawList : public RawObject {
 public:
  std::int32_t GetCount() const { return Call<std::int32_t>(3); }
  HRESULT GetItem(std::int32_t index, void** item) const { return Call<HRESULT>(4, index, item); }
  void* GetSmallImageList() const { return Call<void*>(5); }
  void* GetLargeImageList() const { return Call<void*>(6); }

  Entry Item(std::int32_t index) const {
    return Given<Entry>([&](void** item) { return GetItem(index, item); });
  }
};

class RawCollection : public RawList<RawItem> {
 public:
  std::int32_t GetReadState() const { return Call<std::int32_t>(7); }
  std::uint32_t GetShowAllLocations() const { return Call<std::uint32_t>(8); }
  HRESULT SetShowAllLocations(std::uint32_t show) const { return Call<HRESULT>(9, show); }
  HRESULT Refresh() const { return Call<HRESULT>(10); }
  HRESULT Stop() const { return Call<HRESULT>(11); }
  HRESULT Lock() const { return Call<HRESULT>(12); }
  HRESULT Unlock() const { return Call<HRESULT>(13); }
  std::int32_t AddItem(std::int32_t location, const wchar_t* name, const wchar_t* command) const {
    return Call<std::int32_t>(14, location, name, command);
  }
  std::uint32_t GetShowIcons() const { return Call<std::uint32_t>(15); }
  HRESULT SetShowIcons(std::uint32_t show) const { return Call<HRESULT>(16, show); }
};

class RawFavorite : public RawEntry {
 public:
  std::int32_t GetKind() const { return Call<std::int32_t>(4); }
};

class RawFavorites : public RawList<RawFavorite> {
 public:
  HRESULT AddPath(const wchar_t* path) const { return Call<HRESULT>(7, path); }
  HRESULT Lock() const { return Call<HRESULT>(8); }
  HRESULT Unlock() const { return Call<HRESULT>(9); }
  std::int32_t GetReadState() const { return Call<std::int32_t>(10); }
};

// Slots 3 to 14: a getter and a setter for each of the six texts.
class RawStrings : public RawObject {
 public:
  static constexpr int kTexts = 6;
  HRESULT Get(int text, const wchar_t** out) const { return Call<HRESULT>(3 + 2 * text, out); }
  HRESULT Set(int text, const wchar_t* in) const { return Call<HRESULT>(4 + 2 * text, in); }

  std::wstring Text(int text) const;
};

class RawManager : public RawObject {
 public:
  HRESULT GetStartupItems(void** items) const { return Call<HRESULT>(3, items); }
  HRESULT GetFavoriteItems(void** items) const { return Call<HRESULT>(4, items); }
  HRESULT GetStrings(void** strings) const { return Call<HRESULT>(5, strings); }
  HRESULT ResolveCommandFile(const wchar_t* command, const wchar_t** file) const {
    return Call<HRESULT>(6, command, file);
  }

  RawCollection Items() const {
    return Given<RawCollection>([this](void** items) { return GetStartupItems(items); });
  }
  RawFavorites Favorites() const {
    return Given<RawFavorites>([this](void** items) { return GetFavoriteItems(items); });
  }
  RawStrings Strings() const {
    return Given<RawStrings>([this](void** strings) { return GetStrings(strings); });
  }
};

// The library, beside this program unless told otherwise, loaded by full path; freed at the end unless that
// was done before.
class LoadedLibrary {
 public:
  // Throws std::runtime_error.
  explicit LoadedLibrary(const std::wstring& file = File());

  HMODULE Module() const noexcept { return module_.Get(); }
  // What the export answers, uncounted.
  void* GetInstance(const wchar_t* id) const { return getInstance_(id, 0); }
  // With a reference of its own.
  RawManager Manager() const;
  void Free() noexcept { module_.Reset(); }

  static std::wstring File();

 private:
  ScopedModule module_;
  void*(__stdcall* getInstance_)(const wchar_t* id, std::uint32_t reserved) = nullptr;
};

struct ErrorInfo {
  std::wstring description;
  std::wstring source;
};
// The calling thread's error info, which is taken away; none when there is none.
std::optional<ErrorInfo> TakeErrorInfo();
// Leaves an error info behind as of an earlier call of somebody.
void PlantErrorInfo();

// The result and the error info are those of a failed assertion of that unit.
testing::AssertionResult IsAssertion(HRESULT result, const std::wstring& unit);
// The result says so and the error info explains it.
testing::AssertionResult IsExplained(HRESULT result, HRESULT expected);

}  // namespace smh::test
