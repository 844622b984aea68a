#include "hints/evidence.h"

#include <algorithm>
#include <utility>

#include "deduction/finds.h"
#include "game/board.h"
#include "game/error.h"
#include "game/spoken.h"
#include "game/text.h"

namespace bivouac {
namespace {

using Cells = std::vector<int>;

bool IsAmong(const Cells& cells, int cell) {
  return std::find(cells.begin(), cells.end(), cell) != cells.end();
}

std::string NamesOf(const Main& main, Cells cells, Naming naming) {
  std::sort(cells.begin(), cells.end());
  const bool isShort = naming == Naming::Short;
  std::string text;
  for (std::size_t i = 0; i < cells.size(); ++i) {
    const int row = RowOf(main, cells[i]);
    std::size_t last = i;  // Of those side by side.
    while (last + 1 < cells.size() && cells[last + 1] == cells[last] + 1 &&
           RowOf(main, cells[last + 1]) == row)
      ++last;
    const bool isRun = last - i >= 2;
    text += (text.empty() ? "" : ", ") + std::string(isShort ? "r" : "row ") + std::to_string(row + 1) +
            (isShort ? "c"
             : isRun ? " columns "
                     : " column ") +
            std::to_string(ColOf(main, cells[i]) + 1);
    if (!isRun) continue;
    text += (isShort ? "-" : " to ") + std::to_string(ColOf(main, cells[last]) + 1);
    i = last;
  }
  return text;
}

class Witness {
 public:
  Witness(const Main& main, const FoundHint& hint, Naming naming)
      : main_(main), rule_(*hint.Rule), find_(hint.Found), naming_(naming) {}

  std::vector<std::string> Tell() {
    const Cells trees = With({Role::Tree});
    const Cells tents = With({Role::StandingTent});
    const Cells wing = With({Role::WingTree});
    if (find_.LastLine >= find_.FirstLine) TellLines();
    if (!wing.empty())
      Add("wing of the trees " + Names(wing) + ": it claims " + Names(With({Role::Claimed})));
    if (rule_.Look == FindCluster) {
      Add("cluster: " + Counted(static_cast<long>(trees.size()), "tree") + ' ' + Names(trees) + ", " +
          Counted(static_cast<long>(tents.size()), "tent") + ' ' + Names(tents));
    } else {
      for (const int tree : trees) TellTree(tree);
      for (const int tent : tents) TellTent(tent, trees);
    }
    if (trees.size() <= 2) TellLosses(trees);
    if (facts_.empty()) Add(Names(With({Role::Grass})) + ": no tree beside");
    return facts_;
  }

 private:
  void Add(std::string fact) { facts_.push_back(std::move(fact)); }
  std::string Name(int cell) const { return NamesOf(main_, {cell}, naming_); }
  std::string Names(const Cells& cells) const { return NamesOf(main_, cells, naming_); }

  /// The fields of the find in one of those roles, each once and on the board.
  Cells With(std::initializer_list<Role> roles) const {
    Cells cells;
    for (const FoundField& field : find_.Fields) {
      const bool isOne = std::find(roles.begin(), roles.end(), field.Is) != roles.end();
      if (isOne && field.Cell >= 0 && field.Cell < main_.CellCount && !IsAmong(cells, field.Cell))
        cells.push_back(field.Cell);
    }
    return cells;
  }
  Cells Beside(int cell, int code) const {
    Cells cells;
    ForEachSide(main_.BoardSize, cell, [&](int side, int) {
      if (main_.Board[side] == code) cells.push_back(side);
    });
    return cells;
  }
  bool Touches(int cell, int other) const {
    return AnyAround(main_, cell, [&](int near) { return near == other; });
  }

  bool IsRow() const { return rule_.Along == LineKind::Row; }
  std::string LineName(int line) const { return (IsRow() ? "row " : "column ") + std::to_string(line + 1); }
  int ClueOf(int line) const { return IsRow() ? RowClue(main_, line) : ColClue(main_, line); }
  Cells OfLine(int line, int code) const {
    const Axis axis{rule_.Along, main_.BoardSize};
    Cells cells;
    for (int position = 0; position < axis.Size; ++position) {
      const int cell = axis.At(line, position);
      if (main_.Board[cell] == code) cells.push_back(cell);
    }
    return cells;
  }
  int CountIn(int line, int code) const { return static_cast<int>(OfLine(line, code).size()); }

