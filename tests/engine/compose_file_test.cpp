#include "core/engine/compose_file.h"

#include <gmock/gmock.h>
#include <sstream>

namespace tarnwick {
namespace {

LaunchConfig plainConfig() {
  LaunchConfig config;
  config.flavor = Flavor::resolve("alpine-xfce");
  config.httpPort = 3000;
  config.httpsPort = 3001;
  config.timezone = "Europe/Berlin";
  config.registryHost = "registry.example";
  return config;
}

LaunchConfig fullConfig() {
  LaunchConfig config = plainConfig();
  config.flavor = Flavor::resolve("ubuntu-kde");
  config.httpPort = 0;
  config.httpsPort = 70000;
  config.timezone = "America/Argentina/Buenos_Aires";
  config.passwordProtected = true;
  config.sharePath = R"(/home/me/a"b\c: d)";
  return config;
}

TEST(ComposeFile, PlainDesktop) {
  EXPECT_EQ(ComposeFile::yaml(plainConfig()),
            R"(# Written by Tarnwick. Image tag: latest (a flavor tag, not pinned to a build).
name: tarnwick
services:
  tarnwick:
    image: "registry.example/linuxserver/webtop:latest"
    container_name: tarnwick
    restart: unless-stopped
    shm_size: "1gb"
    ports:
      - "127.0.0.1:3000:3000"
      - "127.0.0.1:3001:3001"
    environment:
      - PUID=1000
      - PGID=1000
      - "TZ=Europe/Berlin"
      - "TITLE=Tarnwick"
    volumes:
      - config:/config
volumes:
  config:
    name: tarnwick-config-alpine-xfce
)");
}

TEST(ComposeFile, ProtectedDesktopWithASharedFolder) {
  EXPECT_EQ(ComposeFile::yaml(fullConfig()),
            R"(# Written by Tarnwick. Image tag: ubuntu-kde (a flavor tag, not pinned to a build).
name: tarnwick
services:
  tarnwick:
    image: "registry.example/linuxserver/webtop:ubuntu-kde"
    container_name: tarnwick
    restart: unless-stopped
    shm_size: "1gb"
    ports:
      - "127.0.0.1:0:3000"
      - "127.0.0.1:70000:3001"
    environment:
      - PUID=1000
      - PGID=1000
      - "TZ=America/Argentina/Buenos_Aires"
      - "TITLE=Tarnwick"
      - CUSTOM_USER
      - PASSWORD
    volumes:
      - config:/config
      - type: bind
        source: "/home/me/a\"b\\c: d"
        target: /config/MacShare
volumes:
  config:
    name: tarnwick-config-ubuntu-kde
)");
}

TEST(ComposeFile, RunArgumentsOfBothDesktops) {
  using testing::ElementsAre;
  EXPECT_THAT(
      ComposeFile::runArguments(plainConfig()),
      ElementsAre("run", "-d", "--name", "tarnwick", "--restart", "unless-stopped", "--shm-size",
                  "1gb", "-p", "127.0.0.1:3000:3000", "-p", "127.0.0.1:3001:3001", "-e",
                  "PUID=1000", "-e", "PGID=1000", "-e", "TZ=Europe/Berlin", "-e", "TITLE=Tarnwick",
                  "-v", "tarnwick-config-alpine-xfce:/config",
                  "registry.example/linuxserver/webtop:latest"));
  EXPECT_THAT(
      ComposeFile::runArguments(fullConfig()),
      ElementsAre("run", "-d", "--name", "tarnwick", "--restart", "unless-stopped", "--shm-size",
                  "1gb", "-p", "127.0.0.1:0:3000", "-p", "127.0.0.1:70000:3001", "-e", "PUID=1000",
                  "-e", "PGID=1000", "-e", "TZ=America/Argentina/Buenos_Aires", "-e",
                  "TITLE=Tarnwick", "-e", "CUSTOM_USER", "-e", "PASSWORD", "-v",
                  "tarnwick-config-ubuntu-kde:/config", "-v",
                  R"(/home/me/a"b\c: d:/config/MacShare)",
                  "registry.example/linuxserver/webtop:ubuntu-kde"));
}

std::string unquoted(const std::string& scalar) {
  if (!scalar.starts_with('"')) return scalar;
  std::string text;
  for (std::size_t i = 1; i + 1 < scalar.size(); ++i) {
    if (scalar[i] == '\\') ++i;
    text += scalar[i];
  }
  return text;
}

/// The run arguments that say the same as a compose file of ours, read from the file alone.
std::vector<std::string> argumentsOf(const std::string& yaml) {
  std::map<std::string, std::string> scalars;
  std::map<std::string, std::vector<std::string>> lists;
  std::istringstream lines(yaml);
  std::string line;
  std::string list;
  while (std::getline(lines, line)) {
    const std::size_t begin = line.find_first_not_of(' ');
    const std::string text = line.substr(begin);
    const std::size_t colon = text.find(": ");
    if (text.starts_with('#')) continue;
    if (text.ends_with(':')) {
      list = text.substr(0, text.size() - 1);
    } else if (text.starts_with("- ") && text != "- type: bind") {
      lists[list].push_back(unquoted(text.substr(2)));
    } else if (colon != std::string::npos) {
      const std::string key = (begin == 0 ? "project " : list + " ") + text.substr(0, colon);
      scalars[key] = unquoted(text.substr(colon + 2));
    }
  }
  std::vector<std::string> args = {"run", "-d"};
  const auto add = [&args](const std::string& option, const std::string& value) {
    args.push_back(option);
    args.push_back(value);
  };
  add("--name", scalars["tarnwick container_name"]);
  add("--restart", scalars["tarnwick restart"]);
  add("--shm-size", scalars["tarnwick shm_size"]);
  for (const auto& port : lists["ports"]) add("-p", port);
  for (const auto& variable : lists["environment"]) add("-e", variable);
  for (const auto& volume : lists["volumes"]) {
    add("-v", scalars["config name"] + volume.substr(volume.find(':')));
  }
  const std::string bind = scalars["volumes source"];
  if (!bind.empty()) add("-v", bind + ":" + scalars["volumes target"]);
  args.push_back(scalars["tarnwick image"]);
  return args;
}

TEST(ComposeFile, BothFormsSayTheSame) {
  for (const bool isProtected : {false, true}) {
    for (const auto& share : {std::optional<std::string>(), std::optional<std::string>("/a b"),
                              std::optional<std::string>(R"(\"\\)")}) {
      for (const Flavor& flavor : Flavor::all()) {
        LaunchConfig config = fullConfig();
        config.flavor = flavor;
        config.passwordProtected = isProtected;
        config.sharePath = share;
        EXPECT_EQ(argumentsOf(ComposeFile::yaml(config)), ComposeFile::runArguments(config));
      }
    }
  }
}

}  // namespace
}  // namespace tarnwick
