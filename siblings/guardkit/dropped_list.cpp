#include "siblings/guardkit/dropped_list.h"

#include "infra/files/file_reading.h"
#include "infra/runtime/exceptions.h"
#include "siblings/guardkit/blob_store.h"
#include "siblings/guardkit/format/journal_format.h"
#include "siblings/guardkit/format/record_codec.h"

#include <algorithm>

namespace smh {

namespace {

constexpr wchar_t kFileName[] = L"dropped.list";
constexpr std::size_t kKeptRows = 1'000;
// A thousand titles of the greatest length that a name has.
constexpr std::uint64_t kLargestList = 64u << 20;

ByteVector Encode(const DroppedAction& row) {
  RecordWriter payload;
  payload.U32(row.id);
  payload.U32(row.undoes);
  payload.U64(row.time);
  payload.U32(row.parts);
  payload.U32(row.steps);
  payload.U64(row.dropped);
  payload.Text(row.title);
  payload.U8(row.forgotten ? 1 : 0);
  return FrameRecord(payload.Written());
}

DroppedAction Decode(ByteCursor in) {
  DroppedAction row;
  row.id = in.U32();
  row.undoes = in.U32();
  row.time = in.U64();
  row.parts = in.U32();
  row.steps = in.U32();
  row.dropped = in.U64();
  row.title = ReadText(in);
  row.forgotten = in.U8() != 0;
  return row;
}

}  // namespace

std::vector<DroppedAction> ReadDropped(const JournalFolder& folder) {
  std::vector<DroppedAction> rows;
  try {
    const std::string text = ReadWholeFile(
        folder.File(kFileName), FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, kLargestList);
    ByteCursor in(std::as_bytes(std::span(text)));
    while (const std::optional<Bytes> payload = NextRecord(in)) rows.push_back(Decode(ByteCursor(*payload)));
  } catch (const EOSError&) {
    // None were dropped, or nobody can tell which.
  }
  return rows;
}

void WriteDropped(const JournalFolder& folder, const std::vector<DroppedAction>& dropped) {
  ByteVector bytes;
  const std::size_t first = dropped.size() - std::min(dropped.size(), kKeptRows);
  for (std::size_t i = first; i < dropped.size(); ++i) {
    const ByteVector row = Encode(dropped[i]);
    bytes.insert(bytes.end(), row.begin(), row.end());
  }
  const std::wstring staging = BlobStore(folder).StagingFile();
  try {
    const ScopedHandle file(
        CreateFileW(staging.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_NEW, FILE_ATTRIBUTE_NORMAL, nullptr));
    if (!file) RaiseLastOSError();
    DWORD written = 0;
    if (WriteFile(file.Get(), bytes.data(), static_cast<DWORD>(bytes.size()), &written, nullptr) == FALSE ||
        FlushFileBuffers(file.Get()) == FALSE) {
      RaiseLastOSError();
    }
    if (written != bytes.size()) RaiseOSError(ERROR_DISK_FULL);
  } catch (...) {
    DeleteFileW(staging.c_str());
    throw;
  }
  if (MoveFileExW(staging.c_str(), folder.File(kFileName).c_str(),
                  MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH) == FALSE) {
    const DWORD error = GetLastError();
    DeleteFileW(staging.c_str());
    RaiseOSError(error);
  }
}

}  // namespace smh
