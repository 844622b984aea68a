// The one road for every event of the window: a click, a key, a timer's tick.
#pragma once

#include <functional>
#include <string>

#include "game/error.h"

namespace bivouac {

/// Runs handlers, one inside another where one yields or shows a modal box, and ends the program when one of
/// them asks for it or meets an error that it does not catch.
class EventRoad {
 public:
  using Handler = std::function<void()>;
  /// Shows the line that tells of an unhandled error and holds the caller until it is read.
  using Report = std::function<void(const std::string& line)>;

  /// Leaves the event loops of the platform, those of modal boxes too, so that the handlers that wait for
  /// them unwind.
  using Leave = std::function<void(int status)>;

  /// `draw` brings what changed to the screen; it runs after every handler.
  EventRoad(Handler draw, Report report, Leave leave)
      : draw_(std::move(draw)), report_(std::move(report)), leave_(std::move(leave)) {}

  /// Runs a handler and draws. Throws nothing that a handler throws. Does nothing once the program has ended.
  void Run(const Handler& handler);
  /// Brings what changed to the screen in the middle of a handler.
  void Draw() { draw_(); }

  /// Stands for a box or dialog that holds its caller, from before it opens until its answer is used: also in
  /// the moment in which it is closed and its caller has not gone on.
  class Modal {
   public:
    explicit Modal(EventRoad& road) : road_(road) { ++road_.modals_; }
    ~Modal() { --road_.modals_; }
    Modal(const Modal&) = delete;
    Modal& operator=(const Modal&) = delete;

   private:
    EventRoad& road_;
  };
  /// How many of them there are, one over another. Each holds everything but itself.
  int Modals() const { return modals_; }

  /// Throws ProgramEnd if the program has ended: what a call that let other events run does before it
  /// returns, so that the handler around it unwinds.
  void ThrowIfEnded() const {
    if (ended_) throw ProgramEnd{};
  }
  bool Ended() const { return ended_; }
  /// The exit status of the program: 0, or 1 after an unhandled error.
  int Status() const { return status_; }

 private:
  void End(int status);
  void ReportError(const std::string& line);

  Handler draw_;
  Report report_;
  Leave leave_;
  bool ended_ = false;
  int modals_ = 0;
  int status_ = 0;
};

}  // namespace bivouac
