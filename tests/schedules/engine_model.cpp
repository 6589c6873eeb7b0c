#include "tests/schedules/engine_model.h"

#include <algorithm>

#include "core/files/read_file.h"

namespace tarnwick {
namespace {

CommandResult success(std::string out = {}) {
  return CommandResult(0, std::move(out), {}, false);
}
CommandResult failure(std::string err) {
  return CommandResult(1, {}, std::move(err), false);
}

std::string between(const std::string& text, const std::string& before, const char* after) {
  const std::size_t begin = text.find(before);
  if (begin == std::string::npos) return {};
  const std::size_t end = text.find_first_of(after, begin + before.size());
  return text.substr(begin + before.size(), end - begin - before.size());
}

std::string joined(const std::vector<std::string>& words) {
  std::string all;
  for (const std::string& word : words) all += word + "\n";
  return all;
}

const std::string nameTaken =
    "Error: The container name \"/tarnwick\" is already in use by another container.";

}  // namespace

std::optional<std::string> EngineModel::find(const std::string& name) const {
  if (!installed.contains(name)) return std::nullopt;
  return "/tools/" + name;
}

EngineModel::Page EngineModel::page(TimePoint now) const {
  if (!containerRuns() || now < container->answersFrom) return {};
  return {container->httpPort, pageIsIll ? 502 : 200};
}

void EngineModel::startContainer(TimePoint now) {
  if (!container || container->runs || !colimaUp) return;
  container->runs = true;
  container->answersFrom = now + bootTime;
}

void EngineModel::stopContainer() {
  if (container) container->runs = false;
}

void EngineModel::stopColima() {
  colimaUp = false;
  stopContainer();
}

CommandResult EngineModel::carryOut(const std::vector<std::string>& words, TimePoint now) {
  const std::string& tool = words.front();
  const std::vector<std::string> args(words.begin() + 1, words.end());
  if (tool == "docker") return docker(args, now);
  if (tool == "docker-compose") return composeUp(args, now);
  if (tool == "colima" && args.front() == "stop") {
    stopColima();
    return success();
  }
  if (tool == "lsof") return success("nginx 4711 TCP 127.0.0.1 (LISTEN)");
  return success();
}

CommandResult EngineModel::docker(const std::vector<std::string>& args, TimePoint now) {
  const std::string& verb = args.front();
  if (verb == "compose" && args[1] == "version") {
    return hasCompose ? success("v2.39.4") : failure("docker: 'compose' is not a docker command.");
  }
  if (!colimaUp) return failure("Cannot connect to the Docker daemon. Is it running?");
  if (verb == "info") return success("27.0");
  if (verb == "image") return images.contains(args[2]) ? success("[]") : failure("No such image");
  if (verb == "compose") return composeUp(args, now);
  if (verb == "run") return runPlain(args, now);
  if (verb == "volume") return removeVolume(args[2]);
  if (!container) return failure("Error: No such container: tarnwick");
  if (verb == "inspect") {
    return success((container->runs ? "true|" : "false|") + container->image + "\n");
  }
  if (verb == "stop") stopContainer();
  if (verb == "rm") container.reset();
  return success("tarnwick\n");
}

CommandResult EngineModel::composeUp(const std::vector<std::string>& args, TimePoint now) {
  if (!colimaUp) return failure("Cannot connect to the Docker daemon. Is it running?");
  const auto file = std::ranges::find(args, "-f") + 1;
  const std::string text = readFile(*file, 100'000).bytes;
  if (container && container->composeFile.empty()) return failure(nameTaken);
  const bool recreate = args.back() == "--force-recreate";
  if (container && container->composeFile == text && !recreate) {
    startContainer(now);
    return success();
  }
  createContainer(text, now);
  container->composeFile = text;
  return success();
}

CommandResult EngineModel::runPlain(const std::vector<std::string>& args, TimePoint now) {
  if (container) return failure(nameTaken);
  createContainer(joined(args), now);
  return success("f00d\n");
}

CommandResult EngineModel::removeVolume(const std::string& name) {
  if (!volumes.contains(name)) return failure("Error: no such volume: " + name);
  if (container && container->volume == name) return failure("Error: volume is in use");
  volumes.erase(name);
  return success(name);
}

// An image that is missing is downloaded by the way, as docker does.
void EngineModel::createContainer(const std::string& description, TimePoint now) {
  container.emplace();
  container->image = "registry.test/linuxserver/webtop:" + between(description, "/webtop:", "\"\n");
  container->volume = "tarnwick-config-" + between(description, "tarnwick-config-", ":\n");
  container->httpPort = std::stoll(between(description, "127.0.0.1:", ":"));
  images.insert(container->image);
  volumes.insert(container->volume);
  startContainer(now);
}

}  // namespace tarnwick
