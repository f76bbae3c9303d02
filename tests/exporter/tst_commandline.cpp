#include "exporter/commandline.h"
#include "exporterrun.h"
#include "support/testmain.h"

#include <QTest>

using namespace Qt::StringLiterals;

/// The parsing of the exporter's command line.
class tst_CommandLine : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void refusesWrongUsage_data();
    void refusesWrongUsage();
    void refusesOptionsThatAreNotUtf8();
    void takesTheFormatFromTheSuffix_data();
    void takesTheFormatFromTheSuffix();
};

namespace {

/// Parses arguments that are separated by blanks. '' is an empty argument.
ExportCommandLine parse(const QByteArray &arguments)
{
    QByteArrayList list{"corvalence-export"};
    for (const QByteArray &argument : arguments.split(' '))
        list.append(argument == "''" ? QByteArray() : argument);
    return parseCommandLine(list);
}

} // namespace

void tst_CommandLine::refusesWrongUsage_data()
{
    QTest::addColumn<QByteArray>("arguments");
    QTest::addColumn<QString>("error");
    const auto rows = [](const QString &error, const QByteArrayList &commandLines) {
        for (const QByteArray &arguments : commandLines)
            QTest::newRow(arguments.constData()) << arguments << error;
    };
    const auto notAFormat = [](const QString &name) {
        return u"\"%1\" is not a format; it must be png, jpeg, webp, svg, pdf, csv, gauge, json, xml, h, html, rgb565 or c"_s
            .arg(name);
    };
    rows(u"no gauge file is given"_s, {"-q"});
    rows(u"a file has an empty name"_s, {"a ''"});
    rows(u"Unknown option 'nonsense'."_s, {"--nonsense a"});
    rows(u"Missing value after '--size'."_s, {"a --size"});
    rows(notAFormat(u"gif"_s), {"-f png,gif a"});
    rows(notAFormat(QString()), {"-f '' a"});
    rows(notAFormat(u"bmp"_s), {"-f bmp a", "--to pic.bmp a", "--to pic.BMP a"});
    rows(u"jpeg has no transparency; it needs an opaque --background, such as white"_s,
         {"-f jpeg a", "-f png,jpg a", "--to pic.jpg a", "-f jpeg -b transparent a",
          "-f jpeg -b #fefefefe a"});
    for (const char *value : {"nice", "#12", "1"}) {
        rows(u"\"%1\" is not a value for --background; it must be the name of a colour, #rgb, #rrggbb or "
             u"#aarrggbb"_s.arg(QLatin1String(value)),
             {QByteArray("-b ") + value + " a"});
    }
    rows(u"a webp has at most 16383 pixels on each side"_s, {"-f webp -s 64,16384 a"});
    rows(u"\"middle\" is not a value for --byte-order; it must be little or big"_s,
         {"-f rgb565 --byte-order middle a"});
    rows(u"--byte-order needs --formats rgb565"_s, {"-f c --byte-order big a"});
    rows(u"\"101\" is not a value for --quality; it must be a whole number from 0 to 100"_s,
         {"--quality 101 a"});
    rows(u"the size must be from 64 to 16384 pixels"_s,
         {"-s 63 a", "-s 512,16385 a", "--mm 5000 --dpi 300 a", "--mm 10 --dpi 96 a"});
    rows(u"\"big\" is not a size; it must be a whole number of pixels"_s, {"-s big a"});
    rows(u"\"\" is not a size; it must be a whole number of pixels"_s, {"-s 64, a"});
    for (const char *value : {"wide", "0", "inf", "nan", "-5"}) {
        rows(u"\"%1\" is not a value for --mm; it must be a number above 0"_s.arg(QLatin1String(value)),
             {QByteArray("--mm ") + value + " a"});
    }
    rows(u"\"-96\" is not a value for --dpi; it must be a number above 0"_s, {"--dpi -96 a"});
    rows(u"the printed size must be from 1 to 5000 mm"_s, {"--mm 0.9 a", "--mm 5001 a", "--dpi 90000 a"});
    rows(u"--mm and --dpi together give the size; --size cannot be given too"_s,
         {"-s 64 --mm 50 --dpi 96 a"});
    for (const char *text : {"{name}{colour}", "name}"}) {
        rows(u"\"%1\" is not a name template; only {name} and {size} can be in braces"_s.arg(
                 QLatin1String(text)),
             {QByteArray("-n ") + text + " a"});
    }
    for (const char *text :
         {"", "{name}/", "/{name}", "../{name}", "{name}/..", "a/../../{name}", ".", "..", "a//b"}) {
        rows(u"\"%1\" is not a name template; it must be the path of a file below the output folder"_s.arg(
                 QLatin1String(text)),
             {QByteArray("-n ") + (*text == '\0' ? "''" : text) + " a"});
    }
    rows(u"the name template must contain {size} when there are several sizes"_s, {"-s 64,128 -n {name} a"});
    rows(u"only pictures have a size; the name template cannot contain {size}"_s, {"-f csv -n {size} a"});
    rows(u"the output folder has an empty name"_s, {"-o '' a"});
    rows(u"--overwrite and --keep cannot be given together"_s, {"--overwrite --keep a"});
    for (const char *value : {"-1", "10", "best"}) {
        rows(u"\"%1\" is not a value for --compression; it must be a whole number from 0 to 9"_s.arg(
                 QLatin1String(value)),
             {QByteArray("--compression ") + value + " a"});
    }
    for (const char *value : {"0", "0.00001", "91", "nan", "fine"}) {
        rows(u"\"%1\" is not a value for --max-error; it must be a number from 0.0001 to 90"_s.arg(
                 QLatin1String(value)),
             {QByteArray("--max-error ") + value + " a"});
    }
    rows(u"--scale needs the name of a layer"_s, {"-f json --scale '' a"});
    rows(u"--scale needs --formats json, xml, h or html"_s, {"--scale Knots a"});
    rows(u"--background needs a picture, such as --formats png"_s, {"-f json,html -b red a"});
    rows(u"\"0\" is not a value for --jobs; it must be a whole number from 1 to 1024"_s, {"-j 0 a"});
    rows(u"\"1025\" is not a value for --jobs; it must be a whole number from 1 to 1024"_s, {"-j 1025 a"});
    rows(u"\"0\" is not a value for --tick-limit; it must be a whole number from 1 to 18446744073709551615"_s,
         {"--tick-limit 0 a"});
    rows(
        u"\"18446744073709551616\" is not a value for --tick-limit; it must be a whole number from 1 to 18446744073709551615"_s,
        {"--tick-limit 18446744073709551616 a"});
    rows(u"\"1025\" is not a value for --input-limit; it must be a whole number from 1 to 1024"_s,
         {"--input-limit 1025 a"});
    rows(u"standard input (-) must be the only file"_s, {"- a"});
    rows(u"standard input (-) is exported in one format and one size"_s, {"-f png,svg -", "-s 64,128 -"});
    rows(u"standard input (-) is written to standard output; it takes no folder or name"_s,
         {"-o out -", "-n {name} -", "--to face.png -"});
    rows(u"--to needs the name of a file"_s,
         {"--to '' a", "--to - a", "--to out/ a", "--to . a", "--to out/.. a"});
    rows(u"--to needs one gauge, one format and one size"_s,
         {"--to face a b", "--to face -f png,csv a", "--to face -s 64,128 a"});
    rows(u"--split makes several files of a picture; --to names only one"_s, {"--split b --to face.png a"});
    rows(u"--split makes several files of a picture; standard output takes only one"_s, {"--split b -"});
    rows(u"each --needle-angle needs a --split"_s,
         {"--needle-angle 5 a", "--split b --needle-angle 5 --needle-angle 6 a"});
    for (const char *value : {"up", "", "inf", "nan", "36001", "-1e300"}) {
        rows(
            u"\"%1\" is not a value for --needle-angle; it must be a number of degrees from -36000 to 36000"_s
                .arg(QLatin1String(value)),
            {QByteArray("--split b --needle-angle ") + (*value == '\0' ? "''" : value) + " a"});
    }
    rows(u"--to gives the whole name; --output and --name-template cannot be given too"_s,
         {"--to face -o out a", "--to face -n {name} a"});
}

