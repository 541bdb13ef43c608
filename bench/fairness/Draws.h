#pragma once
// Draws made the way the game makes them: a bare window's own draw, fed by
// whatever source tk::Random currently hands out (the system's, unless a
// test has replaced it). A bare window needs the GUI up, offscreen will do.
#include <memory>

#include "bench/fairness/Suite.h"

class Window1;

namespace fairness {

class Drawer {
 public:
  Drawer();
  ~Drawer();
  Drawer(const Drawer&) = delete;
  Drawer& operator=(const Drawer&) = delete;

  // One game's calling order. Throws std::logic_error if it is not a
  // permutation of 1 to 90: statistics of a broken draw would mean nothing.
  Draw Next();

 private:
  std::unique_ptr<Window1> window_;
};

// Adds `count` draws to the tally.
void AddDraws(Drawer& drawer, Tally& tally, std::uint64_t count);

}  // namespace fairness
