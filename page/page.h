// The way to the page: the core runs in the browser as WebAssembly, and the page's scripts draw what they are
// told and answer what they are asked. engine.js stands on the other side.
#pragma once

#include <rapidjson/stringbuffer.h>
#include <rapidjson/writer.h>
#include <string>
#include <string_view>
#include <vector>

namespace bivouac {

/// One JSON object, written member by member.
class Message {
 public:
  Message() { writer_.StartObject(); }

  Message& Add(const char* name, std::string_view text);
  Message& Add(const char* name, const char* text) { return Add(name, std::string_view(text)); }
  Message& Add(const char* name, int number);
  Message& Add(const char* name, bool flag);
  Message& Add(const char* name, const std::vector<std::string>& texts);
  /// A value that is JSON already, or a list of such.
  Message& AddJson(const char* name, const std::string& json);
  Message& AddJson(const char* name, const std::vector<std::string>& jsons);

  /// The whole object. To be called once.
  std::string Text();

 private:
  rapidjson::StringBuffer text_;
  rapidjson::Writer<rapidjson::StringBuffer> writer_{text_};
};

/// A button of a dialog, from the row of its table.
template <class Row>
std::string ButtonJson(const Row& row, bool enabled) {
  Message button;
  button.Add("id", row.Name).Add("text", row.Caption).Add("description", row.Description);
  return button.Add("enabled", enabled).Text();
}

/// Tells the page something and goes on at once.
void TellPage(const std::string& message);
/// Asks the page something and waits for the answer. Meanwhile the page sends events, each of which is over
/// before this returns; none while it waits for files.
std::string AskPage(const std::string& message);

}  // namespace bivouac
