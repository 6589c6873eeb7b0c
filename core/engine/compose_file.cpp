#include "core/engine/compose_file.h"

namespace tarnwick::ComposeFile {

namespace {

std::string quoted(const std::string& text) {
  std::string result = "\"";
  for (const char c : text) {
    if (c == '\\' || c == '"') result += '\\';
    result += c;
  }
  return result + '"';
}

std::string published(std::int64_t hostPort, const char* containerPort) {
  return "127.0.0.1:" + std::to_string(hostPort) + ":" + containerPort;
}

class Lines {
 public:
  Lines& operator<<(const std::string& line) {
    text += line;
    text += '\n';
    return *this;
  }
  std::string text;
};

}  // namespace

std::string yaml(const LaunchConfig& config) {
  Lines lines;
  lines << "# Written by Tarnwick. Image tag: " + config.flavor.tag +
               " (a flavor tag, not pinned to a build)."
        << "name: tarnwick"
        << "services:"
        << "  tarnwick:"
        << "    image: " + quoted(imageReference(config.registryHost, config.flavor))
        << "    container_name: tarnwick"
        << "    restart: unless-stopped"
        << "    shm_size: \"1gb\""
        << "    ports:"
        << "      - " + quoted(published(config.httpPort, "3000"))
        << "      - " + quoted(published(config.httpsPort, "3001")) << "    environment:"
        << "      - PUID=1000"
        << "      - PGID=1000"
        << "      - " + quoted("TZ=" + config.timezone) << "      - " + quoted("TITLE=Tarnwick");
  if (config.passwordProtected)
    lines << "      - CUSTOM_USER"
          << "      - PASSWORD";
  lines << "    volumes:"
        << "      - config:/config";
  if (config.sharePath) {
    lines << "      - type: bind"
          << "        source: " + quoted(*config.sharePath) << "        target: /config/MacShare";
  }
  lines << "volumes:"
        << "  config:"
        << "    name: " + config.flavor.volumeName();
  return lines.text;
}

std::vector<std::string> runArguments(const LaunchConfig& config) {
  std::vector<std::string> args = {
      "run", "-d", "--name", "tarnwick", "--restart", "unless-stopped", "--shm-size", "1gb"};
  const auto add = [&args](const char* option, std::string value) {
    args.emplace_back(option);
    args.push_back(std::move(value));
  };
  add("-p", published(config.httpPort, "3000"));
  add("-p", published(config.httpsPort, "3001"));
  add("-e", "PUID=1000");
  add("-e", "PGID=1000");
  add("-e", "TZ=" + config.timezone);
  add("-e", "TITLE=Tarnwick");
  if (config.passwordProtected) {
    add("-e", "CUSTOM_USER");
    add("-e", "PASSWORD");
  }
  add("-v", config.flavor.volumeName() + ":/config");
  if (config.sharePath) add("-v", *config.sharePath + ":/config/MacShare");
  args.push_back(imageReference(config.registryHost, config.flavor));
  return args;
}

}  // namespace tarnwick::ComposeFile
