// The floor for a start: a window of our size with nothing in it.

#include <QApplication>
#include <QWidget>

int main(int argc, char** argv) {
  QApplication application(argc, argv);
  QWidget window;
  window.resize(1000, 700);
  window.show();
  return QApplication::exec();
}
