// The commands of bivouac-packs, without their command line.
#pragma once

#include <atomic>
#include <iosfwd>
#include <string>
#include <vector>

#include "generator/generator.h"
#include "packs/puzzle_maker.h"

namespace bivouac {

/// Where a command reads and writes.
struct Terminal {
  std::istream& In;
  std::ostream& Out;
  std::ostream& Err;
  bool Colour = false;    ///< Out understands colours.
  bool Progress = false;  ///< Err is watched by a person.
};

enum class ExitStatus { Done = 0, FaultsFound = 1, BadInput = 2, Interrupted = 130 };

enum class Format {
  Words,
  Table,  ///< Tab-separated, no header, one record a line.
};

struct MakeOptions {
  MakeRequest Request{};
  long Count = 1;
  int LowestLevel = 1;
  int HighestLevel = 5;
  bool Distinct = false;   ///< Leaves out what is alike to a puzzle of the pack, turned and mirrored too.
  bool Explained = false;  ///< Leaves out what hints do not lead through to the solution.
  std::string Pack{};
};

struct RateOptions {
  std::vector<std::string> Packs{};
  Format Output = Format::Words;
  bool Write = false;  ///< Stores the levels.
  bool Steps = false;  ///< Names the passes, in words too.
};

struct HintOptions {
  std::string Pack{};
  long Number = 1;
  std::string Board{};  ///< Digits of the position; empty for the start of the puzzle.
  Format Output = Format::Words;
};

enum class Reveal {
  Puzzle,
  Solution,
  Line,  ///< The puzzle as a line of text.
};

// All commands report input that they cannot work with by an InputError, before they change a file. One that
// comes later, as from a full disk, says what was changed.

/// Appends puzzles, in short turns between which other programs may append theirs; `stop` ends it with those
/// that are made.
ExitStatus MakePack(const MakeOptions& options, const std::atomic<bool>& stop, Terminal& terminal);
ExitStatus ListPacks(const std::vector<std::string>& packs, Format format, Terminal& terminal);
ExitStatus ShowPuzzle(const std::string& pack, long number, Reveal reveal, Terminal& terminal);
/// Appends puzzles that the terminal's input has, one a line: each is solved, proved and rated first. None is
/// added unless all are good.
ExitStatus AddPuzzles(const std::string& pack, Terminal& terminal);
ExitStatus RatePacks(const RateOptions& options, Terminal& terminal);
ExitStatus ProvePacks(const std::vector<std::string>& packs, Format format, Terminal& terminal);
/// FaultsFound if there is any. Puzzles that are alike, and those that hints do not lead through, are named,
/// but are no fault.
ExitStatus CheckPacks(const std::vector<std::string>& packs, Terminal& terminal);
/// Makes packs sound and says what it did: levels and best times are mended, other records with faults and
/// what was never finished are taken out. Refuses what SortPack refuses.
ExitStatus RepairPacks(const std::vector<std::string>& packs, Terminal& terminal);
ExitStatus GiveHint(const HintOptions& options, Terminal& terminal);
/// Reads positions from the terminal's input, one a line, and writes a table.
ExitStatus GiveHintsForInput(Terminal& terminal);
/// Refuses to move a puzzle for which a player's file beside the pack holds a time.
ExitStatus SortPack(const std::string& pack, Terminal& terminal);
/// Appends the puzzles of other packs that are not alike to one that is there.
ExitStatus MergePacks(const std::string& pack, const std::vector<std::string>& others, Terminal& terminal);

}  // namespace bivouac
