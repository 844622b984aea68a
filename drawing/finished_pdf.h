// What a printer and a reader aloud ask of a PDF beyond what was drawn.
#pragma once

#include <array>
#include <cstdint>
#include <deque>
#include <functional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace bivouac {

/// Passes a PDF on while it is drawn, and keeps no page of it: every thing that a page uses is named once,
/// its language, its title for the window, and a text for each of its figures are added, and what is no
/// drawing is packed, which halves the file.
class PdfFinisher {
 public:
  using Write = std::function<void(std::string_view)>;
  /// The words for figures are taken from the front of `figures`, UTF-8, when the last page is drawn.
  PdfFinisher(Write write, std::deque<std::string>& figures) : write_(std::move(write)), figures_(figures) {}

  /// Some more of what Cairo draws, without packs of its own.
  void Add(std::string_view drawn);
  /// Requires: Cairo has drawn all. Errors: InputError if that is no such PDF.
  void Finish();

 private:
  void Take(std::string_view object);
  void Improve(std::string& dictionary);
  void WriteOut(std::string_view text);
  void WriteObject(std::size_t number, const std::string& content);
  void ClosePack();

  Write write_;
  std::uint32_t written_ = 0;
  std::deque<std::string>& figures_;
  std::string buffer_;                                // An object that is not whole.
  std::vector<std::array<std::uint32_t, 3>> places_;  // By number: 1, offset; or 2, pack, index there.
  std::vector<std::string> packs_;                    // Compressed.
  std::string index_;                                 // Of the pack that is being filled.
  std::string pack_;                                  // Its objects.
  std::uint32_t packed_ = 0;                          // How many.
};

}  // namespace bivouac
