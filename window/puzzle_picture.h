// A puzzle as a picture: the board with its clues, as large as there is room.
#pragma once

#include <QImage>
#include <QWidget>

#include "game/game_state.h"
#include "window/tiles.h"

namespace bivouac {

/// The board and the clues as they stand in a state, with fields of `side` pixels.
QImage PictureOf(const Main& main, int side);

class PuzzlePicture : public QWidget {
 public:
  explicit PuzzlePicture(QWidget* parent);

  /// Shows the board and the clues as they stand in a state; nothing shows none. The state must outlive this,
  /// or another be shown first.
  void Show(const Main* main);

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  const Main* main_ = nullptr;
  Tiles tiles_;
};

}  // namespace bivouac
