#include "storage/players.h"

#include <gtest/gtest.h>
#include <optional>

#include "tests/support/installation.h"

namespace bivouac {
namespace {

/// The enabled state as letters: list, field, New, Edit, OK, Free Play, Cancel; a dash for a disabled one.
std::string EnabledIn(const FormNamen& form) {
  const bool states[] = {form.NaamLijst.Enabled,        form.NaamInvoerveld.Enabled,
                         form.KnopNieuweSpeler.Enabled, form.KnopWijzigen.Enabled,
                         form.KnopOK.Enabled,           form.CommandFree.Enabled,
                         form.KnopAnnuleren.Enabled};
  std::string text = "LFNEOPC";
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (!states[i]) text[i] = '-';
  }
  return text;
}

constexpr const char* kNothingSelected = "L-N--PC";
constexpr const char* kSelected = "L-NEOPC";
constexpr const char* kEditing = "-F---P-";

struct PlayersTest : testing::Test {
  PlayersTest() {
    installation.AddPlayers({"Ann", "Ben"});
    run.emplace(installation);
    Form_Activate(Form());
  }
  FormNamen& Form() { return run->form; }
  void Select(int index) {
    Form().NaamLijst.ListIndex = index;
    NaamLijst_Click(Form());
  }
  void Enter(const std::string& name) {
    Form().NaamInvoerveld.Text = name;
    NaamInvoerveld_KeyPress(Form(), Key::Enter);
  }
  std::string Setting(const char* key) { return installation.desktop.Settings[{"Players", key}]; }

