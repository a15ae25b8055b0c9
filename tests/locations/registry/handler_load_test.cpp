// What a load meets: many handlers, keys that go while they are read, classes that cannot be looked up.
#include "handler_fixture.h"

#include "infra/import_function.h"
#include "support/import_patch.h"

#include <gmock/gmock.h>

namespace smh::test {

namespace {

std::wstring Numbered(int number) {
  return L"Handler " + std::to_wstring(number);
}

unsigned registryCalls = 0;
// The handler that goes as soon as it is about to be opened; none when empty.
std::wstring vanishing;

// The platform's function; this program's own import leads to the counting one.
template <typename Function>
Function* Original(const char* name) noexcept {
  return ImportFunction<Function*>(GetModuleHandleW(L"advapi32.dll"), name);
}

LSTATUS WINAPI CountedOpen(HKEY key, LPCWSTR name, DWORD options, REGSAM access, PHKEY result) {
  ++registryCalls;
  if (!vanishing.empty() && name != nullptr && vanishing == name) {
    vanishing.clear();
    RegDeleteKeyExW(key, name, HasTwoViews() ? KEY_WOW64_64KEY : 0, 0);
  }
  static const auto original = Original<decltype(RegOpenKeyExW)>("RegOpenKeyExW");
  return original(key, name, options, access, result);
}
LSTATUS WINAPI CountedQuery(HKEY key, LPCWSTR name, LPDWORD reserved, LPDWORD type, LPBYTE data,
                            LPDWORD size) {
  ++registryCalls;
  static const auto original = Original<decltype(RegQueryValueExW)>("RegQueryValueExW");
  return original(key, name, reserved, type, data, size);
}
LSTATUS WINAPI CountedEnum(HKEY key, DWORD index, LPWSTR name, LPDWORD size, LPDWORD reserved, LPWSTR text,
                           LPDWORD textSize, PFILETIME time) {
  ++registryCalls;
  static const auto original = Original<decltype(RegEnumKeyExW)>("RegEnumKeyExW");
  return original(key, index, name, size, reserved, text, textSize, time);
}

unsigned CallsOfOneLoad(TLocationStartup& location) {
  registryCalls = 0;
  location.ReadItems();
  return registryCalls;
}

class HandlerLoad : public HandlerTest {
 private:
  const ImportPatch open_{"RegOpenKeyExW", &CountedOpen};
  const ImportPatch query_{"RegQueryValueExW", &CountedQuery};
  const ImportPatch enumerate_{"RegEnumKeyExW", &CountedEnum};
};

}  // namespace

TEST_F(HandlerLoad, EveryHandlerCostsTheSameNumberOfCalls) {
  const auto fill = [](int from, int to) {
    const ScopedKey list = MakeKey(HKEY_LOCAL_MACHINE, kObjectsKey, OwnView());
    for (int i = from; i < to; ++i) SetHandler(list.Get(), Numbered(i), kClass, OwnView());
  };
  fill(0, 10);
  const unsigned few = CallsOfOneLoad(Objects());
  fill(10, 510);
  const unsigned some = CallsOfOneLoad(Objects());
  fill(510, 5010);
  const unsigned all = CallsOfOneLoad(Objects());
  ASSERT_EQ(Listed(Objects()).size(), 5010u);
  EXPECT_GT(some, few);
  EXPECT_EQ(all - some, 9 * (some - few));

  // One that goes between the listing of the names and its own turn costs the others nothing.
  vanishing = Numbered(2500);
  Objects().ReadItems();
  EXPECT_EQ(Listed(Objects()).size(), 5009u);
  DeleteKeyTree(HKEY_LOCAL_MACHINE, kObjectsKey, OwnView());
  Objects().ReadItems();
  EXPECT_THAT(Listed(Objects()), ::testing::IsEmpty());
}

TEST_F(HandlerTest, ClassesThatCannotBeLookedUpCostTheOthersNothing) {
  for (const std::wstring& name : {kClass, kOther, kUnserved})
    SetHandler(HKEY_LOCAL_MACHINE, kMenusKey + L"\\" + name, L"d", OwnView());
  std::vector<std::unique_ptr<LimitedKey>> denied;
  const std::wstring looping = kClasses + kUnserved + L"\\InprocServer32";
  for (const REGSAM view : {REGSAM(0), OwnView()}) {
    denied.push_back(std::make_unique<LimitedKey>(HKEY_LOCAL_MACHINE, kClasses + kOther + L"\\InprocServer32",
                                                  LimitedKey::Rights::kNone, view));
    // A class that leads back to itself.
    const ScopedKey self = MakeKey(HKEY_LOCAL_MACHINE, kClasses + kUnserved, view);
    MakeLink(HKEY_LOCAL_MACHINE, looping, self.Get(), view);
    if (!HasTwoViews()) break;
  }
  Menus().ReadItems();
  EXPECT_EQ(Listed(Menus()).size(), 1u);
  EXPECT_NE(LoadAndFind(Menus(), OwnView(), HKEY_LOCAL_MACHINE, kMenusKey + L"\\" + kClass, L"d"), nullptr);
  for (const REGSAM view : {REGSAM(0), OwnView()}) DeleteKeyTree(HKEY_LOCAL_MACHINE, looping, view);
}

}  // namespace smh::test
