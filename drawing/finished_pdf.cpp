#include "drawing/finished_pdf.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <glib.h>
#include <sstream>
#include <zlib.h>

#include "game/error.h"

namespace bivouac {
namespace {

constexpr std::string_view kBegin = " 0 obj\n";
constexpr std::string_view kEnd = "\nendobj\n";
constexpr std::string_view kCatalog = "<< /Type /Catalog";
constexpr std::string_view kFigure = "<< /Type /StructElem\n   /S /Figure";
constexpr std::string_view kThings = "/XObject << ";
constexpr std::uint32_t kPackSize = 200;

/// A compressed stream with such entries in its dictionary.
std::string StreamOf(const std::string& entries, const std::string& content) {
  uLongf size = compressBound(content.size());
  std::string packed(size, '\0');
  compress(reinterpret_cast<Bytef*>(packed.data()), &size, reinterpret_cast<const Bytef*>(content.data()),
           content.size());
  packed.resize(size);
  return "<< " + entries + " /Filter /FlateDecode /Length " + std::to_string(size) + " >>\nstream\n" +
         packed + "\nendstream";
}

/// Words as a string of a PDF.
std::string Quoted(const std::string& words) {
  std::string text = "<feff";
  gunichar2* const units = g_utf8_to_utf16(words.c_str(), -1, nullptr, nullptr, nullptr);
  for (const gunichar2* unit = units; unit != nullptr && *unit != 0; ++unit) {
    std::array<char, 5> digits;
    std::snprintf(digits.data(), digits.size(), "%04x", *unit);
    text += digits.data();
  }
  g_free(units);
  return text + '>';
}

/// Cairo names a thing each time that it is used.
void NameThingsOnce(std::string& dictionary) {
  const std::size_t begin = dictionary.find(kThings);
  if (begin == std::string::npos) return;
  const std::size_t end = dictionary.find(">>", begin);
  const std::size_t first = begin + kThings.size();
  std::istringstream names(dictionary.substr(first, end - first));
  std::string once;
  for (std::string name, number, generation, r; names >> name >> number >> generation >> r;) {
    if (once.find(name + ' ') == std::string::npos) once.append(name).append(" ").append(number) += " 0 R ";
  }
  dictionary.replace(first, end - first, once);
}

}  // namespace

void PdfFinisher::Add(std::string_view drawn) {
  std::size_t from = buffer_.size() - std::min(buffer_.size(), kEnd.size());
  buffer_ += drawn;
  for (std::size_t end; (end = buffer_.find(kEnd, from)) != std::string::npos; from = 0) {
    Take(std::string_view(buffer_).substr(0, end));
    buffer_.erase(0, end + kEnd.size());
  }
}

void PdfFinisher::Take(std::string_view object) {
  const std::size_t begin = object.find(kBegin);
  const std::size_t line = object.rfind('\n', begin) + 1;
  WriteOut(object.substr(0, line));  // The head of the file.
  const std::size_t number = std::strtoul(object.data() + line, nullptr, 10);
  std::string content(object.substr(begin + kBegin.size()));
  places_.resize(std::max(places_.size(), number + 1));
  // A stream and its length stay as they are.
  if (!content.starts_with("<<") || content.ends_with("\nendstream")) return WriteObject(number, content);
  Improve(content);
  places_[number] = {2, static_cast<std::uint32_t>(packs_.size()), packed_++};
  index_ += std::to_string(number) + ' ' + std::to_string(pack_.size()) + ' ';
  pack_ += content + '\n';
  if (packed_ == kPackSize) ClosePack();
}

void PdfFinisher::Improve(std::string& dictionary) {
  if (dictionary.starts_with(kCatalog)) {
    dictionary.insert(kCatalog.size(), "/Lang (en) /ViewerPreferences << /DisplayDocTitle true >>");
  } else if (dictionary.starts_with(kFigure) && !figures_.empty()) {
    dictionary.insert(kFigure.size(), "/Alt " + Quoted(figures_.front()));
    figures_.pop_front();
  } else if (!dictionary.starts_with("<< /")) {
    NameThingsOnce(dictionary);
  }
}

void PdfFinisher::WriteOut(std::string_view text) {
  write_(text);
  written_ += static_cast<std::uint32_t>(text.size());
}

void PdfFinisher::WriteObject(std::size_t number, const std::string& content) {
  places_[number] = {1, written_, 0};
  WriteOut(std::to_string(number).append(kBegin).append(content).append(kEnd));
}

void PdfFinisher::ClosePack() {
  const std::string counts = " /N " + std::to_string(packed_) + " /First " + std::to_string(index_.size());
  packs_.push_back(StreamOf("/Type /ObjStm" + counts, index_ + pack_));
  index_.clear();
  pack_.clear();
  packed_ = 0;
}

void PdfFinisher::Finish() {
  const std::size_t root = buffer_.find("/Root");
  const std::size_t end = buffer_.find(">>", root);
  if (end == std::string::npos) throw InputError("drawing failed: a PDF of an unknown form");
  ClosePack();
  const std::uint32_t firstPack = static_cast<std::uint32_t>(places_.size());
  for (auto& [type, where, index] : places_) where += type == 2 ? firstPack : 0;
  places_.resize(places_.size() + packs_.size() + 1);
  for (std::size_t pack = 0; pack < packs_.size(); ++pack) WriteObject(firstPack + pack, packs_[pack]);
  const std::uint32_t start = written_;
  places_.back() = {1, start, 0};
  std::string table;
  for (const auto& place : places_) {
    for (const std::uint32_t number : place) {
      for (int byte = 3; byte >= 0; --byte) table += static_cast<char>(number >> 8 * byte & 0xff);
    }
  }
  WriteObject(places_.size() - 1, StreamOf("/Type /XRef /W [4 4 4] /Size " + std::to_string(places_.size()) +
                                               '\n' + buffer_.substr(root, end - root),
                                           table));
  WriteOut("startxref\n" + std::to_string(start) + "\n%%EOF\n");
}

}  // namespace bivouac
