// Measures in one run what matters in daily use; nothing here passes or fails.
#include <QApplication>
#include <benchmark/benchmark.h>

int main(int argc, char *argv[])
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return 1;
    if (benchmark::GetBenchmarkFilter().empty()) // those with a million rows only when they are asked for
        benchmark::SetBenchmarkFilter("-million");
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
