#include "support/testmain.h"

#include <QApplication>
#include <QTest>

#include <map>
#include <memory>

namespace {

std::map<QByteArray, TestClass::Create> &testClasses()
{
    static std::map<QByteArray, TestClass::Create> classes;
    return classes;
}

} // namespace

TestClass::TestClass(const char *name, Create create)
{
    testClasses().emplace(name, create);
}

int main(int argc, char *argv[])
{
    QApplication application(argc, argv);
    QApplication::setAttribute(Qt::AA_Use96Dpi);
    QStringList arguments = QCoreApplication::arguments();

    if (arguments.size() > 1 && !arguments.at(1).startsWith(QLatin1Char('-'))) {
        const auto found = testClasses().find(arguments.takeAt(1).toLatin1());
        if (found == testClasses().end()) {
            qCritical("There is no such test class.");
            return 2;
        }
        return QTest::qExec(std::unique_ptr<QObject>(found->second()).get(), arguments);
    }

    int failures = 0;
    for (const auto &[name, create] : testClasses())
        failures += QTest::qExec(std::unique_ptr<QObject>(create()).get(), arguments);
    return failures;
}
