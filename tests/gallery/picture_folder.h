#pragma once

#include <QString>
#include <QWidget>
#include <functional>

namespace tarnwick {

/// Where pictures of windows go; a file's name tells theme and scale.
class PictureFolder {
 public:
  PictureFolder(QString folder, QString suffix);

  /// Writes what the window shows now as NAME + suffix + ".png"; the program ends when it cannot.
  void save(const QString& name, QWidget& window);

 private:
  QString folder_;
  QString suffix_;
};

/// The main() of a program that draws windows without a display into the folder named by its first
/// argument. The environment variable QT_SCALE_FACTOR works as in the application; `dark` and
/// `largefont` as further arguments choose the theme.
int drawPictures(int argc, char** argv, const std::function<void(PictureFolder&)>& drawAll);

}  // namespace tarnwick
