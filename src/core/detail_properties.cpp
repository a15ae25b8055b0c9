#include "core/detail_properties.h"

#include "core/contracts/StartupManagerHelper.h"
#include "core/contracts/variant_values.h"

namespace smh {

VARIANT DetailPropertyValue(const ItemDetails& details, std::int32_t index) {
  const VersionTexts& version = *details.Version;
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

}  // namespace smh
