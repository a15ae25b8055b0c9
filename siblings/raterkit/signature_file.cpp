#include "siblings/raterkit/signature_file.h"

#include "infra/files/file_facts.h"
#include "infra/files/file_reading.h"
#include "infra/files/own_file.h"
#include "infra/runtime/exceptions.h"
#include "infra/runtime/handle.h"
#include "sysutil/network_roots.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <iterator>

namespace smh {

namespace {

constexpr std::uint64_t kMostBytes = std::uint64_t{1} << 20;
constexpr std::size_t kLongestLine = 2048;
// More than the file has lines.
constexpr std::size_t kMostKnown = 16'384;
constexpr DWORD kSharing = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;
constexpr std::uint64_t kDay = std::uint64_t{24} * 60 * 60 * 10'000'000;
constexpr std::string_view kVersion = "1";
constexpr char kBetween = '\t';

// Nothing that would take an alarm away, or that certificates and catalogues of this machine may make
// another state.
bool IsKept(std::uint64_t state) noexcept {
  return state == kSignatureBroken;
}

std::uint64_t Now() noexcept {
  FILETIME now;
  GetSystemTimeAsFileTime(&now);
  return NumberOf(now);
}

std::string ToUtf8(std::wstring_view text) {
  const auto encode = [text](char* target, int room) {
    return WideCharToMultiByte(CP_UTF8, 0, text.data(), static_cast<int>(text.size()), target, room, nullptr,
                               nullptr);
  };
  std::string bytes(text.empty() ? 0 : static_cast<std::size_t>(encode(nullptr, 0)), '\0');
  if (!bytes.empty()) encode(bytes.data(), static_cast<int>(bytes.size()));
  return bytes;
}

std::wstring FromUtf8(std::string_view bytes) {
  const auto decode = [bytes](wchar_t* target, int room) {
    return MultiByteToWideChar(CP_UTF8, 0, bytes.data(), static_cast<int>(bytes.size()), target, room);
  };
  std::wstring text(bytes.empty() ? 0 : static_cast<std::size_t>(decode(nullptr, 0)), L'\0');
  if (!text.empty()) decode(text.data(), static_cast<int>(text.size()));
  return text;
}

std::string HexOf(std::uint64_t number) {
  std::array<char, 16> digits;
  const auto end = std::to_chars(digits.begin(), digits.end(), number, 16).ptr;
  return std::string(digits.begin(), end);
}

std::optional<std::uint64_t> FromHex(std::string_view text) noexcept {
  std::uint64_t number = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number, 16);
  if (error != std::errc() || end != text.data() + text.size()) return std::nullopt;
  return number;
}

// FNV-1a: against damage, not against people.
std::uint64_t SumOf(std::string_view text) noexcept {
  std::uint64_t sum = 0xCBF29CE484222325;
  for (const char unit : text) sum = (sum ^ static_cast<unsigned char>(unit)) * 0x100000001B3;
  return sum;
}

std::string KeyOf(const Sha256& hash, std::wstring_view extension) {
  return ToUtf8(TextOf(hash)).append(1, kBetween).append(ToUtf8(extension));
}

bool HasControls(std::wstring_view text) noexcept {
  return std::ranges::any_of(text, [](wchar_t unit) { return unit < L' ' || unit == 0x7F; });
}

// In the order of a line; the sum of all before it is the last one.
enum Field : std::size_t {
  kFormat,
  kHash,
  kExtension,
  kState,
  kChecked,
  kCode,
  kSigned,
  kOrganisation,
  kName,
  kSum,
  kFields
};

std::optional<std::array<std::string_view, kFields>> FieldsOf(std::string_view line) noexcept {
  std::array<std::string_view, kFields> fields;
  const std::string_view all = line;
  for (std::size_t i = 0; i < kFields; ++i) {
    const std::size_t end = line.find(kBetween);
    if ((end == std::string_view::npos) != (i + 1 == kFields)) return std::nullopt;
    fields[i] = line.substr(0, end);
    line.remove_prefix(end == std::string_view::npos ? line.size() : end + 1);
  }
  const std::string_view summed = all.substr(0, all.size() - fields[kSum].size());
  if (FromHex(fields[kSum]) != SumOf(summed) || fields[kFormat] != kVersion) return std::nullopt;
  return fields;
}

}  // namespace

