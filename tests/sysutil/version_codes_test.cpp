#include "sysutil/version_codes.h"

#include <gtest/gtest.h>

#include <map>
#include <set>
#include <vector>

namespace smh {
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
      {2, 10, 0, 1, 0, 0, L"", L"Windows 7"},
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
      {0, L"x32"}, {9, L"x64"}, {6, L"Itanuim"}, {5, L"Unknown"}, {0xFFFF, L"Unknown"}};
  for (const auto& [architecture, name] : architectures) {
    EXPECT_EQ(ArchitectureNameOf(ArchitectureCodeOf(architecture)), name) << architecture;
  }
  const std::pair<WORD, std::wstring_view> packs[] = {{0, L""},
                                                      {1, L"Service Pack 1"},
                                                      {2, L"Service Pack 2"},
                                                      {3, L"Service Pack 3"},
                                                      {4, L"Service Pack 4"},
                                                      {5, L"Service Pack 5"},
                                                      {0xFFFF, L"Service Pack 5"}};
  for (const auto& [major, name] : packs) {
    FakeFacts facts;
    facts.servicePackMajor = major;
    EXPECT_EQ(ServicePackNameOf(ServicePackCodeOf(facts)), name) << major;
  }
}

TEST(EditionCodeTest, ProductTypesFromVistaOn) {
  const std::map<DWORD, int> codes = {{1, 23},  {2, 3},   {3, 5},   {4, 10},  {5, 3},   {6, 7},
                                      {7, 16},  {8, 9},   {9, 14},  {10, 13}, {11, 2},  {12, 9},
                                      {13, 16}, {14, 13}, {15, 13}, {16, 7},  {17, 21}, {18, 8},
                                      {19, 6},  {20, 18}, {21, 19}, {22, 20}, {23, 17}, {24, 14},
                                      {25, 15}, {26, 5},  {27, 10}, {28, 23}, {29, 21}, {0xABCDABCD, 27}};
  FakeFacts facts;
  // What counts when the product type says nothing.
  facts.suiteMask = 0x200;
  for (const auto& [product, code] : codes) {
    facts.product = product;
    EXPECT_EQ(EditionCodeOf(facts, 12), code) << product;
    EXPECT_EQ(EditionCodeOf(facts, 15), code) << product;
    EXPECT_EQ(EditionCodeOf(facts, 11), 4) << product;
  }
  for (const DWORD product : {0u, 30u, 101u}) {
    facts.product = product;
    EXPECT_EQ(EditionCodeOf(facts, 15), 4) << product;
  }
}

struct EditionRow {
  DWORD value;
  int code;
  int onWindows2000;
};

TEST(EditionCodeTest, SuitesInTheirOrder) {
  // Each mask also holds bits of the rows that come later.
  const EditionRow rows[] = {
      {0x0001 | 0x0002, 14, 14}, {0x0020 | 0x0040, 14, 14}, {0x0002 | 0x0080, 10, 11},
      {0x0080 | 0x0200, 9, 9},   {0x0200 | 0x0400, 4, 4},   {0x0400 | 0x2000, 21, 21},
      {0x2000 | 0x4000, 19, 19}, {0x4000 | 0x0040, 8, 8},   {0x0040 | 0x8110, 26, 26},
  };
  for (const EditionRow& row : rows) {
    FakeFacts facts;
    facts.suiteMask = static_cast<WORD>(row.value);
    EXPECT_EQ(EditionCodeOf(facts, 8), row.code) << row.value;
    EXPECT_EQ(EditionCodeOf(facts, 7), row.onWindows2000) << row.value;
    EXPECT_TRUE(facts.asked.empty());
  }
}

TEST(EditionCodeTest, IsOsAnswersInTheirOrder) {
  const std::vector<EditionRow> rows = {{8, 12, 12},  {20, 12, 12}, {9, 16, 16},  {23, 16, 16},
                                        {10, 11, 11}, {11, 9, 9},   {21, 9, 9},   {13, 26, 26},
                                        {32, 14, 14}, {36, 25, 25}, {31, 21, 21}, {22, 10, 11},
                                        {19, 4, 4},   {25, 4, 4},   {35, 22, 22}, {33, 24, 24}};
  std::set<DWORD> thisAndLater;
  for (auto row = rows.rbegin(); row != rows.rend(); ++row) {
    thisAndLater.insert(row->value);
    FakeFacts facts;
    facts.yes = thisAndLater;
    // A suite bit and a metric that say nothing, or come too late.
    facts.suiteMask = 0x0100;
    facts.metrics[87] = 1;
    EXPECT_EQ(EditionCodeOf(facts, 8), row->code) << row->value;
    EXPECT_EQ(facts.asked.back(), row->value);
    EXPECT_EQ(facts.asked.size(), static_cast<std::size_t>(rows.rend() - row));
    EXPECT_EQ(EditionCodeOf(facts, 7), row->onWindows2000) << row->value;
  }
}

TEST(EditionCodeTest, MetricsComeLast) {
  const std::pair<std::map<int, int>, int> rows[] = {
      {{{87, 1}, {88, 1}, {86, 1}}, 22}, {{{88, 1}, {86, 1}}, 2}, {{{86, 5}}, 24}, {{{89, 1}}, 1}};
  for (const auto& [metrics, code] : rows) {
    FakeFacts facts;
    facts.metrics = metrics;
    EXPECT_EQ(EditionCodeOf(facts, 8), code);
  }
}

TEST(VersionNamesTest, EditionsAndUnusualCodes) {
  const std::wstring_view editions[] = {
      // clang-format off
      L"Unknown Edition", L"Starter Edition", L"Home Basic Edition", L"Home Edition",
      L"Home Premium Edition", L"Home Server Edition", L"Business Edition", L"Cluster Server Edition",
      L"Datacenter Edition", L"Enterprise Edition", L"Advanced Edition", L"Professional Edition",
      L"Enterprise Edition", L"Small Business Edition", L"Small Business Premium Edition",
      L"Standard Edition", L"Storage Enterprise Edition", L"Storage Express Edition",
      L"Storage Standard Edition", L"Storage Workgroup Edition", L"Web Server Edition",
      L"Media Center Edition", L"Ultimate Edition", L"Tablet PC Edition", L"Appliance Edition",
      L"Embedded Edition", L"Unlicensed", L"Unknown Edition",
      // clang-format on
  };
  for (int code = 1; code <= 28; ++code) EXPECT_EQ(EditionNameOf(code), editions[code - 1]) << code;
  EXPECT_EQ(EditionNameOf(0), L"Unknown Edition");
  EXPECT_EQ(OsNameOf(16), L"Windows Maximum");
  EXPECT_EQ(OsNameOf(17), L"Unknown");
  EXPECT_EQ(OsNameOf(0x80 | 12), L"Windows Vista");
  EXPECT_EQ(OsNameOf(-1), L"Unknown");
  EXPECT_EQ(ServicePackNameOf(0), L"Unknown");
  EXPECT_EQ(ServicePackNameOf(7), L"Service Pack Maximum");
  EXPECT_EQ(ServicePackNameOf(8), L"Unknown");
}

}  // namespace
}  // namespace smh
