#include "sysutil/version/version_codes.h"

#include <gtest/gtest.h>

#include <map>
#include <set>
#include <vector>

namespace smh::test {
namespace {

class FakeFacts : public VersionFacts {
 public:
  std::set<DWORD> yes;
  std::map<int, int> metrics;
  DWORD product = 0;
  // The numbers that IsOS was asked for; 0 stands for the product.
  std::vector<DWORD> asked;

  bool IsOS(DWORD value) override {
    asked.push_back(value);
    return yes.contains(value);
  }
  int SystemMetric(int index) override { return metrics[index]; }
  DWORD ProductInfo() override {
    asked.push_back(0);
    return product;
  }
};

TEST(OsCodeTest, EveryRule) {
  const struct {
    DWORD platform;
    DWORD major;
    DWORD minor;
    BYTE productType;
    WORD suites;
    int serverR2;
    const wchar_t* servicePack;
    const wchar_t* name;
  } rows[] = {
      {0, 3, 10, 0, 0, 0, L"", L"Win32s"},
      {1, 4, 9, 0, 0, 0, L" A", L"Windows 95"},
      {1, 4, 10, 0, 0, 0, L" a", L"Windows 98"},
      {1, 4, 89, 0, 0, 0, L"BA", L"Windows 98 SE"},
      {1, 4, 90, 0, 0, 0, L" A", L"Windows Millennium"},
      {1, 5, 0, 0, 0, 0, L"", L"Unknown"},
      {2, 4, 0, 3, 0x8000, 1, L"", L"Windows NT"},
      {2, 5, 0, 3, 0x8000, 1, L"", L"Windows 2000"},
      {2, 5, 1, 3, 0x8000, 1, L"", L"Windows XP"},
      {2, 5, 2, 1, 0, 1, L"", L"Windows XP"},
      {2, 5, 2, 1, 0x8010, 1, L"", L"Windows Home Server"},
      {2, 5, 2, 3, 0, 0, L"", L"Windows Server 2003"},
      {2, 5, 3, 2, 0, 7, L"", L"Windows Server 2003 R2"},
      {2, 6, 0, 1, 0x8000, 1, L"", L"Windows Vista"},
      {2, 6, 0, 2, 0, 0, L"", L"Windows Server 2008"},
      {2, 6, 0, 0, 0, 0, L"", L"Unknown"},
      {2, 6, 1, 3, 0, 0, L"", L"Windows Server 2008 R2"},
      {2, 6, 1, 1, 0, 0, L"", L"Windows 7"},
      {2, 10, 0, 4, 0, 0, L"", L"Unknown"},
      {3, 6, 1, 1, 0, 0, L"", L"Unknown"},
  };
  for (const auto& row : rows) {
    FakeFacts facts;
    facts.platform = row.platform;
    facts.major = row.major;
    facts.minor = row.minor;
    facts.productType = row.productType;
    facts.suiteMask = row.suites;
    facts.servicePackText = row.servicePack;
    facts.metrics[89] = row.serverR2;
    EXPECT_EQ(OsNameOf(OsCodeOf(facts)), row.name) << row.platform << ": " << row.major << '.' << row.minor;
  }
}

TEST(ArchitectureAndServicePackTest, EveryRule) {
  const std::pair<WORD, std::wstring_view> architectures[] = {
      {0, L"x32"}, {9, L"x64"}, {6, L"Itanuim"}, {0xFFFF, L"Unknown"}};
  for (const auto& [architecture, name] : architectures) {
    EXPECT_EQ(ArchitectureNameOf(ArchitectureCodeOf(architecture)), name) << architecture;
  }
  const std::pair<WORD, std::wstring_view> packs[] = {
      {0, L""}, {1, L"Service Pack 1"}, {5, L"Service Pack 5"}, {0xFFFF, L"Service Pack 5"}};
  for (const auto& [major, name] : packs) {
    FakeFacts facts;
    facts.servicePackMajor = major;
    EXPECT_EQ(ServicePackNameOf(ServicePackCodeOf(facts)), name) << major;
  }
}

TEST(EditionCodeTest, ProductTypesFromVistaOn) {
  FakeFacts facts;
  // What counts when the product type says nothing.
  facts.suiteMask = 0x200;
  const std::pair<DWORD, std::wstring_view> rows[] = {
      {1, L"Ultimate Edition"},    {10, L"Enterprise Edition"}, {25, L"Small Business Premium Edition"},
      {29, L"Web Server Edition"}, {0xABCDABCD, L"Unlicensed"}, {0, L"Home Edition"},
      {30, L"Home Edition"}};
  for (const auto& [product, name] : rows) {
    facts.product = product;
    for (const int vistaAndLater : {12, 15}) {
      EXPECT_EQ(EditionNameOf(EditionCodeOf(facts, vistaAndLater)), name) << product;
    }
    EXPECT_EQ(EditionNameOf(EditionCodeOf(facts, 11)), L"Home Edition") << product;
  }
}

// The first row that fits decides. Each case also fits some later ones.
TEST(EditionCodeTest, SuitesThenIsOsAnswersThenMetrics) {
  const struct {
    WORD suites;
    std::set<DWORD> yes;
    std::map<int, int> metrics;
    const wchar_t* name;
    const wchar_t* onWindows2000;
    std::size_t questions;
  } rows[] = {
      {0x0001 | 0x0002, {}, {}, L"Small Business Edition", L"Small Business Edition", 0},
      {0x0020 | 0x0040, {}, {}, L"Small Business Edition", L"Small Business Edition", 0},
      {0x0002 | 0x0080, {8}, {}, L"Enterprise Edition", L"Advanced Edition", 0},
      {0x4000 | 0x0040, {}, {{87, 1}}, L"Cluster Server Edition", L"Cluster Server Edition", 0},
      {0x0040 | 0x8110, {}, {}, L"Embedded Edition", L"Embedded Edition", 0},
      // The other suites say nothing.
      {0x0100, {8, 20, 33}, {{87, 1}}, L"Professional Edition", L"Professional Edition", 1},
      {0x0100, {11, 22, 33}, {}, L"Datacenter Edition", L"Datacenter Edition", 6},
      {0, {22, 19, 33}, {}, L"Enterprise Edition", L"Advanced Edition", 12},
      {0, {33}, {{87, 1}}, L"Tablet PC Edition", L"Tablet PC Edition", 16},
      {0, {}, {{87, 1}, {88, 1}, {86, 1}}, L"Media Center Edition", L"Media Center Edition", 16},
      {0, {}, {{88, 1}, {86, 1}}, L"Starter Edition", L"Starter Edition", 16},
      {0, {}, {{86, 5}}, L"Tablet PC Edition", L"Tablet PC Edition", 16},
      {0, {}, {{89, 1}}, L"Unknown Edition", L"Unknown Edition", 16},
  };
  for (const auto& row : rows) {
    FakeFacts facts;
    facts.suiteMask = row.suites;
    facts.yes = row.yes;
    facts.metrics = row.metrics;
    EXPECT_EQ(EditionNameOf(EditionCodeOf(facts, 8)), row.name) << row.suites << row.name;
    EXPECT_EQ(facts.asked.size(), row.questions) << row.name;
    EXPECT_EQ(EditionNameOf(EditionCodeOf(facts, 7)), row.onWindows2000) << row.suites << row.name;
  }
}

}  // namespace
}  // namespace smh::test
