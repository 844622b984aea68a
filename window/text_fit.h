// Font sizes found by measuring, so that no text is ever clipped.
#pragma once

#include <QFont>
#include <QSize>
#include <QString>

namespace bivouac {

enum class Wrapping { OneLine, AtWords };

/// True if the text, drawn in the font, lies wholly within the room.
bool TextFits(const QFont& font, const QString& text, QSize room, Wrapping wrapping);

/// The font in a size in pixels at which the text fits, or 1: `largest` or about the largest below it that
/// does.
QFont FittingFont(QFont font, const QString& text, QSize room, int largest, Wrapping wrapping);

}  // namespace bivouac
