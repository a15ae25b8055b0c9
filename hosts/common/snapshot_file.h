// Snapshots as files: JSON in UTF-8, an entry per line. Whatever a file holds, reading it either gives
// entries that lie in the locations, or fails with a reason; docs/startupctl.md describes the members.
#pragma once

#include "hosts/common/snapshot.h"

#include <cstddef>
#include <string>
#include <string_view>

namespace smh {

// A file of more bytes is refused, when it is read and when it is to be written.
inline constexpr std::size_t kMostSnapshotBytes = 32u << 20;

// The text of the file, with a line feed at its end.
std::wstring SnapshotText(const Snapshot& snapshot);
// The reverse. Raises JsonFault (flat_json.h) for anything that SnapshotText does not write.
Snapshot ParseSnapshot(std::string_view bytes);

// Both raise HostError, which names the file. A file that is there already is replaced at once, when the new
// one is complete, or stays as it was.
void WriteSnapshotFile(const std::wstring& path, const Snapshot& snapshot);
Snapshot ReadSnapshotFile(const std::wstring& path);

}  // namespace smh
