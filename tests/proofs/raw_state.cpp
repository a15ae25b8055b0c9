#include "tests/proofs/raw_state.h"

#include <filesystem>
#include <ostream>
#include <sstream>

namespace smh::test {

namespace fs = std::filesystem;

namespace {

std::string Shown(std::string text) {
  std::erase(text, '\0');
  return text.size() > 80 ? text.substr(text.size() - 80) : text;
}

}  // namespace

std::string Narrow(const std::wstring& text) {
  std::string narrow;
  for (const wchar_t unit : text) {
    if (unit < 0x7F) {
      narrow += static_cast<char>(unit);
    } else {
      narrow += '#' + std::to_string(static_cast<unsigned>(unit));
    }
  }
  return narrow;
}

// Others may have it open for anything.
std::string BytesIn(const std::wstring& path) {
  const ScopedHandle file(CreateFileW(path.c_str(), GENERIC_READ,
                                      FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
                                      OPEN_EXISTING, 0, nullptr));
  std::string bytes(1 << 16, '\0');
  DWORD size = 0;
  if (!file || ReadFile(file.Get(), bytes.data(), 1 << 16, &size, nullptr) == FALSE) return "unreadable";
  bytes.resize(size);
  return bytes;
}

void AddKeyTo(RawState& state, HKEY root, const std::wstring& key, REGSAM view) {
  const std::vector<std::wstring> values = Values(root, key, view);
  const std::vector<std::wstring> keys = SubKeys(root, key, view);
  if (values.empty() && keys.empty()) state[{root, view, key}] = {};
  for (const std::wstring& name : values) {
    const std::optional<RawValue> value = GetValue(root, key, name, view);
    state[{root, view, key, name}] = value ? Content(*value) : "unreadable";
  }
  for (const std::wstring& sub : keys) AddKeyTo(state, root, key + L'\\' + sub, view);
}

void AddFolderTo(RawState& state, const std::wstring& folder) {
  if (!fs::is_directory(folder)) return;
  for (const auto& entry : fs::directory_iterator(folder)) {
    if (!entry.is_directory()) state[{nullptr, 0, entry.path().wstring()}] = BytesIn(entry.path().wstring());
  }
}

std::string Content(const RawValue& value) {
  return std::to_string(value.type) + ' ' +
         std::string(reinterpret_cast<const char*>(value.bytes.data()), value.bytes.size());
}

bool Holds(const std::string& content, const std::string& text) {
  std::string units;
  for (const char character : text) units.append({character, '\0'});
  return content.find(units) != content.npos || content.find(text) != content.npos;
}

std::ostream& operator<<(std::ostream& out, const Place& place) {
  if (place.IsFile()) return out << Shown(Narrow(place.key));
  out << (place.root == HKEY_LOCAL_MACHINE ? "HKLM" : "HKCU") << (place.view != 0 ? " 64 " : " ");
  return out << Shown(Narrow(place.key)) << '|' << Shown(Narrow(place.name));
}

std::string Difference(const RawState& before, const RawState& after) {
  std::ostringstream out;
  const auto add = [&](const char* sign, const RawState& from, const RawState& other) {
    for (const auto& [place, content] : from) {
      const auto found = other.find(place);
      if (found == other.end() || found->second != content)
        out << sign << place << " = " << Shown(content) << '\n';
    }
  };
  add("- ", before, after);
  add("+ ", after, before);
  return out.str();
}

}  // namespace smh::test
