#include "compare.h"

#include <QApplication>

#include <cstdio>

int main(int argc, char *argv[])
{
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    const QApplication application(argc, argv);
    benchmark::AddCustomContext("qt", qVersion());
    benchmark::AddCustomContext("compiler", CORVALENCE_COMPILER);
    benchmark::AddCustomContext("build_type", CORVALENCE_BUILD_TYPE);
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return 1;
    if (!registerBenchmarks()) {
        std::fputs("The two ways of a comparison differ in what they make.\n", stderr);
        return 1;
    }
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
