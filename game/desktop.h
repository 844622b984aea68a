// What the game asks of a desktop: the few things that only a platform can do.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace bivouac {

enum class BoxSymbol { None, Information, Question, Warning, Error };
/// Enter presses the first, but of OkCancel, which asks before something is lost for good, Cancel.
enum class BoxButtons { Ok, OkCancel, YesNo };
enum class BoxAnswer { Ok, Cancel, Yes, No };

/// A modal message box.
struct MessageBox {
  std::string Title;
  std::string Text;
  BoxSymbol Symbol = BoxSymbol::None;
  BoxButtons Buttons = BoxButtons::Ok;
};

/// A modal box that asks for a line of text.
struct InputBox {
  std::string Title;
  std::string Prompt;
  std::string Default;
};

inline constexpr int kLocalDataFolder = 28;  ///< The number of the folder of the user's local data.

struct FolderAnswer {
  int Code = 0;      ///< 0 when the folder was found.
  std::string Path;  ///< May end in a zero character and what follows it.
};

/// The least code that tells of success, of calls that look for a program or start one.
inline constexpr int kFirstGoodCode = 33;

struct ProgramAnswer {
  int Code = 0;  ///< Below kFirstGoodCode: not found.
  std::string Program;
};

/// Size in twips.
struct ScreenSize {
  int Width = 0;
  int Height = 0;
};

class Desktop {
 public:
  virtual ~Desktop() = default;

  /// Shows the box and holds the caller until it is answered. Closing it answers as Escape does: Cancel, No,
  /// or OK where that is the only button.
  virtual BoxAnswer Show(const MessageBox& box) = 0;
  /// Shows the box and holds the caller. Returns the text, empty on Cancel.
  virtual std::string Show(const InputBox& box) = 0;
  /// Shows the dialog of the players and holds the caller until it is hidden.
  virtual void ShowPlayerDialog() = 0;
  virtual void Beep() = 0;

  /// Lets waiting events run. Cheap enough for inner loops. Throws ProgramEnd if one of them ended the
  /// program.
  virtual void Yield() = 0;
  /// Ends the program: throws ProgramEnd.
  [[noreturn]] virtual void End() = 0;

  /// The local time of day in 24 hours, such as "09:05:59".
  virtual std::string TimeOfDay() = 0;
  /// A seed for random numbers taken from the clock; two calls in a row differ.
  virtual std::uint64_t RandomSeed() = 0;

  /// Settings of the application "Bivouac", per user. Reading never fails: `fallback` where there is none.
  virtual std::string GetSetting(std::string_view section, std::string_view key,
                                 std::string_view fallback) = 0;
  /// Returns false if it cannot be written; reading gives the value all the same until the program ends.
  virtual bool SaveSetting(std::string_view section, std::string_view key, std::string_view value) = 0;
  /// The file that holds them, for a person who changes it by hand.
  virtual std::string SettingsFile() = 0;

  /// The folder of the program's own file, where its packs and sounds lie. Once installed, the one that holds
  /// those.
  virtual std::string ProgramFolder() = 0;
  /// The platform's special folder of that number, such as kLocalDataFolder.
  virtual FolderAnswer SpecialFolder(int number) = 0;
  virtual ScreenSize Screen() = 0;

  /// Gives the sound engine the window. Called once, before any other call on the engine.
  virtual void AttachSound() = 0;
  /// 1 when the sound engine is ready, as far as can be told at once: its device is opened later.
  virtual int SoundReady() = 0;
  /// Loads a wave file. Returns its id, negative if there is no such file. One that is no sound plays
  /// nothing.
  virtual int LoadSound(const std::string& path) = 0;
  /// Plays a loaded sound once and does not wait for its end. Unknown ids play nothing.
  virtual void PlaySound(int id) = 0;

  /// Finds the program that opens files like this one.
  virtual ProgramAnswer FindExecutable(const std::string& file, const std::string& folder) = 0;
  /// Opens a page in that program. Returns a code, below kFirstGoodCode on failure.
  virtual int ShellExecute(std::string_view verb, const std::string& program, const std::string& parameters,
                           const std::string& folder, int show) = 0;
};

}  // namespace bivouac
