#include "game/game_state.h"

namespace bivouac {

Main::Main(Global& global_, Desktop& desktop_) : global(global_), desktop(desktop_) {
  for (const ControlRow& row : ControlTable()) {
    if (row.ItsLabel != nullptr) (this->*row.ItsLabel).Caption = row.Caption;
  }
  int panel = 0;
  for (const PanelRow& row : PanelTable()) StatusBar1[panel++].Text = row.Text;
  for (Label& label : RowCnt) label.Visible = false;
  for (Label& label : ColCnt) label.Visible = false;
}

}  // namespace bivouac
