#include <filesystem>
#include <iterator>
#include <string>
#include <sys/stat.h>

#include "practice/console.h"
#include "practice/refusal.h"
#include "practice/tool.h"

// One program that is docker, colima or brew by the name it is started under.
int main(int count, char** values) {
  using namespace tarnwick::practice;
  const std::string path = count > 0 ? values[0] : "";
  const std::string name = std::filesystem::path(path).filename().string();
  endOnSignals();
  ::umask(077);
  try {
    const StateFolder folder = StateFolder::open();
    Call call{{}, path, folder, {}};
    if (count > 1) call.arguments.assign(values + 1, values + count);
    // The commands that order faults must work whatever has been ordered.
    const bool orders = name == "docker" && count > 1 && call.arguments.front() == "practice";
    if (!orders) call.faults = Faults::read(folder.path());
    if (name == "docker") return runDocker(call);
    if (name == "colima") return runColima(call);
    if (name == "brew") return runBrew(call);
    complain("Practice engine: start this program as docker, colima or brew.");
    return 64;
  } catch (const Refusal& refusal) {
    if (*refusal.what() != '\0') complain(refusal.what());
    return refusal.status();
  } catch (const std::exception& error) {
    complain(std::string("Practice engine: ") + error.what());
    return 70;
  }
}
