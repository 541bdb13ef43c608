// How the process ends on a quit request from the system, in mid-game or
// with the end question standing: at once, with status 0. (No at the end of
// a game and Ctrl+Q are the X tests'.)
#include <QProcess>

#include <gtest/gtest.h>

namespace {

// Runs the program with the given arguments; what it printed and its status.
std::pair<std::string, int> RunScripted(const QStringList& arguments) {
  QProcess p;
  p.setProgram(QStringLiteral(SCRIPTED_RUN));
  p.setArguments(arguments);
  p.setProcessChannelMode(QProcess::ForwardedErrorChannel);
  p.start();
  EXPECT_TRUE(p.waitForFinished(60000)) << "the program did not end";
  EXPECT_EQ(p.exitStatus(), QProcess::NormalExit) << "the program crashed";
  return {p.readAllStandardOutput().toStdString(), p.exitCode()};
}

TEST(ExitStatus, AQuitRequestFromTheSystemIsNeverRefused) {
  // Presses go on after a request in mid-game, and a refusal would play the
  // game out; with the end question standing, it would leave it standing.
  // Both end where they stand, through the finalizers.
  EXPECT_EQ(RunScripted({QStringLiteral("no"), QStringLiteral("10")}),
            std::pair(std::string("quit requested with press 10\nfinalized\nexit 0 after 10 presses\n"), 0));
  EXPECT_EQ(RunScripted({QStringLiteral("dialog"), QStringLiteral("90")}),
            std::pair(std::string("quit requested with press 90\nfinalized\nexit 0 after 90 presses\n"), 0));
}

TEST(ExitStatus, AShutdownThatNeverReturnsStillEndsTheProgramWithItsStatus) {
  // As when the window system's connection hangs while it closes: the
  // program ends all the same, with what it saw written out.
  EXPECT_EQ(RunScripted({QStringLiteral("no"), QStringLiteral("10"), QStringLiteral("hang")}),
            std::pair(std::string("quit requested with press 10\nfinalizing hangs\n"), 0));
}

}  // namespace
