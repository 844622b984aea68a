// The controls of the window as plain values. Rules read and write them; the window only draws them.
#pragma once

#include <span>
#include <string>
#include <string_view>

namespace bivouac {

/// Text colours that rules give to clue labels. Green and red have the value blue * 65536 + green * 256 +
/// red.
enum class TextColour { WindowText = -1, Red = 255, Green = 65280 };

/// Position and size in twips, 15 to a pixel at the usual screen setting, from the window's inner corner.
struct Place {
  int Left = 0;
  int Top = 0;
  int Width = 0;
  int Height = 0;

  friend bool operator==(const Place&, const Place&) = default;
};

struct Label {
  std::string Caption;
  TextColour ForeColor = TextColour::WindowText;
  bool Visible = true;
  Place At;
};

struct Button {
  bool Enabled = true;
};

struct CheckBox {
  bool Enabled = true;
  bool Checked = false;
};

/// A cell of the board: shows the tile picture of this number, 0 to 7, stretched to its size.
struct ImageCell {
  int Picture = 0;
  bool Visible = false;
  Place At;
};

struct PictureBox {
  bool Visible = false;
};

/// Interval in milliseconds.
struct Timer {
  bool Enabled = false;
  int Interval = 0;
};

/// A panel of the status bar. The tag is never shown.
struct Panel {
  std::string Text;
  std::string Tag;
};

/// What a control is, which also tells how it looks.
enum class ControlKind {
  Button,
  Figure,  ///< A label of one large number.
  Text,    ///< A label of many words, which takes clicks.
  Link,
  CheckBox,
  PictureBox,
  Picture,
};

struct Main;

/// What a control of the main window is and where it stands, fixed at design.
struct ControlRow {
  std::string_view Name;
  ControlKind Kind;
  Place At;
  std::string_view Caption;
  int Background;  ///< Red, green, blue as 0xRRGGBB; kSystemDefault for the system's own.
  std::string_view ToolTip;
  std::string_view Description;       ///< What it does, where no tool tip says so.
  std::string_view Keys = "";         ///< That press a button, with blanks between.
  Button Main::*ItsButton = nullptr;  ///< The value of a button.
  Label Main::*ItsLabel = nullptr;    ///< The value of a label whose caption changes.
  int Foreground = 0x000000;
};

struct PanelRow {
  int Width;  ///< Share of the bar's width; the six add up to kPanelWidths.
  std::string_view Text;
  std::string_view ToolTip;
};

inline constexpr int kSystemDefault = -1;
inline constexpr int kWindowBackground = 0xE0E0E0;
inline constexpr int kWindowWidth = 8175;  ///< Inner size, twips.
inline constexpr int kWindowHeight = 9030;
inline constexpr int kStatusBarHeight = 375;
inline constexpr int kPanelWidths = 14278;
inline constexpr int kTwipsPerPixel = 15;

/// The controls of the main window in the order of the keyboard's tabs, the grid, clue labels and status bar
/// apart.
std::span<const ControlRow> ControlTable();
/// The row of that name. Requires: the name stands in the table.
const ControlRow& ControlNamed(std::string_view name);
/// The six panels of the status bar; panel 1 is entry 0.
std::span<const PanelRow> PanelTable();
/// The caption of lblHint until the first hint.
std::string_view RulesText();

}  // namespace bivouac
