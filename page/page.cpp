#include "page/page.h"

#include <cstdlib>

extern "C" {
void PageTell(const char* message);
/// Returns text that the caller frees.
char* PageAsk(const char* message);
}

namespace bivouac {

Message& Message::Add(const char* name, std::string_view text) {
  writer_.Key(name);
  writer_.String(text.data(), static_cast<rapidjson::SizeType>(text.size()));
  return *this;
}

Message& Message::Add(const char* name, int number) {
  writer_.Key(name);
  writer_.Int(number);
  return *this;
}

Message& Message::Add(const char* name, bool flag) {
  writer_.Key(name);
  writer_.Bool(flag);
  return *this;
}

Message& Message::AddJson(const char* name, const std::string& json) {
  writer_.Key(name);
  writer_.RawValue(json.data(), json.size(), rapidjson::kObjectType);
  return *this;
}

Message& Message::Add(const char* name, const std::vector<std::string>& texts) {
  writer_.Key(name);
  writer_.StartArray();
  for (const std::string& text : texts) writer_.String(text.c_str());
  writer_.EndArray();
  return *this;
}

Message& Message::AddJson(const char* name, const std::vector<std::string>& jsons) {
  writer_.Key(name);
  writer_.StartArray();
  for (const std::string& json : jsons) writer_.RawValue(json.data(), json.size(), rapidjson::kObjectType);
  writer_.EndArray();
  return *this;
}

std::string Message::Text() {
  writer_.EndObject();
  return {text_.GetString(), text_.GetSize()};
}

void TellPage(const std::string& message) {
  PageTell(message.c_str());
}

std::string AskPage(const std::string& message) {
  char* const answer = PageAsk(message.c_str());
  std::string text(answer);
  std::free(answer);
  return text;
}

}  // namespace bivouac
