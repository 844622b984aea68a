#include "tests/support/scripted_desktop.h"

#include <stdexcept>

#include "game/error.h"

namespace bivouac {

BoxAnswer ScriptedDesktop::Show(const MessageBox& box) {
  Boxes.push_back(box);
  if (WhileOpen) WhileOpen(box);
  if (AnswerBox) return AnswerBox(box);
  if (box.Buttons == BoxButtons::Ok) return BoxAnswer::Ok;
  if (Answers.empty()) throw std::logic_error("unexpected box: " + box.Title + ": " + box.Text);
  const BoxAnswer answer = Answers.front();
  Answers.pop_front();
  return answer;
}

std::string ScriptedDesktop::Show(const InputBox& box) {
  if (AnswerInput) return AnswerInput(box);
  if (Inputs.empty()) throw std::logic_error("unexpected input box: " + box.Title);
  std::string input = Inputs.front();
  Inputs.pop_front();
  return input;
}

void ScriptedDesktop::Yield() {
  ++Yields;
  if (WhileYielding) WhileYielding();
}

std::string ScriptedDesktop::GetSetting(std::string_view section, std::string_view key,
                                        std::string_view fallback) {
  const auto found = Settings.find({std::string(section), std::string(key)});
  return found == Settings.end() ? std::string(fallback) : found->second;
}

bool ScriptedDesktop::SaveSetting(std::string_view section, std::string_view key, std::string_view value) {
  if (SettingsWritable) Settings[{std::string(section), std::string(key)}] = value;
  return SettingsWritable;
}

int ScriptedDesktop::LoadSound(const std::string& path) {
  Loaded.push_back(path);
  const auto found = SoundIds.find(path);
  return found == SoundIds.end() ? static_cast<int>(Loaded.size()) - 1 : found->second;
}

int ScriptedDesktop::ShellExecute(std::string_view, const std::string&, const std::string& parameters,
                                  const std::string&, int) {
  Opened.push_back(parameters);
  return ShellCode;
}

}  // namespace bivouac
