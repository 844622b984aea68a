#include "events/event_road.h"

#include <cstdio>

namespace bivouac {

void EventRoad::Run(const Handler& handler) {
  if (ended_) return;
  try {
    handler();
  } catch (const ProgramEnd&) {
    End(0);
  } catch (const RunTimeError& error) {
    const int number = static_cast<int>(error.Number());
    ReportError("Run-time error " + std::to_string(number) + ": " + error.what());
  } catch (const std::exception& error) {
    ReportError(std::string("Error: ") + error.what());
  }
  if (!ended_) draw_();
}

void EventRoad::End(int status) {
  if (!ended_) status_ = status;
  ended_ = true;
  leave_(status_);
}

void EventRoad::ReportError(const std::string& line) {
  if (ended_) return;  // Unwinding already.
  std::fprintf(stderr, "Bivouac: %s\n", line.c_str());
  draw_();
  // No event may run a handler on a broken state while the report is read.
  ended_ = true;
  status_ = 1;
  report_(line);
  End(1);
}

}  // namespace bivouac
