// The text of a log and the file that it is written to.
#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace smh {

// The lines of a log, kept as the text that is written: in blocks, so that a line costs its own text and no
// more. Text and file have at most kMostBytes: the oldest lines go, and a first line says so. Has no lock of
// its own: its user serialises the calls.
class LogText {
 public:
  static constexpr std::size_t kMostBytes = std::size_t{16} << 20;

  // Appends the line and CRLF. Raises std::bad_alloc.
  void AddLine(std::wstring_view line);
  void Clear() noexcept;

  // The text in parts, valid until the next AddLine or Clear; a line may go on in the next part.
  std::size_t PartCount() const noexcept { return 1 + blocks_.size(); }
  std::wstring_view Part(std::size_t index) const noexcept;

 private:
  struct BlockOfUnits {
    static constexpr std::size_t kUnits = 8000;
    std::size_t used = 0;
    wchar_t units[kUnits];
  };

  std::size_t Room() const noexcept {
    return blocks_.empty() ? 0 : BlockOfUnits::kUnits - blocks_.back()->used;
  }
  void Put(std::wstring_view text);
  void DropOldestBlock() noexcept;

  // One less, for what is written before them.
  static constexpr std::size_t kMostBlocks = kMostBytes / sizeof(BlockOfUnits) - 1;

  std::vector<std::unique_ptr<BlockOfUnits>> blocks_;
  // Where the first whole line begins in the first block.
  std::size_t start_ = 0;
  // How many lines have gone, and the line that says so; empty while none has.
  unsigned gone_ = 0;
  wchar_t note_[64] = {};
};

// Where a log goes: the file, by its full path, and the name under which it is written first, in the same
// folder. Their first `base` units are a folder that is taken as it is, with its backslash; below it links
// are not followed (infra/files/own_file.h).
struct LogFileNames {
  std::wstring file;
  std::wstring unfinished;
  std::size_t base = 0;
};

// Makes missing folders, writes the text as UTF-16LE with byte order mark under the unfinished name, and puts
// that file in the place of the old one; when that cannot be done, writes over the old one, if it is a plain
// file. False when neither works. A stop that cancels the thread's file access meanwhile does not cut it
// short, unless that goes on for two seconds. Changes the texts of `names` for the time of the call. The
// caller keeps others from `text` meanwhile. Uses kernel32 alone and allocates nothing: it also serves a
// process that is ending.
bool WriteLogFile(LogFileNames& names, const LogText& text) noexcept;

}  // namespace smh
