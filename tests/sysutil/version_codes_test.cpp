#include "sysutil/version_codes.h"

#include <gtest/gtest.h>

#include <map>
#include <set>
#include <stdexcept>
#include <vector>

namespace smh {
namespace {

class FakeFacts : public VersionFacts {
 public:
  std::set<DWORD> yes;
  std::map<int, int> metrics;
  DWORD product = 0;
  std::vector<std::string> asked;

  bool IsOS(DWORD value) override {
    asked.push_back("os " + std::to_string(value));
    return yes.contains(value);
  }
  int SystemMetric(int index) override {
    asked.push_back("metric " + std::to_string(index));
    return metrics[index];
  }
  DWORD ProductInfo() override {
    asked.push_back("product");
    return product;
  }
};

struct OsRow {
  DWORD platform;
  DWORD major;
  DWORD minor;
  BYTE productType;
  WORD suites;
  int serverR2;
  const wchar_t* servicePack;
  int code;
  const wchar_t* name;
};

TEST(OsCodeTest, EveryRule) {
  const OsRow rows[] = {
      {0, 3, 10, 0, 0, 0, L"", 1, L"Win32s"},
      {1, 4, 0, 0, 0, 0, L" B", 2, L"Windows 95"},
      {1, 4, 9, 0, 0, 0, L" A", 2, L"Windows 95"},
      {1, 4, 10, 0, 0, 0, L"", 4, L"Windows 98"},
      {1, 4, 10, 0, 0, 0, L"A", 4, L"Windows 98"},
      {1, 4, 10, 0, 0, 0, L" a", 4, L"Windows 98"},
      {1, 4, 10, 0, 0, 0, L" A ", 5, L"Windows 98 SE"},
      {1, 4, 89, 0, 0, 0, L"BA", 5, L"Windows 98 SE"},
      {1, 4, 90, 0, 0, 0, L" A", 6, L"Windows Millennium"},
      {1, 3, 90, 0, 0, 0, L"", 0, L"Unknown"},
      {1, 5, 0, 0, 0, 0, L"", 0, L"Unknown"},
      {2, 3, 51, 1, 0, 0, L"", 3, L"Windows NT"},
      {2, 4, 0, 3, 0x8000, 1, L"", 3, L"Windows NT"},
      {2, 5, 0, 3, 0x8000, 1, L"", 7, L"Windows 2000"},
      {2, 5, 1, 3, 0x8000, 1, L"", 8, L"Windows XP"},
      {2, 5, 2, 1, 0, 1, L"", 8, L"Windows XP"},
      {2, 5, 2, 1, 0x8000, 0, L"", 11, L"Windows Home Server"},
      {2, 5, 2, 3, 0x8010, 1, L"", 11, L"Windows Home Server"},
      {2, 5, 2, 3, 0, 0, L"", 9, L"Windows Server 2003"},
      {2, 5, 2, 2, 0, 0, L"", 9, L"Windows Server 2003"},
      {2, 5, 2, 3, 0, 1, L"", 10, L"Windows Server 2003 R2"},
      {2, 5, 3, 2, 0, 7, L"", 10, L"Windows Server 2003 R2"},
      {2, 6, 0, 1, 0x8000, 1, L"", 12, L"Windows Vista"},
      {2, 6, 0, 2, 0, 0, L"", 13, L"Windows Server 2008"},
      {2, 6, 0, 3, 0, 0, L"", 13, L"Windows Server 2008"},
      {2, 6, 0, 0, 0, 0, L"", 0, L"Unknown"},
      {2, 6, 1, 2, 0, 0, L"", 14, L"Windows Server 2008 R2"},
      {2, 6, 1, 3, 0, 0, L"", 14, L"Windows Server 2008 R2"},
      {2, 6, 1, 1, 0, 0, L"", 15, L"Windows 7"},
      {2, 6, 2, 1, 0, 0, L"", 15, L"Windows 7"},
      {2, 6, 3, 3, 0, 0, L"", 14, L"Windows Server 2008 R2"},
      {2, 10, 0, 1, 0, 0, L"", 15, L"Windows 7"},
      {2, 10, 0, 3, 0, 0, L"", 14, L"Windows Server 2008 R2"},
      {2, 10, 0, 4, 0, 0, L"", 0, L"Unknown"},
      {3, 6, 1, 1, 0, 0, L"", 0, L"Unknown"},
  };
  for (const OsRow& row : rows) {
    FakeFacts facts;
    facts.platform = row.platform;
    facts.major = row.major;
    facts.minor = row.minor;
    facts.productType = row.productType;
    facts.suiteMask = row.suites;
    facts.servicePackText = row.servicePack;
    facts.metrics[89] = row.serverR2;
    const int code = OsCodeOf(facts);
    EXPECT_EQ(code, row.code) << row.platform << ": " << row.major << '.' << row.minor;
    EXPECT_EQ(OsNameOf(code), row.name);
    const bool asksForR2 = row.code == 9 || row.code == 10;
    EXPECT_EQ(facts.asked, asksForR2 ? std::vector<std::string>{"metric 89"} : std::vector<std::string>{});
  }
}

TEST(ArchitectureCodeTest, EveryRule) {
  const std::vector<std::pair<WORD, std::wstring_view>> rows = {
      {0, L"x32"}, {9, L"x64"}, {6, L"Itanuim"}, {5, L"Unknown"}, {12, L"Unknown"}, {0xFFFF, L"Unknown"}};
  for (const auto& [architecture, name] : rows) {
    EXPECT_EQ(ArchitectureNameOf(ArchitectureCodeOf(architecture)), name) << architecture;
  }
}

TEST(ServicePackCodeTest, EveryRule) {
  const std::vector<std::pair<WORD, std::wstring_view>> rows = {
      {0, L""},
      {1, L"Service Pack 1"},
      {2, L"Service Pack 2"},
      {3, L"Service Pack 3"},
      {4, L"Service Pack 4"},
      {5, L"Service Pack 5"},
      {6, L"Service Pack 5"},
      {0xFFFF, L"Service Pack 5"},
  };
  for (const auto& [major, name] : rows) {
    FakeFacts facts;
    facts.servicePackMajor = major;
    const int code = ServicePackCodeOf(facts);
    EXPECT_GE(code, 1);
    EXPECT_EQ(ServicePackNameOf(code), name) << major;
  }
}

TEST(EditionCodeTest, ProductTypesFromVistaOn) {
  const std::map<DWORD, int> codes = {{1, 23},  {2, 3},   {3, 5},   {4, 10},  {5, 3},   {6, 7},
                                      {7, 16},  {8, 9},   {9, 14},  {10, 13}, {11, 2},  {12, 9},
                                      {13, 16}, {14, 13}, {15, 13}, {16, 7},  {17, 21}, {18, 8},
                                      {19, 6},  {20, 18}, {21, 19}, {22, 20}, {23, 17}, {24, 14},
                                      {25, 15}, {26, 5},  {27, 10}, {28, 23}, {29, 21}, {0xABCDABCD, 27}};
  for (const int os : {12, 13, 14, 15}) {
    for (DWORD product = 0; product < 130; ++product) {
      FakeFacts facts;
      facts.product = product;
      facts.suiteMask = 0x200;
      const auto known = codes.find(product);
      EXPECT_EQ(EditionCodeOf(facts, os), known == codes.end() ? 4 : known->second) << product;
      EXPECT_EQ(facts.asked, std::vector<std::string>{"product"});
    }
  }
  FakeFacts unlicensed;
  unlicensed.product = 0xABCDABCD;
  EXPECT_EQ(EditionCodeOf(unlicensed, 15), 27);
}

TEST(EditionCodeTest, ProductTypeIsNotAskedBeforeVista) {
  FakeFacts facts;
  facts.product = 1;
  facts.suiteMask = 0x80;
  EXPECT_EQ(EditionCodeOf(facts, 11), 9);
  EXPECT_TRUE(facts.asked.empty());
}

TEST(EditionCodeTest, SuitesInTheirOrder) {
  struct Row {
    WORD mask;
    int code;
    int onWindows2000;
  };
  // Each mask also holds bits of the rows that come later.
  const Row rows[] = {
      {0x0001, 14, 14},          {0x0020, 14, 14},          {0x0001 | 0x0002, 14, 14},
      {0x0020 | 0x0040, 14, 14}, {0x0002 | 0x0080, 10, 11}, {0x0080 | 0x0200, 9, 9},
      {0x0200 | 0x0400, 4, 4},   {0x0400 | 0x2000, 21, 21}, {0x2000 | 0x4000, 19, 19},
      {0x4000 | 0x0040, 8, 8},   {0x0040 | 0x8110, 26, 26},
  };
  for (const Row& row : rows) {
    FakeFacts facts;
    facts.suiteMask = row.mask;
    EXPECT_EQ(EditionCodeOf(facts, 8), row.code) << row.mask;
    EXPECT_EQ(EditionCodeOf(facts, 7), row.onWindows2000) << row.mask;
    EXPECT_TRUE(facts.asked.empty());
  }
}

TEST(EditionCodeTest, IsOsAnswersInTheirOrder) {
  struct Row {
    DWORD value;
    int code;
    int onWindows2000;
  };
  const std::vector<Row> rows = {{8, 12, 12},  {20, 12, 12}, {9, 16, 16},  {23, 16, 16},
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
    EXPECT_EQ(facts.asked.back(), "os " + std::to_string(row->value));
    EXPECT_EQ(facts.asked.size(), static_cast<std::size_t>(rows.rend() - row));
    EXPECT_EQ(EditionCodeOf(facts, 7), row->onWindows2000) << row->value;
  }
}

TEST(EditionCodeTest, MetricsComeLast) {
  struct Row {
    std::map<int, int> metrics;
    int code;
    std::wstring_view name;
  };
  const Row rows[] = {
      {{{87, 1}, {88, 1}, {86, 1}}, 22, L"Media Center Edition"},
      {{{88, 1}, {86, 1}}, 2, L"Starter Edition"},
      {{{86, 5}}, 24, L"Tablet PC Edition"},
      {{{89, 1}}, 1, L"Unknown Edition"},
  };
  for (const Row& row : rows) {
    FakeFacts facts;
    facts.metrics = row.metrics;
    const int code = EditionCodeOf(facts, 8);
    EXPECT_EQ(code, row.code);
    EXPECT_EQ(EditionNameOf(code), row.name);
  }
}

TEST(EditionCodeTest, FailedQueryIsPassedOn) {
  class FailingFacts : public FakeFacts {
   public:
    DWORD ProductInfo() override { throw std::runtime_error("no answer"); }
  } facts;
  EXPECT_THROW(EditionCodeOf(facts, 12), std::runtime_error);
}

TEST(VersionNamesTest, EditionsByCode) {
  const std::wstring_view names[] = {
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
  for (int code = 1; code <= 27; ++code) EXPECT_EQ(EditionNameOf(code), names[code - 1]) << code;
}

TEST(VersionNamesTest, UnusualCodes) {
  EXPECT_EQ(OsNameOf(16), L"Windows Maximum");
  EXPECT_EQ(OsNameOf(17), L"Unknown");
  EXPECT_EQ(OsNameOf(0x80 | 12), L"Windows Vista");
  EXPECT_EQ(OsNameOf(-1), L"Unknown");
  EXPECT_EQ(ArchitectureNameOf(4), L"Unknown");
  EXPECT_EQ(ServicePackNameOf(0), L"Unknown");
  EXPECT_EQ(ServicePackNameOf(7), L"Service Pack Maximum");
  EXPECT_EQ(ServicePackNameOf(8), L"Unknown");
  EXPECT_EQ(EditionNameOf(0), L"Unknown Edition");
  EXPECT_EQ(EditionNameOf(28), L"Unknown Edition");
}

}  // namespace
}  // namespace smh
