// One main for every test program: a Qt application on the offscreen
// platform (unless the run asks for a real display), then GoogleTest.
// Every game a test plays is known in advance: the n-th draw of the process
// is OrderA turned by n places, unless the test dictates its own (or asks
// for the system's generator, as the fairness suite does).
#include <QApplication>

#include <gtest/gtest.h>

#include "tests/Draws.h"

int main(int argc, char** argv) {
  if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
  QApplication app(argc, argv);
  tk::Random::SetSourceFactory([n = 0L]() mutable { return tests::Dictate(tests::OrderA(n++)); });
  ::testing::InitGoogleTest(&argc, argv);
  return RUN_ALL_TESTS();
}
