#include "storage/start_up.h"

#include "game/layout.h"
#include "game/sound.h"
#include "game/text.h"
#include "storage/best_times.h"
#include "storage/pack_files.h"
#include "storage/platform_files.h"
#include "storage/record_file.h"
#include "storage/replacement.h"
#include "storage/status_panels.h"

namespace bivouac {
namespace {

void CentreWindow(Main& main) {
  const ScreenSize screen = main.desktop.Screen();
  main.Left = (screen.Width - kWindowWidth) / 2;
  main.Top = (screen.Height - kWindowHeight) / 2;
}

void FindFolders(Main& main) {
  Global& global = main.global;
  global.AppDir = WithBackslash(main.desktop.ProgramFolder());
  global.LocalDataDir = WithBackslash(LookupFolder(main.desktop, kLocalDataFolder));
  global.DataDir = global.LocalDataDir + "Bvc";
  // It exists on every start but the first. Where it truly cannot be made, the first pack tells.
  CreateFolders(global.DataDir);
  RemoveLeftOvers(global.DataDir);
  global.DataDir = WithBackslash(global.DataDir);
}

StartSetting SizeSetting() {
  return {"Options", "Size", std::to_string(kMinSize) + " to " + std::to_string(kMaxSize)};
}

void ReadSound(Main& main) {
  main.SoundOn = main.desktop.GetSetting("Options", "Sounds", "False") != "False";
  main.optSound.Checked = main.SoundOn;
}

}  // namespace

std::string LookupFolder(Desktop& desktop, int folderNumber) {
  const FolderAnswer answer = desktop.SpecialFolder(folderNumber);
  if (answer.Code != 0) return "";
  const std::string folder = answer.Path.substr(0, answer.Path.find('\0'));
  const bool endsInSeparator = !folder.empty() && WithBackslash(folder) == folder;
  return endsInSeparator ? folder.substr(0, folder.size() - 1) : folder;
}

void Form_Load(Main& main, FormNamen& form) {
  main.RecordTimes = RecordTimes;
  CentreWindow(main);
  FindFolders(main);
  main.desktop.AttachSound();
  Init_Sound(main);
  Setup_Players(form);
  DependingOn(main, LastPlayerSetting(main.global), [&] { ShowPlayerInTitle(main); });
  if (main.global.PlayerCount > 0) SyncPersonalBests(main);
  main.PuzzleOver = true;
  main.Paused = false;
  main.BoardLive = true;
  ReadSettings(main);
  CopyMissingPacks(main);
  DependingOn(main, SizeSetting(), [&] { CountPacks(main); });
  RefreshButtons(main);
  SizeLayout(main);
  main.Visible = true;
}

void ReadSettings(Main& main) {
  main.SettingsLoading = true;
  ReadSound(main);
  main.BoardSize = DependingOn(
      main, SizeSetting(), [&] { return IntegerFromText(main.desktop.GetSetting("Options", "Size", "12")); });
  ShowSize(main);
  main.SettingsLoading = false;
}

void LoseSound(Main& main) {
  main.optSound.Enabled = false;
  ReadSound(main);
}

void CopyMissingPacks(Main& main) {
  for (int size = kMinSize; size <= kMaxSize; ++size) {
    const std::string pack = PackPath(main.global, size);
    const std::string installed = main.global.AppDir + PackName(size);
    // Whoever was about to put its first puzzle there has died.
    if (CountRecords<PackRecord>(pack).Rounded == 0 && FileExists(installed))
      IgnoringFileErrors([&] { RecordFile<PackRecord>(pack, Access::Write).RemoveIfEmpty(); });
    if (!FileExists(pack)) CopyWholeFile(installed, pack);
  }
}

void cmdExit_Click(Main& main) {
  const MessageBox question{
      .Title = "Quit Bivouac", .Text = "Do you really want to quit ?", .Buttons = BoxButtons::YesNo};
  if (main.desktop.Show(question) == BoxAnswer::Yes) main.desktop.End();
}

void Form_QueryUnload(Main& main) {
  main.desktop.End();
}

}  // namespace bivouac
