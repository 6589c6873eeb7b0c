#include "app/backend.h"

#include <QCoreApplication>

#include "core/process/tool_stream.h"
#include "platform/user_folders.h"

namespace tarnwick {
namespace {

std::string imageRegistry() {
  const QByteArray wanted = qgetenv("TARNWICK_IMAGE_REGISTRY");
  return wanted.isEmpty() ? std::string(TARNWICK_IMAGE_REGISTRY) : wanted.toStdString();
}

}  // namespace

Backend::Backend(const AppPaths& paths)
    : paths_(paths),
      tools_(Tools::Config::fromProcess(), paths_),
      cli_(tools_, workers_, mainThread_),
      store_(userConfigFolder() + "/tarnwick/settings.json",
             [this](const std::string& sentence) { tellProblem(sentence); }),
      loginItem_(userConfigFolder(), QCoreApplication::applicationFilePath().toStdString()),
      controller_(ControllerServices{
          mainThread_, workers_, cli_, tools_, ToolStream::factory(tools_, workers_, mainThread_),
          store_, secrets_, loginItem_, random_, httpProbe_, workspace_, paths_, imageRegistry()}),
      docker_(cli_, tools_) {
  listening_ = &controller_;
  for (const std::string& problem : earlyProblems_) controller_.report(problem);
}

void Backend::tellProblem(const std::string& sentence) {
  if (listening_) {
    listening_->report(sentence);
  } else {
    earlyProblems_.push_back(sentence);
  }
}

}  // namespace tarnwick
