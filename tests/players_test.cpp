#include "storage/players.h"

#include <gtest/gtest.h>
#include <optional>

#include "tests/support/installation.h"

namespace bivouac {
namespace {

using Focus = FormNamen::FocusOn;

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
  void Type(const std::string& name, Key key) {
    Form().NaamInvoerveld.Text = name;
    NaamInvoerveld_KeyPress(Form(), key);
  }
  void ExpectState(const char* enabled, int selected, const std::string& field, Focus focus) {
    EXPECT_EQ(EnabledIn(Form()), enabled);
    EXPECT_EQ(Form().NaamLijst.ListIndex, selected);
    EXPECT_EQ(Form().NaamInvoerveld.Text, field);
    EXPECT_EQ(Form().Focus, focus);
  }
  std::string Setting(const char* key) { return installation.desktop.Settings[{"Players", key}]; }

  Installation installation;
  std::optional<ProgramRun> run;
};

TEST(PlayerNames, AreSixteenCharactersWhateverTheirBytes) {
  EXPECT_EQ(FixedName("Zoë"), "Zoë" + std::string(13, ' '));
  EXPECT_EQ(FixedName("äöüäöüäöüäöüäöüäö"), "äöüäöüäöüäöüäöüä");
  EXPECT_EQ(FixedName("1234567890123😀😀😀😀"), "1234567890123😀😀😀");
  // Bytes that are no UTF-8 count one each.
  EXPECT_EQ(FixedName("\xFF\xC3"), "\xFF\xC3" + std::string(14, ' '));
  EXPECT_EQ(FixedName(std::string(20, '\xE2')), std::string(16, '\xE2'));
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
      ExpectState(kNothingSelected, -1, "", Focus::NaamLijst);
      Select(one.Selected);
      EXPECT_EQ(EnabledIn(Form()), kSelected);
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

TEST_F(PlayersTest, AddingAndRenamingPlayers) {
  Select(0);
  KnopNieuweSpeler_Click(Form());
  EXPECT_EQ(EnabledIn(Form()), kEditing);
  EXPECT_EQ(Form().Focus, Focus::NaamInvoerveld);
  Type(" Zoë  ", Key::Enter);
  ExpectState(kSelected, 2, "", Focus::NaamLijst);
  EXPECT_EQ(Form().NaamLijst.Items.back(), " Zoë");
  EXPECT_EQ(Setting("Count"), "3");
  EXPECT_EQ(Setting("Player03"), " Zoë            ");

  Select(1);
  for (const char* name : {"Ben", "ann"}) {  // The own name is free, and case counts.
    KnopWijzigen_Click(Form());
    EXPECT_EQ(EnabledIn(Form()), kEditing);
    EXPECT_EQ(Form().NaamInvoerveld.Text, "Ben");
    Type(name, Key::Enter);
    ExpectState(kSelected, 1, "", Focus::NaamLijst);
  }
  EXPECT_EQ(Form().NaamLijst.Items, (std::vector<std::string>{"Ann             ", "ann", " Zoë"}));
  EXPECT_EQ(Setting("Player02"), "ann             ");
  EXPECT_EQ(Setting("Count"), "3");
  EXPECT_TRUE(installation.TakeBoxes().empty());
}

TEST_F(PlayersTest, BadNamesAreJokedAboutUntilEscapeLeavesAllAsItWas) {
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
    selected < 0 ? KnopNieuweSpeler_Click(Form()) : KnopWijzigen_Click(Form());
    for (const auto& [name, box] : cases) {
      installation.desktop.Beeps = 0;
      Type(name, Key::Enter);
      EXPECT_EQ(installation.TakeBoxes(), std::vector<std::string>{box});
      EXPECT_EQ(installation.desktop.Beeps, 1);
      ExpectState(kEditing, selected, name, Focus::NaamInvoerveld);
    }
    Type("Cato", Key::Escape);
    ExpectState(selected < 0 ? kNothingSelected : kSelected, selected, "", Focus::NaamLijst);
  }
  EXPECT_EQ(run->global.PlayerCount, 2);
  EXPECT_EQ(NameOf(run->global, 1), "Ann");
}

TEST_F(PlayersTest, FreePlayInTheMiddleOfANameKeepsEverything) {
  Select(0);
  KnopWijzigen_Click(Form());
  Form().NaamInvoerveld.Text = "Cato";
  CommandFree_Click(Form());
  Form_Activate(Form());
  EXPECT_EQ(EnabledIn(Form()), kEditing);
  EXPECT_EQ(Form().NaamInvoerveld.Text, "Cato");
}

TEST_F(PlayersTest, NinetyNineAreTheMost) {
  installation.AddPlayers({"A name far longer than the field", ""});
  installation.desktop.Settings[{"Players", "Count"}] = "98";
  run.emplace(installation);
  EXPECT_EQ(NameOf(run->global, 1), "A name far longe");
  EXPECT_EQ(run->form.NaamLijst.Items.back(), "Player98        ");
  Form_Activate(Form());
  KnopNieuweSpeler_Click(Form());
  Type("Last", Key::Enter);
  EXPECT_EQ(Setting("Player99"), FixedName("Last"));

  const auto settings = installation.desktop.Settings;
  KnopNieuweSpeler_Click(Form());
  EXPECT_EQ(installation.desktop.Titles(), std::vector<std::string>{"No room for another player"});
  EXPECT_EQ(EnabledIn(Form()), kSelected);
  EXPECT_EQ(installation.desktop.Settings, settings);
}

}  // namespace
}  // namespace bivouac
