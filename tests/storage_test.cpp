#include <csignal>
#include <filesystem>
#include <gtest/gtest.h>
#include <optional>
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
  RecordFile<PackRecord>(path).Write(number, record);
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

/// A program on boards of 6 lines, with two players, the second of whom is playing.
struct StorageTest : testing::Test {
  StorageTest() {
    installation.AddPlayers({"Ann", "Ben"});
    desktop.Settings[{"Options", "Size"}] = "6";
    run.emplace(installation);
  }
  std::string Panel(int number) { return PanelOf(run->main, number).Text; }
  auto AllFiles() { return FilesIn(installation.folder / "local/Bvc"); }

  Installation installation;
  ScriptedDesktop& desktop = installation.desktop;
  const std::string pack = installation.InData("BVPack06.bvq");
  const std::string installedPack = BytesOf(installation.InProgram("BVPack06.bvq"));
  std::optional<ProgramRun> run;
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

TEST(RecordFile, TheNextTurnCutsWhatAKilledWriterLeft) {
  const TempFolder folder;
  const std::string path = folder / "pack";
  for (const long number : {1, 2}) WritePack(path, number, {});
  const auto writeUntilKilled = [&] {
    const rlimit limit{3500, 3500};  // In the third record.
    setrlimit(RLIMIT_FSIZE, &limit);
    std::signal(SIGXFSZ, SIG_DFL);
    WritePack(path, 3, {});
  };
  EXPECT_EXIT(writeUntilKilled(), testing::KilledBySignal(SIGXFSZ), "");
  EXPECT_EQ(fs::file_size(path), 3500U);
  WritePack(path, 1, {});
  EXPECT_EQ(fs::file_size(path), 2 * kPackBytes);
  EXPECT_EQ(FilesIn(folder / "").size(), 1U);
}

TEST(RecordFile, SaysWhyItCannotBeOpened) {
  using PersonalFile = RecordFile<PersonalRecord>;
  const TempFolder folder;
  EXPECT_EQ(ErrorOf([&] { PersonalFile(folder / "new"); }), 0);
  EXPECT_EQ(BytesOf(folder / "new"), "");
  EXPECT_EQ(ErrorOf([&] { PersonalFile(folder / "missing/new"); }), 76);
  fs::create_directory(folder / "sub");
  EXPECT_EQ(ErrorOf([&] { PersonalFile(folder / "sub"); }), 75);
  EXPECT_EQ(ErrorOf([&] { PersonalFile(folder / std::string(300, 'n')); }), 52);
  EXPECT_EQ(ErrorOf([&] { DeleteWholeFile(folder / "sub"); }), 75);
  EXPECT_TRUE(FileExists(folder / "sub"));
  EXPECT_EQ(CountRecords<PackRecord>(folder / "sub").Rounded, 0);
  EXPECT_FALSE(FileExists(folder / "missing"));
  PackRecord record;
  EXPECT_EQ(ErrorOf([&] { WritePack(folder / "new", 0, record); }), 63);
}

TEST_F(StorageTest, ACutPersonalFileLosesThatRecordAlone) {
  const std::string own = installation.InData("PLBest02.bvq");
  const std::string whole = Integers({1, 38, 1, 5, 2, 38, 3, 25});
  for (std::size_t length = 0; length < whole.size(); ++length) {
    WriteBytes(pack, installedPack);
    WriteBytes(own, whole.substr(0, length));
    SolvePuzzle(*run, 3, 30);
    const std::string kept = whole.substr(0, length / 8 * 8);
    const std::string after = BytesOf(own);
    ASSERT_EQ(after.substr(0, kept.size()), kept) << length;
    ASSERT_EQ(after.substr(after.size() - 8), Integers({3, 38, 0, 30})) << length;
    // From the fifth byte on the cut record counts, and keeps a place without a time; as does 1.5 records.
    const bool counts = length % 8 > 4 || length == 12;
    ASSERT_EQ(after.size(), kept.size() + (counts ? 16u : 8u)) << length;
    OpenPuzzle(*run, length < 8 ? 1 : 2);
    ASSERT_EQ(Panel(6), "Your Time: --:--") << length;
  }
}

TEST_F(StorageTest, ResettingAPackThatCannotBeWrittenIsNobodysError) {
  SolvePuzzle(*run, 1, 65);
  for (const auto& entry : fs::directory_iterator(installation.folder / "local/Bvc")) {
    fs::permissions(entry.path(), fs::perms(0444));
  }
  const auto files = AllFiles();
  const OrdinaryUser ordinary;
  if (geteuid() == 0) GTEST_SKIP() << "root writes whatever the permissions say";
  desktop.Answers = {BoxAnswer::Ok};
  EXPECT_EQ(ErrorOf([&] { cmdResetTime_Click(run->main); }), 70);
  OpenPuzzle(*run, 1);
  EXPECT_EQ(Panel(6), "Your Time: 01:05");
  Save_Puzzle(run->main);
  EXPECT_EQ(desktop.Boxes.back().Text, "Error writing puzzle to file!");
  EXPECT_EQ(AllFiles(), files);
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