void SignatureFile::TakeLine(std::string_view line) {
  const auto fields = FieldsOf(line);
  if (!fields) return;
  const auto number = [&](Field field) { return FromHex((*fields)[field]).value_or(0); };
  const std::uint64_t checked = number(kChecked);
  const std::uint64_t now = Now();
  const std::uint64_t state = number(kState);
  if (!IsKept(state) || checked > now || now - checked > kDay) return;
  Signature signature;
  signature.state = static_cast<SignatureState>(state);
  signature.code = static_cast<LONG>(number(kCode));
  signature.signingTime = FileTimeOf(number(kSigned));
  signature.organisation = FromUtf8((*fields)[kOrganisation]);
  signature.commonName = FromUtf8((*fields)[kName]);
  std::string key((*fields)[kHash]);
  key.append(1, kBetween).append((*fields)[kExtension]);
  known_.insert_or_assign(std::move(key), std::move(signature));
}

std::string SignatureFile::Read() {
  try {
    if (path_.empty() || !IsReachable(path_)) return {};
    const ScopedHandle file = OpenOwnFile(path_, GENERIC_READ, kSharing, OPEN_EXISTING);
    if (!file) return {};
    const std::vector<std::byte> bytes = ReadOpenFile(file.Get(), 2 * kMostBytes);
    return std::string(reinterpret_cast<const char*>(bytes.data()), bytes.size());
  } catch (const EOSError&) {
    return {};
  }
}

std::optional<Signature> SignatureFile::Find(const Sha256& hash, std::wstring_view extension) {
  const ScopedLock guard(lock_);
  if (!isRead_) {
    isRead_ = true;
    const std::string text = Read();
    for (std::string_view rest = text; !rest.empty();) {
      const std::string_view line = rest.substr(0, rest.find('\n'));
      TakeLine(line);
      rest.remove_prefix(std::min(line.size() + 1, rest.size()));
    }
  }
  const auto found = known_.find(KeyOf(hash, extension));
  return found == known_.end() ? std::nullopt : std::optional(found->second);
}

void SignatureFile::Append(std::string_view line) {
  if (path_.empty() || !IsReachable(path_)) return;
  std::wstring path = path_;
  const HeldFolders folders(path, base_);
  if (!folders.AreHeld()) return;
  {
    const ScopedHandle full = OpenOwnFile(path, GENERIC_WRITE, kSharing, OPEN_EXISTING);
    const std::optional<std::uint64_t> size = full ? SizeOfOpenFile(full.Get()) : std::nullopt;
    if (size && *size + line.size() > kMostBytes) SetEndOfFile(full.Get());
  }
  const ScopedHandle file = OpenOwnFile(path, FILE_APPEND_DATA, kSharing, OPEN_ALWAYS);
  DWORD written = 0;
  if (file) WriteFile(file.Get(), line.data(), static_cast<DWORD>(line.size()), &written, nullptr);
}

void SignatureFile::Add(const Sha256& hash, std::wstring_view extension, const Signature& signature) {
  if (!IsKept(static_cast<std::uint64_t>(signature.state)) || HasControls(signature.organisation) ||
      HasControls(signature.commonName))
    return;
  const std::string key = KeyOf(hash, extension);
  std::string line;
  line.append(kVersion).append(1, kBetween).append(key);
  for (const std::uint64_t number :
       {static_cast<std::uint64_t>(signature.state), Now(),
        static_cast<std::uint64_t>(static_cast<ULONG>(signature.code)), NumberOf(signature.signingTime)}) {
    line.append(1, kBetween).append(HexOf(number));
  }
  for (const std::wstring& text : {signature.organisation, signature.commonName})
    line.append(1, kBetween).append(ToUtf8(text));
  line.append(1, kBetween);
  line.append(HexOf(SumOf(line))).append(1, '\n').insert(0, 1, '\n');
  if (line.size() > kLongestLine) return;
  Append(line);
  const ScopedLock guard(lock_);
  if (known_.size() >= kMostKnown) known_.clear();
  known_.insert_or_assign(key, signature);
}

}  // namespace smh
