// How the process ends: the answer No after the 90th number ends it with
// status 0, with no question beyond the one at the end of each game.
#include <QProcess>

#include <gtest/gtest.h>

namespace {

struct Outcome {
  int status;
  QString output;
};

Outcome RunScripted(const QString& answers) {
  QProcess p;
  p.setProgram(QStringLiteral(SCRIPTED_RUN));
  p.setArguments({answers});
  p.setProcessChannelMode(QProcess::ForwardedErrorChannel);
  p.start();
  EXPECT_TRUE(p.waitForFinished(60000)) << "the program did not end";
  EXPECT_EQ(p.exitStatus(), QProcess::NormalExit) << "the program crashed";
  return {p.exitCode(), QString::fromLocal8Bit(p.readAllStandardOutput())};
}

TEST(ExitStatus, NoAfterTheNinetiethNumberEndsTheProcessWithStatusZero) {
  const Outcome run = RunScripted(QStringLiteral("no"));
  EXPECT_EQ(run.status, 0);
  EXPECT_EQ(run.output, QStringLiteral("asked after 90 presses with 90 gone\nexit 0 after 90 presses\n"));
}

TEST(ExitStatus, YesStartsAnotherGameAndNoEndsThatOne) {
  const Outcome run = RunScripted(QStringLiteral("yes,no"));
  EXPECT_EQ(run.status, 0);
  EXPECT_EQ(run.output, QStringLiteral("asked after 90 presses with 90 gone\n"
                                       "asked after 180 presses with 90 gone\n"
                                       "exit 0 after 180 presses\n"));
}

}  // namespace
