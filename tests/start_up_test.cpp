#include "storage/start_up.h"

#include <filesystem>
#include <functional>
#include <gtest/gtest.h>

#include "storage/pack.h"
#include "tests/support/installation.h"

namespace bivouac {
namespace {

namespace fs = std::filesystem;

/// The number of the error that ends the start; 0 if none does.
int ErrorOfStart(Installation& installation) {
  try {
    ProgramRun run(installation);
    return 0;
  } catch (const RunTimeError& error) {
    return static_cast<int>(error.Number());
  }
}

TEST(StartUp, FirstStartBringsThePacksAndComesUpInFreePlay) {
  Installation installation;
  ProgramRun run(installation);
  for (int size = kMinSize; size <= kMaxSize; ++size) {
    EXPECT_EQ(BytesOf(installation.InData(PackName(size))), BytesOf(installation.InProgram(PackName(size))));
    EXPECT_EQ(run.main.PuzzleCount[size - kMinSize], kInstalledPuzzles);
  }
  EXPECT_EQ(FilesIn(installation.folder / "local/Bvc").size(), 13u);
  EXPECT_EQ(run.global.AppDir, installation.folder / "program/");
  EXPECT_EQ(run.global.LocalDataDir, installation.folder / "local/");
  EXPECT_EQ(run.global.DataDir, installation.folder / "local/Bvc/");
  EXPECT_EQ(run.main.Caption, "Bivouac - Free Play (no player selected)");
  EXPECT_EQ(PanelTexts(run.main),
            (std::vector<std::string>{"Size: 12x12", "Level: 0", "Puzzle #: --", "Total Puzzles: 3",
                                      "Best Time: --:-- (No Best Time Yet)", "Your Time: --:--"}));
  EXPECT_TRUE(run.main.PuzzleOver);
  EXPECT_TRUE(run.main.BoardLive);
  EXPECT_TRUE(run.main.cmdOpen.Enabled);
  EXPECT_FALSE(run.main.cmdNext.Enabled);
  EXPECT_EQ(run.main.CellCount, 144);
  EXPECT_TRUE(run.main.Grid[143].Visible);
  EXPECT_TRUE(run.main.Visible);
  EXPECT_EQ(run.main.Left, (19200 - 8175) / 2);
  EXPECT_EQ(run.main.Top, (14400 - 9030) / 2);
  EXPECT_TRUE(installation.desktop.SoundAttached);
  EXPECT_EQ(installation.desktop.Loaded.front(), installation.InProgram("Applause.wav"));
  EXPECT_TRUE(installation.TakeBoxes().empty());
}

TEST(StartUp, PacksOfTheUserStayAndMissingOnesComeAgain) {
  Installation installation;
  { ProgramRun first(installation); }
  WriteBytes(installation.InData("BVPack06.bvq"), std::string(1376, 'u'));
  fs::remove(installation.InData("BVPack07.bvq"));
  fs::permissions(installation.InProgram("BVPack07.bvq"), fs::perms(0444));
  ProgramRun second(installation);
  EXPECT_EQ(BytesOf(installation.InData("BVPack06.bvq")), std::string(1376, 'u'));
  EXPECT_EQ(second.main.PuzzleCount[0], 1);
  EXPECT_EQ(BytesOf(installation.InData("BVPack07.bvq")), BytesOf(installation.InProgram("BVPack07.bvq")));
  EXPECT_NE(fs::status(installation.InData("BVPack07.bvq")).permissions() & fs::perms::owner_write,
            fs::perms::none)
      << "a copy of a read-only pack can be written";
}

TEST(StartUp, LeftOverFilesAreDeletedAndAFolderCountsNoPuzzles) {
  Installation installation;
  { ProgramRun first(installation); }
  WriteBytes(installation.InData("BVPack09.bvp"), "old");
  WriteBytes(installation.InData("BVPack19.bvp"), "another's");
  fs::remove(installation.InData("BVPack06.bvq"));
  fs::create_directory(installation.InData("BVPack06.bvq"));
  ProgramRun second(installation);
  EXPECT_FALSE(fs::exists(installation.InData("BVPack09.bvp")));
  EXPECT_TRUE(fs::exists(installation.InData("BVPack19.bvp")));
  EXPECT_EQ(second.main.PuzzleCount[0], 0);
}

TEST(StartUp, FaultsThatNoStepCatchesEndIt) {
  struct Case {
    const char* Fault;
    std::function<void(Installation&)> Make;
    int Error;
  };
  const Case cases[] = {
      {"a pack in neither folder", [](auto& i) { fs::remove(i.InProgram("BVPack10.bvq")); }, 53},
      {"a size that is no number",
       [](auto& i) {
         i.desktop.Settings[{"Options", "Size"}] = "big";
       },
       13},
      {"a size beyond 16 bits",
       [](auto& i) {
         i.desktop.Settings[{"Options", "Size"}] = "40000";
       },
       6},
      {"a size above the packs",
       [](auto& i) {
         i.desktop.Settings[{"Options", "Size"}] = "19";
       },
       9},
      {"a size below the packs",
       [](auto& i) {
         i.desktop.Settings[{"Options", "Size"}] = "5";
       },
       9},
      {"a player who is not there",
       [](auto& i) {
         i.desktop.Settings[{"Players", "Last_Player"}] = "1";
       },
       9},
      {"a count that is no number",
       [](auto& i) {
         i.desktop.Settings[{"Players", "Count"}] = "many";
       },
       13},
      {"a file in the place of the folder", [](auto& i) { WriteBytes(i.folder / "local/Bvc", ""); }, 76},
  };
  for (const Case& fault : cases) {
    Installation installation;
    fault.Make(installation);
    EXPECT_EQ(ErrorOfStart(installation), fault.Error) << fault.Fault;
    EXPECT_TRUE(installation.TakeBoxes().empty()) << fault.Fault;
  }
}

TEST(StartUp, ACopyThatFailsHalfWayLeavesNothing) {
  Installation installation;
  {
    const FileSizeLimit limit(3000);
    EXPECT_EQ(ErrorOfStart(installation), 61);
  }
  EXPECT_TRUE(FilesIn(installation.folder / "local/Bvc").empty());
  EXPECT_EQ(ErrorOfStart(installation), 0);
}

TEST(StartUp, AMissingParentOfTheDataFolderIsMade) {
  Installation installation;
  installation.desktop.LocalData.Path = installation.folder / "home/share/";
  ProgramRun run(installation);
  EXPECT_TRUE(fs::exists(installation.folder / "home/share/Bvc/BVPack18.bvq"));
}

TEST(StartUp, SoundIsOnForAnythingButFalse) {
  for (const char* stored : {"True", "false", "0", "", "False "}) {
    Installation installation;
    installation.desktop.Settings[{"Options", "Sounds"}] = stored;
    ProgramRun run(installation);
    EXPECT_TRUE(run.main.SoundOn && run.main.optSound.Checked) << stored;
  }
  Installation installation;
  installation.desktop.Settings[{"Options", "Sound"}] = "True";  // What the box stores is never read.
  ProgramRun run(installation);
  EXPECT_FALSE(run.main.SoundOn || run.main.optSound.Checked);
  EXPECT_TRUE(run.main.optSound.Enabled);
  EXPECT_FALSE(run.main.SettingsLoading);
}

TEST(StartUp, WithoutASoundEngineTheBoxStaysDisabled) {
  Installation installation;
  installation.desktop.SoundEngine = 0;
  installation.desktop.Settings[{"Options", "Sounds"}] = "True";
  ProgramRun run(installation);
  EXPECT_FALSE(run.main.optSound.Enabled);
  EXPECT_TRUE(run.main.SoundOn);
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
