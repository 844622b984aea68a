#include "game/clock.h"

#include <string_view>

#include "game/layout.h"
#include "game/text.h"

namespace bivouac {
namespace {

/// The leading number of a piece of a text, by position counted from 1.
int NumberAt(std::string_view text, std::size_t position, std::size_t length) {
  if (position > text.size()) return 0;
  return static_cast<int>(RoundHalfEven(LeadingNumber(text.substr(position - 1, length))));
}

/// How a text such as "9:05:59" is cut. Digits may be missing in front of each number, and are known by two
/// colons: whether the third character is one, and whether the character after a digit of the minutes is.
struct ClockForm {
  std::size_t HourDigits;
  std::size_t MinutePosition;
  std::size_t MinuteDigits;
  std::size_t ShortLength;  ///< A text of this length has one digit of the seconds, any other two.
};

constexpr ClockForm kLateTwoDigits{2, 4, 2, 7};   // "10:05:..."
constexpr ClockForm kLateOneDigit{2, 4, 1, 6};    // "10:5:..."
constexpr ClockForm kEarlyTwoDigits{1, 3, 2, 6};  // "9:05:..."
constexpr ClockForm kEarlyOneDigit{1, 3, 1, 5};   // "9:5:..."

/// Second of the day in such a text.
int SecondOfDay(std::string_view text) {
  const auto colonAt = [&](std::size_t position) {
    return position <= text.size() && text[position - 1] == ':';
  };
  const ClockForm& form = colonAt(3) ? (colonAt(5) ? kLateOneDigit : kLateTwoDigits)
                                     : (colonAt(4) ? kEarlyOneDigit : kEarlyTwoDigits);
  const std::size_t secondDigits = text.size() == form.ShortLength ? 1 : 2;
  const std::size_t secondPosition = text.size() < secondDigits ? 1 : text.size() - secondDigits + 1;
  return NumberAt(text, 1, form.HourDigits) * 3600 +
         NumberAt(text, form.MinutePosition, form.MinuteDigits) * 60 +
         NumberAt(text, secondPosition, secondDigits);
}

/// Sets ClockStart so that the clock stands at Elapsed now, counted from yesterday if the game began before
/// midnight.
void StartClockFromElapsed(Main& main) {
  const int now = main.Elapsed > main.ClockNow ? main.ClockNow + kDaySeconds : main.ClockNow;
  main.ClockStart = now - main.Elapsed;
}

}  // namespace

void ReadClock(Main& main) {
  main.ClockText = main.desktop.TimeOfDay();
  main.ClockNow = SecondOfDay(main.ClockText);
}

std::string FormatClock(int seconds) {
  return TwoDigits(seconds / 60) + ":" + TwoDigits(seconds % 60);
}

void AddPenalty(Main& main, int seconds) {
  ReadClock(main);
  main.Elapsed += seconds;
  StartClockFromElapsed(main);
}

void Timer3_Timer(Main& main) {
  ReadClock(main);
  int now = main.ClockNow;
  if (now < main.ClockStart) now += kDaySeconds;
  main.Elapsed = now - main.ClockStart;
  const std::string text = FormatClock(main.Elapsed);
  if (text != main.LabelTijd.Caption) main.LabelTijd.Caption = text;
}

void cmdPause_Click(Main& main) {
  main.Shield.Visible = true;
  main.PausedMinutes = main.Elapsed / 60;
  main.PausedSeconds = main.Elapsed % 60;
  main.Timer3.Enabled = false;
  main.Paused = true;
  RefreshButtons(main);
}

void Picture1_Click(Main& main) {
  main.Shield.Visible = false;
  main.Timer3.Enabled = true;
  main.Elapsed = main.PausedMinutes * 60 + main.PausedSeconds;
  ReadClock(main);
  StartClockFromElapsed(main);
  main.Paused = false;
  RefreshButtons(main);
}

}  // namespace bivouac
