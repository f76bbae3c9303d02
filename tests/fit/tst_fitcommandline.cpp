#include "fit/fitcommandline.h"
#include "support/testmain.h"
#include "support/warnings.h"

#include <QCoreApplication>
#include <QTest>

using namespace Qt::StringLiterals;

/// The parsing of the command line of corvalence-fit.
class tst_FitCommandLine : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { failOnUnexpectedWarnings(); }

    void refusesWrongUsage_data();
    void refusesWrongUsage();
    void readsNumbers();
    void mapsReadingsAlongALine();
};

namespace {

/// Parses arguments that are separated by blanks. '' is an empty argument.
FitCommandLine parse(const QByteArray &arguments)
{
    QByteArrayList list{"corvalence-fit"};
    for (const QByteArray &argument : arguments.split(' '))
        list.append(argument == "''" ? QByteArray() : argument);
    return parseFitCommandLine(list);
}

} // namespace

void tst_FitCommandLine::refusesWrongUsage_data()
{
    QTest::addColumn<QByteArray>("arguments");
    QTest::addColumn<QString>("error");
    const auto rows = [](const QString &error, const QByteArrayList &commandLines) {
        for (const QByteArray &arguments : commandLines)
            QTest::newRow(arguments.constData()) << arguments << error;
    };
    const auto value = [](const QByteArray &arguments, const QString &text, const QString &option,
                          const QString &expected) {
        QTest::newRow(arguments.constData())
            << "t -o g " + arguments
            << u"\"%1\" is not a value for --%2; it must be %3"_s.arg(text, option, expected);
    };
    rows(u"no table of measured points is given"_s, {"-o g"});
    rows(u"the table has an empty name"_s, {"-o g ''"});
    rows(u"only one table can be given; \"u\" is the second"_s, {"-o g t u"});
    rows(u"Unknown option 'nonsense'."_s, {"--nonsense t"});
    rows(u"--output is missing"_s, {"t"});
    rows(u"--output needs the name of a file"_s, {"t -o ''"});
    rows(u"--labels and --step cannot be given together"_s, {"t -o g --labels 1 --step 1"});
    rows(u"--overwrite and --keep cannot be given together"_s, {"t -o g --overwrite --keep"});
    rows(u"--output and --table name the same file"_s,
         {"t -o g.json --table g.json", "t -o g.json --table ./a/../g.json"});
    rows(u"--labels lists 2 twice"_s, {"t -o g --labels 1,2,2.0"});
    rows(u"--labels lists 1000001 twice"_s, {"t -o g --labels 1000001,1000001"});
    rows(u"--subminor needs --minor above 1"_s, {"t -o g --subminor 2", "t -o g --subminor 2 --minor 1"});
    rows(u"--labels lists more than 1000 values"_s, {"t -o g --labels 0" + [] {
             QByteArray list;
             for (int label = 1; label <= 1000; ++label)
                 list += ',' + QByteArray::number(label);
             return list;
         }()});
    rows(u"--map must be given twice"_s, {"t -o g --map 1=2", "t -o g --map 1=2 --map 2=3 --map 3=4"});
    rows(u"both --map options have the same reading"_s, {"t -o g --map 1=2 --map 1=3"});
    rows(u"both --map options have the same angle"_s, {"t -o g --map 1=2 --map 2=2"});
    rows(u"--into and --replace must be given together"_s, {"t -o g --into f", "t -o g --replace f"});
    rows(u"--replace needs the name of a layer"_s,
         {"t -o g --into f --replace ''", "t -o g --into f --replace a --replace ''"});
    rows(u"--layers needs the name of a layer"_s, {"t --check f --layers ''"});
    rows(u"--range-radius and --range-width need --range"_s,
         {"t -o g --range-radius 1", "t -o g --range-width 1"});
    rows(u"--range is given more than 100 times"_s,
         {"t -o g" + QByteArray(" --range red:1:2").repeated(101)});
    rows(u"\"\ufffd\" is not UTF-8"_s, {"\xff -o g"});
    rows(u"--layers needs --check"_s, {"t -o g --layers a"});
    rows(u"--check writes nothing; --output cannot be given too"_s, {"t -o g --check f"});
    rows(u"--check writes nothing; --labels cannot be given too"_s, {"t --labels 1 --check f"});

    for (const char *text : {"", "a", "1e400", "nan"}) {
        const QByteArray argument = *text == '\0' ? QByteArray("''") : QByteArray(text);
        value("--labels 1," + QByteArray(text), QLatin1String(text), u"labels"_s,
              u"numbers separated by commas"_s);
        value("--step " + argument, QLatin1String(text), u"step"_s, u"a number above 0"_s);
        value("--max-error " + argument, QLatin1String(text), u"max-error"_s, u"a number from 0.01 to 10"_s);
    }
    value("--step 0", u"0"_s, u"step"_s, u"a number above 0"_s);
    value("--max-error 0", u"0"_s, u"max-error"_s, u"a number from 0.01 to 10"_s);
    value("--minor 0", u"0"_s, u"minor"_s, u"a whole number from 1 to 100"_s);
    value("--subminor 101", u"101"_s, u"subminor"_s, u"a whole number from 1 to 100"_s);
    value("--decimals 7", u"7"_s, u"decimals"_s, u"a whole number from 0 to 6"_s);
    for (const char *text : {"1", "1=", "1=2=3", "a=1", "1=nan"})
        value(QByteArray("--map 0=0 --map ") + text, QLatin1String(text), u"map"_s,
              u"a reading and an angle, such as 100=45"_s);
    for (const char *text : {"red", "red:1", "red:1:1", "red:1:a", "nocolour:1:2", "red:1:2:3"})
        value(QByteArray("--range ") + text, QLatin1String(text), u"range"_s,
              u"a colour and two values, such as red:80:100 or #ff8800:60:80"_s);
    value("--range red:1:2 --range-radius 2", u"2"_s, u"range-radius"_s, u"a number from 0 to 1"_s);
    value("--range red:1:2 --range-width -1", u"-1"_s, u"range-width"_s, u"a number from 0 to 100"_s);
    value("--table t.txt", u"t.txt"_s, u"table"_s, u"a file with the suffix json, xml or h"_s);
    value("--report yaml", u"yaml"_s, u"report"_s, u"text or json"_s);
}

