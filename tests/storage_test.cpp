#include <filesystem>
#include <gtest/gtest.h>
#include <optional>
#include <sys/stat.h>
#include <tuple>
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

TEST_F(StorageTest, ABestTimeGoesIntoTheSamePuzzleAloneAndOnlyWhereItIsBetter) {
  // What other programs make of the pack while the first puzzle is solved in 1:40.
  const std::string better = WithBestTime(installedPack, 1, 0, 30, 1);
  const std::string worse = WithBestTime(installedPack, 1, 2, 30, 1);
  const std::string moved = installedPack.substr(kPackBytes) + installedPack.substr(0, kPackBytes);
  const std::tuple<const char*, std::string, std::string, bool> cases[] = {
      {"a better time", better, better, true},
      {"a worse time", worse, WithBestTime(installedPack, 1, 1, 40, 2), true},
      {"another puzzle", moved, moved, false},
  };
  for (const auto& [name, meanwhile, after, written] : cases) {
    WriteBytes(pack, installedPack);
    OpenPuzzle(*run, 1);
    WriteBytes(pack, meanwhile);
    desktop.Boxes.clear();
    run->main.Elapsed = 100;
    RecordTimes(run->main);
    EXPECT_TRUE(BytesOf(pack) == after) << name;
    EXPECT_EQ(desktop.Boxes.front().Title, written ? "New Best Time!!!" : "File Error") << name;
  }
}

TEST_F(StorageTest, WhatAnotherGameHasAddedToTheListOfPlayersStays) {
  FormNamen& form = run->form;
  const auto takeName = [&](const char* name) {
    KnopNieuweSpeler_Click(form);
    form.NaamInvoerveld.Text = name;
    NaamInvoerveld_KeyPress(form, Key::Enter);
  };
  auto& settings = desktop.Settings;
  installation.AddPlayers({"Anna", "Ben", "Cas"});
  takeName("Dee");
  EXPECT_EQ((settings[{"Players", "Count"}]), "4");
  EXPECT_EQ((settings[{"Players", "Player01"}]), FixedName("Anna"));
  EXPECT_EQ((settings[{"Players", "Player03"}]), FixedName("Cas"));
  EXPECT_EQ((settings[{"Players", "Player04"}]), FixedName("Dee"));
  EXPECT_EQ(form.NaamLijst.Items.size(), 4U);
  EXPECT_EQ(NameOf(run->global, 3), "Cas");
  settings[{"Players", "Count"}] = "5";
  settings[{"Players", "Player05"}] = FixedName("Eve");
  takeName("Eve");
  EXPECT_EQ(desktop.Boxes.back().Title, "Oh no, not another Eve !!!");
  settings[{"Players", "Count"}] = "99";
  form.NaamInvoerveld.Text = "Fay";
  NaamInvoerveld_KeyPress(form, Key::Enter);
  EXPECT_EQ(desktop.Boxes.back().Title, "No room for another player");
  EXPECT_TRUE(form.KnopAnnuleren.Enabled);
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
  fs::permissions(installation.folder / "local/Bvc", fs::perms(0755));
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
