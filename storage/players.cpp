#include "storage/players.h"

#include <algorithm>
#include <utility>

#include "game/settings.h"
#include "game/text.h"
#include "storage/shared_file.h"

namespace bivouac {
namespace {

std::string PlayerKey(int player) {
  return "Player" + TwoDigits(player);
}

void SavePlayers(Main& main) {
  const Global& global = main.global;
  KeepSetting(main, "Players", "Count", std::to_string(global.PlayerCount));
  for (int player = 1; player <= global.PlayerCount; ++player) {
    KeepSetting(main, "Players", PlayerKey(player), global.Players[player].Name);
  }
}

/// Lets a player play, or nobody, and closes.
void Choose(FormNamen& form, int player) {
  form.main.global.CurrentPlayer = player;
  KeepSetting(form.main, "Players", "Last_Player", std::to_string(player));
  TellOfLostSettings(form.main);
  form.Visible = false;
}

bool HasSelection(const FormNamen& form) {
  return form.NaamLijst.ListIndex >= 0;
}

/// Number of the selected player; 0 when none is.
int SelectedPlayer(const FormNamen& form) {
  return form.NaamLijst.ListIndex + 1;
}

void Select(FormNamen& form, int index) {
  form.NaamLijst.ListIndex = index;
  NaamLijst_Click(form);
}

/// While a name is edited everything else is barred, but for CommandFree.
void BeginEditing(FormNamen& form, const std::string& name) {
  form.KnopWijzigen.Enabled = false;
  form.KnopNieuweSpeler.Enabled = false;
  form.KnopAnnuleren.Enabled = false;
  form.KnopOK.Enabled = false;
  form.NaamLijst.Enabled = false;
  form.NaamInvoerveld = {FirstCharacters(name, kNameFieldLength), true};
  form.Focus = FormNamen::FocusOn::NaamInvoerveld;
}

void EndEditing(FormNamen& form) {
  form.NaamInvoerveld = {"", false};
  form.KnopWijzigen.Enabled = HasSelection(form);
  form.KnopOK.Enabled = HasSelection(form);
  form.KnopNieuweSpeler.Enabled = true;
  form.KnopAnnuleren.Enabled = true;
  form.NaamLijst.Enabled = true;
  form.Focus = FormNamen::FocusOn::NaamLijst;
}

void Tell(FormNamen& form, const std::string& title, const std::string& text) {
  form.main.desktop.Beep();
  form.main.desktop.Show(MessageBox{.Title = title, .Text = text, .Symbol = BoxSymbol::Information});
}

/// Reads the names of all players. A name that is known already keeps its text in the list.
void ReadNames(FormNamen& form) {
  Global& global = form.main.global;
  global.Players.RedimPreserve(global.PlayerCount);
  form.NaamLijst.Items.resize(static_cast<std::size_t>(global.PlayerCount));
  for (int player = 1; player <= global.PlayerCount; ++player) {
    const std::string key = PlayerKey(player);
    const std::string name = FixedName(form.main.desktop.GetSetting("Players", key, key));
    if (std::exchange(global.Players[player].Name, name) != name)
      form.NaamLijst.Items[static_cast<std::size_t>(player) - 1] = name;
  }
}

/// Takes in what other programs have changed in the list since it was read. Players are never removed: fewer
/// than are known are a damaged setting, and so is a number that is none.
void ReadPlayersAgain(FormNamen& form) {
  int& known = form.main.global.PlayerCount;
  const double count = LeadingNumber(form.main.desktop.GetSetting("Players", "Count", "0"));
  if (!(count >= std::max(known, 1) && count <= kMostPlayers)) return;
  known = static_cast<int>(count);
  ReadNames(form);
}

/// True if a player other than the selected one has that very name.
bool IsNameTaken(const FormNamen& form, const std::string& name) {
  const Global& global = form.main.global;
  for (int player = 1; player <= global.PlayerCount; ++player) {
    if (player != SelectedPlayer(form) && NameOf(global, player) == name) return true;
  }
  return false;
}

/// Gives the name to the selected player, or to a new one if none is selected, and saves it.
void StoreName(FormNamen& form, const std::string& name) {
  Global& global = form.main.global;
  if (!HasSelection(form)) {
    // A damaged setting may have counted below 0: nobody is listed then.
    global.PlayerCount = CheckedInteger(std::max(global.PlayerCount, 0) + 1);
    global.Players.RedimPreserve(global.PlayerCount);
    form.NaamLijst.Items.push_back(name);
    Select(form, static_cast<int>(form.NaamLijst.Items.size()) - 1);
  } else {
    form.NaamLijst.Items[static_cast<std::size_t>(form.NaamLijst.ListIndex)] = name;
  }
  global.Players[SelectedPlayer(form)].Name = FixedName(name);
  SavePlayers(form.main);
}

void TellThereIsNoRoom(Main& main) {
  main.desktop.Show(MessageBox{.Title = "No room for another player",
                               .Text = "There are 99 players, and there is no number left for one more.\n"
                                       "You can edit the name of a player who does not play any more.",
                               .Symbol = BoxSymbol::Information});
}

void TakeName(FormNamen& form) {
  const std::string typed = form.NaamInvoerveld.Text;
  const std::string name = TrimRight(typed);
  if (typed.empty()) {
    return Tell(form, "Loss of memory ?",
                "Did you suffer from memory loss ?\n"
                "Come on, think very deeply, try to remember your own name.");
  }
  if (name.empty()) return Tell(form, "My name is Nobody", "If you want to stay unknown,\nuse a nick name.");
  bool isTaken = false;
  bool isFull = false;
  {
    const FolderTurn turn(form.main.global.DataDir);
    if (!turn.IsMine()) {
      return Tell(form, "The list of players is in use",
                  "Another program is changing the list of players.\nPress Enter again in a moment.");
    }
    ReadPlayersAgain(form);
    isTaken = IsNameTaken(form, name);
    isFull = !HasSelection(form) && form.main.global.PlayerCount >= kMostPlayers;
    if (!isTaken && !isFull) StoreName(form, name);
  }
  if (isTaken) {
    return Tell(form, "Oh no, not another " + name + " !!!",
                "Yeah yeah, I know there are more people having that name,\nbut " + name +
                    " is allready in use.\nA unique name is required,\nso, use your imagination.");
  }
  EndEditing(form);
  isFull ? TellThereIsNoRoom(form.main) : TellOfLostSettings(form.main);
}

}  // namespace

std::string FirstCharacters(const std::string& text, int most) {
  std::string_view rest = text;
  for (; most > 0 && !rest.empty(); --most) rest.remove_prefix(CharacterBytes(rest));
  return text.substr(0, text.size() - rest.size());
}

int CharactersOf(const std::string& text) {
  int characters = 0;
  for (std::string_view rest = text; !rest.empty(); ++characters) rest.remove_prefix(CharacterBytes(rest));
  return characters;
}

std::string FixedName(const std::string& name) {
  const std::string front = FirstCharacters(name, kNameLength);
  return front + std::string(static_cast<std::size_t>(kNameLength - CharactersOf(front)), ' ');
}

std::string NameOf(const Global& global, int player) {
  return TrimRight(global.Players[player].Name);
}

StartSetting LastPlayerSetting(const Global& global) {
  return {"Players", "Last_Player", "0 to " + std::to_string(std::max(global.PlayerCount, 0))};
}

void ShowPlayerInTitle(Main& main) {
  const Global& global = main.global;
  main.Caption = global.CurrentPlayer != 0
                     ? "Bivouac - " + NameOf(global, global.CurrentPlayer) + " is playing"
                     : "Bivouac - Free Play (no player selected)";
}

void Setup_Players(FormNamen& form) {
  Main& main = form.main;
  Global& global = main.global;
  Desktop& desktop = main.desktop;
  global.PlayerCount = DependingOn(main, {"Players", "Count", "0 to " + std::to_string(kMostPlayers)}, [&] {
    return IntegerFromText(desktop.GetSetting("Players", "Count", "0"));
  });
  if (global.PlayerCount >= 1) ReadNames(form);
  global.CurrentPlayer = DependingOn(main, LastPlayerSetting(global), [&] {
    return IntegerFromText(desktop.GetSetting("Players", "Last_Player", "0"));
  });
}

void cmdPlayers_Click(Main& main) {
  main.desktop.ShowPlayerDialog();
  ShowPlayerInTitle(main);
}

void Form_Activate(FormNamen& form) {
  // The list, unless a name stands half edited since the last showing: what is disabled gets no focus.
  form.Focus = form.NaamLijst.Enabled ? FormNamen::FocusOn::NaamLijst : FormNamen::FocusOn::NaamInvoerveld;
  Select(form, -1);
}

void NaamLijst_Click(FormNamen& form) {
  form.KnopOK.Enabled = HasSelection(form);
  form.KnopWijzigen.Enabled = HasSelection(form);
}

void NaamLijst_DblClick(FormNamen& form) {
  NaamLijst_Click(form);
  if (HasSelection(form)) KnopOK_Click(form);
}

void KnopOK_Click(FormNamen& form) {
  Choose(form, SelectedPlayer(form));
}

void CommandFree_Click(FormNamen& form) {
  Choose(form, 0);
}

void KnopAnnuleren_Click(FormNamen& form) {
  form.Visible = false;
}

void KnopNieuweSpeler_Click(FormNamen& form) {
  if (form.main.global.PlayerCount >= kMostPlayers) return TellThereIsNoRoom(form.main);
  Select(form, -1);
  BeginEditing(form, "");
}

void KnopWijzigen_Click(FormNamen& form) {
  BeginEditing(form, NameOf(form.main.global, SelectedPlayer(form)));
}

void NaamInvoerveld_KeyPress(FormNamen& form, Key key) {
  switch (key) {
    case Key::Escape:
      EndEditing(form);
      break;
    case Key::Enter:
      TakeName(form);
      break;
  }
}

}  // namespace bivouac
