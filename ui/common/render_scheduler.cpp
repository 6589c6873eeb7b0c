#include "ui/common/render_scheduler.h"

#include <algorithm>
#include <utility>

namespace tarnwick {
namespace {

constexpr qint64 frameMilliseconds = 16;

}  // namespace

RenderScheduler::RenderScheduler(std::function<void()> render) : render_(std::move(render)) {
  timer_.setSingleShot(true);
  timer_.setTimerType(Qt::PreciseTimer);
  QObject::connect(&timer_, &QTimer::timeout, [this] {
    sinceLast_.start();
    render_();
  });
}

void RenderScheduler::observe(ChangeSignal& changes) {
  observations_.push_back(changes.observe([this] { request(); }));
}

void RenderScheduler::request() {
  if (timer_.isActive()) return;
  const qint64 rest = sinceLast_.isValid() ? frameMilliseconds - sinceLast_.elapsed() : 0;
  timer_.start(static_cast<int>(std::clamp<qint64>(rest, 0, frameMilliseconds)));
}

}  // namespace tarnwick
