#include <QtCore/QFile>
#include <QtTest/QTest>

#include "tests/web/web_view_fixture.h"

namespace tarnwick {
namespace {

using namespace std::chrono_literals;

class PageTest : public WebViewTest {
 protected:
  /// Opens a page and clicks into its middle, which is all button, until it has said `reply`: the
  /// engine takes clicks only when it has painted.
  bool clickUntil(const std::string& reply, const std::string& body) {
    serve(body);
    open();
    if (!eventually([this] { return !isConnecting(); })) return false;
    for (int i = 0; i < 20 && !server_->saw(reply); ++i) {
      QWidget* target = view_->focusProxy();
      while (target->focusProxy() != nullptr) target = target->focusProxy();
      QTest::mouseClick(target, Qt::LeftButton, Qt::NoModifier, target->rect().center());
      pause(400ms);
    }
    return server_->saw(reply);
  }
};

TEST_F(PageTest, PopUpsOpenInTheBrowserOrInTheSameView) {
  serve(
      "<script>onload=()=>{open('https://example.invalid/a');open();open('about:blank');"
      "open('mailto:a@example.invalid');open('https://localhost/');open('/second')}</script>");
  open();
  EXPECT_TRUE(eventually([this] { return server_->saw("/second"); }));
  EXPECT_EQ(services_->opened, QStringList({QStringLiteral("https://example.invalid/a"),
                                            QStringLiteral("mailto:a@example.invalid"),
                                            QStringLiteral("https://localhost/")}));
}

HttpsServer::Handler withFile() {
  return [](const Seen& seen) {
    Answer answer = page("<script>fetch('/runs');setTimeout(()=>location='/file',300)</script>");
    if (seen.path == "/file") {
      answer.type = "application/octet-stream";
      answer.body = "contents";
      answer.fields.emplace_back("Content-Disposition", "attachment; filename=\"../../x.bin\"");
    }
    return answer;
  };
}

TEST_F(PageTest, ADownloadGoesWhereTheUserSaysAndThePageStays) {
  const QString path = folder_.filePath(QStringLiteral("saved by me.bin"));
  services_->savePath = path;
  serve(withFile());
  open();
  ASSERT_TRUE(eventually([&path] { return QFile::exists(path) && QFile(path).size() == 8; }));
  ASSERT_EQ(services_->suggestedNames.size(), 1);
  EXPECT_FALSE(services_->suggestedNames.first().contains(QLatin1Char('/')));
  QFile file(path);
  ASSERT_TRUE(file.open(QIODevice::ReadOnly));
  EXPECT_EQ(file.readAll(), QByteArray("contents"));
  pause(2500ms);
  EXPECT_EQ(server_->count("/runs"), 1);
  EXPECT_FALSE(isConnecting());
}

TEST_F(PageTest, ADownloadWithoutADestinationIsCancelled) {
  serve(withFile());
  open();
  ASSERT_TRUE(eventually([this] { return services_->suggestedNames.size() == 1; }));
  pause(2500ms);
  EXPECT_EQ(server_->count("/runs"), 1);
  EXPECT_FALSE(isConnecting());
}

TEST_F(PageTest, DialogsOfThePageAreAnswered) {
  services_->pressed = 0;
  serve(
      "<script>onload=()=>{alert('<b>hi</b>');fetch('/confirm='+confirm('sure?')+"
      "',prompt='+prompt('name?','x'))}</script>");
  open();
  EXPECT_TRUE(eventually([this] { return server_->saw("/confirm=true,prompt=null"); }));
  EXPECT_EQ(services_->messages,
            QStringList({QStringLiteral("<b>hi</b> [OK]"), QStringLiteral("sure? [OK Cancel]")}));
  services_->pressed.reset();
  reload();
  EXPECT_TRUE(eventually([this] { return server_->saw("/confirm=false,prompt=null"); }));
}

TEST_F(PageTest, TheViewMayGoWhileADialogIsOpen) {
  services_->meanwhile = [this] {
    close();
    pause(300ms);
  };
  serve("<script>confirm('sure?')</script>");
  open();
  EXPECT_TRUE(eventually([this] { return view_ == nullptr; }));
  pause(300ms);
  services_->meanwhile = nullptr;
  serve("<script>fetch('/runs')</script>");
  open();
  EXPECT_TRUE(eventually([this] { return server_->saw("/runs"); }));
}

TEST_F(PageTest, UploadsTakeWhatTheUserChooses) {
  QFile file(folder_.filePath(QStringLiteral("up.txt")));
  ASSERT_TRUE(file.open(QIODevice::WriteOnly));
  file.write("12345");
  file.close();
  services_->files = {file.fileName()};
  EXPECT_TRUE(
      clickUntil("/size=5",
                 "<input type=file multiple id=f onchange=\"fetch('/size='+f.files[0].size)\" "
                 "style='position:fixed;inset:0;opacity:0;width:100%;height:100%'>"));
  EXPECT_EQ(services_->askedForMultiple, true);
}

TEST_F(PageTest, CameraAndMicrophoneAreDeniedWithoutAQuestion) {
  serve(
      "<script>const ask=(n,c)=>navigator.mediaDevices.getUserMedia(c).then(()=>fetch('/'+n+"
      "'=given'),e=>fetch('/'+n+'='+e.name));ask('a',{audio:true});ask('v',{video:true});"
      "ask('b',{audio:true,video:true})</script>");
  open();
  for (const char* answer : {"/a=NotAllowedError", "/v=NotAllowedError", "/b=NotAllowedError"})
    EXPECT_TRUE(eventually([&] { return server_->saw(answer); })) << answer;
}

TEST_F(PageTest, TheDesktopMayHoldTheMousePointer) {
  EXPECT_TRUE(clickUntil(
      "/locked",
      "<button style='position:fixed;inset:0;width:100%' onclick=\"document.onpointerlockchange="
      "()=>fetch('/locked');document.body.requestPointerLock()\"></button>"));
}

TEST_F(PageTest, PlaysWithoutAGesture) {
  serve("<script>fetch('/audio='+new AudioContext().state)</script>");
  open();
  EXPECT_TRUE(eventually([this] { return server_->saw("/audio=running"); }));
}

TEST_F(PageTest, StorageOutlivesTheView) {
  serve("<script>fetch('/had='+localStorage.getItem('k'));localStorage.setItem('k','v')</script>");
  open();
  ASSERT_TRUE(eventually([this] { return server_->saw("/had=null"); }));
  open();
  EXPECT_TRUE(eventually([this] { return server_->saw("/had=v"); }));
  EXPECT_TRUE(QFile::exists(services_->storageFolder()));
}

}  // namespace
}  // namespace tarnwick
