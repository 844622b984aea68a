// Measures programs from outside: the time from the start of a process to the first pixel that it paints in a
// window of its own, as the display reports it.
#include <algorithm>
#include <chrono>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <poll.h>
#include <signal.h>
#include <spawn.h>
#include <stdexcept>
#include <string>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>
#include <xcb/damage.h>

namespace {

using Clock = std::chrono::steady_clock;

constexpr auto kLongest = std::chrono::seconds(20);
// The colour of the empty display, seen through a window that is there but not painted.
constexpr std::uint32_t kGround = 0xFF00FF;

struct Free {
  void operator()(void* memory) const { std::free(memory); }
};
template <class T>
using Reply = std::unique_ptr<T, Free>;

class Display {
 public:
  Display() : connection_(xcb_connect(nullptr, nullptr)) {
    if (xcb_connection_has_error(connection_) != 0) throw std::runtime_error("no display");
    root_ = xcb_setup_roots_iterator(xcb_get_setup(connection_)).data->root;
    const xcb_query_extension_reply_t* damage = xcb_get_extension_data(connection_, &xcb_damage_id);
    if (damage == nullptr || damage->present == 0)
      throw std::runtime_error("the display reports no painting");
    damageEvent_ = static_cast<std::uint8_t>(damage->first_event + XCB_DAMAGE_NOTIFY);
    const Reply<xcb_damage_query_version_reply_t> version(
        xcb_damage_query_version_reply(connection_, xcb_damage_query_version(connection_, 1, 1), nullptr));
    const std::uint32_t look[] = {kGround, XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY};
    xcb_change_window_attributes(connection_, root_, XCB_CW_BACK_PIXEL | XCB_CW_EVENT_MASK, look);
    xcb_clear_area(connection_, 0, root_, 0, 0, 0, 0);
    xcb_flush(connection_);
  }
  ~Display() { xcb_disconnect(connection_); }
  Display(const Display&) = delete;
  Display& operator=(const Display&) = delete;

  /// Returns once something has been painted in a window that was mapped after the call.
  void AwaitPainting() {
    const auto end = Clock::now() + kLongest;
    while (true) {
      Reply<xcb_generic_event_t> event(xcb_poll_for_event(connection_));
      if (event == nullptr) {
        const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(end - Clock::now());
        pollfd ready{.fd = xcb_get_file_descriptor(connection_), .events = POLLIN, .revents = 0};
        if (left.count() <= 0 || poll(&ready, 1, static_cast<int>(left.count())) <= 0)
          throw std::runtime_error("no window was painted");
        continue;
      }
      const std::uint8_t type = event->response_type & 0x7f;
      if (type == damageEvent_) {
        // Being mapped counts as damage, too.
        const auto* damaged = reinterpret_cast<xcb_damage_notify_event_t*>(event.get());
        if (Painted(damaged->drawable, damaged->geometry)) return;
        xcb_damage_subtract(connection_, damaged->damage, XCB_NONE, XCB_NONE);
        xcb_flush(connection_);
      }
      if (type == XCB_CREATE_NOTIFY) {
        const auto* created = reinterpret_cast<xcb_create_notify_event_t*>(event.get());
        // Toolkits make small windows that are never shown.
        if (created->width >= 100 && created->height >= 100) Watch(created->window);
      }
    }
  }

  /// Forgets what happened so far.
  void Settle() {
    const Reply<xcb_get_input_focus_reply_t> arrived(
        xcb_get_input_focus_reply(connection_, xcb_get_input_focus(connection_), nullptr));
    while (Reply<xcb_generic_event_t>(xcb_poll_for_event(connection_)) != nullptr) {
    }
  }

 private:
  bool Painted(xcb_window_t window, const xcb_rectangle_t& size) {
    const Reply<xcb_get_image_reply_t> middle(
        xcb_get_image_reply(connection_,
                            xcb_get_image(connection_, XCB_IMAGE_FORMAT_Z_PIXMAP, window,
                                          static_cast<std::int16_t>(size.width / 2),
                                          static_cast<std::int16_t>(size.height / 2), 1, 1, ~0U),
                            nullptr));
    if (middle == nullptr || xcb_get_image_data_length(middle.get()) < 4) return false;
    const std::uint8_t* pixel = xcb_get_image_data(middle.get());
    return (pixel[0] | pixel[1] << 8 | pixel[2] << 16) != kGround;
  }

  void Watch(xcb_window_t window) {
    xcb_damage_create(connection_, xcb_generate_id(connection_), window, XCB_DAMAGE_REPORT_LEVEL_NON_EMPTY);
    xcb_flush(connection_);
  }

  xcb_connection_t* connection_;
  xcb_window_t root_ = 0;
  std::uint8_t damageEvent_ = 0;
};

double MillisecondsToFirstPixel(Display& display, const std::string& program) {
  display.Settle();
  char* arguments[] = {const_cast<char*>(program.c_str()), nullptr};
  const auto start = Clock::now();
  pid_t process = 0;
  if (posix_spawn(&process, program.c_str(), nullptr, nullptr, arguments, environ) != 0)
    throw std::runtime_error("cannot start " + program);
  std::string fault;
  try {
    display.AwaitPainting();
  } catch (const std::exception& error) {
    fault = error.what();
  }
  const std::chrono::duration<double, std::milli> time = Clock::now() - start;
  kill(process, SIGKILL);
  waitpid(process, nullptr, 0);
  if (!fault.empty()) throw std::runtime_error(program + ": " + fault);
  return time.count();
}

double Median(std::vector<double> values) {
  std::sort(values.begin(), values.end());
  return values[values.size() / 2];
}

}  // namespace

int main(int argc, char** argv) {
  if (argc < 3) {
    std::fprintf(stderr,
                 "Usage: %s RUNS PROGRAM...\nPrints for each program the median and the least time to its "
                 "first pixel, in milliseconds. The programs take turns.\n",
                 argv[0]);
    return 2;
  }
  try {
    Display display;
    const int runs = std::atoi(argv[1]);
    const std::vector<std::string> programs(argv + 2, argv + argc);
    std::vector<std::vector<double>> times(programs.size());
    for (int run = -1; run < runs; ++run) {
      for (std::size_t i = 0; i < programs.size(); ++i) {
        const double time = MillisecondsToFirstPixel(display, programs[i]);
        if (run >= 0) times[i].push_back(time);  // The first turn fills the caches.
      }
    }
    for (std::size_t i = 0; i < programs.size(); ++i) {
      std::printf("%s\t%.2f\t%.2f\n", programs[i].c_str(), Median(times[i]),
                  *std::min_element(times[i].begin(), times[i].end()));
    }
  } catch (const std::exception& error) {
    std::fprintf(stderr, "%s\n", error.what());
    return 1;
  }
  return 0;
}
