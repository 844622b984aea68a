#include "fuzz/bytes.h"

namespace bivouac {

int Bytes::Next() {
  if (rest_.empty()) return 0;
  const int byte = rest_.front();
  rest_ = rest_.subspan(1);
  return byte;
}

int Bytes::Below(int limit) {
  int number = Next();
  if (limit > 256) number = number * 256 + Next();
  return number % limit;
}

std::string Bytes::Text(int longest) {
  std::string text;
  for (int left = Below(longest + 1); left > 0 && !AtEnd(); --left) text += static_cast<char>(Next());
  return text;
}

}  // namespace bivouac
