// The rules that turn what Windows says about itself into the system's own codes, and the names of the codes.
// Pure: everything they know comes in through the facts.
#pragma once

#include <windows.h>

#include <string>
#include <string_view>

namespace smh {

// The generations of Windows that the rules know; later ones count as the last they know of their kind.
enum OsCode : int {
  kOsUnknown = 0,
  kOsWin32s = 1,
  kOsWindows95 = 2,
  kOsWindowsNT = 3,
  kOsWindows98 = 4,
  kOsWindows98SE = 5,
  kOsWindowsMillennium = 6,
  kOsWindows2000 = 7,
  kOsWindowsXP = 8,
  kOsServer2003 = 9,
  kOsServer2003R2 = 10,
  kOsHomeServer = 11,
  kOsVista = 12,
  kOsServer2008 = 13,
  kOsServer2008R2 = 14,
  kOsWindows7 = 15,
  kOsMaximum = 16,  // never produced
};

// Of the processor as the native system names it.
enum ArchitectureCode : int {
  kArchitectureUnknown = 0,
  kArchitectureX32 = 1,
  kArchitectureX64 = 2,
  kArchitectureItanium = 3,
};

// What a Windows is sold as.
enum EditionCode : int {
  kEditionNone = 0,  // no rule has given one yet
  kEditionUnknown = 1,
  kEditionStarter = 2,
  kEditionHomeBasic = 3,
  kEditionHome = 4,
  kEditionHomePremium = 5,
  kEditionHomeServer = 6,
  kEditionBusiness = 7,
  kEditionClusterServer = 8,
  kEditionDatacenter = 9,
  kEditionEnterprise = 10,
  kEditionAdvanced = 11,
  kEditionProfessional = 12,
  kEditionEnterpriseServer = 13,
  kEditionSmallBusiness = 14,
  kEditionSmallBusinessPremium = 15,
  kEditionStandard = 16,
  kEditionStorageEnterprise = 17,
  kEditionStorageExpress = 18,
  kEditionStorageStandard = 19,
  kEditionStorageWorkgroup = 20,
  kEditionWebServer = 21,
  kEditionMediaCenter = 22,
  kEditionUltimate = 23,
  kEditionTabletPC = 24,
  kEditionAppliance = 25,
  kEditionEmbedded = 26,
  kEditionUnlicensed = 27,
};

// What GetVersionExW says, in its terms. The queries are made only when a rule needs their answer, and may
// raise; what they raise passes the rules.
class VersionFacts {
 public:
  DWORD platform = 0;
  DWORD major = 0;
  DWORD minor = 0;
  WORD servicePackMajor = 0;
  WORD servicePackMinor = 0;
  WORD suiteMask = 0;
  BYTE productType = 0;
  std::wstring servicePackText;

  virtual ~VersionFacts() = default;
  // As the shell's IsOS.
  virtual bool IsOS(DWORD value) = 0;
  // As GetSystemMetrics.
  virtual int SystemMetric(int index) = 0;
  // GetProductInfo's answer for this version.
  virtual DWORD ProductInfo() = 0;
};

// From what GetVersionExW says, with the queries for what that leaves open.
OsCode OsCodeOf(VersionFacts& facts);
// `processorArchitecture` is that of the native SYSTEM_INFO.
ArchitectureCode ArchitectureCodeOf(WORD processorArchitecture) noexcept;
// 1 = none, 2 = the first, up to 6 = the fifth or any later.
int ServicePackCodeOf(const VersionFacts& facts) noexcept;
// `osCode` is what OsCodeOf answered.
EditionCode EditionCodeOf(VersionFacts& facts, int osCode);

// The low seven bits of a code choose the name, a literal; a code without one is unknown.
std::wstring_view OsNameOf(int code) noexcept;
std::wstring_view ArchitectureNameOf(int code) noexcept;
std::wstring_view ServicePackNameOf(int code) noexcept;
std::wstring_view EditionNameOf(int code) noexcept;

}  // namespace smh
