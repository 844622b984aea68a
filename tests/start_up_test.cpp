#include "storage/start_up.h"

#include <filesystem>
#include <gtest/gtest.h>

#include "storage/navigation.h"
#include "storage/pack_files.h"
#include "tests/support/installation.h"

namespace bivouac {
namespace {

namespace fs = std::filesystem;

/// The number and words of the error that ends the start; 0 if none does.
std::pair<int, std::string> FaultOfStart(Installation& installation) {
  try {
    ProgramRun run(installation);
    return {0, ""};
  } catch (const RunTimeError& error) {
    return {static_cast<int>(error.Number()), error.what()};
  }
}

TEST(StartUp, FirstStartBringsThePacksAndComesUpInFreePlay) {
  Installation installation;
  ProgramRun run(installation);
  for (int size = kMinSize; size <= kMaxSize; ++size) {
    EXPECT_EQ(BytesOf(installation.InData(PackName(size))), BytesOf(installation.InProgram(PackName(size))));
    EXPECT_EQ(run.main.PuzzleCount[size - kMinSize], kInstalledPuzzles);
  }
  EXPECT_EQ(run.main.Caption, "Bivouac - Free Play (no player selected)");
  EXPECT_EQ(PanelTexts(run.main),
            (std::vector<std::string>{"Size: 12x12", "Level: 0", "Puzzle #: --", "Total Puzzles: 3",
                                      "Best Time: --:-- (No Best Time Yet)", "Your Time: --:--"}));
  EXPECT_TRUE(run.main.PuzzleOver);
  EXPECT_TRUE(run.main.BoardLive);
  EXPECT_TRUE(run.main.Grid[143].Visible);
  EXPECT_TRUE(run.main.Visible);
  EXPECT_EQ(run.main.Left, (19200 - 8175) / 2);
  EXPECT_EQ(run.main.Top, (14400 - 9030) / 2);
  EXPECT_TRUE(installation.desktop.SoundAttached);
  EXPECT_EQ(installation.desktop.Loaded.front(), installation.InProgram("Applause.wav"));
}

TEST(StartUp, TheUsersPacksStayMissingOnesComeAgainAndLeftOversGo) {
  Installation installation;
  { ProgramRun first(installation); }
  WriteBytes(installation.InData("BVPack06.bvq"), std::string(1376, 'u'));
  fs::remove(installation.InData("BVPack07.bvq"));
  fs::permissions(installation.InProgram("BVPack07.bvq"), fs::perms(0444));
  fs::remove(installation.InData("BVPack08.bvq"));
  fs::create_directory(installation.InData("BVPack08.bvq"));
  WriteBytes(installation.InData("BVPack09.bvp"), "old");
  WriteBytes(installation.InData("BVPack19.bvp"), "another's");
  ProgramRun second(installation);
  const fs::path again = installation.InData("BVPack07.bvq");
  EXPECT_EQ(BytesOf(installation.InData("BVPack06.bvq")), std::string(1376, 'u'));
  EXPECT_EQ(BytesOf(again), BytesOf(installation.InProgram("BVPack07.bvq")));
  EXPECT_NE(fs::status(again).permissions() & fs::perms::owner_write, fs::perms::none);
  EXPECT_EQ(second.main.PuzzleCount[0], 1);
  EXPECT_EQ(second.main.PuzzleCount[2], 0);
  EXPECT_FALSE(fs::exists(installation.InData("BVPack09.bvp")));
  EXPECT_TRUE(fs::exists(installation.InData("BVPack19.bvp")));
}

TEST(StartUp, SettingsOfNonsenseEndItWithTheCure) {
  struct Case {
    const char *Section, *Key, *Value;
    int Error;
    const char* Allowed;
  };
  const Case cases[] = {
      {"Options", "Size", "big", 13, "6 to 18"},     {"Options", "Size", "40000", 6, "6 to 18"},
      {"Options", "Size", "19", 9, "6 to 18"},       {"Options", "Size", "5", 9, "6 to 18"},
      {"Players", "Count", "many", 13, "0 to 99"},   {"Players", "Last_Player", "1", 9, "0 to 0"},
      {"Players", "Last_Player", "x", 13, "0 to 0"},
  };
  for (const Case& one : cases) {
    Installation installation;
    installation.desktop.Settings[{one.Section, one.Key}] = one.Value;
    const auto [error, words] = FaultOfStart(installation);
    EXPECT_EQ(error, one.Error) << one.Key << one.Value;
    EXPECT_TRUE(words.ends_with(std::string(". The setting ") + one.Section + "/" + one.Key + " is \"" +
                                one.Value + "\"; allowed is " + one.Allowed + ". Change it in /settings"))
        << words;
  }
}

TEST(StartUp, SettingsThatCannotBeWrittenAreToldOnce) {
  Installation installation;
  ProgramRun run(installation);
  installation.desktop.SettingsWritable = false;
  KnopNieuweSpeler_Click(run.form);
  run.form.NaamInvoerveld.Text = "Ann";
  NaamInvoerveld_KeyPress(run.form, Key::Enter);
  EXPECT_EQ(
      installation.TakeBoxes(),
      (std::vector<std::string>{"Settings not saved|Size, players and sound cannot be written to\n/settings\n"
                                "What you change holds until the game ends.|Warning"}));
  KnopOK_Click(run.form);
  installation.desktop.Inputs = {"8"};
  cmdOptions_Click(run.main);
  EXPECT_EQ(run.main.BoardSize, 8);
  EXPECT_EQ(run.main.global.CurrentPlayer, 1);
  EXPECT_TRUE(installation.TakeBoxes().empty());
}

TEST(StartUp, FilesThatAreNotThereEndIt) {
  Installation packless;
  fs::remove(packless.InProgram("BVPack10.bvq"));
  const auto [error, words] = FaultOfStart(packless);
  EXPECT_EQ(error, 53);
  EXPECT_EQ(words.find("setting"), std::string::npos);
  Installation folderless;
  WriteBytes(folderless.folder / "local/Bvc", "");
  EXPECT_EQ(FaultOfStart(folderless).first, 76);
  Installation parentless;
  parentless.desktop.LocalData.Path = parentless.folder / "home/share/";
  EXPECT_EQ(FaultOfStart(parentless).first, 0);
  EXPECT_TRUE(fs::exists(parentless.folder / "home/share/Bvc/BVPack18.bvq"));
}

TEST(StartUp, ACopyThatFailsHalfWayLeavesNothing) {
  Installation installation;
  {
    const FileSizeLimit limit(3000);
    EXPECT_EQ(FaultOfStart(installation).first, 61);
  }
  EXPECT_TRUE(FilesIn(installation.folder / "local/Bvc").empty());
  EXPECT_EQ(FaultOfStart(installation).first, 0);
}

TEST(StartUp, SoundIsOnForAnythingButFalse) {
  struct Case {
    const char *Key, *Stored;
    int Engine;
    bool On;
  };
  const Case cases[] = {
      {"Sounds", "True", 1, true},   {"Sounds", "false", 1, true},
      {"Sounds", "", 1, true},       {"Sounds", "True", 0, true},
      {"Sounds", "False", 1, false}, {"Sound", "True", 1, false},  // What the box stores is never read.
  };
  for (const Case& one : cases) {
    Installation installation;
    installation.desktop.SoundEngine = one.Engine;
    installation.desktop.Settings[{"Options", one.Key}] = one.Stored;
    ProgramRun run(installation);
    EXPECT_EQ(run.main.SoundOn, one.On) << one.Stored;
    EXPECT_EQ(run.main.optSound.Enabled, one.Engine != 0);
  }
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

TEST(ShutDown, OnlyTheButtonAsks) {
  Installation installation;
  ProgramRun run(installation);
  installation.desktop.Answers = {BoxAnswer::No, BoxAnswer::Yes};
  EXPECT_NO_THROW(cmdExit_Click(run.main));
  EXPECT_THROW(cmdExit_Click(run.main), ProgramEnd);
  EXPECT_EQ(installation.TakeBoxes(),
            (std::vector<std::string>(2, "Quit Bivouac|Do you really want to quit ?")));
  EXPECT_THROW(Form_QueryUnload(run.main), ProgramEnd);
  EXPECT_TRUE(installation.TakeBoxes().empty());
}

}  // namespace
}  // namespace bivouac
