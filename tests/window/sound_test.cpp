// OpenAL's "wave" back end writes what is played into a file, where a test can hear it.
#include <QCoreApplication>
#include <QDir>
#include <QProcess>
#include <QTest>
#include <cmath>
#include <gtest/gtest.h>
#include <sndfile.h>
#include <vector>

#include "tests/window/game_run.h"

namespace bivouac {
namespace {

constexpr int kRate = 44100;
constexpr double kPi = 3.14159265358979;

QString Folder() {
  return qEnvironmentVariable("BIVOUAC_TEST_FOLDER");
}

/// A tone of a tenth of a second.
std::string WriteTone(const QString& name, double frequency) {
  std::string path = (Folder() + "/" + name).toStdString();
  std::vector<short> samples(kRate / 10);
  for (int i = 0; short& sample : samples) {
    sample = static_cast<short>(12000 * std::sin(2 * kPi * frequency * i++ / kRate));
  }
  SF_INFO info{.frames = 0,
               .samplerate = kRate,
               .channels = 1,
               .format = SF_FORMAT_WAV | SF_FORMAT_PCM_16,
               .sections = 0,
               .seekable = 0};
  SNDFILE* file = sf_open(path.c_str(), SFM_WRITE, &info);
  sf_write_short(file, samples.data(), static_cast<sf_count_t>(samples.size()));
  sf_close(file);
  return path;
}

/// How loud a frequency is in what was written, as the amplitude of a tone of a tenth of a second.
double Loudness(double frequency) {
  SF_INFO info{};
  SNDFILE* file = sf_open((Folder() + "/heard.wav").toUtf8().constData(), SFM_READ, &info);
  if (file == nullptr) return -1;
  std::vector<double> frames(static_cast<std::size_t>(info.frames * info.channels));
  sf_readf_double(file, frames.data(), info.frames);
  sf_close(file);
  double sine = 0;
  double cosine = 0;
  for (sf_count_t i = 0; i < info.frames; ++i) {
    const double sample = frames[static_cast<std::size_t>(i * info.channels)];
    const double angle = 2 * kPi * frequency * static_cast<double>(i) / info.samplerate;
    sine += sample * std::sin(angle);
    cosine += sample * std::cos(angle);
  }
  return std::hypot(sine, cosine) * 2 / (info.samplerate / 10.0);
}

TEST(Sound, IsHeardWhenPlayedSeveralAtATime) {
  const std::string low = WriteTone("low.wav", 440);
  const std::string high = WriteTone("high.wav", 1000);
  const std::string silent = WriteTone("silent.wav", 2500);
  {
    SoundPlayer player;
    ASSERT_TRUE(player.Ready());
    const int first = player.Load(low);
    const int second = player.Load(high);
    EXPECT_GE(player.Load(silent), 0);
    EXPECT_EQ(player.Load("/nowhere/at all.wav"), -1);
    player.Play(-1);
    player.Play(99);
    EXPECT_FALSE(player.Playing());
    player.Play(first);
    player.Play(second);
    EXPECT_TRUE(player.Playing());
    ASSERT_TRUE(QTest::qWaitFor([&] { return !player.Playing(); }));
    player.Rest();
  }
  EXPECT_GT(Loudness(440), 0.1);
  EXPECT_GT(Loudness(1000), 0.1);
  EXPECT_LT(Loudness(2500), 0.01);
}

TEST(Sound, BoxFollowsTheSettings) {
  GameRun run;
  run.Setting("Options/Sounds", "True");
  run.Run([&](Program& program) {
    EXPECT_TRUE(Named(program, "optSound")->isEnabled());
    EXPECT_TRUE(program.State().SoundOn);
    ClickOn(program, "optSound");
    EXPECT_FALSE(program.State().SoundOn);
  });
  EXPECT_EQ(QSettings("Bivouac", "Bivouac").value("Options/Sound").toString(), "False");
  // What is tried beforehand: a module that finds a device.
  const QString folder = QCoreApplication::applicationDirPath() + "/";
  EXPECT_EQ(QProcess::execute(folder + "bivouac-sound-check", {folder + "bivouac-sound.so"}), 0);
  EXPECT_EQ(QProcess::execute(folder + "bivouac-sound-check", {folder + "bivouac"}), 1);
}

TEST(Sound, BoxIsDisabledAndTheGameWorksWithoutADevice) {
  const QByteArray none = "no-such-driver";
  if (qgetenv("ALSOFT_DRIVERS") != none) {
    // OpenAL chooses its back end once in a process: this test runs once more in one of its own.
    RunInItsOwnProcess("Sound.BoxIsDisabledAndTheGameWorksWithoutADevice", "ALSOFT_DRIVERS", none);
    return;
  }
  GameRun run("6");
  const int status = run.Run([&](Program& program) {
    EXPECT_TRUE(QTest::qWaitFor([&] { return !Named(program, "optSound")->isEnabled(); }));
    OpenPuzzle(run, program, 1);
    ClickOn(program, "cmdSolution");
  });
  EXPECT_EQ(status, 0);
}

}  // namespace
}  // namespace bivouac
