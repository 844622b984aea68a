#include "tools/board_text.h"

#include <array>
#include <iomanip>
#include <ostream>
#include <string_view>

#include "game/board.h"

namespace bivouac {
namespace {

// One entry a cell code.
constexpr std::string_view kMarks = ".,AT";
constexpr std::array<const char*, 4> kColours = {"", "\x1b[2;32m", "\x1b[1;33m", "\x1b[32m"};
constexpr const char* kReverse = "\x1b[7m";
constexpr const char* kPlain = "\x1b[0m";

}  // namespace

void DrawBoard(const Main& main, const std::set<int>& marked, Terminal& terminal) {
  std::ostream& out = terminal.Out;
  out << "    ";
  for (int col = 0; col < main.BoardSize; ++col) out << std::setw(2) << main.ColCnt[col].Caption << ' ';
  for (int cell = 0; cell < main.CellCount; ++cell) {
    if (ColOf(main, cell) == 0) out << '\n' << std::setw(3) << main.RowCnt[RowOf(main, cell)].Caption << ' ';
    const auto code = static_cast<std::size_t>(main.Board[cell]);
    const bool stands_out = marked.count(cell) != 0;
    if (terminal.Colour) {
      out << (stands_out ? kReverse : "") << kColours[code] << ' ' << kMarks[code] << ' ' << kPlain;
    } else {
      out << (stands_out ? '[' : ' ') << kMarks[code] << (stands_out ? ']' : ' ');
    }
  }
  out << '\n';
}

}  // namespace bivouac
