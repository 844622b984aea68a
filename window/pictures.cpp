#include "window/pictures.h"

#include <QResource>
#include <png.h>

namespace bivouac {

QImage ReadPicture(const QString& path) {
  const QByteArray file = QResource(QStringLiteral(":/") + path).uncompressedData();
  png_image png{};
  png.version = PNG_IMAGE_VERSION;
  const auto size = static_cast<std::size_t>(file.size());
  if (png_image_begin_read_from_memory(&png, file.constData(), size) == 0) return {};
  const bool transparent = (png.format & PNG_FORMAT_FLAG_ALPHA) != 0;
  QImage picture(static_cast<int>(png.width), static_cast<int>(png.height),
                 transparent ? QImage::Format_RGBA8888 : QImage::Format_RGBX8888);
  png.format = PNG_FORMAT_RGBA;
  const auto stride = static_cast<png_int_32>(picture.bytesPerLine());
  if (png_image_finish_read(&png, nullptr, picture.bits(), stride, nullptr) == 0) return {};
  return picture;
}

}  // namespace bivouac
