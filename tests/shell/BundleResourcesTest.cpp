// The resource lookup on the real executable, with no seam in between.
#include <gtest/gtest.h>

#include <filesystem>

#include "shell/BundleResources.h"

TEST(BundleResourcesTest, ResourcesAreTheSiblingOfTheExecutablesFolder) {
  namespace fs = std::filesystem;
  const fs::path self = fs::canonical("/proc/self/exe");
  const fs::path before = fs::current_path();
  fs::current_path("/");  // the working directory plays no part
  const auto resources = shell::_GetApplicationBundleResources();
  fs::current_path(before);
  ASSERT_NE(resources, nullptr);
  EXPECT_EQ(resources->NativePath(), (self.parent_path().parent_path() / "Resources").string());
}
