// What the window costs: a click from the event to the painted cell, a draw of what has not changed, a yield,
// and what happens while nothing happens. Settings and data are in a folder of their own.
#include <QApplication>
#include <QEventLoop>
#include <QMouseEvent>
#include <QPaintEvent>
#include <QSettings>
#include <QTemporaryDir>
#include <QTimer>
#include <algorithm>
#include <benchmark/benchmark.h>
#include <chrono>
#include <ctime>
#include <vector>

#include "game/layout.h"
#include "storage/navigation.h"
#include "storage/pack_files.h"
#include "storage/record_file.h"
#include "window/program.h"
#include "window/puzzle_table.h"

namespace bivouac {
namespace {

using Clock = std::chrono::steady_clock;
constexpr double kIdleSeconds = 2;
constexpr int kUntilSoundRests = 3500;  // Milliseconds; the sound of a start has its timer too.

/// Counts what the widgets paint and which timers fire.
class Watch : public QObject {
 public:
  explicit Watch(BoardWidget& board) : board_(board) { qApp->installEventFilter(this); }

  int Paints = 0;
  int Ticks = 0;
  int Cells = 0;  ///< Of the board, painted.
  QTimer Over;    ///< The bench's own, which does not count.

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override {
    if (event->type() == QEvent::Timer && watched != &Over) ++Ticks;
    if (event->type() != QEvent::Paint) return false;
    if (!watched->isWidgetType()) return false;  // The window's own event, of which those of widgets follow.
    ++Paints;
    if (watched != &board_) return false;
    const QRegion region = static_cast<QPaintEvent*>(event)->region();
    for (int i = 0; i < board_.Size() * board_.Size(); ++i) Cells += region.intersects(board_.CellRect(i));
    return false;
  }

 private:
  BoardWidget& board_;
};

void RunEvents(QTimer& over, int milliseconds) {
  QEventLoop loop;
  over.setSingleShot(true);
  over.callOnTimeout(&loop, [&loop] { loop.quit(); });
  over.start(milliseconds);
  loop.exec();
}

void Idle(benchmark::State& state, Program& program) {
  Watch watch(program.Window().Board());
  for (auto _ : state) {
    RunEvents(watch.Over, kUntilSoundRests);
    watch.Paints = watch.Ticks = 0;
    const std::clock_t before = std::clock();
    RunEvents(watch.Over, static_cast<int>(kIdleSeconds * 1000));
    state.counters["cpu"] =
        static_cast<double>(std::clock() - before) / static_cast<double>(CLOCKS_PER_SEC) / kIdleSeconds;
  }
  state.counters["paints"] = watch.Paints / kIdleSeconds;
  state.counters["ticks"] = watch.Ticks / kIdleSeconds;
}

void OpenFirstPuzzle(Program& program) {
  program.State().PuzzleNo = 0;
  cmdNext_Click(program.State());
  program.Window().Draw();
  QCoreApplication::processEvents();
}

void IdleInPlay(benchmark::State& state, Program& program) {
  OpenFirstPuzzle(program);
  Idle(state, program);
}

double MedianMicroseconds(std::vector<Clock::duration>& times) {
  const auto middle = times.begin() + static_cast<std::ptrdiff_t>(times.size() / 2);
  std::nth_element(times.begin(), middle, times.end());
  return std::chrono::duration<double, std::micro>(*middle).count();
}

/// Goes round the fields again and again; trees stay out, for a click there is a question.
void Click(benchmark::State& state, Program& program) {
  OpenFirstPuzzle(program);
  BoardWidget& board = program.Window().Board();
  const Main& main = program.State();
  Watch watch(board);
  std::vector<Clock::duration> times;
  int cell = 0;
  for (auto _ : state) {
    do cell = (cell + 1) % main.CellCount;
    while (main.Board[cell] == CELL_TREE);
    const QPointF at = board.CellRect(cell).center();
    QMouseEvent press(QEvent::MouseButtonPress, at, board.mapToGlobal(at), Qt::LeftButton, Qt::LeftButton,
                      Qt::NoModifier);
    const auto start = Clock::now();
    QCoreApplication::sendEvent(&board, &press);
    QCoreApplication::processEvents();
    times.push_back(Clock::now() - start);
  }
  const auto clicks = static_cast<double>(times.size());
  state.counters["cells"] = watch.Cells / clicks;
  state.counters["paints"] = watch.Paints / clicks;
  state.counters["median"] = MedianMicroseconds(times);
}

void DrawUnchanged(benchmark::State& state, Program& program) {
  for (auto _ : state) {
    program.Window().Draw();
    program.Dialog().Draw();
  }
}

void Yield(benchmark::State& state, Program& program) {
  Desktop& desktop = program.State().desktop;
  for (auto _ : state) desktop.Yield();
}

/// The list of the puzzles with a pack of 6,400, up to what a player can see of it.
void ListPuzzles(benchmark::State& state, Program& program) {
  constexpr int kPuzzles = 6400;
  Main& main = program.State();
  RecordFile<PackRecord> pack(PackPath(main.global, main.BoardSize), Access::Write);
  const std::vector<PackRecord> few = pack.ReadAll();
  while (pack.Counts().Whole < kPuzzles) pack.WriteAll(pack.Counts().Next, few);
  main.PuzzleCount[main.BoardSize - kMinSize] = kPuzzles;
  PuzzleListing listing(main);
  PuzzleTable table(listing);
  PuzzleFilter filter(table);
  filter.sort(PuzzleListing::kLevel, Qt::DescendingOrder);
  for (auto _ : state) {
    table.Refresh();
    benchmark::DoNotOptimize(filter.index(0, 0).data());
  }
}

void Register(const char* name, void (*function)(benchmark::State&, Program&), Program& program,
              benchmark::IterationCount iterations = 0) {
  auto* added = benchmark::RegisterBenchmark(
      name, [function, &program](benchmark::State& state) { function(state, program); });
  if (iterations > 0) added->Iterations(iterations);
}

int Run(int argc, char** argv) {
  const QApplication application(argc, argv);
  QSettings settings("Bivouac", "Bivouac");
  settings.setValue("Options/Size", QString::number(kMaxSize));
  settings.setValue("Options/Sounds", "True");
  settings.sync();
  Program program;
  // In this order: the first figure is of a window without a puzzle.
  Register("Window/Idle", Idle, program, 1);
  Register("Window/IdleInPlay", IdleInPlay, program, 1);
  Register("Window/Click", Click, program);
  Register("Window/DrawUnchanged", DrawUnchanged, program);
  Register("Window/Yield", Yield, program);
  Register("Window/ListPuzzles", ListPuzzles, program);
  QTimer::singleShot(0, &program.Window(), [] {
    benchmark::RunSpecifiedBenchmarks();
    QCoreApplication::exit();
  });
  return program.Run();
}

}  // namespace
}  // namespace bivouac

int main(int argc, char** argv) {
  const QTemporaryDir folder;
  qputenv("XDG_CONFIG_HOME", folder.filePath("config").toUtf8());
  qputenv("XDG_DATA_HOME", folder.filePath("data").toUtf8());
  qputenv("ALSOFT_DRIVERS", "null");  // Mixes, and is not heard.
  benchmark::Initialize(&argc, argv);
  return bivouac::Run(argc, argv);
}
