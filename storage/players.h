// The list of players and the dialog that shows it, as values. The window draws the dialog.
#pragma once

#include <string>
#include <vector>

#include "game/game_state.h"
#include "game/settings.h"

namespace bivouac {

inline constexpr int kMostPlayers = 99;  ///< Names of files and settings have two digits for the number.

inline constexpr int kNameLength = 16;       ///< Characters of a stored name, Unicode code points.
inline constexpr int kNameFieldLength = 15;  ///< Characters that the field takes.

/// Characters of a text in UTF-8, counted as Unicode code points, and the first of them, at most that many.
int CharactersOf(const std::string& text);
std::string FirstCharacters(const std::string& text, int most);
/// The name cut or filled up with blanks to 16 characters.
std::string FixedName(const std::string& name);
/// A player's name without trailing blanks. Errors: IndexOutsideArray if there is no such player.
std::string NameOf(const Global& global, int player);
/// The setting that holds CurrentPlayer, for a step of the start that depends on it.
StartSetting LastPlayerSetting(const Global& global);
/// Sets the title of the window to who plays. Errors: IndexOutsideArray if there is no such player.
void ShowPlayerInTitle(Main& main);

struct ListBox {
  std::vector<std::string> Items;
  int ListIndex = -1;  ///< -1: none selected.
  bool Enabled = true;
};

struct TextBox {
  std::string Text;
  bool Enabled = true;
};

/// The dialog of the players. It stays loaded for the whole run; closing hides it, and what was being edited
/// stands there again at the next showing.
struct FormNamen {
  explicit FormNamen(Main& main_) : main(main_) {}
  FormNamen(const FormNamen&) = delete;
  FormNamen& operator=(const FormNamen&) = delete;

  enum class FocusOn { NaamLijst, NaamInvoerveld };

  Main& main;
  ListBox NaamLijst;
  TextBox NaamInvoerveld{"", false};
  Button KnopNieuweSpeler, KnopWijzigen{false}, KnopOK{false}, CommandFree, KnopAnnuleren;
  FocusOn Focus = FocusOn::NaamLijst;  ///< Where the last handler put the focus.
  bool Visible = false;                ///< Set by whoever shows it; every way to close it clears it.
};

inline constexpr const char* kPlayerDialogText =
    "Add or Edit Player and/or Select Player and press OK -or- Press Cancel for Free Play (NoPlayer "
    "Selected)";

enum class Key { Enter, Escape };

/// Reads the players and the last one from the settings into Global and the list. Errors: NotANumber,
/// Overflow. That the last one is in the list is not checked.
void Setup_Players(FormNamen& form);
/// Shows the dialog by Desktop::ShowPlayerDialog, then who plays in the title.
void cmdPlayers_Click(Main& main);

/// On each showing: no entry is selected and the list has the focus.
void Form_Activate(FormNamen& form);
/// Requires for both: ListIndex holds the new selection already.
void NaamLijst_Click(FormNamen& form);
void NaamLijst_DblClick(FormNamen& form);
void KnopOK_Click(FormNamen& form);
void CommandFree_Click(FormNamen& form);
/// Closes without changes; what the close box runs too.
void KnopAnnuleren_Click(FormNamen& form);
/// Refuses, with a box, when there are 99 players.
void KnopNieuweSpeler_Click(FormNamen& form);
/// Errors: IndexOutsideArray if no player is selected; the button is disabled then.
void KnopWijzigen_Click(FormNamen& form);
/// The two keys that the field does not pass through. Requires: NaamInvoerveld.Text is what the field holds.
void NaamInvoerveld_KeyPress(FormNamen& form, Key key);

}  // namespace bivouac
