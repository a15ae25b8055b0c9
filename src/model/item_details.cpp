#include "model/item_details.h"

#include "core/contracts/uDllGlobals.h"
#include "infra/runtime/critical_section.h"
#include "infra/runtime/text.h"

#include <algorithm>
#include <array>
#include <unordered_map>
#include <utility>

namespace smh {

namespace {

using TextMember = SharedText VersionTexts::*;

struct VersionText {
  // Null for the numeric version.
  const wchar_t* name;
  TextMember text;
};

// In the order of reading.
constexpr VersionText kTexts[] = {
    {L"FileDescription", &VersionTexts::FileDescription},
    {L"ProductName", &VersionTexts::ProductName},
    {L"Comments", &VersionTexts::Comments},
    {nullptr, &VersionTexts::VersionNumber},
    {L"InternalName", &VersionTexts::InternalName},
    {L"OriginalFilename", &VersionTexts::OriginalFilename},
    {L"ProductVersion", &VersionTexts::ProductVersion},
    {L"FileVersion", &VersionTexts::FileVersion},
    {L"PrivateBuild", &VersionTexts::PrivateBuild},
    {L"SpecialBuild", &VersionTexts::SpecialBuild},
    {L"CompanyName", &VersionTexts::CompanyName},
    {L"LegalCopyright", &VersionTexts::LegalCopyright},
    {L"LegalTrademarks", &VersionTexts::LegalTrademarks},
};

struct KnownFile {
  FileStamp stamp;
  SharedText folder;
  std::weak_ptr<const VersionTexts> version;
};

struct PathHash {
  std::size_t operator()(const SharedText& path) const noexcept {
    return std::hash<std::wstring_view>()(path);
  }
};

}  // namespace

struct KnownVersionTexts {
  const SharedVersionTexts none = std::make_shared<const VersionTexts>();
  // A leaf: files are read outside it.
  CriticalSection lock;
  std::unordered_map<SharedText, KnownFile, PathHash> files SMH_GUARDED_BY(lock);
  // At this many files those that nobody holds any more are forgotten.
  std::size_t tidyAt SMH_GUARDED_BY(lock) = 64;
};

constinit ModuleGlobal<KnownVersionTexts> g_versionTexts(L"item_details");

namespace {

SharedVersionTexts AskHelper(const SharedText& file) {
  const wchar_t* names[std::size(kTexts)];
  std::ranges::transform(kTexts, names, &VersionText::name);
  BoundaryText texts[std::size(kTexts)] = {};
  DLLGlobals::Helper().GetVersionStrings(file.c_str(), names, std::size(kTexts), texts);
  // Owned before anything can fail.
  std::array<BoundaryString, std::size(kTexts)> owned;
  for (std::size_t i = 0; i < owned.size(); ++i) *owned[i].Put() = texts[i];
  auto result = std::make_shared<VersionTexts>();
  for (std::size_t i = 0; i < owned.size(); ++i) (*result).*kTexts[i].text = SharedText(std::move(owned[i]));
  return result;
}

// Without version texts: nothing is known.
FileTexts Recall(const SharedText& file, const FileStamp& stamp) {
  const ScopedLock lock(g_versionTexts->lock);
  const auto known = g_versionTexts->files.find(file);
  if (known == g_versionTexts->files.end() || known->second.stamp != stamp) return {};
  return {known->first, known->second.folder, known->second.version.lock()};
}

void Remember(const FileTexts& texts, const FileStamp& stamp) {
  const ScopedLock lock(g_versionTexts->lock);
  if (g_versionTexts->files.size() >= g_versionTexts->tidyAt) {
    std::erase_if(g_versionTexts->files, [](const auto& row) { return row.second.version.expired(); });
    g_versionTexts->tidyAt = std::max(g_versionTexts->tidyAt, g_versionTexts->files.size() * 2);
  }
  g_versionTexts->files.insert_or_assign(texts.path, KnownFile{stamp, texts.folder, texts.version});
}

}  // namespace

SharedVersionTexts NoVersionTexts() {
  return g_versionTexts->none;
}

SharedText FolderTextOf(std::wstring_view path) {
  std::wstring_view folder = FolderPart(path);
  if (folder.ends_with(L':')) return SharedText(folder, L"\\");
  if (folder.ends_with(L'\\') && !folder.ends_with(L":\\")) folder.remove_suffix(1);
  return SharedText(folder);
}

FileTexts ReadFileTexts(const SharedText& file, const FileStamp& stamp) {
  FileTexts texts = Recall(file, stamp);
  if (texts.version) return texts;
  texts = {file, FolderTextOf(file), AskHelper(file)};
  Remember(texts, stamp);
  return texts;
}

}  // namespace smh
