#include "benchmarks/sample_entries.h"

#include "infra/runtime/format.h"

namespace smh::bench {

namespace {

std::wstring Command(const Programs& programs, int index) {
  return Format(L"\"%s\" /entry %d", programs[index], index);
}

void SetText(HKEY key, const std::wstring& name, const std::wstring& text) {
  RegSetValueExW(key, name.c_str(), 0, REG_SZ, reinterpret_cast<const BYTE*>(text.c_str()),
                 static_cast<DWORD>((text.size() + 1) * sizeof(wchar_t)));
}

std::wstring ClassIdentifier(int index) {
  return Format(L"{5B1C6A00-77D2-4E0B-9A3C-%d}", 100'000'000'000LL + index);
}

}  // namespace

std::wstring EntryName(int index) {
  return Format(L"Entry %d", 100'000 + index);
}

RunValues::RunValues(const Programs& programs)
    : programs_(programs),
      emptied_({test::kRunKey, test::kRunKey + L"Once", test::kRunKey + L"-", test::kRunKey + L"Once-"}),
      user_(test::MakeKey(HKEY_CURRENT_USER, test::kRunKey, test::OwnView())),
      common_(test::MakeKey(HKEY_LOCAL_MACHINE, test::kRunKey, test::OwnView())) {}

void RunValues::Fill(int count) {
  for (int i = 0; i < count; ++i) SetCommand(i, Command(programs_, i));
  for (int i = count; i < filled_; ++i) Remove(i);
  filled_ = count;
}

void RunValues::SetCommand(int index, const std::wstring& command) const {
  SetText(KeyOf(index), EntryName(index), command);
}

void RunValues::Remove(int index) const {
  RegDeleteValueW(KeyOf(index), EntryName(index).c_str());
}

Handlers::Handlers(const Programs& programs, int count) : emptied_({test::kMenusKey}) {
  const ScopedKey list = test::MakeKey(HKEY_LOCAL_MACHINE, test::kMenusKey, test::OwnView());
  for (int i = 0; i < count; ++i) {
    const std::wstring identifier = ClassIdentifier(i);
    SetText(test::MakeKey(list.Get(), Format(L"Handler %d", i)).Get(), L"", identifier);
    classes_.push_back(std::make_unique<test::RegistryTree>(L"Software\\Classes\\CLSID\\" + identifier,
                                                            HKEY_LOCAL_MACHINE, test::OwnView()));
    SetText(classes_.back()->Key(L"InprocServer32").Get(), L"", programs[i]);
  }
}

}  // namespace smh::bench
