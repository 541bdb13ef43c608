#pragma once
// A temporary bundle of the test's own, <root>/bin/calloquin and
// <root>/Resources, that the toolkit takes for the running program's while
// the object lives; removed with it. `executable` may be swapped for
// another file, or nil, to damage the lookup itself.
#include <gtest/gtest.h>
#include <stdlib.h>

#include <filesystem>

#include "toolkit/FolderItem.h"
#include "toolkit/ScopedHook.h"

namespace fs = std::filesystem;

struct TempBundle {
  TempBundle() {
    std::string dir = (fs::temp_directory_path() / "calloquin-test-XXXXXX").string();
    EXPECT_NE(mkdtemp(dir.data()), nullptr);
    root = dir;
    resources = root / "Resources";
    fs::create_directories(root / "bin");
    fs::create_directories(resources);
    executable = std::make_shared<tk::FolderItem>((root / "bin" / "calloquin").string());
  }
  ~TempBundle() {
    std::error_code ignored;
    fs::remove_all(root, ignored);
  }

  fs::path root, resources;
  std::shared_ptr<tk::FolderItem> executable;
  int lookups = 0;  // calls of Application.ExecutableFile

 private:
  tk::ScopedHook<tk::ExecutableFileSource> source_{tk::SetExecutableFileSource,
                                                   [this] { return ++lookups, executable; }};
};
