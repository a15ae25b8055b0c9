// The ExtraData blocks that may follow the strings.
#pragma once

#include "infra/runtime/byte_cursor.h"
#include "shelllink/format/section_view.h"

namespace smh {

enum class TExtraDataKind {
  edkUnknown = 0,
  edkConsole = 1,
  edkConsoleFE = 2,
  edkDarwin = 3,
  edkEnvironment = 4,
  edkIconEnvironment = 5,
  edkKnownFolder = 6,
  edkPropertyStore = 7,
  edkShim = 8,
  edkSpecialFolder = 9,
  edkTracker = 10,
  edkVistaIDList = 11,
};

// One block; its kind and required size follow from its signature. A block of an unknown signature is kept as
// it is. Borrows from the link's bytes, as all that it hands out. Not changed after Load: any thread.
class TExtraData {
 public:
  // Reads a block whose BlockSize was read already. Fails the cursor when the size is not its kind's or the
  // file ends inside the block; the block is then of no use.
  static TExtraData Load(ByteCursor& file, std::uint32_t blockSize);

  TExtraDataKind Kind() const noexcept { return kind_; }
  std::uint32_t Signature() const noexcept { return signature_; }
  std::uint64_t BlockSize() const noexcept { return data_.size() + kHeadSize; }
  // What follows the block's size and signature; valid as long as the link's bytes.
  Bytes Data() const noexcept { return data_; }

  // The target of a block of strings (environment, icon environment, Darwin): its UTF-16 text or, when that
  // is empty, its ANSI text. Empty for every other kind.
  StoredText Target() const noexcept;

 private:
  static constexpr std::uint32_t kHeadSize = 8;

  TExtraData(TExtraDataKind kind, std::uint32_t signature, Bytes data) noexcept
      : kind_(kind), signature_(signature), data_(data) {}

  TExtraDataKind kind_;
  std::uint32_t signature_;
  Bytes data_;
};

// The two texts of the 788-byte layout. Borrows `data`; any thread.
class TExtraDataStringProps {
 public:
  explicit TExtraDataStringProps(Bytes data) noexcept : data_(data) {}

  // Empty when the data is too short to hold the text's field.
  StoredText AnsiTarget() const noexcept;
  StoredText UnicodeTarget() const noexcept;

 private:
  Bytes data_;
};

}  // namespace smh
