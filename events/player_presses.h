// What a player can press in the dialog of the players. Whoever draws it sends every press through here.
#pragma once

#include <span>
#include <string>

#include "events/event_road.h"
#include "storage/players.h"

namespace bivouac {

struct PlayerButtonRow {
  const char* Name;
  const char* Caption;  ///< With "&" before the letter that presses it.
  const char* Description;
  Button FormNamen::*Value;
  void (*Click)(FormNamen& form);
};

/// The buttons of the dialog from top to bottom.
std::span<const PlayerButtonRow> PlayerButtonTable();

/// What assistive tools are told of the rest of the dialog.
struct PlayerControlRow {
  const char* ObjectName;
  const char* Name;
  const char* Description;
};
inline constexpr PlayerControlRow kPlayerForm{"FormNamen", "Players", "Chooses who plays"};
inline constexpr PlayerControlRow kPlayerText{"Label1", kPlayerDialogText, "What to do here"};
inline constexpr PlayerControlRow kPlayerList{"NaamLijst", "Players", "The names of the players"};
inline constexpr PlayerControlRow kPlayerField{"NaamInvoerveld", "Name",
                                               "The name of the player. Enter keeps it, Escape drops it"};

/// True while no press counts: under a box over the dialog, and for a hidden dialog, whoever presses what
/// once was shown.
bool IsHeld(const FormNamen& form, const EventRoad& road);

/// Presses a button. A disabled one does nothing.
void PressPlayerButton(FormNamen& form, const PlayerButtonRow& row);
/// Selects the entry of that index, -1 for none.
void SelectPlayer(FormNamen& form, int index);
/// Takes what was typed into the field, of which `before` lies in front of the cursor and `after` behind it.
/// What was just put there is cut until the field holds no more than it takes. Returns what is left of
/// `before`.
std::string TypeName(FormNamen& form, const std::string& before, const std::string& after);
/// Enter on the list chooses the selected player.
void PressEnterOnList(FormNamen& form);
/// Escape anywhere: closes the dialog, or drops the name that is being edited.
void PressEscape(FormNamen& form);
/// The entry that an arrow key selects; -1 if the list's own rules hold: with none selected, the first.
int SelectedByFirstArrow(const FormNamen& form);

}  // namespace bivouac
