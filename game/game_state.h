// The state of the game: everything that procedures share stands in Main and Global.
#pragma once

#include <string>

#include "game/array.h"
#include "game/controls.h"
#include "game/desktop.h"
#include "game/records.h"

namespace bivouac {

/// Cell codes. They are also the numbers of the tiles that show them.
enum : int { CELL_OPEN = 0, CELL_GRASS = 1, CELL_TENT = 2, CELL_TREE = 3 };
/// What the number of a code's highlighted tile, for blinking, is more than the code.
inline constexpr int kHighlight = 4;

/// Tent directions. Any other value: the tree has no tent.
enum : int { NORTH = 1, EAST = 2, SOUTH = 3, WEST = 4 };

struct Player {
  std::string Name;  ///< 16 characters, filled up with blanks; see FixedName in storage.
};

/// What the window, the dialog of the players and the file routines share.
struct Global {
  int PlayerCount = 0;
  int CurrentPlayer = 0;     ///< Counted from 1; 0 is free play.
  Array<Player> Players{1};  ///< Indexes 1 to PlayerCount.

  std::string AppDir;        ///< The program's folder. All three folders end in the separator.
  std::string LocalDataDir;  ///< The user's local application data.
  std::string DataDir;       ///< Where packs and best times live.

  PackRecord PuzzleRec;        ///< The current puzzle.
  PersonalRecord PersonalRec;  ///< The current player's own time for it.
  int PersonalPos = 0;         ///< Record number of PersonalRec in the player's file; 0 when it has none.
};

/// Whether something could not be kept, and the player knows.
enum class Loss { None, Untold, Told };

/// The one window and the game in it. Flat arrays are indexed row * BoardSize + column, row 0 at the top.
struct Main {
  Main(Global& global_, Desktop& desktop_);
  Main(const Main&) = delete;
  Main& operator=(const Main&) = delete;

  Global& global;
  Desktop& desktop;

  // The board.
  Array<int> Board;     ///< The player's present state, cell codes.
  Array<int> TentDir;   ///< Direction of each tree's tent; meaningful at trees only.
  Array<int> Solution;  ///< The solved board, rebuilt at every start of play; the generator's proof uses it
                        ///< as scratch.
  int BoardSize = 12;   ///< N, 6 to 18.
  int CellCount = 0;    ///< N * N.
  int TreeCount = 0;    ///< Trees on the board, which is the number of tents of the solution.

  // The puzzle.
  int PuzzleNo = 0;     ///< Number in the pack, counted from 1; 0 when there is none.
  bool InPack = false;  ///< The puzzle was read from the pack under that number, or saved there.
  int Level = 0;
  float Difficulty = 0;                   ///< Set by the rating.
  FixedArray<int, kSizes> PuzzleCount{};  ///< Puzzles in the pack of each size, index BoardSize - 6.

  // Moves. MoveLog holds one cell a click, at the value that StepCount has after it.
  Array<int> MoveLog{1};
  int StepCount = 0;        ///< Clicks in force, 16 bits.
  int MoveLogTop = 0;       ///< Valid entries of MoveLog; above StepCount exactly when redo is possible.
  int RememberedStep = -1;  ///< A step to come back to; -1 when there is none.

  // State of play.
  bool PuzzleOver = false;  ///< No game in progress.
  bool Paused = false;
  bool BoardLive = false;  ///< False while a hint is on show and while it rolls moves back.
  bool SettingsLoading = false;

  // The clock, in seconds.
  std::string ClockText;  ///< The time of day as last read.
  int ClockStart = 0;     ///< Second of the day at which the clock stood at zero.
  int ClockNow = 0;       ///< Second of the day last read.
  int Elapsed = 0;        ///< On the clock, penalties included.
  int PausedMinutes = 0;
  int PausedSeconds = 0;

  // Blinking and the waiting animation.
  bool BlinkPhase = false;
  Array<int> BlinkCell;  ///< Cells of the marks of the present hint.
  Array<int> BlinkTile;  ///< Tile of each mark, signed; see AddBlink.
  int BlinkTop = -1;     ///< Index of the last mark; -1 when there is none.
  bool GenFirstTick = false;
  bool GenEnds = false;       ///< The making of a puzzle of a level is to end.
  int AnimationColour = 0;    ///< 0 to 2.
  int AnimationPosition = 0;  ///< 0 to 8.

  // Sound.
  FixedArray<int, 12> SoundId{};  ///< By number of the sound; the last two are not used.
  bool SoundOn = false;

  // The window and its controls.
  std::string Caption = "Bivouac";
  int Left = 0;  ///< Twips.
  int Top = 0;
  bool Visible = false;
  FixedArray<ImageCell, kMaxCells> Grid;
  FixedArray<Label, kMaxSize> RowCnt;  ///< The captions are the store of the clues.
  FixedArray<Label, kMaxSize> ColCnt;
  Button cmdOptions, cmdPause, cmdGenerate, cmdOpen, cmdNext, cmdRestart, cmdSolution, cmdUndo, cmdRedo;
  Button cmdHint, cmdPlayers, cmdExit, cmdResetTime;
  CheckBox optSound;
  Label LabelTijd, LabelStap, lblHint;
  PictureBox Shield;
  Timer Timer1{false, 200};         ///< Waiting animation.
  Timer Timer2{false, 200};         ///< Blinking.
  Timer Timer3{false, 250};         ///< Clock.
  FixedArray<Panel, 6> StatusBar1;  ///< Panel 1 is entry 0; see PanelOf.

  Loss LostSettings = Loss::None;
  Loss LostTimes = Loss::None;  ///< The player's own.

  /// Keeps the times of a solved puzzle. The one call that runs up the house: start-up sets it.
  void (*RecordTimes)(Main& main) = nullptr;
};

/// The panel of that number, 1 to 6.
inline Panel& PanelOf(Main& main, int number) {
  return main.StatusBar1[number - 1];
}

}  // namespace bivouac
