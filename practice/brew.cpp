#include <filesystem>
#include <fmt/format.h>
#include <map>

#include "practice/console.h"
#include "practice/refusal.h"
#include "practice/tool.h"

namespace tarnwick::practice {
namespace {

namespace fs = std::filesystem;

const std::map<std::string, std::string, std::less<>> kFormulae = {
    {"colima", std::string(kColimaVersion)}, {"docker", std::string(kDockerVersion)}};

/// The folder where this brew stands, and where it puts what it installs.
fs::path folderOf(const Call& call) {
  const fs::path called(call.calledAs);
  if (called.has_parent_path()) return fs::absolute(called).parent_path();
  std::error_code ignored;
  return fs::read_symlink("/proc/self/exe", ignored).parent_path();
}

void requireKnown(const std::string& formula) {
  if (kFormulae.contains(formula)) return;
  throw Refusal(1, fmt::format("Warning: No available formula with the name \"{}\".\n"
                               "Practice engine: only colima and docker can be installed.",
                               formula));
}

void place(const fs::path& folder, const std::string& formula) {
  std::error_code error;
  const fs::path program = fs::read_symlink("/proc/self/exe", error);
  fs::create_directories(folder, error);
  // A link under another name moved into place: two installs at once leave one whole tool.
  const fs::path temporary = folder / fmt::format(".{}.new", formula);
  fs::remove(temporary, error);
  fs::create_symlink(program, temporary, error);
  if (!error) fs::rename(temporary, folder / formula, error);
  if (error) {
    throw Refusal(1, fmt::format("Error: The `brew link` step did not complete successfully\n"
                                 "Could not symlink {}: {}",
                                 (folder / formula).string(), error.message()));
  }
}

int install(const Call& call, Words formulae) {
  if (formulae.empty()) throw Refusal(1, "Error: Invalid usage: This command requires a formula.");
  for (const std::string& formula : formulae) requireKnown(formula);
  say(kLabel);
  const fs::path folder = call.faults.has(Fault::BrewInstallsElsewhere)
                              ? call.folder.path() / "elsewhere"
                              : folderOf(call);
  pauseFor(0.5);
  for (const std::string& formula : formulae) {
    const std::string& version = kFormulae.at(formula);
    std::error_code ignored;
    if (fs::exists(folder / formula, ignored)) {
      complain(
          fmt::format("Warning: {} {} is already installed and up-to-date.", formula, version));
      continue;
    }
    say(fmt::format("==> Fetching {}", formula));
    pauseFor(1.0);
    if (call.faults.has(Fault::BrewHangs)) {
      hang(call.folder.path());
      return 1;
    }
    if (call.faults.has(Fault::BrewFails)) {
      throw Refusal(1,
                    fmt::format("Error: {}: Failed to download resource \"{}\"", formula, formula));
    }
    say(fmt::format("==> Installing {}", formula));
    pauseFor(0.6);
    say(fmt::format("==> Pouring {}--{}.practice.bottle.tar.gz", formula, version));
    pauseFor(0.8);
    place(folder, formula);
    say(fmt::format("🍺  {}: {}", (folder / formula).string(), version));
  }
  return 0;
}

int services(const Call& call, const std::string& verb, const std::string& formula) {
  requireKnown(formula);
  if (verb != "start" && verb != "stop") {
    throw Refusal(1, fmt::format("Error: Invalid usage: Unknown subcommand: {}", verb));
  }
  if (call.faults.has(Fault::BrewServicesFails)) {
    throw Refusal(1, fmt::format("Error: Failure while executing; `systemctl --user {} "
                                 "homebrew.{}.service` exited with 1.",
                                 verb, formula));
  }
  pauseFor(0.5);
  call.folder.update([&](State& state) { state.startsAtLogin = verb == "start"; });
  say(fmt::format("==> Successfully {} `{}` (label: homebrew.{})",
                  verb == "start" ? "started" : "stopped", formula, formula));
  return 0;
}

}  // namespace

int runBrew(const Call& call) {
  const Words words(call.arguments);
  const std::string command = words.empty() ? "" : words[0];
  if (command == "install") return install(call, words.subspan(1));
  if (command == "services" && words.size() == 3) return services(call, words[1], words[2]);
  if (command == "--version") {
    say("Homebrew 4.6.0 (practice engine)");
    return 0;
  }
  if (command.empty() || command == "--help" || command == "help") {
    say("The practice engine's stand-in for brew: install colima docker, services start|stop "
        "colima");
    return 0;
  }
  throw Refusal(1, fmt::format("Error: Unknown command: brew {}", command));
}

}  // namespace tarnwick::practice
