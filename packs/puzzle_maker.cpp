#include "packs/puzzle_maker.h"

#include <condition_variable>
#include <exception>
#include <map>
#include <mutex>
#include <thread>
#include <vector>

#include "game/error.h"
#include "generator/generator.h"
#include "workbench/workbench.h"

namespace bivouac {
namespace {

constexpr long kBatch = 8;          // Puzzles that a thread makes between two looks at the others.
constexpr long kBatchesAhead = 64;  // For each thread: how far the fast may run ahead of a slow one.
constexpr auto kPatience = std::chrono::milliseconds(200);

/// Puzzles by number, from many threads to one.
class AssemblyLine {
 public:
  explicit AssemblyLine(const MakeRequest& request)
      : request_(request), ahead_(kBatchesAhead * request.Jobs) {}

  /// A thread of its own runs this until the line is closed.
  void Work();
  /// The next batch in order; nothing if none came in time. Rethrows what ended a thread.
  std::vector<PackRecord> Next();
  void Close();

 private:
  void MakeBatch(Workbench& bench, long batch, std::vector<PackRecord>& puzzles) const;

  const MakeRequest request_;
  const long ahead_;
  std::atomic<bool> closed_ = false;
  std::mutex mutex_;
  std::condition_variable made_;
  std::condition_variable taken_;
  std::map<long, std::vector<PackRecord>> ready_;
  long nextToMake_ = 0;
  long nextToTake_ = 0;
  std::exception_ptr fault_;
};

void AssemblyLine::MakeBatch(Workbench& bench, long batch, std::vector<PackRecord>& puzzles) const {
  for (long i = batch * kBatch; i < (batch + 1) * kBatch; ++i) {
    bench.desktop.Seed(Random::Mix(request_.Seed) + static_cast<std::uint64_t>(i));
    MakePuzzle(bench.main);
    puzzles.push_back(bench.global.PuzzleRec);
  }
}

void AssemblyLine::Work() {
  try {
    Workbench bench;
    LayOutSize(bench.main, request_.Size);
    bench.desktop.StopOn(closed_);
    for (;;) {
      std::unique_lock lock(mutex_);
      taken_.wait(lock, [&] { return closed_ || nextToMake_ < nextToTake_ + ahead_; });
      if (closed_) return;
      const long batch = nextToMake_++;
      lock.unlock();
      std::vector<PackRecord> puzzles;
      MakeBatch(bench, batch, puzzles);
      lock.lock();
      ready_.emplace(batch, std::move(puzzles));
      if (batch == nextToTake_) made_.notify_one();
    }
  } catch (const ProgramEnd&) {
    // The line was closed while a puzzle was in the making.
  } catch (...) {
    const std::lock_guard lock(mutex_);
    fault_ = std::current_exception();
    made_.notify_one();
  }
}

std::vector<PackRecord> AssemblyLine::Next() {
  std::unique_lock lock(mutex_);
  made_.wait_for(lock, kPatience, [&] { return fault_ || ready_.count(nextToTake_) != 0; });
  if (fault_) std::rethrow_exception(fault_);
  const auto found = ready_.find(nextToTake_);
  if (found == ready_.end()) return {};
  std::vector<PackRecord> puzzles = std::move(found->second);
  ready_.erase(found);
  ++nextToTake_;
  taken_.notify_one();
  return puzzles;
}

void AssemblyLine::Close() {
  const std::lock_guard lock(mutex_);
  closed_ = true;
  taken_.notify_all();
}

/// Ends and joins the threads, however the scope is left.
struct Crew {
  Crew(AssemblyLine& line, int jobs) : Line(line) {
    // A system that gives no more threads leaves the work to fewer.
    try {
      for (int i = 0; i < jobs; ++i) Threads.emplace_back([this] { Line.Work(); });
    } catch (const std::exception& error) {
      if (Threads.empty()) throw InputError(std::string("no thread can be started: ") + error.what());
    }
  }
  Crew(const Crew&) = delete;
  Crew& operator=(const Crew&) = delete;
  ~Crew() {
    Line.Close();
    for (std::thread& thread : Threads) thread.join();
  }
  AssemblyLine& Line;
  std::vector<std::thread> Threads;
};

}  // namespace

void MakePuzzles(const MakeRequest& request, const std::atomic<bool>& stop,
                 const std::function<bool(const PackRecord&)>& take, const std::function<void()>& wait) {
  AssemblyLine line(request);
  const Crew crew(line, request.Jobs);
  auto lastWait = std::chrono::steady_clock::now();
  while (!stop) {
    for (const PackRecord& puzzle : line.Next()) {
      if (!take(puzzle)) return;
    }
    const auto now = std::chrono::steady_clock::now();
    if (wait && now - lastWait >= kPatience) {
      lastWait = now;
      wait();
    }
  }
}

}  // namespace bivouac
