#include "siblings/basekit/version_cache.h"

#include <windows.h>

#include <algorithm>
#include <optional>

#include "siblings/basekit/environment.h"

namespace smh {

namespace {

VersionCache* moduleCache = nullptr;

std::uint64_t Wide(DWORD high, DWORD low) noexcept {
  return static_cast<std::uint64_t>(high) << 32 | low;
}

std::optional<FileStamp> StampOf(const std::wstring& path) {
  WIN32_FILE_ATTRIBUTE_DATA data;
  if (GetFileAttributesExW(path.c_str(), GetFileExInfoStandard, &data) == FALSE) return std::nullopt;
  if ((data.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0) return std::nullopt;
  return FileStamp{path, Wide(data.nFileSizeHigh, data.nFileSizeLow),
                   Wide(data.ftLastWriteTime.dwHighDateTime, data.ftLastWriteTime.dwLowDateTime)};
}

}  // namespace

VersionRecord ReadVersionRecord(const std::wstring& path) {
  DWORD ignored = 0;
  const DWORD size = GetFileVersionInfoSizeW(path.c_str(), &ignored);
  if (size == 0) return {};
  std::vector<std::byte> bytes(size);
  if (GetFileVersionInfoW(path.c_str(), 0, size, bytes.data()) == FALSE) return {};
  return VersionRecord(bytes);
}

std::shared_ptr<const VersionRecord> VersionCache::Get(const std::wstring& path) {
  // The stamp is older than the record: a change in between leaves an entry that never matches again. The
  // system would look for a bare name in its search folders, hence the full path.
  const std::optional<FileStamp> stamp = StampOf(FullPath(path.c_str()));
  if (!stamp.has_value()) return std::make_shared<const VersionRecord>();
  {
    const ScopedLock guard(lock_);
    const auto entry = std::ranges::find_if(entries_, [&](const Entry& e) { return e.stamp == *stamp; });
    if (entry != entries_.end() && entry->record != nullptr) return entry->record;
  }
  auto record = std::make_shared<const VersionRecord>(ReadVersionRecord(stamp->path));
  const ScopedLock guard(lock_);
  entries_[oldest_] = {*stamp, record};
  oldest_ = (oldest_ + 1) % entries_.size();
  return record;
}

VersionCache& ModuleVersionCache() noexcept {
  return *moduleCache;
}

void StartVersionCache() {
  moduleCache = new VersionCache;
}

void StopVersionCache() noexcept {
  delete std::exchange(moduleCache, nullptr);
}

}  // namespace smh
