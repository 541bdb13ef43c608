// Where a Mac build looks for SDL2_mixer, read from the very list it
// searches: the app's own copy first, then the run paths and the absolute
// places; a bare name, which Apple's loader would look up in the folder the
// program was started from, never before them.
#include <gtest/gtest.h>

#include <algorithm>
#include <iterator>
#include <string>
#include <vector>

#include "toolkit/MixerLibraries.h"

TEST(MixerLibraries, AMacSearchesTheAppAndKnownPlacesBeforeAnyBareName) {
  const std::vector<std::string> order(std::begin(tk::mixer::kMacLibraries), std::end(tk::mixer::kMacLibraries));
  ASSERT_FALSE(order.empty());
  EXPECT_EQ(order.front(), "@executable_path/../Frameworks/libSDL2_mixer-2.0.0.dylib");
  const auto bare = std::ranges::find_if(order, [](const std::string& name) { return name.find('/') == std::string::npos; });
  EXPECT_TRUE(bare == order.end() || bare == order.end() - 1) << "a bare name before a known place";
  EXPECT_TRUE(std::all_of(order.begin(), bare, [](const std::string& name) { return name[0] == '/' || name[0] == '@'; }));
}
