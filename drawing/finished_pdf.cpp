#include "drawing/finished_pdf.h"

#include <qpdf/Pipeline.hh>
#include <qpdf/QPDF.hh>
#include <qpdf/QPDFWriter.hh>

#include "game/error.h"

namespace bivouac {
namespace {

using Write = std::function<void(const unsigned char*, std::size_t)>;

class ToWrite : public Pipeline {
 public:
  explicit ToWrite(const Write& write) : Pipeline("file", nullptr), write_(write) {}
  void write(const unsigned char* bytes, std::size_t count) override { write_(bytes, count); }
  void finish() override {}

 private:
  const Write& write_;
};

/// Gives the texts to the figures below an element of the structure, in the order of the document.
void TellFigures(QPDFObjectHandle element, std::vector<std::string>::const_iterator& text,
                 std::vector<std::string>::const_iterator end) {
  if (!element.isDictionary()) return;
  if (element.getKey("/S").isNameAndEquals("/Figure") && text != end)
    element.replaceKey("/Alt", QPDFObjectHandle::newUnicodeString(*text++));
  QPDFObjectHandle kids = element.getKey("/K");
  if (!kids.isArray()) return TellFigures(kids, text, end);
  for (int kid = 0; kid < kids.getArrayNItems(); ++kid) TellFigures(kids.getArrayItem(kid), text, end);
}

/// Puts the parts of the document, which were drawn one after the other, below one element for the whole.
void GatherParts(QPDF& pdf, QPDFObjectHandle structure) {
  if (!structure.isDictionary()) return;
  QPDFObjectHandle whole =
      pdf.makeIndirectObject(QPDFObjectHandle::parse("<< /Type /StructElem /S /Document >>"));
  QPDFObjectHandle parts = structure.getKey("/K").wrapInArray();
  for (int part = 0; part < parts.getArrayNItems(); ++part) parts.getArrayItem(part).replaceKey("/P", whole);
  whole.replaceKey("/P", structure);
  whole.replaceKey("/K", parts);
  structure.replaceKey("/K", whole);
}

}  // namespace

void FinishPdf(std::FILE* drawn, const std::vector<std::string>& figures, const Write& write) try {
  std::rewind(drawn);
  QPDF pdf;
  pdf.setSuppressWarnings(true);  // Names that stand twice are what is put right here.
  pdf.processFile("drawing", drawn, false);
  for (int id = pdf.getTrailer().getKey("/Size").getIntValueAsInt(); id > 0; --id) {
    pdf.getObjectByID(id, 0).isNull();  // Reads it.
    pdf.getWarnings();                  // Forgets them: they would fill the memory.
  }
  QPDFObjectHandle root = pdf.getRoot();
  root.replaceKey("/Lang", QPDFObjectHandle::newString("en"));
  root.replaceKey("/MarkInfo", QPDFObjectHandle::parse("<< /Marked true >>"));
  root.replaceKey("/ViewerPreferences", QPDFObjectHandle::parse("<< /DisplayDocTitle true >>"));
  GatherParts(pdf, root.getKey("/StructTreeRoot"));
  auto text = figures.begin();
  TellFigures(root.getKey("/StructTreeRoot"), text, figures.end());
  ToWrite file(write);
  QPDFWriter writer(pdf);
  writer.setOutputPipeline(&file);
  writer.setDeterministicID(true);
  writer.setObjectStreamMode(qpdf_o_generate);
  writer.write();
} catch (const QPDFExc& error) {
  throw InputError(std::string("drawing failed: ") + error.what());
}

}  // namespace bivouac
