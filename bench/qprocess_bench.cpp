// The same work as in the other file, done by Qt's own class.

#include <QByteArray>
#include <QProcess>
#include <QString>
#include <benchmark/benchmark.h>

namespace tarnwick {
namespace {

void spawn_qprocess(benchmark::State& state) {
  for (auto _ : state) {
    QProcess process;
    process.start(QStringLiteral("/bin/true"), {});
    if (!process.waitForFinished() || process.exitCode() != 0) {
      state.SkipWithError("could not run");
    }
    benchmark::DoNotOptimize(process.readAllStandardOutput());
    benchmark::DoNotOptimize(process.readAllStandardError());
  }
}

void lines_qprocess(benchmark::State& state) {
  for (auto _ : state) {
    QProcess process;
    process.setProcessChannelMode(QProcess::MergedChannels);
    process.start(QStringLiteral(TARNWICK_BENCH_TOOL), {QStringLiteral("160000000")});
    qint64 bytes = 0;
    while (process.waitForReadyRead(-1)) {
      while (process.canReadLine()) bytes += process.readLine().size();
    }
    process.waitForFinished(-1);
    bytes += process.readAll().size();
    if (bytes != 160'000'000) state.SkipWithError("the output is not complete");
  }
}

BENCHMARK(spawn_qprocess)
    ->UseRealTime()
    ->Iterations(1)
    ->Repetitions(500)
    ->Unit(benchmark::kMillisecond);
BENCHMARK(lines_qprocess)->UseRealTime()->Iterations(1)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace tarnwick