  void TellLines() {
    // The last stage weighs trees against tents, up to a line.
    if (rule_.Stage == 5) return TellSupply();
    const int line = find_.FirstLine;
    const int missing = ClueOf(line) - CountIn(line, CELL_TENT);
    const Cells open = OfLine(line, CELL_OPEN);
    std::string fact = LineName(line) + ": " + std::to_string(CountIn(line, CELL_TENT)) + " of " +
                       Counted(ClueOf(line), "tent") + ", open " + Names(open);
    if (missing > 0) fact += ", room for " + std::to_string(RoomIn(open));
    Add(std::move(fact));
  }
  /// The most tents that fields of one line, in its order, can hold.
  int RoomIn(const Cells& fields) const {
    const int step = IsRow() ? 1 : main_.BoardSize;
    int room = 0;
    int last = -1;  // That takes one.
    for (const int field : fields) {
      if (last >= 0 && field == last + step) continue;
      last = field;
      ++room;
    }
    return room;
  }
  void TellSupply() {
    const int last = find_.LastLine;
    int tents = 0;
    int trees = 0;
    for (int line = find_.FirstLine; line <= last; ++line) {
      tents += ClueOf(line);
      trees += CountIn(line, CELL_TREE);
    }
    const auto tell = [&](const std::string& lines, int wanted, int standing) {
      Add(lines + ": " + Counted(wanted, "tent") + ", " + Counted(standing, "tree"));
    };
    tell(last == 0 ? LineName(0) : (IsRow() ? "rows 1 to " : "columns 1 to ") + std::to_string(last + 1),
         tents, trees);
    const int across = find_.Case == SupplyBefore ? last + 1 : last;
    tell(LineName(across), ClueOf(across), CountIn(across, CELL_TREE));
  }

  void TellTree(int tree) {
    const Cells tents = Beside(tree, CELL_TENT);
    const Cells open = Beside(tree, CELL_OPEN);
    std::string fact = "tree " + Name(tree) + ": ";
    if (!tents.empty()) fact += "beside it the tent " + Names(tents) + ", ";
    fact += open.empty() ? "nothing open beside it"
                         : (open.size() == 1 ? "open beside it only " : "open beside it ") + Names(open);
    Add(std::move(fact));
  }
  /// A tent by itself, or one that a tree has: then nothing else may want the fields in question.
  void TellTent(int tent, const Cells& trees) {
    const Cells grass = With({Role::Grass});
    if (trees.empty()) return Add("tent " + Name(tent) + ": it touches " + Names(grass));
    for (const int cell : {tent, grass.front()}) Add(Name(cell) + ": beside no other tree");
  }
  /// True if the find's line is full with one tent more and has the field.
  bool IsLastTentOf(int field) const {
    const int line = find_.FirstLine;
    if (find_.LastLine != line || ClueOf(line) != CountIn(line, CELL_TENT) + 1) return false;
    return IsAmong(OfLine(line, CELL_OPEN), field);
  }
  /// What trees would lose to a tent on the fields in question.
  void TellLosses(const Cells& trees) {
    for (const int field : With({Role::Grass, Role::LostToOne})) {
      Cells losing;
      for (const int tree : trees) {
        Cells others = Beside(tree, CELL_OPEN);
        others.erase(std::remove(others.begin(), others.end(), field), others.end());
        const bool all = std::all_of(others.begin(), others.end(),
                                     [&](int other) { return Touches(field, other) || IsLastTentOf(other); });
        if (all && !others.empty() && Beside(tree, CELL_TENT).empty()) losing.push_back(tree);
      }
      if (!losing.empty()) Add("a tent on " + Name(field) + " takes every other field from " + Names(losing));
    }
  }

  const Main& main_;
  const HintRule& rule_;
  const Find& find_;
  const Naming naming_;
  std::vector<std::string> facts_;
};

}  // namespace

std::string FieldNames(const Main& main, std::vector<int> cells) {
  return NamesOf(main, std::move(cells), Naming::Short);
}

std::vector<std::string> EvidenceOf(const Main& main, const FoundHint& hint, Naming naming) {
  return Witness(main, hint, naming).Tell();
}

std::string SpokenMarksAndEvidence(const Main& main) {
  std::string text = SpokenMarks(main);
  try {
    const std::optional<FoundHint> hint = main.Timer2.Enabled ? FindHint(main) : std::nullopt;
    if (!hint || hint->Text() != main.lblHint.Caption) return text;
    std::string between = " ";
    for (const std::string& fact : EvidenceOf(main, *hint, Naming::Spoken)) {
      text += between + fact;
      between = "; ";
    }
    return text + '.';
  } catch (const RunTimeError&) {
    return text;
  }
}

}  // namespace bivouac
