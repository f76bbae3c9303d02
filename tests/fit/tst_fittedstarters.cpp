#include "model/gaugefile.h"
#include "support/programrun.h"
#include "support/testmain.h"
#include "support/warnings.h"

#include <QFileInfo>
#include <QTest>

using namespace Qt::StringLiterals;

/// The sample and the presets that corvalence-fit makes from tables.
class tst_FittedStarters : public ProgramTest
{
    Q_OBJECT

public:
    tst_FittedStarters()
        : ProgramTest(QStringLiteral(CORVALENCE_FIT))
    {
    }

private Q_SLOTS:
    void init();

    void areAsTheScriptMakesThem();
    void agreeWithTheirTables_data();
    void agreeWithTheirTables();
};

namespace {

QString sourcePath(const QString &name)
{
    return QStringLiteral(CORVALENCE_SOURCE "/") + name;
}

} // namespace

void tst_FittedStarters::init()
{
    failOnUnexpectedWarnings();
    makeFolder();
}

void tst_FittedStarters::areAsTheScriptMakesThem()
{
    const ProgramRun script =
        run(QStringList{path({})},
            {.environment = {{u"BUILD"_s, QFileInfo(QStringLiteral(CORVALENCE_FIT)).path()}},
             .program = sourcePath(u"scripts/scales"_s)});
    QVERIFY2(script.status == 0, script.err.constData());
    const QStringList made = files().filter(u".gauge"_s);
    QCOMPARE(made.size(), 6);
    for (const QString &name : made)
        QVERIFY2(read(name) == readFile(sourcePath(name)), qPrintable(name));
}

void tst_FittedStarters::agreeWithTheirTables_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::newRow("Ohmmeter") << QStringList{u"samples/Ohmmeter.gauge"_s, u"samples/tables/Ohmmeter.csv"_s,
                                             u"--layers"_s, u"Scale*"_s};
    QTest::newRow("Logarithmic 1 to 1000") << QStringList{u"presets/Logarithmic 1 to 1000.gauge"_s,
                                                          u"samples/tables/Logarithmic 1 to 1000.csv"_s};
    QTest::newRow("VU -20 to 3") << QStringList{u"presets/VU -20 to 3.gauge"_s,
                                                u"samples/tables/VU -20 to 3.csv"_s, u"--unsigned"_s};
    QTest::newRow("Thermistor") << QStringList{u"presets/Thermistor.gauge"_s,
                                               u"samples/tables/Thermistor.csv"_s};
}

void tst_FittedStarters::agreeWithTheirTables()
{
    QFETCH(QStringList, arguments);
    const ProgramRun check =
        run(QStringList{u"--check"_s, sourcePath(arguments.takeFirst()), sourcePath(arguments.takeFirst())} +
            arguments);
    QVERIFY2(check.status == 0, check.err.constData());
}

ADD_TEST_CLASS(tst_FittedStarters)
#include "tst_fittedstarters.moc"
