// The guide for players: positions that give each hint, and what its pages tell of them.
#pragma once

#include <string>
#include <vector>

#include "walks/pack_stats.h"
#include "walks/solution_walk.h"

namespace bivouac {

/// A line of the table: rule, case counted from 1, size, clues of the rows and of the columns, directions of
/// the tents, board, and the fields that the hint decides as cell:code.
struct GuidePosition {
  std::string Name;      ///< Rule and case, such as "RowRuns-2".
  std::string Position;  ///< The five columns that LayPosition reads.
  std::string Fields;
};

/// Errors: InputError if there is no such table or a line has other columns.
std::vector<GuidePosition> ReadGuidePositions(const std::string& path);

/// A position laid out, with the hint that it gives.
struct GuideHint {
  FoundHint Hint;
  std::vector<FieldChange> Changes;

  std::string Name() const { return NameOf(HintCases()[PlaceOf(Hint)]); }
  /// The changes as the table has them.
  std::string Fields() const;
};
/// Lays the position on the board and asks for its hint. Errors: InputError if there is none.
GuideHint LayGuidePosition(Main& main, const GuidePosition& position);

/// What the picture of a hint shows, in words: the facts behind it.
std::string PictureText(const Main& main, const GuideHint& hint);

/// A page with everything between "<!-- hint NAMES -->", "<!-- rules -->", "<!-- passes -->" or "<!-- help
/// -->" and "<!-- end -->" written anew: sentences, pictures, cost and need of the hints named; the list of
/// all rules; the table of the rater's passes; what the help box tells of playing. Errors: InputError if a
/// name has no position.
std::string FillGuidePage(const std::string& page, const std::vector<GuidePosition>& positions,
                          const PackStats& stats);

/// Draws the board with the hint, and the board after it, as PATH.svg and PATH.after.svg. Errors: InputError.
void DrawGuideHint(Main& main, const GuideHint& hint, const std::string& path);

}  // namespace bivouac
