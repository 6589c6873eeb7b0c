#include "tests/gallery/picture_folder.h"

#include <QApplication>
#include <QDir>
#include <cstdio>
#include <cstdlib>
#include <utility>

namespace tarnwick {
namespace {

QPalette darkPalette() {
  QPalette palette;
  const QColor window(0x2b, 0x2b, 0x2e);
  const QColor text(0xf2, 0xf2, 0xf2);
  palette.setColor(QPalette::Window, window);
  palette.setColor(QPalette::Base, QColor(0x1e, 0x1e, 0x20));
  palette.setColor(QPalette::AlternateBase, window);
  palette.setColor(QPalette::Button, QColor(0x3a, 0x3a, 0x3e));
  for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText}) {
    palette.setColor(role, text);
    palette.setColor(QPalette::Disabled, role, QColor(0x80, 0x80, 0x84));
  }
  // The style draws it as the shadow of disabled texts.
  palette.setColor(QPalette::Light, QColor(0x1e, 0x1e, 0x20));
  palette.setColor(QPalette::Highlight, QColor(0x2a, 0x82, 0xda));
  palette.setColor(QPalette::HighlightedText, Qt::white);
  return palette;
}

/// Sets the theme that the arguments choose, and gives its part of the files' names.
QString chooseTheme(const QStringList& arguments) {
  QString suffix;
  if (arguments.contains("dark")) {
    QApplication::setPalette(darkPalette());
    suffix += "-dark";
  }
  if (arguments.contains("largefont")) {
    QFont font = QApplication::font();
    font.setPointSizeF(font.pointSizeF() * 1.5);
    QApplication::setFont(font);
    suffix += "-largefont";
  }
  const QByteArray scale = qgetenv("QT_SCALE_FACTOR");
  if (!scale.isEmpty()) suffix += "-scale" + QString::fromLatin1(scale);
  return suffix;
}

}  // namespace

PictureFolder::PictureFolder(QString folder, QString suffix)
    : folder_(std::move(folder)), suffix_(std::move(suffix)) {
  QDir().mkpath(folder_);
}

void PictureFolder::save(const QString& name, QWidget& window) {
  const QString path = folder_ + "/" + name + suffix_ + ".png";
  if (!window.grab().save(path)) {
    std::fprintf(stderr, "cannot write %s\n", qPrintable(path));
    std::exit(EXIT_FAILURE);
  }
  std::printf("%s\n", qPrintable(path));
}

int drawPictures(int argc, char** argv, const std::function<void(PictureFolder&)>& drawAll) {
  qputenv("QT_QPA_PLATFORM", "offscreen");
  qputenv("QT_STYLE_OVERRIDE", "fusion");
  const QApplication application(argc, argv);
  const QStringList arguments = QCoreApplication::arguments().mid(1);
  if (arguments.isEmpty()) {
    std::fprintf(stderr, "usage: %s FOLDER [dark] [largefont]\n", argv[0]);
    return 2;
  }
  PictureFolder pictures(arguments.first(), chooseTheme(arguments));
  drawAll(pictures);
  return 0;
}

}  // namespace tarnwick
