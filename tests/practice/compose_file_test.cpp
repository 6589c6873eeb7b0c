#include "practice/compose_file.h"

#include <gtest/gtest.h>

#include "practice/refusal.h"

namespace tarnwick::practice {
namespace {

std::string file(const std::string& image, const std::string& port, const std::string& source) {
  return "# a comment\nname: own\nservices:\n  tarnwick:\n    image: " + image +
         "\n    container_name: tarnwick\n    ports:\n      - " + port +
         "\n      - \"127.0.0.1:3101:3001\"\n    environment:\n      - PUID=1000\n"
         "      - \"TZ=America/Argentina/Buenos_Aires\"\n      - PASSWORD\n      - "
         "CUSTOM_USER=eve\n"
         "    volumes:\n      - config:/config\n      - type: bind\n        source: " +
         source +
         "\n        target: /config/MacShare\nvolumes:\n  config:\n"
         "    name: tarnwick-config-debian-kde\n";
}

constexpr const char* kPort = "\"127.0.0.1:3100:3000\"";

std::string refusal(const std::string& text) {
  try {
    readComposeFile(text, "");
  } catch (const Refusal& refused) {
    EXPECT_EQ(refused.status(), 1);
    return refused.what();
  }
  return "accepted";
}

TEST(ComposeFile, ReadsEveryFieldThatTarnwickWrites) {
  const ContainerRequest request = readComposeFile(
      file("\"lscr.io/linuxserver/webtop:debian-kde\"", kPort, "\"/home/a \\\"b\\\" c\\\\d: #e\""),
      "");
  EXPECT_EQ(request.name, "tarnwick");
  EXPECT_EQ(request.image, "lscr.io/linuxserver/webtop:debian-kde");
  EXPECT_EQ(request.project, "own");
  EXPECT_EQ(request.volume, "tarnwick-config-debian-kde");
  EXPECT_EQ(request.sharePath, "/home/a \"b\" c\\d: #e");
  EXPECT_EQ(request.httpPort, 3100);
  EXPECT_EQ(request.httpsPort, 3101);
  // Values of the sign-in variables are never kept, even when somebody writes one.
  const std::vector<std::string> environment = {"PUID=1000", "TZ=America/Argentina/Buenos_Aires",
                                                "PASSWORD", "CUSTOM_USER"};
  EXPECT_EQ(request.environment, environment);
}

TEST(ComposeFile, CommandLineProjectWins) {
  EXPECT_EQ(readComposeFile(file("i", kPort, "/s"), "given").project, "given");
}

TEST(ComposeFile, RefusesWhatItDoesNotUnderstand) {
  EXPECT_NE(refusal(file("i", "\"0.0.0.0:3100:3000\"", "/s")).find("127.0.0.1"), std::string::npos);
  EXPECT_NE(refusal(file("i", "\"3100:3000\"", "/s")).find("127.0.0.1"), std::string::npos);
  EXPECT_NE(refusal(file("i", "\"127.0.0.1:x:3000\"", "/s")).find("hostPort"), std::string::npos);
  EXPECT_NE(refusal(file("\"i", kPort, "/s")).find("line 5"), std::string::npos);
  EXPECT_NE(refusal(file("", kPort, "/s")).find("neither an image"), std::string::npos);
  EXPECT_NE(refusal(file("i", kPort, "/s") + "    odd: 1\n  worse\n").find("line"),
            std::string::npos);
  EXPECT_NE(refusal("").find("one service"), std::string::npos);
  EXPECT_NE(refusal("services:\n\ttarnwick:\n").find("line 2"), std::string::npos);
}

}  // namespace
}  // namespace tarnwick::practice
