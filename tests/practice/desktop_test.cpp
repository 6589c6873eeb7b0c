#include <arpa/inet.h>
#include <fmt/format.h>
#include <fstream>
#include <gmock/gmock.h>
#include <netinet/in.h>
#include <regex>
#include <set>
#include <sys/socket.h>
#include <unistd.h>

#include "rig.h"

namespace tarnwick::practice::test {
namespace {

using namespace std::chrono_literals;
using testing::HasSubstr;
using testing::Not;

const Environment kSignIn = {{"CUSTOM_USER", "linux"}, {"PASSWORD", "Tr1cky:päss word"}};
const std::string kPassword = kSignIn.at("PASSWORD");

class Desktop : public Rig {
 protected:
  Desktop() { startEngine(); }

  std::string note() const {
    httplib::Client page = client();
    const auto answer = page.Get("/note");
    return answer ? answer->body : "no answer";
  }

  void write(const std::string& text) const {
    httplib::Client page = client();
    const auto answer = page.Put("/note", text, "text/plain");
    ASSERT_TRUE(answer);
    EXPECT_EQ(answer->status, 204);
  }

  std::string certificate() const {
    return readFile(state_ / "volumes" / kVolume / "certificate.pem");
  }
};

TEST_F(Desktop, AsksForThePasswordOnBothPortsUntilItIsStopped) {
  ASSERT_EQ(up(kSignIn).status, 0);
  EXPECT_TRUE(running());
  EXPECT_EQ(statusOfPage(), 401);
  EXPECT_EQ(statusOfPage("linux", kPassword + "x"), 401);
  EXPECT_EQ(statusOfPage("abc", kPassword), 401);
  EXPECT_EQ(statusOfPage("linux", kPassword), 200);

  httplib::SSLClient secure("127.0.0.1", httpsPort_);
  secure.enable_server_certificate_verification(false);
  const auto refused = secure.Get("/");
  ASSERT_TRUE(refused);
  EXPECT_EQ(refused->status, 401);
  EXPECT_EQ(refused->get_header_value("WWW-Authenticate"), "Basic realm=\"Login\"");
  secure.set_basic_auth("linux", kPassword);
  const auto page = secure.Get("/");
  ASSERT_TRUE(page);
  EXPECT_THAT(page->body, HasSubstr("<title>Practice desktop</title>"));
  EXPECT_THAT(page->body, HasSubstr("not a real Linux"));
  EXPECT_THAT(page->body, HasSubstr("XFCE on Alpine"));
  EXPECT_THAT(page->body, Not(HasSubstr("{{")));
  // One self-contained file: nothing comes from elsewhere.
  EXPECT_FALSE(std::regex_search(page->body, std::regex("(src|href)=|url\\([^#]|https?://")));

  EXPECT_EQ(docker({"stop", "tarnwick"}).status, 0);
  EXPECT_FALSE(running());
  EXPECT_FALSE(client().Get("/"));
  EXPECT_EQ(docker({"inspect", "-f", kInspectFormat, "tarnwick"}).out,
            fmt::format("false|{}\n", kImage));
}

TEST_F(Desktop, KeepsThePasswordOutOfFilesArgumentsAndEnvironment) {
  ASSERT_EQ(up(kSignIn).status, 0);
  ASSERT_EQ(statusOfPage("linux", kPassword), 200);
  int files = 0;
  for (const auto& entry : std::filesystem::recursive_directory_iterator(folder_)) {
    if (entry.is_symlink() || !entry.is_regular_file()) continue;
    ++files;
    EXPECT_THAT(readFile(entry.path()), Not(HasSubstr(kPassword))) << entry.path();
  }
  EXPECT_GT(files, 3);
  const std::filesystem::path process = fmt::format("/proc/{}", serverPid());
  EXPECT_THAT(readFile(process / "cmdline"), HasSubstr("tarnwick-practice-desktop"));
  EXPECT_THAT(readFile(process / "cmdline"), Not(HasSubstr(kPassword)));
  EXPECT_THAT(readFile(process / "environ"), Not(HasSubstr(kPassword)));
  EXPECT_THAT(docker({"logs", "--tail", "40", "tarnwick"}).out, Not(HasSubstr(kPassword)));
}

TEST_F(Desktop, KeepsNoteAndCertificateInTheVolume) {
  ASSERT_EQ(up().status, 0);
  ASSERT_EQ(statusOfPage(), 200);
  write("tea, bread, ünïcode");
  const std::string before = certificate();
  EXPECT_THAT(before, HasSubstr("BEGIN CERTIFICATE"));

  ASSERT_EQ(docker({"stop", "tarnwick"}).status, 0);
  ASSERT_EQ(up().status, 0);
  ASSERT_EQ(statusOfPage(), 200);
  EXPECT_EQ(note(), "tea, bread, ünïcode");
  EXPECT_EQ(certificate(), before);

  EXPECT_THAT(docker({"volume", "rm", kVolume}).err, HasSubstr("volume is in use"));
  ASSERT_EQ(docker({"rm", "-f", "tarnwick"}).status, 0);
  ASSERT_EQ(docker({"volume", "rm", kVolume}).status, 0);
  const Outcome again = docker({"volume", "rm", kVolume});
  EXPECT_EQ(again.status, 1);
  EXPECT_EQ(again.err, fmt::format("Error: No such volume: {}\n", kVolume));
  ASSERT_EQ(up().status, 0);
  ASSERT_EQ(statusOfPage(), 200);
  EXPECT_EQ(note(), "");
  EXPECT_NE(certificate(), before);
}

TEST_F(Desktop, ComesBackWithTheEngineUnlessStopped) {
  ASSERT_EQ(up().status, 0);
  ASSERT_EQ(statusOfPage(), 200);
  ASSERT_EQ(run("colima", {"stop"}).status, 0);
  EXPECT_FALSE(client().Get("/"));
  EXPECT_EQ(docker({"info", "--format", "{{.ServerVersion}}"}).status, 1);
  ASSERT_EQ(run("colima", {"start"}).status, 0);
  EXPECT_TRUE(running());
  EXPECT_EQ(statusOfPage(), 200);

  ASSERT_EQ(docker({"stop", "tarnwick"}).status, 0);
  ASSERT_EQ(run("colima", {"stop"}).status, 0);
  ASSERT_EQ(run("colima", {"start"}).status, 0);
  EXPECT_FALSE(running());
}

TEST_F(Desktop, ComesBackLockedWhenItHadAPassword) {
  ASSERT_EQ(up(kSignIn).status, 0);
  ASSERT_EQ(run("colima", {"stop"}).status, 0);
  ASSERT_EQ(run("colima", {"start"}).status, 0);
  EXPECT_EQ(statusOfPage("linux", kPassword), 401);
  EXPECT_THAT(up(kSignIn).err, HasSubstr("Recreated"));
  EXPECT_EQ(statusOfPage("linux", kPassword), 200);
}

TEST_F(Desktop, IsLeftAloneOnlyWhileItRunsAsAsked) {
  ASSERT_EQ(up(kSignIn).status, 0);
  ASSERT_EQ(statusOfPage("linux", kPassword), 200);
  const pid_t first = serverPid();
  EXPECT_THAT(up(kSignIn).err, HasSubstr("Container tarnwick  Running"));
  EXPECT_EQ(serverPid(), first);

  const Environment other = {{"CUSTOM_USER", "linux"}, {"PASSWORD", "another"}};
  EXPECT_THAT(up(other).err, HasSubstr("Recreated"));
  EXPECT_EQ(statusOfPage("linux", "another"), 200);
  const pid_t second = serverPid();
  EXPECT_NE(second, first);
  EXPECT_THAT(up().err, HasSubstr("Recreated"));
  EXPECT_EQ(statusOfPage(), 200);
  EXPECT_THAT(up({}, {"--force-recreate"}).err, HasSubstr("Recreated"));
  EXPECT_EQ(statusOfPage(), 200);
}

TEST_F(Desktop, OfPlainRunAnswersAndHoldsItsName) {
  const Outcome first = docker(runArguments());
  ASSERT_EQ(first.status, 0) << first.err;
  EXPECT_TRUE(std::regex_match(first.out, std::regex("[0-9a-f]{64}\n")));
  EXPECT_EQ(statusOfPage(), 200);
  const Outcome second = docker(runArguments());
  EXPECT_EQ(second.status, 125);
  EXPECT_THAT(second.err, HasSubstr("is already in use by container"));
  const Outcome composed = up();
  EXPECT_EQ(composed.status, 1);
  EXPECT_THAT(composed.err, HasSubstr("already in use"));
  ASSERT_EQ(docker({"rm", "-f", "tarnwick"}).status, 0);
  EXPECT_EQ(up().status, 0);
}

TEST_F(Desktop, ListensOnLoopbackOnly) {
  ASSERT_EQ(up().status, 0);
  ASSERT_EQ(statusOfPage(), 200);
  std::multiset<std::string> listeners;
  for (const char* table : {"/proc/net/tcp", "/proc/net/tcp6"}) {
    for (const std::string& line : linesOf(readFile(table))) {
      std::smatch match;
      if (!std::regex_search(line, match, std::regex("^ *\\d+: (\\w+):(\\w+) \\w+:\\w+ 0A")))
        continue;
      const int port = std::stoi(match[2], nullptr, 16);
      if (port == httpPort_ || port == httpsPort_) listeners.insert(match[1]);
    }
  }
  EXPECT_EQ(listeners, (std::multiset<std::string>{"0100007F", "0100007F"}));
  EXPECT_FALSE(httplib::Client("127.0.0.2", httpPort_).Get("/"));
}

TEST_F(Desktop, TakenPortIsReportedAsAllocated) {
  const int listener = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_port = htons(static_cast<std::uint16_t>(httpsPort_));
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  ASSERT_EQ(::bind(listener, reinterpret_cast<sockaddr*>(&address), sizeof address), 0);
  ASSERT_EQ(::listen(listener, 1), 0);
  const Outcome outcome = up();
  EXPECT_EQ(outcome.status, 1);
  EXPECT_THAT(outcome.err,
              HasSubstr(fmt::format("{} failed: port is already allocated", httpsPort_)));
  EXPECT_FALSE(running());
  ::close(listener);
}

TEST_F(Desktop, OffersTheLab) {
  ASSERT_EQ(up().status, 0);
  ASSERT_EQ(statusOfPage(), 200);
  httplib::Client page = client();
  const auto lab = page.Get("/lab");
  ASSERT_TRUE(lab);
  for (const char* id : {"popup", "alert", "confirm", "upload", "microphone", "download"}) {
    EXPECT_THAT(lab->body, HasSubstr(fmt::format("id=\"{}\"", id)));
  }
  const auto download = page.Get("/download.bin");
  ASSERT_TRUE(download);
  EXPECT_EQ(download->get_header_value("Content-Disposition"),
            "attachment; filename=\"download.bin\"");
  EXPECT_EQ(download->body.size(), 65536U);
  const auto upload = page.Post(
      "/upload", httplib::MultipartFormDataItems{{"file", "hello", "hello.txt", "text/plain"}});
  ASSERT_TRUE(upload);
  EXPECT_EQ(upload->body, "received 5 bytes");
}

}  // namespace
}  // namespace tarnwick::practice::test
