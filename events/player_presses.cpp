#include "events/player_presses.h"

#include <algorithm>
#include <array>

namespace bivouac {
namespace {

constexpr auto kButtons = std::to_array<PlayerButtonRow>({
    {"KnopNieuweSpeler", "&New Player", "Adds a player", &FormNamen::KnopNieuweSpeler,
     KnopNieuweSpeler_Click},
    {"KnopWijzigen", "&Edit Player", "Changes the name of the selected player", &FormNamen::KnopWijzigen,
     KnopWijzigen_Click},
    {"KnopOK", "&OK", "Plays as the selected player", &FormNamen::KnopOK, KnopOK_Click},
    {"CommandFree", "&Free Play", "Plays as nobody: no times are kept", &FormNamen::CommandFree,
     CommandFree_Click},
    {"KnopAnnuleren", "&Cancel", "Closes without a change of player", &FormNamen::KnopAnnuleren,
     KnopAnnuleren_Click},
});

}  // namespace

std::span<const PlayerButtonRow> PlayerButtonTable() {
  return kButtons;
}

bool IsHeld(const FormNamen& form, const EventRoad& road) {
  return !form.Visible || road.Modals() > 1;
}

void PressPlayerButton(FormNamen& form, const PlayerButtonRow& row) {
  if ((form.*row.Value).Enabled) row.Click(form);
}

void SelectPlayer(FormNamen& form, int index) {
  form.NaamLijst.ListIndex = index;
  NaamLijst_Click(form);
}

std::string TypeName(FormNamen& form, const std::string& before, const std::string& after) {
  const int room = kNameFieldLength - CharactersOf(after);
  std::string head = FirstCharacters(before, std::max(room, 0));
  form.NaamInvoerveld.Text = head + after;
  return head;
}

void PressEnterOnList(FormNamen& form) {
  if (form.KnopOK.Enabled) KnopOK_Click(form);
}

void PressEscape(FormNamen& form) {
  if (form.KnopAnnuleren.Enabled) return KnopAnnuleren_Click(form);
  NaamInvoerveld_KeyPress(form, Key::Escape);
}

int SelectedByFirstArrow(const FormNamen& form) {
  return form.NaamLijst.ListIndex < 0 && !form.NaamLijst.Items.empty() ? 0 : -1;
}

}  // namespace bivouac
