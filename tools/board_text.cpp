#include "tools/board_text.h"

#include <iomanip>
#include <ostream>

#include "game/board.h"

namespace bivouac {
namespace {

struct Look {
  char Mark;
  const char* Colour;
};
/// By cell code.
constexpr FixedArray<Look, 4> kLooks{
    {{'.', ""}, {',', "\x1b[2;32m"}, {'A', "\x1b[1;33m"}, {'T', "\x1b[32m"}}};
constexpr const char* kReverse = "\x1b[7m";
constexpr const char* kPlain = "\x1b[0m";

}  // namespace

void DrawBoard(const Main& main, const std::set<int>& marked, Terminal& terminal) {
  std::ostream& out = terminal.Out;
  out << "    ";
  for (int col = 0; col < main.BoardSize; ++col) out << std::setw(2) << main.ColCnt[col].Caption << ' ';
  for (int cell = 0; cell < main.CellCount; ++cell) {
    if (ColOf(main, cell) == 0) out << '\n' << std::setw(3) << main.RowCnt[RowOf(main, cell)].Caption << ' ';
    const Look& look = kLooks[main.Board[cell]];
    const bool stands_out = marked.count(cell) != 0;
    if (terminal.Colour) {
      out << (stands_out ? kReverse : "") << look.Colour << ' ' << look.Mark << ' ' << kPlain;
    } else {
      out << (stands_out ? '[' : ' ') << look.Mark << (stands_out ? ']' : ' ');
    }
  }
  out << '\n';
}

}  // namespace bivouac
