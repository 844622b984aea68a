// A line that a person watches during long work, on standard error.
#pragma once

#include <ostream>

#include "tools/terminal.h"

namespace bivouac {

/// Cleared by its destructor. Writes nothing where nobody watches.
class ProgressLine {
 public:
  ProgressLine(Terminal& terminal, long total) : terminal_(terminal), total_(total) {}
  ProgressLine(const ProgressLine&) = delete;
  ProgressLine& operator=(const ProgressLine&) = delete;
  ~ProgressLine() {
    if (shown_) terminal_.Err << "\r\x1b[K" << std::flush;
  }
  /// One puzzle more is done.
  void Step() {
    ++done_;
    if (!terminal_.Progress || done_ % 50 != 0) return;
    terminal_.Err << '\r' << done_ << " of " << total_ << " puzzles" << std::flush;
    shown_ = true;
  }

 private:
  Terminal& terminal_;
  long total_;
  long done_ = 0;
  bool shown_ = false;
};

}  // namespace bivouac
