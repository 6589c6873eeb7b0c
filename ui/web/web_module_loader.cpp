#include "ui/web/web_module_loader.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QDir>
#include <QtCore/QFileInfo>
#include <QtCore/QPluginLoader>
#include <QtGui/QOpenGLContext>

QT_BEGIN_NAMESPACE
// Qt exports these two without declaring them; they are what Qt::AA_ShareOpenGLContexts is made of.
Q_GUI_EXPORT void qt_gl_set_global_share_context(QOpenGLContext* context);
Q_GUI_EXPORT QOpenGLContext* qt_gl_global_share_context();
QT_END_NAMESPACE

namespace tarnwick {
namespace {

/// The engine wants a context that all windows share, before its library is loaded. Qt makes one at
/// the start when it is asked to, which costs every start tens of milliseconds and more memory than
/// the rest of the program; so it is made here, where it is needed.
void provideSharedContext() {
  if (qt_gl_global_share_context() != nullptr) return;
  auto* context = new QOpenGLContext;
  context->create();
  qt_gl_set_global_share_context(context);
  // Runs after the engine's own clean-up, which is registered later, and before the display closes.
  qAddPostRoutine([] {
    delete qt_gl_global_share_context();
    qt_gl_set_global_share_context(nullptr);
  });
}

/// Beside the installed program, in a build folder, or next to the program. Empty when it is
/// absent.
QString findModule() {
  const QDir program(QCoreApplication::applicationDirPath());
  for (const char* folder : {"../lib/tarnwick", "../ui/web/engine", "."}) {
    const QFileInfo file(program.filePath(QLatin1String(folder) + "/libtarnwick_web.so"));
    if (file.isFile()) return file.canonicalFilePath();
  }
  return {};
}

}  // namespace

WebDesktopModule* WebModuleLoader::module() {
  if (module_ != nullptr) return module_;
  const QString path = findModule();
  if (path.isEmpty()) {
    error_ = QStringLiteral(
        "The desktop view is missing: libtarnwick_web.so is not where the program looks for it.");
    return nullptr;
  }
  provideSharedContext();
  QPluginLoader loader(path);
  module_ = qobject_cast<WebDesktopModule*>(loader.instance());
  if (module_ != nullptr)
    error_.clear();
  else
    error_ = QStringLiteral("The desktop view could not be loaded. %1").arg(loader.errorString());
  return module_;
}

void WebModuleLoader::forgetCertificate() {
  if (module_ != nullptr) module_->forgetCertificate();
}

QString WebModuleLoader::engineVersion() const {
  return module_ != nullptr ? module_->engineVersion() : QString();
}

}  // namespace tarnwick
