#include "sysutil/version/version_codes.h"

#include <algorithm>
#include <cstddef>
#include <iterator>
#include <span>

namespace smh {

namespace {

constexpr std::wstring_view kOsNames[] = {
    L"Unknown",
    L"Win32s",
    L"Windows 95",
    L"Windows NT",
    L"Windows 98",
    L"Windows 98 SE",
    L"Windows Millennium",
    L"Windows 2000",
    L"Windows XP",
    L"Windows Server 2003",
    L"Windows Server 2003 R2",
    L"Windows Home Server",
    L"Windows Vista",
    L"Windows Server 2008",
    L"Windows Server 2008 R2",
    L"Windows 7",
    L"Windows Maximum",
};

// "Itanuim" is kept on purpose: it is what users and logs have always been shown.
constexpr std::wstring_view kArchitectureNames[] = {L"Unknown", L"x32", L"x64", L"Itanuim"};

constexpr std::wstring_view kServicePackNames[] = {
    L"Unknown",        L"",
    L"Service Pack 1", L"Service Pack 2",
    L"Service Pack 3", L"Service Pack 4",
    L"Service Pack 5", L"Service Pack Maximum",
};

// From code 1 on.
constexpr std::wstring_view kEditionNames[] = {
    L"Unknown Edition",
    L"Starter Edition",
    L"Home Basic Edition",
    L"Home Edition",
    L"Home Premium Edition",
    L"Home Server Edition",
    L"Business Edition",
    L"Cluster Server Edition",
    L"Datacenter Edition",
    L"Enterprise Edition",
    L"Advanced Edition",
    L"Professional Edition",
    L"Enterprise Edition",
    L"Small Business Edition",
    L"Small Business Premium Edition",
    L"Standard Edition",
    L"Storage Enterprise Edition",
    L"Storage Express Edition",
    L"Storage Standard Edition",
    L"Storage Workgroup Edition",
    L"Web Server Edition",
    L"Media Center Edition",
    L"Ultimate Edition",
    L"Tablet PC Edition",
    L"Appliance Edition",
    L"Embedded Edition",
    L"Unlicensed",
};

static_assert(std::size(kOsNames) == kOsMaximum + 1);
static_assert(std::size(kArchitectureNames) == kArchitectureItanium + 1);
static_assert(std::size(kEditionNames) == kEditionUnlicensed);

struct EditionRow {
  DWORD value;
  EditionCode edition;
  // Windows 2000 called the same thing differently.
  EditionCode onWindows2000;

