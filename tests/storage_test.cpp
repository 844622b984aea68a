#include <filesystem>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include "storage/best_times.h"
#include "storage/navigation.h"
#include "storage/pack_files.h"
#include "storage/platform_files.h"
#include "storage/players.h"
#include "storage/record_file.h"
#include "storage/saving.h"
#include "storage/start_up.h"
#include "tests/support/files.h"
#include "tests/support/installation.h"

namespace bivouac {
namespace {

namespace fs = std::filesystem;

constexpr std::size_t kPackBytes = RecordFile<PackRecord>::kBytes;
template <class Step>
int ErrorOf(Step step) {
  try {
    step();
    return 0;
  } catch (const RunTimeError& error) {
    return static_cast<int>(error.Number());
  }
}

PackRecord ReadPack(const std::string& path, long number) {
  PackRecord record;
  RecordFile<PackRecord>(path).Read(number, record);
  return record;
}

void WritePack(const std::string& path, long number, const PackRecord& record) {
  RecordFile<PackRecord>(path, Access::Create).Write(number, record);
}

/// A pack's bytes with other best-time fields in one record.
std::string WithBestTime(std::string pack, std::size_t number, int minutes, int seconds, int player) {
  return pack.replace((number - 1) * kPackBytes + 1370, 6, Integers({minutes, seconds, player}));
}

/// While it lives the process has no more rights on files than anybody, even when root runs the tests.
struct OrdinaryUser {
  static constexpr uid_t kNobody = 65534;
  OrdinaryUser() { static_cast<void>(geteuid() == 0 && seteuid(kNobody)); }
  ~OrdinaryUser() { static_cast<void>(getuid() == 0 && seteuid(0)); }
};

TEST(RecordFile, ReadsAndWritesTheFieldsInTheirPlaces) {
  const TempFolder folder;
  const std::string installed = BIVOUAC_SOURCE_DIR "/assets/packs/BVPack18.bvq";
  const auto records = bivouac::ReadPack("assets/packs/BVPack18.bvq");
  for (long number = 1; number <= 3; ++number) {
    PackRecord record = ReadPack(installed, number);
    ASSERT_EQ(record, records.at(static_cast<std::size_t>(number) - 1));
    record.BestMinutes = 258;
    record.BestSeconds = -2;
    record.BestPlayer = 3;
    WritePack(folder / "pack", number, record);
  }
  std::string expected = BytesOf(installed).substr(0, 3 * kPackBytes);
  for (std::size_t number = 1; number <= 3; ++number) expected = WithBestTime(expected, number, 258, -2, 3);
  EXPECT_TRUE(BytesOf(folder / "pack") == expected);
}

TEST(RecordFile, APackCutAnywhereHoldsItsWholeRecords) {
  const TempFolder folder;
  const std::string path = folder / "pack";
  PackRecord first;
  first.LevelSize = 38;
  WritePack(path, 1, first);
  WritePack(path, 2, first);
  for (std::uintmax_t length = 2 * kPackBytes + 1; length-- > 0;) {
    fs::resize_file(path, length);
    const long whole = length >= 2 * kPackBytes ? 2 : length >= kPackBytes ? 1 : 0;
    // 688 bytes are a half: of 0.5 the even neighbour is 0, of 1.5 it is 2.
    const long rounded = length <= 688 ? 0 : length < 2064 ? 1 : 2;
    const RecordCounts counts = CountRecords<PackRecord>(path);
    ASSERT_EQ(counts.Whole, whole) << length;
    ASSERT_EQ(counts.Rounded, rounded) << length;
    // Of 1.5 the sum is 2.5, and its even neighbour 2.
    ASSERT_EQ(counts.Next, length == 688 || length == 2064 ? 2 : rounded + 1) << length;
    for (long number = 1; number <= 2; ++number) {
      PackRecord record;
      ASSERT_EQ(ErrorOf([&] { record = ReadPack(path, number); }), number <= whole ? 0 : 62) << length;
      ASSERT_EQ(record, number <= whole ? first : PackRecord{}) << length;
    }
  }
}

TEST(RecordFile, WhatWasNeverFinishedIsNoPuzzleAndIsCutOff) {
  const TempFolder folder;
  const std::string path = folder / "pack";
  PackRecord finished;
  finished.LevelSize = 38;
  for (const long number : {1, 3}) WritePack(path, number, finished);
  fs::resize_file(path, 5 * kPackBytes);
  const auto counts = [&] { return CountRecords<PackRecord>(path); };
  EXPECT_TRUE(counts().Whole == 3 && counts().Rounded == 3 && counts().Next == 4);
  EXPECT_EQ(RecordFile<PackRecord>(path).ReadAll().size(), 3U);
  WritePack(path, 4, finished);
  EXPECT_EQ(fs::file_size(path), 4 * kPackBytes);
  WriteBytes(path, std::string(2 * kPackBytes, '\0'));
  RecordFile<PackRecord>(path, Access::Write).RemoveIfEmpty();
  EXPECT_FALSE(FileExists(path));
}

TEST(RecordFile, SaysWhyItCannotBeOpened) {
  const TempFolder folder;
  const auto errorOf = [&](const std::string& name, Access access) {
    return ErrorOf([&] { RecordFile<PersonalRecord>(folder / name, access); });
  };
  fs::create_directory(folder / "sub");
  ASSERT_EQ(mkfifo((folder / "pipe").c_str(), 0600), 0);
  for (const Access access : {Access::Read, Access::Write, Access::Create}) {
    EXPECT_EQ(errorOf("new", access), access == Access::Create ? 0 : 76);
    EXPECT_EQ(errorOf("missing/new", access), 76);
    EXPECT_EQ(errorOf("sub", access), 75);
    EXPECT_EQ(errorOf("pipe", access), 75);
    EXPECT_EQ(errorOf(std::string(300, 'n'), access), 52);
  }
  EXPECT_EQ(BytesOf(folder / "new"), "");
  EXPECT_EQ(ErrorOf([&] { DeleteWholeFile(folder / "sub"); }), 75);
  EXPECT_TRUE(FileExists(folder / "sub"));
  EXPECT_EQ(CountRecords<PackRecord>(folder / "sub").Rounded, 0);
  EXPECT_FALSE(FileExists(folder / "missing"));
  PackRecord record;
  EXPECT_EQ(ErrorOf([&] { WritePack(folder / "new", 0, record); }), 63);
}

TEST(StorageTest, ResettingAPackThatCannotBeWrittenIsNobodysError) {
  Installation installation;
  ScriptedDesktop& desktop = installation.desktop;
  installation.AddPlayers({"Ann"});
  desktop.Settings[{"Options", "Size"}] = "6";
  ProgramRun run(installation);
  WriteBytes(installation.InData("PLBest01.bvq"), Integers({1, 38, 1, 5}));
  for (const auto& entry : fs::directory_iterator(installation.InData("")))
    fs::permissions(entry.path(), fs::perms(0444));
  fs::permissions(installation.InData(""), fs::perms(0755));
  const auto files = FilesIn(installation.InData(""));
  const OrdinaryUser ordinary;
  if (geteuid() == 0) GTEST_SKIP() << "root writes whatever the permissions say";
  desktop.Answers = {BoxAnswer::Ok};
  EXPECT_EQ(ErrorOf([&] { cmdResetTime_Click(run.main); }), 70);
  desktop.Inputs = {"1"};
  cmdOpen_Click(run.main);
  EXPECT_EQ(PanelOf(run.main, 6).Text, "Your Time: 01:05");
  Save_Puzzle(run.main);
  EXPECT_EQ(desktop.Boxes.back().Text, "Error writing puzzle to file!");
  EXPECT_EQ(FilesIn(installation.InData("")), files);
}

TEST(PlayerNames, AreSixteenCharactersWhateverTheirBytes) {
  EXPECT_EQ(FixedName("Zoë"), "Zoë" + std::string(13, ' '));
  EXPECT_EQ(FixedName("äöüäöüäöüäöüäöüäö"), "äöüäöüäöüäöüäöüä");
  EXPECT_EQ(FixedName("1234567890123😀😀😀😀"), "1234567890123😀😀😀");
  // Bytes that are no UTF-8 count one each.
  EXPECT_EQ(FixedName("\xFF\xC3"), "\xFF\xC3" + std::string(14, ' '));
  EXPECT_EQ(FixedName(std::string(20, '\xE2')), std::string(16, '\xE2'));
}

TEST(StartUp, LookupFolderEndsInNoSeparator) {
  ScriptedDesktop desktop;
  const std::pair<FolderAnswer, std::string> cases[] = {{{0, "/data/share"}, "/data/share"},
                                                        {{0, "/data/share/"}, "/data/share"},
                                                        {{0, std::string("/data\0  ", 8)}, "/data"},
                                                        {{1, "/data"}, ""},
                                                        {{0, ""}, ""}};
  for (const auto& [answer, folder] : cases) {
    desktop.LocalData = answer;
    EXPECT_EQ(LookupFolder(desktop, 28), folder);
  }
}

}  // namespace
}  // namespace bivouac
