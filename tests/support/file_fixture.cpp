#include "tests/support/file_fixture.h"

#include <windows.h>

#include <atomic>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdexcept>

namespace smh::test {

namespace fs = std::filesystem;

namespace {

std::wstring SystemsFolder() {
  wchar_t base[MAX_PATH];
  GetTempPathW(MAX_PATH, base);
  wchar_t full[MAX_PATH];
  GetLongPathNameW(base, full, MAX_PATH);
  return full;
}

}  // namespace

TemporaryFolder::TemporaryFolder() : TemporaryFolder(SystemsFolder()) {}

TemporaryFolder::TemporaryFolder(const std::wstring& base) : path_(base) {
  static std::atomic<unsigned> count{0};
  path_.append(L"smh-").append(std::to_wstring(GetCurrentProcessId())).append(1, L'-');
  path_.append(std::to_wstring(++count));
  std::error_code ignored;
  fs::remove_all(path_, ignored);
  fs::create_directories(path_);
}

TemporaryFolder::~TemporaryFolder() {
  std::error_code ignored;
  fs::remove_all(path_, ignored);
}

std::wstring TemporaryFolder::Write(std::wstring_view name, std::string_view bytes) const {
  return WriteFileBytes(File(name), bytes);
}

std::wstring TemporaryFolder::MakeFolder(std::wstring_view name) const {
  fs::create_directories(File(name));
  return File(name);
}

std::string FaultyIconBytes() {
  using namespace std::string_literals;
  return "\0\0\1\0"s + std::string(69, '\xFF');
}

std::wstring WriteFileBytes(const std::wstring& path, std::string_view bytes) {
  fs::create_directories(fs::path(path).parent_path());
  std::ofstream file(fs::path(path), std::ios::binary | std::ios::trunc);
  file.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
  if (!file.flush()) throw std::runtime_error("a test file cannot be written");
  return path;
}

std::string ReadFileBytes(const std::wstring& path) {
  std::ifstream file(fs::path(path), std::ios::binary);
  if (!file) throw std::runtime_error("a test file cannot be read");
  return std::string(std::istreambuf_iterator<char>(file), {});
}

std::vector<std::wstring> ReadUtf16Lines(const std::wstring& path) {
  const std::string bytes = ReadFileBytes(path);
  std::wstring text(bytes.size() / sizeof(wchar_t), L'\0');
  bytes.copy(reinterpret_cast<char*>(text.data()), text.size() * sizeof(wchar_t));
  if (bytes.size() % 2 != 0 || !text.starts_with(0xFEFF)) throw std::runtime_error("a log is not UTF-16");
  std::vector<std::wstring> lines;
  for (std::size_t at = 1; at < text.size(); at += lines.back().size() + 2) {
    const std::size_t end = text.find(L"\r\n", at);
    if (end == std::wstring::npos) throw std::runtime_error("the last line of a log has no end");
    lines.push_back(text.substr(at, end - at));
  }
  return lines;
}

}  // namespace smh::test
