#include <algorithm>
#include <csignal>
#include <deque>
#include <filesystem>
#include <functional>
#include <gtest/gtest.h>
#include <optional>
#include <tuple>
#include <unistd.h>

#include "storage/best_times.h"
#include "storage/navigation.h"
#include "storage/pack_files.h"
#include "storage/platform_files.h"
#include "storage/players.h"
#include "storage/record_file.h"
#include "storage/saving.h"
#include "tests/support/files.h"
#include "tests/support/installation.h"

namespace bivouac {
namespace {

namespace fs = std::filesystem;
using Texts = std::vector<std::string>;

constexpr std::size_t kPackBytes = RecordFile<PackRecord>::kBytes;
constexpr const char* kReadErrorBox = "File Error|Error reading puzzle from file!|Warning";
constexpr const char* kWriteErrorBox = "File Error|Error writing puzzle to file!|Warning";
constexpr const char* kNewBestBox =
    "New Best Time!!!|New Best Time for this puzzle. Congratulations!|Information";
constexpr const char* kNewPersonalBox =
    "Personal Best Time!!!|New Personal Time for this puzzle. Congratulations!|Information";
constexpr const char* kNoBestTimeYet = "Best Time: --:-- (No Best Time Yet)";

std::string SolvedBox(const std::string& time) {
  return "Puzzle Solved!!!|Congratulations! Your time is " + time;
}

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
  void Restart() { run.emplace(installation); }
  void Play(int player) { run->global.CurrentPlayer = player; }
  std::string Panel(int number) { return PanelOf(run->main, number).Text; }
  auto AllFiles() { return FilesIn(installation.folder / "local/Bvc"); }

