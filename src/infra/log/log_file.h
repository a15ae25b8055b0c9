// The text of a log and the file that it is written to.
#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace smh {

// The lines of a log, kept as the text that is written: in blocks, so that a line costs its own text and no
// more. Has no lock of its own: its user serialises the calls.
class LogText {
 public:
  // Appends the line and CRLF. Raises std::bad_alloc.
  void AddLine(std::wstring_view line);
  void Clear() noexcept { blocks_.clear(); }

  std::size_t BlockCount() const noexcept { return blocks_.size(); }
  // A block of the text, valid until the next AddLine or Clear; a line may go on in the next block.
  std::wstring_view Block(std::size_t index) const noexcept {
    return {blocks_[index]->units, blocks_[index]->used};
  }

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

  std::vector<std::unique_ptr<BlockOfUnits>> blocks_;
};

// Where a log goes: the file, by its full path, and the name under which it is written first, in the same
// folder.
struct LogFileNames {
  std::wstring file;
  std::wstring unfinished;
};

// Makes missing folders, writes the text as UTF-16LE with byte order mark under the unfinished name, and puts
// that file in the place of the old one; when that name cannot be used, writes over the file itself. False
// when neither works. Changes the texts of `names` for the time of the call. The caller keeps others from
// `text` meanwhile. Uses kernel32 alone and allocates nothing: it also serves a process that is ending.
bool WriteLogFile(LogFileNames& names, const LogText& text) noexcept;

}  // namespace smh
