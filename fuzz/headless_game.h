// The game without a window, for programs that put its files to the test.
#pragma once

#include <string>
#include <utility>
#include <vector>

#include "storage/start_up.h"
#include "workbench/workbench.h"

namespace bivouac {

/// A desktop with the folders of an installation and two players, who plays size 6. Boxes are answered with
/// OK.
class GameDesktop : public HeadlessDesktop {
 public:
  static constexpr int kSize = 6;
  static constexpr int kPlayers = 2;

  GameDesktop(std::string program, std::string local)
      : program_(std::move(program)), local_(std::move(local)) {}

  std::string Answer;               ///< To every box that asks for a text.
  std::vector<std::string> Titles;  ///< Of the message boxes so far.

  using HeadlessDesktop::Show;
  BoxAnswer Show(const MessageBox& box) override {
    Titles.push_back(box.Title);
    return BoxAnswer::Ok;
  }
  std::string Show(const InputBox&) override { return Answer; }
  std::string ProgramFolder() override { return program_; }
  FolderAnswer SpecialFolder(int) override { return {0, local_}; }
  std::string GetSetting(std::string_view, std::string_view key, std::string_view fallback) override {
    if (key == "Size") return std::to_string(kSize);
    if (key == "Count") return std::to_string(kPlayers);
    return std::string(fallback);
  }

 private:
  std::string program_, local_;
};

/// A run of the game, started. Errors: what the start does not catch.
struct HeadlessGame {
  HeadlessGame(const std::string& program, const std::string& local) : desktop(program, local), form(main) {
    Form_Load(main, form);
  }
  GameDesktop desktop;
  Global global;
  Main main{global, desktop};
  FormNamen form;
};

}  // namespace bivouac