  Installation installation;
  ScriptedDesktop& desktop = installation.desktop;
  const std::string pack = installation.InData("BVPack06.bvq");
  const std::string installedPack = BytesOf(installation.InProgram("BVPack06.bvq"));
  std::optional<ProgramRun> run;
};

// Record files.

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

// The way from puzzle to puzzle.

TEST_F(StorageTest, OpenAsksUntilTheNumberFits) {
  const std::pair<std::deque<std::string>, int> cases[] = {
      {{""}, 0},
      {{"x", "0", "4", "-1", ""}, 0},
      {{"1"}, 1},
      {{"3 or so"}, 3},
      {{"0.5", "2.5"}, 2},
      {{" +1.5 "}, 2},
      {{"1e300", "-1e300", "3.4999"}, 3},
      {{" ", "3.5", "2"}, 2},
  };
  for (const auto& [answers, number] : cases) {
    Restart();
    desktop.InputBoxes.clear();
    desktop.Inputs = answers;
    cmdOpen_Click(run->main);
    EXPECT_EQ(run->main.PuzzleNo, number) << answers.front();
    EXPECT_TRUE(desktop.Inputs.empty());
    EXPECT_EQ(desktop.InputBoxes.size(), answers.size());
    EXPECT_EQ(desktop.InputBoxes.back().Title, "Select Puzzle");
    EXPECT_EQ(desktop.InputBoxes.back().Prompt, "Please choose a puzzle between 1 and 3");
    EXPECT_EQ(desktop.InputBoxes.back().Default, "1");
    EXPECT_EQ(run->main.PuzzleOver, number == 0);
  }
}

TEST_F(StorageTest, ALoadLaysThePuzzleOut) {
  OpenPuzzle(*run, 2);
  const Main& main = run->main;
  const PackRecord record = ReadPack(pack, 2);
  int trees = 0;
  for (int cell = 0; cell < 36; ++cell) {
    const bool tree = record.Layout[cell] == CELL_TREE;
    trees += tree;
    EXPECT_EQ(main.Board[cell] == CELL_TREE, tree);
    EXPECT_EQ(main.Solution[cell] == CELL_TENT, record.Layout[cell] == CELL_TENT);
    EXPECT_TRUE(!tree || main.TentDir[cell] == record.TentDirs[cell]);
  }
  EXPECT_EQ(main.TreeCount, trees);
  for (int i = 0; i < 6; ++i) {
    EXPECT_EQ(main.RowCnt[i].Caption, std::to_string(record.RowCounts[i]));
    EXPECT_EQ(main.ColCnt[i].Caption, std::to_string(record.ColCounts[i]));
  }
  EXPECT_EQ(PanelTexts(main), (Texts{"Size: 6x6", "Level: " + std::to_string(LevelOf(record.LevelSize)),
                                     "Puzzle #: 2", "Total Puzzles: 3", kNoBestTimeYet, "Your Time: --:--"}));
  EXPECT_TRUE(!main.PuzzleOver && !main.Paused && main.BoardLive && main.Timer3.Enabled);
}

TEST_F(StorageTest, APuzzleIsRatedOnItsFirstLoadOnly) {
  // A level below 0 says that the rules could not finish it; nobody tries again.
  for (const auto& [stored, level, after] : {std::tuple{6, "Level: 1", 38}, {-26, "Level: -1", -26}}) {
    std::string bytes = installedPack;
    WriteBytes(pack, bytes.replace(1368, 2, Integers({stored})));
    OpenPuzzle(*run, 1);
    EXPECT_EQ(Panel(2), level);
    EXPECT_TRUE(BytesOf(pack) == bytes.replace(1368, 2, Integers({after})));
  }
}

TEST_F(StorageTest, AnUnratedPuzzleOpenedFirstIsRatedByItsOwnClues) {
  // Hard puzzles, whose ratings read the clues off labels; of size 18 after size 6, where twelve have a text.
  const std::string large = BytesOf(BIVOUAC_SOURCE_DIR "/assets/packs/BVPack18.bvq");
  const std::string hard = large.substr(large.size() - kPackBytes);
  WriteBytes(installation.InData("BVPack18.bvq"), std::string(hard).replace(1368, 2, Integers({18})));
  Restart();
  desktop.Inputs = {"18"};
  cmdOptions_Click(run->main);
  OpenPuzzle(*run, 1);
  EXPECT_TRUE(BytesOf(installation.InData("BVPack18.bvq")) == hard) << Panel(2);
}

TEST_F(StorageTest, OnlyAPlayerInTheListHoldsABestTime) {
  const std::tuple<int, int, int, const char*> cases[] = {
      {1, 5, 2, "Best Time: 01:05 by Ben"},
      {0, 59, 1, "Best Time: 00:59 by Ann"},
      {7, 0, 1, "Best Time: 07:00 by Ann"},
      {100, 5, 1, "Best Time: 00:05 by Ann"},
      {1, 5, 3, kNoBestTimeYet},
      {0, 0, 1, kNoBestTimeYet},
      {-1, 0, 1, kNoBestTimeYet},
      {-100, 5, 1, "Best Time: 0:05 by Ann"},
  };
  for (const auto& [minutes, seconds, player, text] : cases) {
    WriteBytes(pack, WithBestTime(installedPack, 1, minutes, seconds, player));
    OpenPuzzle(*run, 1);
    EXPECT_EQ(Panel(5), text);
  }
}

TEST_F(StorageTest, AnUnreadablePuzzleGivesTheBoxAndKeepsTheOldOne) {
  OpenPuzzle(*run, 1);
  const PackRecord before = run->global.PuzzleRec;
  const std::function<void()> faults[] = {
      [&] { fs::resize_file(pack, kPackBytes + 1375); },
      [&] { fs::remove(pack); },
      [&] { fs::remove(pack), fs::create_directory(pack); },
  };
  for (const auto& fault : faults) {
    fault();
    cmdNext_Click(run->main);
    EXPECT_EQ(installation.TakeBoxes(), Texts{kReadErrorBox});
    EXPECT_EQ(run->main.PuzzleNo, 1);
    EXPECT_EQ(run->global.PuzzleRec, before);
    EXPECT_EQ(Panel(3), "Puzzle #: 1");
  }
}

TEST_F(StorageTest, ADamagedRecordGivesTheBoxUntilOtherFilesWereUsed) {
  struct Case {
    const char* Name;
    int Player;
    bool HasFile;
    int LevelSize;
    bool Box;
  };
  const Case cases[] = {
      {"free play", 0, true, 38, true},
      {"a player without a file", 2, false, 38, true},
      {"a player with a file", 2, true, 38, false},
      {"rated in this load", 0, true, 6, false},
  };
  const auto firstTree = installedPack.find(std::string("\3\0", 2), 648) - 648;
  for (const Case& one : cases) {
    Restart();
    Play(one.Player);
    if (!one.HasFile) fs::remove(installation.InData("PLBest02.bvq"));
    std::string damaged = installedPack;
    damaged.replace(1368, 2, Integers({one.LevelSize}));
    // A best time that belongs to player 0, whom the list does not have; and a tent far off the board.
    std::string offBoard = damaged;
    offBoard.replace(firstTree, 2, Integers({NORTH}));
    ASSERT_LT(firstTree, 12u) << "needs a tree in the first row";
    for (const std::string& bytes : {WithBestTime(damaged, 1, 1, 5, 0), offBoard}) {
      WriteBytes(pack, bytes);
      EXPECT_EQ(ErrorOf([&] { OpenPuzzle(*run, 1); }), one.Box ? 0 : 9) << one.Name;
      EXPECT_EQ(installation.TakeBoxes(), one.Box ? Texts{kReadErrorBox} : Texts{}) << one.Name;
    }
  }
}

TEST_F(StorageTest, TheSizeChangesButNotTheNumberNorTheOwnTime) {
  Main& main = run->main;
  SolvePuzzle(*run, 2, 65);
  installation.TakeBoxes();
  for (const std::deque<std::string>& answers :
       {std::deque<std::string>{""}, {"5", "21", "x", "1e20", "6"}}) {
    const Texts before = PanelTexts(main);
    desktop.Inputs = answers;
    cmdOptions_Click(main);
    EXPECT_TRUE(desktop.Inputs.empty());
    EXPECT_EQ(PanelTexts(main), before);
    EXPECT_EQ(main.BoardSize, 6);
  }
  desktop.Inputs = {"9 lines"};
  cmdOptions_Click(main);
  EXPECT_EQ(desktop.InputBoxes.back().Title, "Puzzle Size");
  EXPECT_EQ(desktop.InputBoxes.back().Prompt, "Enter a value between 6 and 18");
  EXPECT_EQ(desktop.InputBoxes.back().Default, "12");
  EXPECT_EQ((desktop.Settings[{"Options", "Size"}]), "9");
  EXPECT_EQ(PanelTexts(main), (Texts{"Size: 9x9", "Level: 1", "Puzzle #: --", "Total Puzzles: 3",
                                     kNoBestTimeYet, "Your Time: 01:05"}));
  EXPECT_EQ(PanelOf(main, 6).Tag, "Your Time: --:--");
  EXPECT_EQ(main.CellCount, 81);
  EXPECT_EQ(main.PuzzleNo, 2);
  cmdNext_Click(main);
  EXPECT_EQ(Panel(3), "Puzzle #: 3");
  cmdNext_Click(main);
  EXPECT_EQ(installation.TakeBoxes(), Texts{kReadErrorBox}) << "past the end of the pack";

  desktop.Inputs = {"19"};
  EXPECT_EQ(ErrorOf([&] { cmdOptions_Click(main); }), 9);
  EXPECT_EQ((desktop.Settings[{"Options", "Size"}]), "19");
}

// Saving.

TEST_F(StorageTest, ANewPuzzleGoesBehindTheOthers) {
  Main& main = run->main;
  SolvePuzzle(*run, 1, 30);
  const std::string record = BytesOf(pack).substr(0, kPackBytes);
  const std::string own = WithBestTime(record, 1, 0, 30, 2);
  struct Case {
    const char* Name;
    std::string Before;
    std::string After;
    int Number;
  };
  const std::string hole(kPackBytes / 2, '\0');
  const Case cases[] = {
      {"as counted", installedPack, installedPack + own, 4},
      {"grown", installedPack + record + record, installedPack + record + record + own, 6},
      {"cut at three and a half", installedPack + record.substr(0, 688), installedPack + own, 4},
      {"cut at four and a half", installedPack + record + record.substr(0, 688),
       installedPack + record + record.substr(0, 688) + hole + own, 6},
  };
  for (const Case& one : cases) {
    WriteBytes(pack, one.Before);
    main.PuzzleCount[0] = 3;
    Save_New(main);
    EXPECT_TRUE(BytesOf(pack) == one.After) << one.Name;
    EXPECT_EQ(main.PuzzleNo, one.Number) << one.Name;
    EXPECT_EQ(main.PuzzleCount[0], one.Number) << one.Name;
    const std::string number = std::to_string(one.Number);
    EXPECT_EQ(PanelTexts(main), (Texts{"Size: 6x6", "Level: 1", "Puzzle #: " + number,
                                       "Total Puzzles: " + number, kNoBestTimeYet, "Your Time: --:--"}));
  }
  fs::remove(pack);
  main.PuzzleCount[0] = 0;
  Save_New(main);
  EXPECT_EQ(main.PuzzleNo, 1);
  EXPECT_TRUE(BytesOf(pack) == own);
}

TEST_F(StorageTest, WhatCannotBeSavedLeavesThePackAsItWas) {
  Main& main = run->main;
  OpenPuzzle(*run, 3);
  const Texts before = PanelTexts(main);
  {
    const FileSizeLimit limit(installedPack.size() + 100);
    Save_New(main);
  }
  EXPECT_EQ(installation.TakeBoxes(), Texts{kWriteErrorBox});
  EXPECT_EQ(main.PuzzleCount[0], 3);
  EXPECT_EQ(main.PuzzleNo, 4) << "the number alone moves";
  EXPECT_EQ(PanelTexts(main), before);
  EXPECT_TRUE(BytesOf(pack) == installedPack);

  fs::resize_file(pack, 2 * kPackBytes);
  main.PuzzleNo = 3;
  Save_Puzzle(main);
  Save_New(main);
  EXPECT_EQ(
      installation.TakeBoxes(),
      (Texts{"Puzzle Save Error|There are less Puzzles in the Puzzle Pack than the current number!!!\n\r"
             "Current Puzzle will not be updated!|Error",
             "Puzzle Save Error|There were more Puzzles in the current Size Pack at Program Start!!!\n\r"
             "Current New Puzzle will not be added to the Puzzle Pack!|Error"}));
  EXPECT_EQ(PanelTexts(main), (Texts{"Size: 6x6", "Level: 1", "Puzzle #: NEW", "Total Puzzles: 3",
                                     "Best Time: NOT AVAILABLE", "Your Time: --:--"}));
  EXPECT_EQ(main.PuzzleNo, 3);
  EXPECT_TRUE(BytesOf(pack) == installedPack.substr(0, 2 * kPackBytes));
}

// Best times.

TEST_F(StorageTest, ASeasonOfTwoPlayersStandsInTheFilesByteForByte) {
  const std::string bests[] = {installation.InData("PLBest01.bvq"), installation.InData("PLBest02.bvq")};
  EXPECT_EQ(BytesOf(bests[0]) + BytesOf(bests[1]), "") << "every player has a file from the first start on";
  struct Game {
    int Player, Puzzle;
    const char *Time, *Best, *Own;
    Texts Boxes;
  };
  const Game games[] = {
      {2, 1, "01:05", "01:05 by Ben", "01:05", {kNewBestBox}},
      {2, 1, "01:05", "01:05 by Ben", "01:05", {}},
      {1, 1, "01:10", "01:05 by Ben", "01:10", {}},
      {1, 1, "01:04", "01:04 by Ann", "01:04", {kNewPersonalBox, kNewBestBox}},
      {2, 3, "10:00", "10:00 by Ben", "10:00", {kNewBestBox}},
      {2, 1, "01:39", "01:04 by Ann", "01:05", {}},
      {1, 2, "00:08", "00:08 by Ann", "00:08", {kNewBestBox}},
  };
  for (Game game : games) {
    Play(game.Player);
    SolvePuzzle(*run, game.Puzzle, 60 * std::stoi(game.Time) + std::stoi(game.Time + 3));
    game.Boxes.insert(game.Boxes.begin(), SolvedBox(game.Time));
    EXPECT_EQ(installation.TakeBoxes(), game.Boxes);
    EXPECT_EQ(Panel(5), std::string("Best Time: ") + game.Best);
    EXPECT_EQ(Panel(6), std::string("Your Time: ") + game.Own);
  }
  const std::string packOfSeason =
      WithBestTime(WithBestTime(WithBestTime(installedPack, 1, 1, 4, 1), 2, 0, 8, 1), 3, 10, 0, 2);
  EXPECT_TRUE(BytesOf(pack) == packOfSeason);
  EXPECT_EQ(BytesOf(bests[0]), Integers({1, 38, 1, 4, 2, 38, 0, 8}));
  EXPECT_EQ(BytesOf(bests[1]), Integers({1, 38, 1, 5, 3, 38, 10, 0}));

  run->form.NaamLijst.ListIndex = 0;
  run->form.NaamInvoerveld.Text = "Anna";
  NaamInvoerveld_KeyPress(run->form, Key::Enter);
  const auto files = AllFiles();
  Restart();
  EXPECT_EQ(AllFiles(), files);
  OpenPuzzle(*run, 1);
  EXPECT_EQ(Panel(5), "Best Time: 01:04 by Anna");
  EXPECT_EQ(Panel(6), "Your Time: 01:05");

  // A time of another size stays when the times of this one are reset.
  desktop.Inputs = {"7"};
  cmdOptions_Click(run->main);
  SolvePuzzle(*run, 1, 77);
  const int levelSize7 = run->global.PuzzleRec.LevelSize;
  const std::string pack7 = BytesOf(installation.InData("BVPack07.bvq"));
  desktop.Inputs = {"6"};
  cmdOptions_Click(run->main);
  installation.TakeBoxes();
  const auto beforeReset = AllFiles();
  desktop.Answers = {BoxAnswer::Cancel, BoxAnswer::Ok};
  cmdResetTime_Click(run->main);
  EXPECT_EQ(AllFiles(), beforeReset);
  cmdResetTime_Click(run->main);
  EXPECT_EQ(
      installation.TakeBoxes(),
      Texts(2, "Warning!!!|This will reset the times of all puzzles in the current level. Continue?|Error"));
  EXPECT_TRUE(BytesOf(pack) == installedPack);
  EXPECT_TRUE(BytesOf(installation.InData("BVPack07.bvq")) == pack7);
  EXPECT_EQ(BytesOf(bests[0]), Integers({1, 38, 0, 0, 2, 38, 0, 0}));
  EXPECT_EQ(BytesOf(bests[1]), Integers({1, 38, 0, 0, 3, 38, 0, 0, 1, levelSize7, 1, 17}));
  EXPECT_EQ(Panel(5), kNoBestTimeYet);
  EXPECT_EQ(Panel(6), "Your Time: --:--");

  // A record that was reset is used again, and counts as beaten.
  SolvePuzzle(*run, 3, 700);
  EXPECT_EQ(installation.TakeBoxes(), (Texts{SolvedBox("11:40"), kNewPersonalBox, kNewBestBox}));
  EXPECT_EQ(BytesOf(bests[1]), Integers({1, 38, 0, 0, 3, 38, 11, 40, 1, levelSize7, 1, 17}));
}

TEST_F(StorageTest, FreePlayLeavesEveryFileAsItWas) {
  SolvePuzzle(*run, 1, 65);
  Play(0);
  const auto files = AllFiles();
  for (const int seconds : {10, 65, 100}) {
    SolvePuzzle(*run, 1, seconds);
    EXPECT_EQ(Panel(5), "Best Time: 01:05 by Ben");
    EXPECT_EQ(Panel(6), "Your Time: --:--");
  }
  SolvePuzzle(*run, 2, 10);
  EXPECT_EQ(AllFiles(), files);
}

TEST_F(StorageTest, APlayerWithoutAFileInheritsTheOwnTimeOfThePuzzleBefore) {
  SolvePuzzle(*run, 1, 65);
  SolvePuzzle(*run, 2, 65);
  fs::remove(installation.InData("PLBest01.bvq"));
  Play(1);
  OpenPuzzle(*run, 3);
  EXPECT_EQ(Panel(6), "Your Time: 01:05");
  EXPECT_EQ(run->global.PersonalPos, 0);
  Play(2);
  OpenPuzzle(*run, 2);
  Play(1);
  SolvePuzzle(*run, 3, 30);
  EXPECT_EQ(BytesOf(installation.InData("PLBest01.bvq")), Integers({0, 0, 0, 0, 3, 38, 0, 30}));
}

TEST_F(StorageTest, AHiddenBestTimeOfARemovedPlayerMustStillBeBeaten) {
  const std::string removed = WithBestTime(installedPack, 1, 1, 0, 9);
  WriteBytes(pack, removed);
  SolvePuzzle(*run, 1, 60);
  EXPECT_EQ(Panel(5), kNoBestTimeYet);
  EXPECT_TRUE(BytesOf(pack) == removed);
  SolvePuzzle(*run, 1, 59);
  EXPECT_TRUE(BytesOf(pack) == WithBestTime(installedPack, 1, 0, 59, 2));
}

TEST_F(StorageTest, TheBestTimeIsCongratulatedEvenWhenItCannotBeKept) {
  OpenPuzzle(*run, 3);
  fs::resize_file(pack, kPackBytes);
  run->main.Elapsed = 65;
  RecordTimes(run->main);
  const Texts boxes = installation.TakeBoxes();
  ASSERT_EQ(boxes.size(), 2u);
  EXPECT_TRUE(boxes[0].starts_with("Puzzle Save Error|"));
  EXPECT_EQ(boxes[1], kNewBestBox);
  EXPECT_EQ(Panel(5), "Best Time: 01:05 by Ben");
  EXPECT_EQ(BytesOf(installation.InData("PLBest02.bvq")), Integers({3, 38, 1, 5}));
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

TEST_F(StorageTest, AnUnusablePersonalFileCostsTheTimeAndNothingElse) {
  const std::string own = installation.InData("PLBest02.bvq");
  fs::remove(own);
  fs::create_directory(own);
  SolvePuzzle(*run, 1, 65);
  EXPECT_EQ(installation.TakeBoxes(), (Texts{SolvedBox("01:05"), kNewBestBox}));
  OpenPuzzle(*run, 1);
  EXPECT_EQ(Panel(6), "Your Time: --:--");
}

TEST_F(StorageTest, TheStartBringsPersonalFilesUpToThePacks) {
  // Times of Ann, Ben and a player who is not there; and half a record at the end, which is never visited.
  WriteBytes(pack,
             WithBestTime(WithBestTime(WithBestTime(installedPack, 1, 1, 5, 1), 2, 2, 6, 9), 3, 3, 7, 2) +
                 WithBestTime(installedPack, 1, 9, 9, 1).substr(0, kPackBytes - 1));
  const std::string pack18 = installation.InData("BVPack18.bvq");
  WriteBytes(pack18, WithBestTime(BytesOf(pack18), 3, 20, 0, 1));
  fs::remove(installation.InData("BVPack12.bvq"));
  fs::remove(installation.InData("PLBest01.bvq"));
  // Ben has a time for puzzle 3 already, worse than the pack's, under another level; and half a record.
  const std::string ben = Integers({3, 70, 4, 0}) + "half.";
  WriteBytes(installation.InData("PLBest02.bvq"), ben);
  Restart();
  const std::string ann = Integers({1, 6, 1, 5, 3, 18, 20, 0});
  EXPECT_EQ(BytesOf(installation.InData("PLBest01.bvq")), ann);
  EXPECT_EQ(BytesOf(installation.InData("PLBest02.bvq")), ben);
  EXPECT_TRUE(installation.TakeBoxes().empty());
  Restart();
  EXPECT_EQ(BytesOf(installation.InData("PLBest01.bvq")), ann);

  fs::remove(installation.InData("PLBest01.bvq"));
  fs::create_directory(installation.InData("PLBest01.bvq"));
  WriteBytes(installation.InData("PLBest02.bvq"), "");
  Restart();
  EXPECT_EQ(BytesOf(installation.InData("PLBest02.bvq")), Integers({3, 6, 3, 7}))
      << "one player's trouble is not the next one's";
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
  installation.TakeBoxes();
  OpenPuzzle(*run, 1);
  EXPECT_EQ(Panel(6), "Your Time: 01:05");
  Save_Puzzle(run->main);
  EXPECT_EQ(installation.TakeBoxes(), Texts{kWriteErrorBox});
  EXPECT_EQ(AllFiles(), files);
}

}  // namespace
}  // namespace bivouac
