#include "model/version_texts.h"

#include "core/uDllGlobals.h"

namespace smh {

namespace {

struct VersionString {
  const wchar_t* name;
  std::wstring VersionTexts::*text;
};

// In the order of reading; the numeric version comes after "Comments".
constexpr VersionString kStringsBeforeNumber[] = {
    {L"FileDescription", &VersionTexts::FileDescription},
    {L"ProductName", &VersionTexts::ProductName},
    {L"Comments", &VersionTexts::Comments},
};
constexpr VersionString kStringsAfterNumber[] = {
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

}  // namespace

VersionTexts ReadVersionTexts(const std::wstring& file) {
  VersionTexts texts;
  IHelper& helper = DLLGlobals::Helper();
  const auto read = [&](const VersionString& row) {
    texts.*row.text =
        TakeText([&](BoundaryText* text) { return helper.GetVersionString(file.c_str(), row.name, text); });
  };
  for (const VersionString& row : kStringsBeforeNumber) read(row);
  texts.VersionNumber =
      TakeText([&](BoundaryText* text) { return helper.GetVersionNumber(file.c_str(), text); });
  for (const VersionString& row : kStringsAfterNumber) read(row);
  return texts;
}

}  // namespace smh
