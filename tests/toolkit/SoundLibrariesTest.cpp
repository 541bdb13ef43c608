// Where a Mac build looks for SDL2 and mpg123, read from the very lists it
// searches: the app's own copy first, then the run paths and the absolute
// places; a bare name, which Apple's loader would look up in the folder the
// program was started from, never before them.
#include <gtest/gtest.h>

#include <algorithm>
#include <iterator>
#include <string>
#include <vector>

#include "toolkit/SoundLibraries.h"

TEST(SoundLibraries, AMacSearchesTheAppAndKnownPlacesBeforeAnyBareName) {
  for (const auto* library : {&tk::sound::kSdl, &tk::sound::kMpg123}) {
    const std::vector<std::string> order(std::begin(library->mac), std::end(library->mac));
    EXPECT_EQ(order.front().rfind("@executable_path/../Frameworks/", 0), 0u) << library->name;
    const auto bare = std::ranges::find_if(order, [](const std::string& name) { return name.find('/') == std::string::npos; });
    EXPECT_TRUE(bare == order.end() || bare == order.end() - 1) << library->name << ": a bare name before a known place";
    EXPECT_TRUE(std::all_of(order.begin(), bare, [](const std::string& name) { return name[0] == '/' || name[0] == '@'; }));
  }
}
