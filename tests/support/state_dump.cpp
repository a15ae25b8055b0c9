#include "tests/support/state_dump.h"

#include "infra/runtime/handle.h"
#include "tests/support/file_fixture.h"
#include "tests/support/registry_fixture.h"

#include <sddl.h>

#include <algorithm>
#include <sstream>
#include <stdexcept>
#include <vector>

namespace smh::test {

namespace {

std::string Escaped(const std::wstring& text) {
  std::ostringstream out;
  for (const wchar_t unit : text) {
    if (unit >= L' ' && unit < 0x7F) {
      out << static_cast<char>(unit);
    } else {
      out << "\\u" << std::hex << static_cast<unsigned>(unit) << std::dec << ';';
    }
  }
  return out.str();
}

std::string Hex(const void* data, std::size_t size) {
  constexpr char kDigits[] = "0123456789abcdef";
  std::string text;
  for (std::size_t i = 0; i < size; ++i) {
    const unsigned byte = static_cast<const unsigned char*>(data)[i];
    text += kDigits[byte >> 4];
    text += kDigits[byte & 15];
  }
  return text;
}

std::string SecurityOf(HKEY key) {
  std::vector<char> descriptor(4096);
  auto size = static_cast<DWORD>(descriptor.size());
  constexpr SECURITY_INFORMATION kParts =
      OWNER_SECURITY_INFORMATION | GROUP_SECURITY_INFORMATION | DACL_SECURITY_INFORMATION;
  if (RegGetKeySecurity(key, kParts, descriptor.data(), &size) != ERROR_SUCCESS) return "unreadable";
  wchar_t* text = nullptr;
  ConvertSecurityDescriptorToStringSecurityDescriptorW(descriptor.data(), SDDL_REVISION_1, kParts, &text,
                                                       nullptr);
  const std::string result = text == nullptr ? "none" : Escaped(text);
  LocalFree(text);
  return result;
}

// Values whose names hold NULs included.
std::vector<std::string> ValueLines(HKEY key) {
  std::vector<std::string> lines;
  std::wstring name(16'384, L'\0');
  std::vector<BYTE> data(1 << 20);
  for (DWORD index = 0;; ++index) {
    auto length = static_cast<DWORD>(name.size());
    auto size = static_cast<DWORD>(data.size());
    DWORD type = 0;
    const LSTATUS status =
        RegEnumValueW(key, index, name.data(), &length, nullptr, &type, data.data(), &size);
    if (status == ERROR_NO_MORE_ITEMS) break;
    if (status != ERROR_SUCCESS) throw std::runtime_error("a value cannot be read");
    lines.push_back("  " + Escaped(name.substr(0, length)) + " = " + std::to_string(type) + ":" +
                    Hex(data.data(), size) + "\n");
  }
  std::ranges::sort(lines);
  return lines;
}

void AddKey(std::string& dump, HKEY root, const std::wstring& path, REGSAM view) {
  ScopedKey key;
  if (RegOpenKeyExW(root, path.c_str(), REG_OPTION_OPEN_LINK, KEY_READ | view, key.Put()) != ERROR_SUCCESS)
    return;
  wchar_t className[256] = {};
  DWORD length = 256;
  RegQueryInfoKeyW(key.Get(), className, &length, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr,
                   nullptr, nullptr, nullptr);
  dump += Escaped(path) + " class=" + Escaped(className) + " " + SecurityOf(key.Get()) + "\n";
  for (const std::string& line : ValueLines(key.Get())) dump += line;
  std::vector<std::wstring> names = SubKeys(root, path, view);
  std::ranges::sort(names);
  for (const std::wstring& name : names) AddKey(dump, root, path + L'\\' + name, view);
}

}  // namespace

std::string DumpKey(HKEY root, const std::wstring& path, REGSAM view) {
  std::string dump;
  AddKey(dump, root, path, view);
  return dump;
}

std::string DumpFolder(const std::wstring& folder) {
  std::vector<std::string> parts;
  WIN32_FIND_DATAW found;
  const ScopedFind find(FindFirstFileW((folder + L"\\*").c_str(), &found));
  if (!find) return {};
  do {
    const std::wstring name = found.cFileName;
    const std::wstring path = folder + L'\\' + name;
    if (name == L"." || name == L"..") continue;
    if ((found.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0) {
      parts.push_back(DumpFolder(path));
      continue;
    }
    const std::string bytes = ReadFileBytes(path);
    parts.push_back(Escaped(path) + " " + std::to_string(found.dwFileAttributes) + " " +
                    Hex(&found.ftCreationTime, sizeof(FILETIME)) + " " +
                    Hex(&found.ftLastWriteTime, sizeof(FILETIME)) + " " + Hex(bytes.data(), bytes.size()) +
                    "\n");
  } while (FindNextFileW(find.Get(), &found) != FALSE);
  std::ranges::sort(parts);
  std::string dump;
  for (const std::string& part : parts) dump += part;
  return dump;
}

}  // namespace smh::test