void tst_FitCommandLine::refusesWrongUsage()
{
    QFETCH(const QByteArray, arguments);
    QFETCH(const QString, error);
    const FitCommandLine commandLine = parse(arguments);
    QCOMPARE(commandLine.text, error);
    QCOMPARE(commandLine.outcome, FitCommandLine::Outcome::WrongUsage);
}

void tst_FitCommandLine::readsNumbers()
{
    const FitOptions options =
        parse("t -o g --labels -10,5,-20 --labels 0.5 --max-error 0.1 --range #102030:-5:5").options;
    QCOMPARE(options.labels, QList<double>({-20.0, -10.0, 0.5, 5.0}));
    QCOMPARE(options.maxError, 0.1);
    QCOMPARE(options.ranges.size(), 1);
    QCOMPARE(options.ranges.first().color, QColor(0x10, 0x20, 0x30));
    QCOMPARE(options.ranges.first().from, -5.0);
    QCOMPARE(options.ranges.first().to, 5.0);
}

void tst_FitCommandLine::mapsReadingsAlongALine()
{
    const FitOptions options = parse("t -o g --map 20=-45 --map 100=35").options;
    QVERIFY(options.map.has_value());
    for (const auto &[reading, angle] : {std::pair(20.0, -45.0), {100.0, 35.0}, {60.0, -5.0}, {0.0, -65.0}})
        QCOMPARE(options.map->angle(reading), angle);
}

ADD_TEST_CLASS(tst_FitCommandLine)
#include "tst_fitcommandline.moc"
