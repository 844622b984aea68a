// The guide for players: positions that give each hint, and what its pages tell of them.
#pragma once

#include <string>
#include <vector>

#include "walks/explanation.h"
#include "walks/pack_stats.h"
#include "workbench/workbench.h"

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

/// What pages are filled from.
struct GuideSources {
  std::vector<GuidePosition> Positions;
  std::vector<GuidePosition> Exercises;
  std::vector<std::string> Packs;  ///< Their paths.
  PackStats Stats;
};

/// What the pictures of an exercise and of a worked puzzle begin with.
std::string ExerciseName(int stage, int number);
std::string WorkedName(const std::string& puzzle);

/// The puzzles that the guide works through: of level 1, and of level 4.
inline const std::string kWorkedPuzzles[] = {"BVPack06.bvq 1", "BVPack08.bvq 80"};
/// The way of such a puzzle, on a bench that stands at its start. Errors: InputError.
Way WorkedWay(Workbench& bench, const std::vector<std::string>& packs, const std::string& puzzle);
/// Its passages, those of one picture together.
std::vector<std::vector<Passage>> PicturesOf(const Way& way);

/// A page with everything between "<!-- MARK -->" and "<!-- end -->" written anew. Marks: "hint NAMES", for
/// sentences, pictures, cost and need of the hints named; "rules", the list of all; "passes", the table of
/// the rater's; "help", what the help box tells of playing; "exercises STAGE", with folded answers; "worked
/// PACK NUMBER", a puzzle from its start to its end. Errors: InputError if a name has no position.
std::string FillGuidePage(const std::string& page, const GuideSources& sources);

/// Draws the board with the hint, and the board after it, as PATH.svg and PATH.after.svg. Errors: InputError.
void DrawGuideHint(Main& main, const GuideHint& hint, const std::string& path);
/// Draws the board, and the board with the hint, as PATH.svg and PATH.answer.svg.
void DrawExercise(const Main& main, const GuideHint& hint, const std::string& path);
/// Draws the start of a puzzle and its way as PATH-0.svg, PATH-1.svg and so on.
void DrawWorked(Workbench& bench, const Way& way, const std::string& path);

}  // namespace bivouac
