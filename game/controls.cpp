#include "game/controls.h"

#include <algorithm>
#include <array>

#include "game/game_state.h"

namespace bivouac {
namespace {

using enum ControlKind;

constexpr std::string_view kRules =
    "RULES: Each Tree must have it's own tent next to him, horizontal or vertical. Tents cannot be next to "
    "eachother, even diagonal, there must be at least one field, not containing a Tent, between two Tents. "
    "For each row and column it's indicated how many Tents are in that row or column. While solving, you can "
    "click on any Tree to find out where his Tent is located, or click the \"Hint\" button for other hints. "
    "Note that this will cost a time penalty.";

constexpr std::string_view kWebTip = "Click for Fernlark Website";

// clang-format off
constexpr auto kControls = std::to_array<ControlRow>({
    {"cmdOptions",   Button,     {6960,  360, 1095,  375}, "Size...",     0xFFC080,       "",             "Chooses the size of the board",           "",                    &Main::cmdOptions},
    {"LabelTijd",    Figure,     {7080,  960,  855,  375}, "00:00",       0xC0FFC0,       "Elapsed time", "",                                        "",                    nullptr,             &Main::LabelTijd},
    {"cmdPause",     Button,     {6960, 1440, 1095,  375}, "Pause",       0x80FF80,       "",             "Stops the clock and hides the board",     "P",                   &Main::cmdPause},
    {"cmdGenerate",  Button,     {6960, 2040, 1095,  375}, "New",         0xFFFF80,       "",             "Makes a new puzzle",                      "Ctrl+N",              &Main::cmdGenerate},
    {"cmdOpen",      Button,     {6960, 2520, 1095,  375}, "Open...",     0xFFFF80,       "",             "Opens a puzzle by its number, F2 lists all", "Ctrl+O",              &Main::cmdOpen},
    {"cmdNext",      Button,     {6960, 3000, 1095,  375}, "Next",        0xFFFF80,       "",             "Opens the next puzzle",                   "Ctrl+Right",          &Main::cmdNext},
    {"cmdRestart",   Button,     {6960, 3600, 1095,  375}, "Restart",     0xFF8080,       "",             "Starts the puzzle again",                 "Ctrl+R",              &Main::cmdRestart},
    {"cmdSolution",  Button,     {6960, 4080, 1095,  375}, "Solution",    0xFF8080,       "",             "Shows the solution and ends the game",    "",                    &Main::cmdSolution},
    {"cmdUndo",      Button,     {6960, 4680, 1095,  375}, "Undo",        0xFF80FF,       "",             "Takes the last step back",                "Ctrl+Z",              &Main::cmdUndo},
    {"LabelStap",    Figure,     {7200, 5160,  615,  375}, "0",           0xFFC0FF,       "Step counter", "",                                        "",                    nullptr,             &Main::LabelStap},
    {"cmdRedo",      Button,     {6960, 5640, 1095,  375}, "Redo",        0xFF80FF,       "",             "Does the step again that was taken back", "Ctrl+Shift+Z Ctrl+Y", &Main::cmdRedo},
    {"optSound",     CheckBox,   {6960, 6480, 1095,  375}, "Sounds",      0xE0E0E0,       "",             "Turns sounds on and off"},
    {"cmdHint",      Button,     {6960, 7080, 1095,  375}, "Hint",        0x8080FF,       "",             "Explains a step, at a price in seconds",  "H",                   &Main::cmdHint},
    {"cmdPlayers",   Button,     {6960, 7680, 1095,  375}, "Players...",  0x80FFFF,       "",             "Chooses who plays",                       "",                    &Main::cmdPlayers},
    {"cmdExit",      Button,     {6960, 8280, 1095,  375}, "Exit",        kSystemDefault, "",             "Ends the program",                        "Ctrl+Q",              &Main::cmdExit},
    {"cmdResetTime", Button,     { 120, 8280, 1455,  375}, "Reset Times", kSystemDefault, "",             "Clears the times of this size",           "",                    &Main::cmdResetTime},
    {"Label2",       Link,       { 120, 7560, 1455,  495}, "Software",    0xFF0000,       kWebTip,        "",                                        "",                    nullptr,             nullptr,          0xFFFFFF},
    {"Label3",       Link,       { 120, 7080, 1455,  495}, "Fernlark",    0xFFFF00,       kWebTip,        "",                                        "",                    nullptr,             nullptr,          0x0000FF},
    {"lblHint",      Text,       {1680, 7080, 5175, 1575}, kRules,        0xC0C0FF,       "",             "Rules and hints",                         "",                    nullptr,             &Main::lblHint},
    {"Shield",       PictureBox, { 120,  120, 6795, 6795}, "",            0xFFFFFF,       "",             "Hides the board during a pause"},
    // Picture1 lies on Shield and is measured from its corner.
    {"Picture1",     Picture,    {1440, 2400, 3615, 1575}, "",            0xFFFFFF,       "",             ""},
});

constexpr auto kPanels = std::to_array<PanelRow>({
    {1676, "Size: 12x12",                         "Size of current puzzle"},
    {1323, "Level: 0",                            "Level of current puzzle"},
    {1940, "Puzzle #: --",                        "Number of current puzzle"},
    {2469, "Total Puzzles: --",                   "Total puzzles in pack"},
    {4586, "Best Time: --:-- (No Best Time Yet)", "Best Time for current puzzle"},
    {2284, "Your Time: --:--",                    "Your time for current puzzle"},
});
// clang-format on

static_assert(kControls.size() == 21 && kPanels.size() == 6);

}  // namespace

std::span<const ControlRow> ControlTable() {
  return kControls;
}

const ControlRow& ControlNamed(std::string_view name) {
  return *std::find_if(kControls.begin(), kControls.end(),
                       [&](const ControlRow& row) { return row.Name == name; });
}

std::span<const PanelRow> PanelTable() {
  return kPanels;
}

std::string_view RulesText() {
  return kRules;
}

}  // namespace bivouac
