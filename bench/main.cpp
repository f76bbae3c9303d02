// Prints the tables of bench/results.md. See scripts/bench.

#include "compare.h"

#include <QApplication>

int main(int argc, char *argv[])
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QApplication application(argc, argv);
    benchPainting();
    benchGaugeFiles();
    benchPngFiles();
    return 0;
}
