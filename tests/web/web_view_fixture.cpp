#include "tests/web/web_view_fixture.h"

#include <QtCore/QEventLoop>
#include <QtCore/QTimer>
#include <QtWidgets/QLabel>
#include <utility>

namespace tarnwick {

std::optional<QString> Services::askSavePath(QWidget* /*parent*/, const QString& suggestedName) {
  suggestedNames.append(suggestedName);
  return savePath;
}

QStringList Services::chooseFiles(QWidget* /*parent*/, bool allowsMultipleSelection,
                                  bool /*allowsDirectories*/) {
  askedForMultiple = allowsMultipleSelection;
  return files;
}

std::optional<int> Services::showMessage(QWidget* /*parent*/, const QString& text,
                                         const QStringList& buttons) {
  messages.append(text + QStringLiteral(" [") + buttons.join(QLatin1Char(' ')) +
                  QStringLiteral("]"));
  if (meanwhile) meanwhile();
  return pressed;
}

Answer page(const std::string& body) {
  Answer answer;
  answer.body = "<!doctype html><title>desktop</title><body>" + body;
  return answer;
}

void WebViewTest::SetUp() {
  ASSERT_TRUE(folder_.isValid());
  ASSERT_NE(loader_.module(), nullptr) << loader_.error().toStdString();
  services_ = std::make_unique<Services>(folder_.filePath(QStringLiteral("storage")),
                                         folder_.filePath(QStringLiteral("cache")));
  window_.resize(400, 300);
  window_.show();
}

void WebViewTest::TearDown() {
  close();
  server_.reset();
}

void WebViewTest::serve(const std::string& body) {
  serve([body](const Seen& seen) { return page(seen.path == "/" ? body : ""); });
}

void WebViewTest::serve(HttpsServer::Handler handler, int port) {
  server_ = std::make_unique<HttpsServer>(identity_, std::move(handler), port);
}

void WebViewTest::open(const std::string& host) {
  QUrl url;
  url.setScheme(QStringLiteral("https"));
  url.setHost(QString::fromStdString(host));
  url.setPort(server_->port());
  url.setPath(QStringLiteral("/"));
  open(url);
}

void WebViewTest::open(const QUrl& url) {
  close();
  view_ = loader_.module()->makeView(url, token_, *services_, &window_);
  view_->setGeometry(window_.rect());
  view_->show();
}

void WebViewTest::close() {
  delete std::exchange(view_, nullptr);
}

bool WebViewTest::isConnecting() const {
  return view_->findChild<QLabel*>()->isVisibleTo(view_);
}

// A real event loop: the engine's work is handed out by it in small pieces, and a loop that sleeps
// between looks would slow it down tenfold.
bool WebViewTest::eventually(const std::function<bool()>& condition, std::chrono::seconds limit) {
  QEventLoop loop;
  QTimer look;
  QTimer::singleShot(limit, &loop, [&loop] { loop.exit(1); });
  QObject::connect(&look, &QTimer::timeout, &loop, [&] {
    if (condition()) loop.exit(0);
  });
  look.start(std::chrono::milliseconds(5));
  return condition() || loop.exec() == 0;
}

void WebViewTest::pause(std::chrono::milliseconds time) {
  QEventLoop loop;
  QTimer::singleShot(time, &loop, &QEventLoop::quit);
  loop.exec();
}

}  // namespace tarnwick
