#include "exporterrun.h"
#include "support/testmain.h"

#include <QFile>
#include <QImage>
#include <QLibraryInfo>
#include <QTest>

using namespace Qt::StringLiterals;

/// Pictures with a background, and the formats that need or often have one.
class tst_Backgrounds : public ExporterTest
{
    Q_OBJECT

private Q_SLOTS:
    void fillsTheBackground_data();
    void fillsTheBackground();
    void blendsOverATranslucentBackground();
    void onlyTheFaceHasABackground();
    void everyJpegHasABackground();
    void webpIsTransparent();
    void qualityChangesTheSize();
    void namesTheMissingPlugin();

private:
    [[nodiscard]] QColor corner(const QString &name) const { return QImage(path(name)).pixelColor(2, 2); }
};

void tst_Backgrounds::fillsTheBackground_data()
{
    QTest::addColumn<QString>("colour");
    for (const char *format : {"png", "jpeg", "webp", "svg"}) {
        for (const QString &colour : {u"teal"_s, u"#fa0"_s, u"#204060"_s, u"#ff204060"_s})
            QTest::addRow("%s %s", format, qPrintable(colour)) << colour;
    }
}

void tst_Backgrounds::fillsTheBackground()
{
    QFETCH(const QString, colour);
    const QString format = QString::fromLatin1(QTest::currentDataTag()).section(u' ', 0, 0);
    QCOMPARE(run({u"--formats"_s, format, u"--background"_s, colour, u"Dial.gauge"_s}).status, 0);
    const QColor actual = corner(u"Dial."_s + format);
    const QColor expected = QColor::fromString(colour);
    const auto close = [](int a, int b) { return std::abs(a - b) <= 3; }; // some formats lose a little
    QVERIFY2(close(actual.red(), expected.red()) && close(actual.green(), expected.green()) &&
                 close(actual.blue(), expected.blue()) && actual.alpha() == 255,
             qPrintable(actual.name(QColor::HexArgb)));
}

void tst_Backgrounds::blendsOverATranslucentBackground()
{
    QCOMPARE(run("--background #80ff0000 Dial.gauge").status, 0);
    QCOMPARE(corner(u"Dial.png"_s), QColor(255, 0, 0, 128));
    QCOMPARE(QImage(path(u"Dial.png"_s)).pixelColor(256, 256), QColor(Qt::white)); // the dot at the centre
}

void tst_Backgrounds::onlyTheFaceHasABackground()
{
    writeGauge(u"Dial.gauge"_s, {u"Face"_s, u"Needle"_s, u"Glass"_s});
    QCOMPARE(run("--split Needle --background red -f png,webp Dial.gauge").status, 0);
    for (const QString &suffix : {u".png"_s, u".webp"_s}) {
        QCOMPARE(corner(u"Dial-face"_s + suffix).alpha(), 255);
        QCOMPARE(corner(u"Dial-needle"_s + suffix).alpha(), 0);
        QCOMPARE(corner(u"Dial-cover"_s + suffix).alpha(), 0);
    }
}

void tst_Backgrounds::everyJpegHasABackground()
{
    writeGauge(u"Dial.gauge"_s, {u"Face"_s, u"Needle"_s});
    QCOMPARE(run("--split Needle --background white -f jpeg Dial.gauge").status, 0);
    QCOMPARE(corner(u"Dial-face.jpeg"_s), QColor(Qt::white));
    QCOMPARE(corner(u"Dial-needle.jpeg"_s), QColor(Qt::white));
}

void tst_Backgrounds::webpIsTransparent()
{
    QCOMPARE(run("-f webp Dial.gauge").status, 0);
    QCOMPARE(corner(u"Dial.webp"_s).alpha(), 0);
}

void tst_Backgrounds::qualityChangesTheSize()
{
    for (const QByteArray format : {"jpeg", "webp"}) {
        qsizetype smaller = 0;
        for (const QByteArray quality : {"0", "50", "95"}) {
            QCOMPARE(
                run("--overwrite -b black --to picture Dial.gauge -f " + format + " --quality " + quality)
                    .status,
                0);
            const qsizetype size = read(u"picture"_s).size();
            QVERIFY(size > smaller);
            smaller = size;
        }
    }
}

void tst_Backgrounds::namesTheMissingPlugin()
{
    const QString exporter = path(u"exporter"_s);
    QVERIFY(QFile::copy(QStringLiteral(CORVALENCE_EXPORT), exporter));
    write(u"qt.conf"_s, "[Paths]\nPlugins = plugins\n");
    write(u"plugins/empty"_s, {});
    QVERIFY(QFile::link(QLibraryInfo::path(QLibraryInfo::PluginsPath) + u"/platforms"_s,
                        path(u"plugins/platforms"_s)));
    const ExporterRun result = run("-f webp Dial.gauge", {.program = exporter});
    QCOMPARE(
        result.err,
        "corvalence-export: webp cannot be written without Qt's plugin for it (on Debian and Ubuntu, install "
        "qt6-image-formats-plugins)\nSee corvalence-export --help.\n"_ba);
    QCOMPARE(result.status, 2);
    QCOMPARE(run("-f png Dial.gauge", {.program = exporter}).status, 0);
}

ADD_TEST_CLASS(tst_Backgrounds)
#include "tst_backgrounds.moc"
