#include <QGuiApplication>
#include <QImage>
#include <QPainter>
#include <QSvgGenerator>
#include <cstdio>
#include <cstdlib>

#include "ui/common/logo_view.h"

namespace tarnwick {
namespace {

/// The vector drawing's own edge; any would do, and this one keeps its numbers short.
constexpr int scalableSize = 256;

bool drawScalable(const QString& file) {
  QSvgGenerator drawing;
  drawing.setFileName(file);
  drawing.setSize(QSize(scalableSize, scalableSize));
  // Readers take 96 pixels for an inch.
  drawing.setResolution(96);
  drawing.setViewBox(QRect(0, 0, scalableSize, scalableSize));
  drawing.setTitle(QStringLiteral("Tarnwick"));
  QPainter painter;
  if (!painter.begin(&drawing)) return false;
  drawLogo(painter, scalableSize);
  return painter.end();
}

bool drawSized(const QString& file, int size) {
  QImage image(size, size, QImage::Format_ARGB32_Premultiplied);
  image.fill(Qt::transparent);
  QPainter painter(&image);
  drawLogo(painter, size);
  painter.end();
  return image.save(file);
}

/// One file: "scalable", or an edge in pixels, and where it goes.
bool drawIcon(const QString& size, const QString& file) {
  if (size == QLatin1String("scalable")) return drawScalable(file);
  const int edge = size.toInt();
  return edge > 0 && drawSized(file, edge);
}

}  // namespace
}  // namespace tarnwick

/// Draws the logo into the files of an icon theme. usage: tarnwick_draw_icons (SIZE FILE)…
int main(int argc, char** argv) {
  const QGuiApplication qt(argc, argv);
  const QStringList arguments = QGuiApplication::arguments();
  if (arguments.size() < 3 || arguments.size() % 2 == 0) return 2;
  for (qsizetype next = 1; next < arguments.size(); next += 2) {
    if (tarnwick::drawIcon(arguments[next], arguments[next + 1])) continue;
    std::fprintf(stderr, "The icon could not be drawn: %s\n", qPrintable(arguments[next + 1]));
    return EXIT_FAILURE;
  }
  return EXIT_SUCCESS;
}
