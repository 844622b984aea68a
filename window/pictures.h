// The pictures in the program.
#pragma once

#include <QImage>
#include <QString>

namespace bivouac {

/// Reads a picture by its path in the program, such as "tiles/part0.png". Null if there is none. Not by Qt's
/// readers: they load all their plugins to ask each, even for a format that Qt reads itself.
QImage ReadPicture(const QString& path);

}  // namespace bivouac
