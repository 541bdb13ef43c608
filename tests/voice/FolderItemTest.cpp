// Files and folders as the resource lookup walks them, on the real
// executable: no seam in between.
#include <gtest/gtest.h>

#include <unistd.h>

#include <filesystem>

#include "shell/BundleResources.h"
#include "toolkit/FolderItem.h"

namespace {

namespace fs = std::filesystem;

TEST(FolderItemTest, ParentStopsAtTheRootAndChildNeedsAnExistingFolder) {
  const tk::FolderItem deep("/usr/lib/");
  ASSERT_NE(deep.Parent(), nullptr);
  EXPECT_EQ(deep.Parent()->NativePath(), "/usr");
  EXPECT_EQ(deep.Parent()->Parent()->NativePath(), "/");
  EXPECT_EQ(deep.Parent()->Parent()->Parent(), nullptr);

  // A child may stand for a file that isn't there; a folder that isn't
  // there, or a name that isn't one plain name, gives none.
  const auto missing = tk::FolderItem("/usr").Child("no-such-file.mp3");
  ASSERT_NE(missing, nullptr);
  EXPECT_EQ(missing->NativePath(), "/usr/no-such-file.mp3");
  EXPECT_EQ(missing->OpenAsSound(), nullptr);
  EXPECT_EQ(missing->Child("x"), nullptr);
  for (const char* bad : {"", ".", "..", "a/b"}) EXPECT_EQ(tk::FolderItem("/usr").Child(bad), nullptr) << bad;
}

TEST(FolderItemTest, ResourcesAreTheSiblingOfTheExecutablesFolder) {
  const fs::path self = fs::canonical("/proc/self/exe");
  ASSERT_NE(tk::ExecutableFile(), nullptr);
  EXPECT_EQ(tk::ExecutableFile()->NativePath(), self.string());

  // The working directory plays no part.
  const fs::path before = fs::current_path();
  fs::current_path("/");
  const auto resources = shell::_GetApplicationBundleResources();
  fs::current_path(before);
  ASSERT_NE(resources, nullptr);
  EXPECT_EQ(resources->NativePath(), (self.parent_path().parent_path() / "Resources").string());
}

}  // namespace
