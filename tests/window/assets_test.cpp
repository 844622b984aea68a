// The files that lie beside the program or in it, as they were committed.
#include <QImage>
#include <cmath>
#include <gtest/gtest.h>
#include <sndfile.h>
#include <vector>

namespace bivouac {
namespace {

TEST(Assets, SoundsArePlainShortAndUnclipped) {
  constexpr int kRate = 44100;
  constexpr double kLoudest = 0.708;       // -3 dB of full scale
  constexpr double kClick = 64 / 32768.0;  // a step this small at the ends is not heard
  for (const std::string name : {"Applause", "Discard", "Assign", "ResetCell", "Solution", "Label",
                                 "UndoRedo", "Hint", "Error", "Giggle"}) {
    SCOPED_TRACE(name);
    SF_INFO info{};
    SNDFILE* file = sf_open((BIVOUAC_SOURCE_DIR "/assets/sounds/" + name + ".wav").c_str(), SFM_READ, &info);
    ASSERT_NE(file, nullptr);
    EXPECT_EQ(info.format, SF_FORMAT_WAV | SF_FORMAT_PCM_16);
    EXPECT_EQ(info.channels, 1);
    EXPECT_EQ(info.samplerate, kRate);
    EXPECT_LE(info.frames, kRate * (name == "Applause" ? 20 : name == "Assign" ? 2 : 9) / 10);
    std::vector<double> samples(static_cast<std::size_t>(info.frames));
    EXPECT_EQ(sf_read_double(file, samples.data(), info.frames), info.frames);
    sf_close(file);
    double peak = 0;
    for (const double sample : samples) peak = std::max(peak, std::abs(sample));
    EXPECT_LE(peak, kLoudest);
    EXPECT_GE(peak, kLoudest / 4);
    EXPECT_LE(std::abs(samples.front()), kClick);
    EXPECT_LE(std::abs(samples.back()), kClick);
  }
}

TEST(Assets, PicturesHaveTheirSizeAndNoAlphaAndOnlyOpenFieldsAndTreesAreMarked) {
  const auto picture = [](const QString& name, int width, int height) {
    QImage image(BIVOUAC_SOURCE_DIR "/assets/tiles/" + name + ".png");
    EXPECT_EQ(image.size(), QSize(width, height)) << name.toStdString();
    EXPECT_EQ(image.depth(), 32) << name.toStdString();  // 24 bits, no palette.
    EXPECT_FALSE(image.hasAlphaChannel()) << name.toStdString();
    return image;
  };
  picture("picture1", 240, 104);
  picture("picture1@4x", 960, 416);
  std::vector<QImage> tiles;
  for (int i = 0; i < 8; ++i) tiles.push_back(picture("part" + QString::number(i), 540, 540));
  EXPECT_NE(tiles[0], tiles[4]);
  EXPECT_EQ(tiles[1], tiles[5]);
  EXPECT_EQ(tiles[2], tiles[6]);
  EXPECT_NE(tiles[3], tiles[7]);
}

}  // namespace
}  // namespace bivouac
