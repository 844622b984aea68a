// The status bar of six panels.
#pragma once

#include <QWidget>
#include <array>
#include <string>

#include "game/game_state.h"
#include "window/widgets.h"

namespace bivouac {

class StatusBar : public QWidget {
 public:
  explicit StatusBar(QWidget* parent);

  void Draw(const FixedArray<Panel, 6>& panels);
  /// Places the panels by their shares of the width and fits their texts. `unit` is the length of a pixel of
  /// the window's opening size.
  void LayOut(double unit);

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  void FitTexts();

  std::array<TextLabel*, 6> labels_{};
  std::array<std::string, 6> drawn_;
  double unit_ = 0;  ///< 0 until the bar is laid out.
};

}  // namespace bivouac
