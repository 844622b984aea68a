#include "guide/guide.h"

#include <algorithm>
#include <cstdio>
#include <fstream>
#include <functional>
#include <sstream>

#include "drawing/hint_picture.h"
#include "events/help.h"
#include "game/error.h"
#include "hints/evidence.h"
#include "packs/pack_access.h"
#include "rating/rating.h"
#include "workbench/position.h"

namespace bivouac {
namespace {

constexpr std::string_view kEndMark = "<!-- end -->";

const GuidePosition& PositionOf(const std::vector<GuidePosition>& positions, const std::string& name) {
  const auto place = std::find_if(positions.begin(), positions.end(),
                                  [&](const GuidePosition& position) { return position.Name == name; });
  if (place == positions.end()) throw InputError("the guide's table has no position for " + name);
  return *place;
}

/// "r2c3", "r2c3 and r4c5", "r2c3, r4c5 and r6c1".
std::string Listed(const std::vector<std::string>& names) {
  std::string text;
  for (std::size_t i = 0; i < names.size(); ++i) {
    if (i > 0) text += i + 1 == names.size() ? " and " : ", ";
    text += names[i];
  }
  return text;
}

std::string Percent(long part, long whole) {
  char text[32];
  const double share = whole == 0 ? 0 : 100 * static_cast<double>(part) / static_cast<double>(whole);
  std::snprintf(text, sizeof text, share > 0 && share < 10 ? "%.1f%%" : "%.0f%%", share);
  return text;
}

std::string NeedText(const PackStats& stats, std::uint64_t cases) {
  std::vector<std::string> shares;
  long needing = 0;
  for (int level = 1; level <= 5; ++level) {
    needing += stats.CountNeeding(level, cases);
    shares.push_back(Percent(stats.CountNeeding(level, cases), stats.Count(level)));
  }
  if (needing == 0) return "None of the puzzles that come with the game needs it.";
  return "Of the puzzles that come with the game, " + Listed(shares) + " of levels 1, 2, 3, 4 and 5 need it.";
}

std::string HintBlock(const std::vector<std::string>& names, const GuideSources& sources) {
  Workbench bench;
  std::string anchors;
  std::vector<std::string> sentences;
  std::ostringstream pictures;
  std::uint64_t cases = 0;
  int seconds = 0;
  for (const std::string& name : names) {
    const GuideHint hint = LayGuidePosition(bench.main, PositionOf(sources.Positions, name));
    anchors += "<a id=\"" + name + "\"></a>";
    const std::string sentence = SentenceOf(hint.Hint);
    if (std::find(sentences.begin(), sentences.end(), sentence) == sentences.end())
      sentences.push_back(sentence);
    const std::string facts = PictureText(bench.main, hint);
    const std::string changes = ChangesText(bench.main, hint.Changes) + '.';
    pictures << "![A board: " << facts << ".](pictures/" << name << ".svg)\n![It after that: " << changes
             << "](pictures/" << name << ".after.svg)\n\nHere: " << facts << ". So: " << changes << "\n\n";
    cases |= std::uint64_t{1} << PlaceOf(hint.Hint);
    seconds = hint.Hint.Rule->Seconds;
  }
  std::string text = anchors + "\n\n";
  for (const std::string& sentence : sentences) text += "> " + sentence + "\n\n";
  return text + pictures.str() + "It costs " + std::to_string(seconds) + " seconds. " +
         NeedText(sources.Stats, cases) + "\n";
}

/// The tier of the pass that goes with a rule; 1 for those that the rater need not look for.
int TierOf(const HintRule& rule) {
  for (const Pass& pass : PassTable()) {
    if (pass.Name.substr(std::string_view("Pass").size()) == rule.Name) return pass.Tier;
  }
  return 1;
}

/// The page of a hint in the tree, where pages are not HTML yet.
std::string PageLink(const HintCase& which) {
  std::string place = GuidePlaceOf(which);
  return place.replace(place.find(".html"), 5, ".md");
}

const HintCase& FirstCaseOf(const HintRule& rule, const std::vector<GuidePosition>& positions) {
  for (const HintCase& each : HintCases()) {
    const auto has = [&](const GuidePosition& position) { return position.Name == NameOf(each); };
    if (each.Rule == &rule && std::any_of(positions.begin(), positions.end(), has)) return each;
  }
  throw InputError(std::string(rule.Name) + " has no hint in the guide");
}

/// Every rule with its name for people, a small picture, and how often it is needed.
std::string RulesBlock(const std::vector<GuidePosition>& positions, const PackStats& stats) {
  std::string text =
      "<table>\n<thead><tr><th>Deduction</th><th></th><th>Level</th><th>Needed "
      "by</th></tr></thead>\n<tbody>\n";
  for (const HintRule& rule : HintRules()) {
    const HintCase& first = FirstCaseOf(rule, positions);
    long needing = 0;
    long all = 0;
    for (int level = 1; level <= 5; ++level) {
      needing += stats.CountNeeding(level, CasesOf(rule));
      all += stats.Count(level);
    }
    const std::string title(rule.Title);
    text.append("<tr><td><a href=\"").append(PageLink(first)).append("\">").append(title);
    text.append("</a></td><td><img class=\"small\" src=\"pictures/").append(NameOf(first));
    text.append(".svg\" alt=\"").append(title).append("\"></td><td>").append(std::to_string(TierOf(rule)));
    text.append("</td><td>").append(Percent(needing, all)).append("</td></tr>\n");
  }
  return text + "</tbody>\n</table>\n";
}

std::string PassesBlock(const std::vector<GuidePosition>& positions) {
  std::string text =
      "<table>\n<thead><tr><th>Pass</th><th>Tier</th><th>Hint that belongs to "
      "it</th></tr></thead>\n<tbody>\n";
  for (const Pass& pass : PassTable()) {
    const std::string name(pass.Name.substr(std::string_view("Pass").size()));
    const std::span<const HintRule> rules = HintRules();
    const auto rule =
        std::find_if(rules.begin(), rules.end(), [&](const HintRule& each) { return each.Name == name; });
    if (rule == rules.end()) throw InputError(name + " has no hint in the guide");
    text += "<tr><td>" + std::string(pass.Name) + "</td><td>" + std::to_string(pass.Tier) + "</td><td>";
    text +=
        "<a href=\"" + PageLink(FirstCaseOf(*rule, positions)) + "\">" + std::string(rule->Title) + "</a>";
    text += "</td></tr>\n";
  }
  return text + "</tbody>\n</table>\n";
}

/// What the help box tells below the rules, an item a line.
std::string HelpBlock() {
  std::istringstream help(HelpLines(KeysOfTable) + ListKeyHelp(kLevelKey) + kPrintKeyHelp);
  std::string block = "\n";
  for (std::string line; std::getline(help, line);) block += "- " + line + '\n';
  return block;
}

/// Those of a stage, with their answers.
std::string ExercisesBlock(int stage, const GuideSources& sources) {
  std::ostringstream text;
  Workbench bench;
  int number = 0;
  for (const GuidePosition& exercise : sources.Exercises) {
    const GuideHint hint = LayGuidePosition(bench.main, exercise);
    const HintRule& rule = *hint.Hint.Rule;
    if (rule.Stage != stage) continue;
    const std::string path = "pictures/" + ExerciseName(stage, ++number);
    text << "![Exercise " << number << ": " << WordsOf(PositionPicture(bench.main)) << "](" << path
         << ".svg)\n\n<details><summary>Exercise " << number
         << ": what follows here?</summary>\n\n![The answer](" << path << ".answer.svg)\n\n[" << rule.Title
         << "](" << PageLink(HintCases()[PlaceOf(hint.Hint)]) << "): " << PictureText(bench.main, hint)
         << ". So: " << ChangesText(bench.main, hint.Changes) << ".\n\n</details>\n\n";
  }
  return text.str();
}

std::string WorkedBlock(const std::string& puzzle, const GuideSources& sources) {
  Workbench bench;
  const Way way = WorkedWay(bench, sources.Packs, puzzle);
  const std::string name = WorkedName(puzzle);
  std::ostringstream text;
  text << "![The start: " << WordsOf(PositionPicture(bench.main)) << "](pictures/" << name << "-0.svg)\n\n";
  int number = 0;
  for (const std::vector<Passage>& told : PicturesOf(way)) {
    for (const Passage& passage : told) {
      const FoundHint& hint = way.Steps[passage.First].Hint;
      const Telling telling = Tell(bench.main, way, passage);
      text << "- [" << telling.Title << "](" << PageLink(HintCases()[PlaceOf(hint)]) << "): ";
      for (const std::string& fact : telling.Facts) text << fact << "; ";
      text << "so: " << telling.Changes << ".\n";
    }
    text << "\n![The board after these steps](pictures/" << name << '-' << ++number << ".svg)\n\n";
  }
  return text.str();
}

}  // namespace

std::vector<GuidePosition> ReadGuidePositions(const std::string& path) {
  std::ifstream file(path);
  if (!file) throw InputError(path + ": no such file");
  std::vector<GuidePosition> positions;
  for (std::string line; std::getline(file, line);) {
    const std::vector<std::string> columns = Split(line, '\t');
    if (columns.size() != 8) {
      throw InputError(path + ": line " + std::to_string(positions.size() + 1) + " has " +
                       std::to_string(columns.size()) + " columns, not 8");
    }
    std::string position;
    for (std::size_t i = 2; i < 7; ++i) position += (i > 2 ? "\t" : "") + columns[i];
    positions.push_back({columns[0] + '-' + columns[1], position, columns[7]});
  }
  return positions;
}

std::string GuideHint::Fields() const {
  std::string text;
  for (const FieldChange& change : Changes) {
    if (!text.empty()) text += ',';
    text += std::to_string(change.Cell) + ':' + std::to_string(change.Code);
  }
  return text;
}

GuideHint LayGuidePosition(Main& main, const GuidePosition& position) {
  LayPosition(main, position.Position);
  std::optional<FoundHint> hint = FindHint(main);
  if (!hint) throw InputError("the position for " + position.Name + " gives no hint");
  std::vector<FieldChange> changes = ChangesOf(main, *hint);
  return {*hint, std::move(changes)};
}

std::string PictureText(const Main& main, const GuideHint& hint) {
  std::string text;
  for (const std::string& fact : EvidenceOf(main, hint.Hint)) text += (text.empty() ? "" : "; ") + fact;
  return text;
}

std::string ExerciseName(int stage, int number) {
  return "exercise-" + std::to_string(stage) + '-' + std::to_string(number);
}

std::string WorkedName(const std::string& puzzle) {
  std::string name = "worked-" + puzzle;
  std::replace_if(
      name.begin(), name.end(), [](char c) { return c == ' ' || c == '.'; }, '-');
  return name;
}

Way WorkedWay(Workbench& bench, const std::vector<std::string>& packs, const std::string& puzzle) {
  const std::vector<std::string> words = Split(puzzle, ' ');
  const auto path = std::find_if(packs.begin(), packs.end(),
                                 [&](const std::string& pack) { return FileName(pack) == words.front(); });
  if (path == packs.end()) throw InputError("the guide has no pack " + words.front());
  StartPuzzleOn(bench, *path, std::stol(words.back()), {});
  return WayFrom(bench.main);
}

std::vector<std::vector<Passage>> PicturesOf(const Way& way) {
  constexpr std::size_t kPassagesAPicture = 3;
  std::vector<std::vector<Passage>> pictures;
  for (const Passage& passage : PassagesOf(way, Detail::TentsWithGrass)) {
    if (pictures.empty() || pictures.back().size() == kPassagesAPicture) pictures.emplace_back();
    pictures.back().push_back(passage);
  }
  return pictures;
}

std::string FillGuidePage(const std::string& page, const GuideSources& sources) {
  using Fill = std::function<std::string(const std::string& rest)>;
  const std::pair<std::string_view, Fill> marks[] = {
      {"hint", [&](const std::string& rest) { return HintBlock(Split(rest, ' '), sources); }},
      {"passes", [&](const std::string&) { return PassesBlock(sources.Positions); }},
      {"rules", [&](const std::string&) { return RulesBlock(sources.Positions, sources.Stats); }},
      {"help", [&](const std::string&) { return HelpBlock(); }},
      {"exercises", [&](const std::string& rest) { return ExercisesBlock(std::stoi(rest), sources); }},
      {"worked", [&](const std::string& rest) { return WorkedBlock(rest, sources); }}};
  constexpr std::string_view kBegin = "<!-- ";
  constexpr std::string_view kEnd = " -->";
  std::istringstream in(page);
  std::string out;
  bool skipping = false;
  for (std::string line; std::getline(in, line);) {
    if (line == kEndMark) skipping = false;
    if (skipping) continue;
    out += line + '\n';
    if (!line.starts_with(kBegin) || !line.ends_with(kEnd)) continue;
    const std::string mark = line.substr(kBegin.size(), line.size() - kBegin.size() - kEnd.size());
    const std::string word = mark.substr(0, mark.find(' '));
    for (const auto& [name, fill] : marks) {
      if (word != name) continue;
      out += fill(mark.substr(std::min(mark.size(), word.size() + 1)));
      skipping = true;
    }
  }
  if (skipping) throw InputError("a page of the guide lacks an \"<!-- end -->\"");
  return out;
}

}  // namespace bivouac
