#include "core/item_properties.h"

#include <oleauto.h>

#include <new>

namespace smh {

namespace {

VARIANT TextVariant(const std::wstring& text) {
  VARIANT value = NullVariant();
  value.bstrVal = SysAllocStringLen(text.data(), static_cast<UINT>(text.size()));
  if (value.bstrVal == nullptr) throw std::bad_alloc();
  value.vt = VT_BSTR;
  return value;
}

VARIANT NumberVariant(int number) noexcept {
  VARIANT value = NullVariant();
  value.vt = VT_I4;
  value.lVal = number;
  return value;
}

VARIANT BooleanVariant(bool set) noexcept {
  VARIANT value = NullVariant();
  value.vt = VT_BOOL;
  value.boolVal = set ? VARIANT_TRUE : VARIANT_FALSE;
  return value;
}

VARIANT SizeVariant(std::int64_t size) noexcept {
  VARIANT value = NullVariant();
  value.vt = VT_I8;
  value.llVal = size;
  return value;
}

VARIANT DateVariant(double date) noexcept {
  VARIANT value = NullVariant();
  value.vt = VT_DATE;
  value.date = date;
  return value;
}

VARIANT DetailValue(const ItemDetails& details, std::int32_t index) {
  const VersionTexts& version = details.Version;
  switch (index) {
    case kPropertyFileFound:
      return BooleanVariant(details.FileFound);
    case kPropertyCaption:
      return TextVariant(details.Caption);
    case kPropertyCommand:
      return TextVariant(details.Command);
    case kPropertyDescription:
      return TextVariant(details.Description);
    case kPropertyWorkingFolder:
      return TextVariant(details.WorkingFolder);
    case kPropertyLinkNumber:
      return NumberVariant(details.LinkShowCommand);
    case kPropertyProductName:
      return TextVariant(version.ProductName);
    case kPropertyComments:
      return TextVariant(version.Comments);
    case kPropertyVersionNumber:
      return TextVariant(version.VersionNumber);
    case kPropertyInternalName:
      return TextVariant(version.InternalName);
    case kPropertyOriginalFilename:
      return TextVariant(version.OriginalFilename);
    case kPropertyProductVersion:
      return TextVariant(version.ProductVersion);
    case kPropertyFileVersion:
      return TextVariant(version.FileVersion);
    case kPropertyVersion:
      return TextVariant(version.Version());
    case kPropertyPrivateBuild:
      return TextVariant(version.PrivateBuild);
    case kPropertySpecialBuild:
      return TextVariant(version.SpecialBuild);
    case kPropertyCompany:
      return TextVariant(version.Company());
    case kPropertyLegalCopyright:
      return TextVariant(version.LegalCopyright);
    case kPropertyLegalTrademarks:
      return TextVariant(version.LegalTrademarks);
    case kPropertyFileSize:
      return SizeVariant(details.FileSize);
    case kPropertyCreationTime:
      return DateVariant(details.CreationTime);
    case kPropertyLastAccessTime:
      return DateVariant(details.LastAccessTime);
    case kPropertyLastWriteTime:
      return DateVariant(details.LastWriteTime);
    case kPropertyFileTypeName:
      return TextVariant(details.FileTypeName);
    case kPropertyRating:
      return NumberVariant(details.Rating);
    default:
      return NullVariant();
  }
}

}  // namespace

VARIANT NullVariant() noexcept {
  VARIANT value;
  VariantInit(&value);
  value.vt = VT_NULL;
  return value;
}

VARIANT ItemPropertyValue(const TStartupItem& item, std::int32_t index) {
  if (index == kPropertyLocation) return NumberVariant(item.Location());
  return item.Get([&](const ItemState& state) {
    return index == kPropertyEnabled ? BooleanVariant(state.isEnabled) : DetailValue(state.details, index);
  });
}

}  // namespace smh