  Installation installation;
  std::optional<ProgramRun> run;
};

TEST(PlayerNames, AreSixteenCharactersWhateverTheirBytes) {
  const std::string blanks(16, ' ');
  EXPECT_EQ(FixedName(""), blanks);
  EXPECT_EQ(FixedName("Zoë"), "Zoë" + std::string(13, ' '));
  EXPECT_EQ(FixedName("abcdefghijklmnopq"), "abcdefghijklmnop");
  EXPECT_EQ(FixedName("äöüäöüäöüäöüäöüäö"), "äöüäöüäöüäöüäöüä");
  EXPECT_EQ(FixedName("1234567890123😀😀😀😀"), "1234567890123😀😀😀");
  // Bytes that are no UTF-8 count one each.
  EXPECT_EQ(FixedName("\xFF\xC3"), "\xFF\xC3" + std::string(14, ' '));
  EXPECT_EQ(FixedName(std::string(20, '\xE2')), std::string(16, '\xE2'));
}

TEST(PlayerNames, ComeFromTheSettingsOrTheirKeys) {
  Installation installation;
  installation.AddPlayers({"A name far longer than the field", ""});
  installation.desktop.Settings[{"Players", "Count"}] = "3";
  ProgramRun run(installation);
  EXPECT_EQ(run.global.PlayerCount, 3);
  EXPECT_EQ(NameOf(run.global, 1), "A name far longe");
  EXPECT_EQ(NameOf(run.global, 2), "");
  EXPECT_EQ(run.global.Players[3].Name, "Player03        ");
  EXPECT_EQ(run.form.NaamLijst.Items.back(), "Player03        ");
  EXPECT_EQ(run.main.Caption, "Bivouac -  is playing");
}

TEST_F(PlayersTest, EachShowingBeginsWithNothingSelected) {
  EXPECT_EQ(run->main.Caption, "Bivouac - Ben is playing");
  EXPECT_EQ(EnabledIn(Form()), kNothingSelected);
  Select(1);
  EXPECT_EQ(EnabledIn(Form()), kSelected);
  Form_Activate(Form());
  EXPECT_EQ(Form().NaamLijst.ListIndex, -1);
  EXPECT_EQ(EnabledIn(Form()), kNothingSelected);
  EXPECT_EQ(Form().Focus, FormNamen::FocusOn::NaamLijst);
}

TEST_F(PlayersTest, EveryWayToCloseSaysWhoPlays) {
  struct Case {
    int Selected;
    void (*Close)(FormNamen&);
    int Player;
    const char* Title;
  };
  const Case cases[] = {
      {0, KnopOK_Click, 1, "Bivouac - Ann is playing"},
      {1, NaamLijst_DblClick, 2, "Bivouac - Ben is playing"},
      {0, KnopAnnuleren_Click, 2, "Bivouac - Ben is playing"},
      {1, CommandFree_Click, 0, "Bivouac - Free Play (no player selected)"},
      {1, KnopAnnuleren_Click, 0, "Bivouac - Free Play (no player selected)"},
  };
  for (const Case& one : cases) {
    installation.desktop.PlayerDialog = [&] {
      Form().Visible = true;
      Form_Activate(Form());
      Select(one.Selected);
      one.Close(Form());
      EXPECT_FALSE(Form().Visible);
    };
    cmdPlayers_Click(run->main);
    EXPECT_EQ(run->global.CurrentPlayer, one.Player);
    EXPECT_EQ(Setting("Last_Player"), std::to_string(one.Player));
    EXPECT_EQ(run->main.Caption, one.Title);
  }
  Form().Visible = true;
  Select(-1);
  NaamLijst_DblClick(Form());
  EXPECT_TRUE(Form().Visible) << "a double click beside the names chooses nobody";
}

TEST_F(PlayersTest, AddingAPlayer) {
  Select(0);
  KnopNieuweSpeler_Click(Form());
  EXPECT_EQ(EnabledIn(Form()), kEditing);
  EXPECT_EQ(Form().NaamInvoerveld.Text, "");
  EXPECT_EQ(Form().Focus, FormNamen::FocusOn::NaamInvoerveld);
  Enter(" Zoë  ");
  EXPECT_EQ(EnabledIn(Form()), kSelected);
  EXPECT_EQ(Form().NaamLijst.ListIndex, 2);
  EXPECT_EQ(Form().NaamLijst.Items.back(), " Zoë");
  EXPECT_EQ(Form().NaamInvoerveld.Text, "");
  EXPECT_EQ(Form().Focus, FormNamen::FocusOn::NaamLijst);
  EXPECT_EQ(run->global.Players[3].Name, " Zoë            ");
  EXPECT_EQ(Setting("Count"), "3");
  EXPECT_EQ(Setting("Player01"), "Ann             ");
  EXPECT_EQ(Setting("Player03"), " Zoë            ");
  KnopAnnuleren_Click(Form());
  EXPECT_EQ(run->global.CurrentPlayer, 2);
  EXPECT_EQ(Setting("Last_Player"), "2");
  EXPECT_TRUE(installation.TakeBoxes().empty());
}

TEST_F(PlayersTest, RenamingAPlayer) {
  Select(1);
  KnopWijzigen_Click(Form());
  EXPECT_EQ(EnabledIn(Form()), kEditing);
  EXPECT_EQ(Form().NaamInvoerveld.Text, "Ben");
  Enter("Ben");
  EXPECT_TRUE(installation.TakeBoxes().empty()) << "the own name is free";
  KnopWijzigen_Click(Form());
  Enter("ann");
  EXPECT_TRUE(installation.TakeBoxes().empty()) << "case counts";
  EXPECT_EQ(EnabledIn(Form()), kSelected);
  EXPECT_EQ(Form().NaamLijst.Items, (std::vector<std::string>{"Ann             ", "ann"}));
  EXPECT_EQ(Setting("Player02"), "ann             ");
  EXPECT_EQ(Setting("Count"), "2");
}

TEST_F(PlayersTest, EscapeLeavesEditingAsItWas) {
  KnopNieuweSpeler_Click(Form());
  Form().NaamInvoerveld.Text = "Cato";
  NaamInvoerveld_KeyPress(Form(), Key::Escape);
  EXPECT_EQ(EnabledIn(Form()), kNothingSelected);
  EXPECT_EQ(Form().NaamInvoerveld.Text, "");
  Select(0);
  KnopWijzigen_Click(Form());
  NaamInvoerveld_KeyPress(Form(), Key::Escape);
  EXPECT_EQ(EnabledIn(Form()), kSelected);
  EXPECT_EQ(Form().NaamLijst.ListIndex, 0);
  EXPECT_EQ(Form().Focus, FormNamen::FocusOn::NaamLijst);
  EXPECT_EQ(run->global.PlayerCount, 2);
}

TEST_F(PlayersTest, BadNamesAreJokedAboutAndEditingGoesOn) {
  const std::pair<const char*, const char*> cases[] = {
      {"",
       "Loss of memory ?|Did you suffer from memory loss ?\nCome on, think very deeply, try to remember "
       "your own name.|Information"},
      {"   ", "My name is Nobody|If you want to stay unknown,\nuse a nick name.|Information"},
      {"Ben  ",
       "Oh no, not another Ben !!!|Yeah yeah, I know there are more people having that name,\nbut Ben is "
       "allready in use.\nA unique name is required,\nso, use your imagination.|Information"},
  };
  for (const int selected : {-1, 0}) {
    Select(selected);
    if (selected < 0) {
      KnopNieuweSpeler_Click(Form());
    } else {
      KnopWijzigen_Click(Form());
    }
    for (const auto& [name, box] : cases) {
      installation.desktop.Beeps = 0;
      Enter(name);
      EXPECT_EQ(installation.TakeBoxes(), std::vector<std::string>{box});
      EXPECT_EQ(installation.desktop.Beeps, 1);
      EXPECT_EQ(EnabledIn(Form()), kEditing);
      EXPECT_EQ(Form().NaamInvoerveld.Text, name);
    }
    NaamInvoerveld_KeyPress(Form(), Key::Escape);
  }
  EXPECT_EQ(run->global.PlayerCount, 2);
}

TEST_F(PlayersTest, FreePlayInTheMiddleOfANameKeepsEverything) {
  Select(0);
  KnopWijzigen_Click(Form());
  Form().NaamInvoerveld.Text = "Cato";
  CommandFree_Click(Form());
  EXPECT_EQ(run->global.CurrentPlayer, 0);
  Form_Activate(Form());
  EXPECT_EQ(EnabledIn(Form()), kEditing);
  EXPECT_EQ(Form().NaamInvoerveld.Text, "Cato");
  EXPECT_EQ(NameOf(run->global, 1), "Ann");
}

TEST(Players, NinetyNineAreTheMost) {
  Installation installation;
  installation.desktop.Settings[{"Players", "Count"}] = "98";
  ProgramRun run(installation);
  Form_Activate(run.form);
  KnopNieuweSpeler_Click(run.form);
  run.form.NaamInvoerveld.Text = "Last";
  NaamInvoerveld_KeyPress(run.form, Key::Enter);
  EXPECT_EQ((installation.desktop.Settings[{"Players", "Player99"}]), FixedName("Last"));

  const auto settings = installation.desktop.Settings;
  KnopNieuweSpeler_Click(run.form);
  EXPECT_EQ(installation.desktop.Titles(), std::vector<std::string>{"No room for another player"});
  EXPECT_EQ(EnabledIn(run.form), kSelected);
  EXPECT_EQ(run.global.PlayerCount, 99);
  EXPECT_EQ(installation.desktop.Settings, settings);
}

}  // namespace
}  // namespace bivouac
