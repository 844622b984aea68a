// Message boxes and input boxes. Each holds the caller until it is answered.
#pragma once

#include <QWidget>
#include <string>

#include "game/desktop.h"

namespace bivouac {

/// The largest inside of a window that its screen can show, in logical pixels.
QSize RoomOnScreen(const QWidget& window);

/// Moves a window over the middle of its parent, as far as the screen lets it.
void MoveOverParent(QWidget& window);

/// Enter answers with the first button, Escape and the close box with the last: Cancel, No, or the only OK.
BoxAnswer ShowMessageBox(QWidget* parent, const MessageBox& box);

/// Returns the text, empty on Cancel, Escape and the close box.
std::string ShowInputBox(QWidget* parent, const InputBox& box);

}  // namespace bivouac
