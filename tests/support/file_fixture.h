// Files of a test's own.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace smh::test {

// A new empty folder on C:, removed with all its contents at the end. In the system's folder for such, or in
// `base`, which has a trailing backslash.
class TemporaryFolder {
 public:
  TemporaryFolder();
  explicit TemporaryFolder(const std::wstring& base);
  ~TemporaryFolder();
  TemporaryFolder(const TemporaryFolder&) = delete;
  TemporaryFolder& operator=(const TemporaryFolder&) = delete;

  // Without a trailing backslash.
  const std::wstring& Path() const noexcept { return path_; }
  std::wstring File(std::wstring_view name) const { return path_ + L'\\' + std::wstring(name); }
  // Both make missing folders and answer the full path.
  std::wstring Write(std::wstring_view name, std::string_view bytes) const;
  std::wstring MakeFolder(std::wstring_view name) const;

 private:
  std::wstring path_;
};

// Begins like a file of icons; the icon reader of some shells faults on it.
std::string FaultyIconBytes();
// Makes missing folders and answers the path.
std::wstring WriteFileBytes(const std::wstring& path, std::string_view bytes);
// Throws std::runtime_error when the file cannot be read.
std::string ReadFileBytes(const std::wstring& path);
// The lines of a log: UTF-16 with its byte-order mark, every line ended by CRLF. Throws std::runtime_error
// when the file is anything else.
std::vector<std::wstring> ReadUtf16Lines(const std::wstring& path);

}  // namespace smh::test
