#include "siblings/basekit/version_cache.h"

#include "siblings/basekit/environment.h"

#include <windows.h>

#include <algorithm>
#include <optional>

namespace smh {

constinit ModuleGlobal<VersionCache> g_versionCache(L"version_cache");

VersionRecord ReadVersionRecord(const std::wstring& path) {
  DWORD ignored = 0;
  const DWORD size = GetFileVersionInfoSizeW(path.c_str(), &ignored);
  if (size == 0) return {};
  std::vector<std::byte> bytes(size);
  if (GetFileVersionInfoW(path.c_str(), 0, size, bytes.data()) == FALSE) return {};
  return VersionRecord(bytes);
}

std::shared_ptr<const VersionRecord> VersionCache::Get(const std::wstring& file) {
  // The stamp is older than the record: a change in between leaves an entry that never matches again. The
  // system would look for a bare name in its search folders, hence the full path.
  const std::wstring path = FullPath(file.c_str());
  const std::optional<FileStamp> stamp = StampOf(path);
  if (!stamp.has_value() || stamp->isFolder) return std::make_shared<const VersionRecord>();
  {
    const ScopedLock guard(lock_);
    const auto entry =
        std::ranges::find_if(entries_, [&](const Entry& e) { return e.stamp == *stamp && e.path == path; });
    if (entry != entries_.end() && entry->record != nullptr) return entry->record;
  }
  auto record = std::make_shared<const VersionRecord>(ReadVersionRecord(path));
  const ScopedLock guard(lock_);
  entries_[oldest_] = {path, *stamp, record};
  oldest_ = (oldest_ + 1) % entries_.size();
  return record;
}

}  // namespace smh