void tst_CommandLine::refusesWrongUsage()
{
    QFETCH(const QByteArray, arguments);
    QFETCH(const QString, error);
    const ExportCommandLine result = parse(arguments);
    QCOMPARE(result.text, error);
    QCOMPARE(result.outcome, ExportCommandLine::Outcome::WrongUsage);
}

void tst_CommandLine::refusesOptionsThatAreNotUtf8()
{
    const ExportCommandLine result = parse("-o \xff a");
    QCOMPARE(result.text, u"\"\ufffd\" is not UTF-8"_s);
    QCOMPARE(result.outcome, ExportCommandLine::Outcome::WrongUsage);
}

void tst_CommandLine::takesTheFormatFromTheSuffix_data()
{
    QTest::addColumn<QString>("format");
    const auto row = [](const char *arguments, const QString &format) { QTest::newRow(arguments) << format; };
    row("a", u"png"_s);
    row("--to face a", u"png"_s);
    row("--to face.png a", u"png"_s);
    row("--to face.SVG a", u"svg"_s);
    row("--to out.pdf/face a", u"png"_s);
    row("--to face.csv a", u"csv"_s);
    row("--to face.gauge a", u"gauge"_s);
    row("-b white --to face.jpg a", u"jpeg"_s);
    row("-f csv --to face.jpg a", u"csv"_s);
}

void tst_CommandLine::takesTheFormatFromTheSuffix()
{
    QFETCH(const QString, format);
    const ExportCommandLine result = parse(QTest::currentDataTag());
    QCOMPARE(result.text, QString());
    QCOMPARE(result.options.formats, QList{findExportFormat(format)});
}

ADD_TEST_CLASS(tst_CommandLine)
#include "tst_commandline.moc"
