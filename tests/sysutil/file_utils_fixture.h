// The module's units up to FileUtils, started for one test with the environment it asks for.
#pragma once

#include "infra/siblings/uInterfacesRoutines.h"
#include "sysutil/network_roots.h"
#include "sysutil/uFileUtils.h"
#include "sysutil/version/uWinVersionInfo.h"

#include <gtest/gtest.h>

#include <optional>
#include <string>

namespace smh::test {

// An environment variable until the end of the scope; none removes it.
class ScopedEnvironment {
 public:
  ScopedEnvironment(std::wstring name, const std::optional<std::wstring>& value)
      : name_(std::move(name)), old_(FileUtils::GetEnvironmentValue(name_)) {
    SetEnvironmentVariableW(name_.c_str(), value ? value->c_str() : nullptr);
  }
  ~ScopedEnvironment() { SetEnvironmentVariableW(name_.c_str(), old_.empty() ? nullptr : old_.c_str()); }
  ScopedEnvironment(const ScopedEnvironment&) = delete;
  ScopedEnvironment& operator=(const ScopedEnvironment&) = delete;

 private:
  std::wstring name_;
  std::wstring old_;
};

class StartedFileUtils {
 public:
  StartedFileUtils() {
    g_siblings.Start();
    g_networkRoots.Start();
    g_fileCaches.Start();
  }
  ~StartedFileUtils() {
    g_fileCaches.Stop();
    g_networkRoots.Stop();
    ForgetWinVersionInfo();
    g_siblings.Stop();
  }
  StartedFileUtils(const StartedFileUtils&) = delete;
  StartedFileUtils& operator=(const StartedFileUtils&) = delete;
};

class FileUtilsTest : public testing::Test {
 protected:
  StartedFileUtils started_;
};

}  // namespace smh::test
