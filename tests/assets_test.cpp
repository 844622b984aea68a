// The files that lie beside the program or in it, as they were committed.
#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <fstream>
#include <gtest/gtest.h>
#include <iterator>
#include <string>

namespace {

std::string ReadAsset(const std::string& name) {
  std::ifstream file(std::string(BIVOUAC_SOURCE_DIR) + "/assets/" + name, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

unsigned ByteAt(const std::string& bytes, std::size_t at) {
  return static_cast<unsigned char>(bytes.at(at));
}

unsigned LittleEndian(const std::string& bytes, std::size_t at, std::size_t count) {
  unsigned value = 0;
  for (std::size_t i = count; i-- > 0;) value = value << 8 | ByteAt(bytes, at + i);
  return value;
}

unsigned BigEndian32(const std::string& bytes, std::size_t at) {
  unsigned value = 0;
  for (std::size_t i = 0; i < 4; ++i) value = value << 8 | ByteAt(bytes, at + i);
  return value;
}

TEST(Assets, SoundsArePlainShortAndUnclipped) {
  constexpr unsigned kRate = 44100;
  constexpr int kLoudest = 23197;  // -3 dB of full scale
  constexpr int kClick = 64;       // a step this small at the ends is not heard
  for (const std::string name : {"Applause", "Discard", "Assign", "ResetCell", "Solution", "Label",
                                 "UndoRedo", "Hint", "Error", "Giggle"}) {
    SCOPED_TRACE(name);
    const std::string wave = ReadAsset("sounds/" + name + ".wav");
    ASSERT_GT(wave.size(), 44U);
    ASSERT_EQ(wave.substr(0, 4) + wave.substr(8, 8), "RIFFWAVEfmt ");
    EXPECT_EQ(LittleEndian(wave, 20, 2), 1U);  // PCM
    EXPECT_EQ(LittleEndian(wave, 22, 2), 1U);  // channels
    EXPECT_EQ(LittleEndian(wave, 24, 4), kRate);
    EXPECT_EQ(LittleEndian(wave, 34, 2), 16U);
    ASSERT_EQ(wave.substr(36, 4), "data");
    ASSERT_EQ(LittleEndian(wave, 40, 4), wave.size() - 44);

    const auto sample = [&](std::size_t i) {
      return static_cast<std::int16_t>(LittleEndian(wave, 44 + 2 * i, 2));
    };
    const std::size_t samples = (wave.size() - 44) / 2;
    EXPECT_LE(samples, kRate * (name == "Applause" ? 20U : name == "Assign" ? 2U : 9U) / 10);
    int peak = 0;
    for (std::size_t i = 0; i < samples; ++i) peak = std::max(peak, std::abs(int{sample(i)}));
    EXPECT_LE(peak, kLoudest);
    EXPECT_GE(peak, kLoudest / 4);
    EXPECT_LE(std::abs(int{sample(0)}), kClick);
    EXPECT_LE(std::abs(int{sample(samples - 1)}), kClick);
  }
}

TEST(Assets, PicturesHaveTheirSizeAndNoAlpha) {
  struct Picture {
    const char* name;
    unsigned width;
    unsigned height;
  };
  constexpr std::array<Picture, 10> kPictures = {{{"part0", 540, 540},
                                                  {"part1", 540, 540},
                                                  {"part2", 540, 540},
                                                  {"part3", 540, 540},
                                                  {"part4", 540, 540},
                                                  {"part5", 540, 540},
                                                  {"part6", 540, 540},
                                                  {"part7", 540, 540},
                                                  {"picture1", 240, 104},
                                                  {"picture1@4x", 960, 416}}};
  for (const Picture& picture : kPictures) {
    SCOPED_TRACE(picture.name);
    const std::string png = ReadAsset(std::string("tiles/") + picture.name + ".png");
    ASSERT_GT(png.size(), 33U);
    ASSERT_EQ(png.substr(12, 4), "IHDR");
    EXPECT_EQ(BigEndian32(png, 16), picture.width);
    EXPECT_EQ(BigEndian32(png, 20), picture.height);
    EXPECT_EQ(ByteAt(png, 24), 8U);  // bits a channel
    EXPECT_EQ(ByteAt(png, 25), 2U);  // red, green and blue, neither palette nor alpha
  }
}

TEST(Assets, OnlyOpenFieldsAndTreesLookDifferentWhenMarked) {
  const auto tile = [](int number) { return ReadAsset("tiles/part" + std::to_string(number) + ".png"); };
  EXPECT_NE(tile(0), tile(4));
  EXPECT_EQ(tile(1), tile(5));
  EXPECT_EQ(tile(2), tile(6));
  EXPECT_NE(tile(3), tile(7));
}

}  // namespace