  constexpr EditionRow(DWORD rowValue, EditionCode rowEdition)
      : EditionRow(rowValue, rowEdition, rowEdition) {}
  constexpr EditionRow(DWORD rowValue, EditionCode rowEdition, EditionCode rowOnWindows2000)
      : value(rowValue), edition(rowEdition), onWindows2000(rowOnWindows2000) {}
};

// By the product type of GetProductInfo.
constexpr EditionRow kProducts[] = {
    {1, kEditionUltimate},
    {2, kEditionHomeBasic},
    {3, kEditionHomePremium},
    {4, kEditionEnterprise},
    {5, kEditionHomeBasic},
    {6, kEditionBusiness},
    {7, kEditionStandard},
    {8, kEditionDatacenter},
    {9, kEditionSmallBusiness},
    {10, kEditionEnterpriseServer},
    {11, kEditionStarter},
    {12, kEditionDatacenter},
    {13, kEditionStandard},
    {14, kEditionEnterpriseServer},
    {15, kEditionEnterpriseServer},
    {16, kEditionBusiness},
    {17, kEditionWebServer},
    {18, kEditionClusterServer},
    {19, kEditionHomeServer},
    {20, kEditionStorageExpress},
    {21, kEditionStorageStandard},
    {22, kEditionStorageWorkgroup},
    {23, kEditionStorageEnterprise},
    {24, kEditionSmallBusiness},
    {25, kEditionSmallBusinessPremium},
    {26, kEditionHomePremium},
    {27, kEditionEnterprise},
    {28, kEditionUltimate},
    {29, kEditionWebServer},
    {0xABCDABCD, kEditionUnlicensed},
};

// By bits of the suite mask; the first that is set decides.
constexpr EditionRow kSuites[] = {
    {0x0001 | 0x0020, kEditionSmallBusiness},
    {0x0002, kEditionEnterprise, kEditionAdvanced},
    {0x0080, kEditionDatacenter},
    {0x0200, kEditionHome},
    {0x0400, kEditionWebServer},
    {0x2000, kEditionStorageStandard},
    {0x4000, kEditionClusterServer},
    {0x0040, kEditionEmbedded},
};

// By the questions that IsOS answers; the first yes decides.
constexpr EditionRow kIsOsAnswers[] = {
    // clang-format off
    {8, kEditionProfessional},
    {20, kEditionProfessional},
    {9, kEditionStandard},
    {23, kEditionStandard},
    {10, kEditionAdvanced},
    {11, kEditionDatacenter},
    {21, kEditionDatacenter},
    {13, kEditionEmbedded},
    {32, kEditionSmallBusiness},
    {36, kEditionAppliance},
    {31, kEditionWebServer},
    {22, kEditionEnterprise, kEditionAdvanced},
    {19, kEditionHome},
    {25, kEditionHome},
    {35, kEditionMediaCenter},
    {33, kEditionTabletPC},
    // clang-format on
};

// By system metrics; the first that is not 0 decides.
constexpr EditionRow kMetrics[] = {
    {87, kEditionMediaCenter},
    {88, kEditionStarter},
    {86, kEditionTabletPC},
};

constexpr int kMetricServerR2 = 89;
constexpr WORD kSuiteHomeServer = 0x8000;

template <typename Test>
EditionCode FirstEdition(std::span<const EditionRow> rows, int osCode, Test&& test) {
  const auto row = std::ranges::find_if(rows, test, &EditionRow::value);
  if (row == rows.end()) return kEditionNone;
  return osCode == kOsWindows2000 ? row->onWindows2000 : row->edition;
}

OsCode ByProductType(BYTE productType, OsCode workstation, OsCode server) noexcept {
  switch (productType) {
    case VER_NT_WORKSTATION:
      return workstation;
    case VER_NT_DOMAIN_CONTROLLER:
    case VER_NT_SERVER:
      return server;
    default:
      return kOsUnknown;
  }
}

OsCode OsCodeOf9x(const VersionFacts& facts) noexcept {
  if (facts.major != 4) return kOsUnknown;
  if (facts.minor >= 90) return kOsWindowsMillennium;
  if (facts.minor < 10) return kOsWindows95;
  const std::wstring& text = facts.servicePackText;
  return text.size() > 1 && text[1] == L'A' ? kOsWindows98SE : kOsWindows98;
}

OsCode OsCodeOfNT(VersionFacts& facts) {
  if (facts.major > 6 || (facts.major == 6 && facts.minor != 0)) {
    return ByProductType(facts.productType, kOsWindows7, kOsServer2008R2);
  }
  if (facts.major == 6) return ByProductType(facts.productType, kOsVista, kOsServer2008);
  if (facts.major < 5) return kOsWindowsNT;
  if (facts.minor == 0) return kOsWindows2000;
  if (facts.minor == 1) return kOsWindowsXP;
  if ((facts.suiteMask & kSuiteHomeServer) != 0) return kOsHomeServer;
  if (facts.productType == VER_NT_WORKSTATION) return kOsWindowsXP;
  return facts.SystemMetric(kMetricServerR2) == 0 ? kOsServer2003 : kOsServer2003R2;
}

std::wstring_view NameOf(std::span<const std::wstring_view> names, std::size_t index) noexcept {
  return index < names.size() ? names[index] : names[0];
}

std::size_t NameIndex(int code) noexcept {
  return static_cast<std::size_t>(code & 0x7F);
}

}  // namespace

OsCode OsCodeOf(VersionFacts& facts) {
  switch (facts.platform) {
    case VER_PLATFORM_WIN32s:
      return kOsWin32s;
    case VER_PLATFORM_WIN32_WINDOWS:
      return OsCodeOf9x(facts);
    case VER_PLATFORM_WIN32_NT:
      return OsCodeOfNT(facts);
    default:
      return kOsUnknown;
  }
}

ArchitectureCode ArchitectureCodeOf(WORD processorArchitecture) noexcept {
  switch (processorArchitecture) {
    case PROCESSOR_ARCHITECTURE_INTEL:
      return kArchitectureX32;
    case PROCESSOR_ARCHITECTURE_AMD64:
      return kArchitectureX64;
    case PROCESSOR_ARCHITECTURE_IA64:
      return kArchitectureItanium;
    default:
      return kArchitectureUnknown;
  }
}

int ServicePackCodeOf(const VersionFacts& facts) noexcept {
  return std::min<int>(facts.servicePackMajor, 5) + 1;
}

EditionCode EditionCodeOf(VersionFacts& facts, int osCode) {
  EditionCode edition = kEditionNone;
  if (osCode >= kOsVista) {
    const DWORD product = facts.ProductInfo();
    edition = FirstEdition(kProducts, osCode, [product](DWORD value) { return value == product; });
  }
  if (edition == kEditionNone) {
    edition = FirstEdition(kSuites, osCode, [&](DWORD bits) { return (facts.suiteMask & bits) != 0; });
  }
  if (edition == kEditionNone) {
    edition = FirstEdition(kIsOsAnswers, osCode, [&](DWORD value) { return facts.IsOS(value); });
  }
  if (edition == kEditionNone) {
    edition = FirstEdition(kMetrics, osCode,
                           [&](DWORD index) { return facts.SystemMetric(static_cast<int>(index)) != 0; });
  }
  return edition == kEditionNone ? kEditionUnknown : edition;
}

std::wstring_view OsNameOf(int code) noexcept {
  return NameOf(kOsNames, NameIndex(code));
}

std::wstring_view ArchitectureNameOf(int code) noexcept {
  return NameOf(kArchitectureNames, NameIndex(code));
}

std::wstring_view ServicePackNameOf(int code) noexcept {
  return NameOf(kServicePackNames, NameIndex(code));
}

std::wstring_view EditionNameOf(int code) noexcept {
  return NameOf(kEditionNames, NameIndex(code) - 1);
}

}  // namespace smh
