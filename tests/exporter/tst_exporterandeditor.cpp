#include "exporterrun.h"
#include "model/gaugefile.h"
#include "support/dialogs.h"
#include "support/network.h"
#include "support/testmain.h"
#include "window.h"

#include <QAbstractButton>
#include <QDir>
#include <QFileDialog>
#include <QImage>
#include <QSpinBox>
#include <QTest>

using namespace Qt::StringLiterals;

/// Compares the exporter's files with those that the editor's buttons write for the same gauge.
class tst_ExporterAndEditor : public ExporterTest
{
    Q_OBJECT

private Q_SLOTS:
    void writeTheSame_data();
    void writeTheSame();

private:
    SilentProxy m_proxy;
};

namespace {

/// Loads a gauge into a new window and writes editor.png, editor.svg and so on with its buttons.
QStringList exportFromWindow(const QString &gauge, int size, const QString &folder)
{
    Window window;
    DialogAnswers answers;
    const auto click = [&window, &answers](const QString &button, const QString &file) {
        answers.expectFile(file);
        window.findChild<QAbstractButton *>(button)->click();
    };
    click(u"loadButton"_s, gauge);
    window.findChild<QSpinBox *>(u"pngSizeSpinBox"_s)->setValue(size);
    click(u"savePNGButton"_s, folder + u"/editor.png"_s);
    click(u"saveSVGButton"_s, folder + u"/editor.svg"_s);
    click(u"saveKeyFrameButton"_s, folder + u"/editor.csv"_s);
    click(u"saveButton"_s, folder + u"/editor.gauge"_s);
    return answers.problems();
}

} // namespace

void tst_ExporterAndEditor::writeTheSame_data()
{
    QTest::addColumn<QByteArray>("gauge");
    QTest::addColumn<int>("size");

    QTest::newRow("default layer") << gaugeFile::write({{u"Layer 1"_s, {}}, {u"Scale"_s, {}}}) << 512;
    QTest::newRow("layers without names")
        << gaugeFile::write({{{}, {}}, {{}, {}}, {u"a,\"b\""_s, {}}, {{}, {}}}) << 64;

    gaugeData older;
    older.startAngle = -123.5;
    older.angleLength = 300;
    older.divisionCount = {7, 3, 4};
    older.divisionLineWidth = {5.25, 0, 1.5};
    older.tickCountRotate = true;
    older.tickCountFont.setBold(true);
    QTest::newRow("file of an earlier version") << older.toQString().toUtf8() << 300;
    QTest::newRow("colours with alpha")
        << QByteArray(R"({"layers": [{"arcs": [{"width": 60, "color": "#80ff0000"}]}]})") << 128;

    QTest::newRow("a name that UTF-8 cannot hold")
        << QByteArray(R"({"layers": [{"name": "half \ud83d a pair"}, {"name": "d\u00f6\ud83d\ude00"}]})")
        << 64;

    for (const char *folder : {"samples", "presets"}) {
        const QDir gauges(QStringLiteral(CORVALENCE_SOURCE "/") + QLatin1String(folder));
        for (const QString &name : gauges.entryList({u"*.gauge"_s}))
            QTest::newRow(qPrintable(name)) << readFile(gauges.filePath(name)) << 200;
    }
    QTest::newRow("large") << readFile(QStringLiteral(CORVALENCE_SOURCE "/samples/Speedometer.gauge"))
                           << 2048;
}

void tst_ExporterAndEditor::writeTheSame()
{
    QFETCH(const QByteArray, gauge);
    QFETCH(const int, size);
    write(u"My dial.gauge"_s, gauge);
    QCOMPARE(exportFromWindow(path(u"My dial.gauge"_s), size, path({})), QStringList());

    const ExporterRun result = run({u"-f"_s, u"png,svg,csv,gauge"_s, u"-s"_s, QString::number(size), u"-n"_s,
                                    u"exporter"_s, u"My dial.gauge"_s});
    QCOMPARE(result.err, QByteArray());
    QCOMPARE(result.status, 0);
    const QImage editorPicture(path(u"editor.png"_s));
    QVERIFY(!editorPicture.isNull());
    const QImage exporterPicture(path(u"exporter.png"_s));
    QCOMPARE(exporterPicture.convertToFormat(editorPicture.format()), editorPicture);
    for (const char *suffix : {".svg", ".csv", ".gauge"}) {
        const QByteArray editor = read(u"editor"_s + QLatin1String(suffix));
        QVERIFY2(!editor.isEmpty(), suffix);
        QVERIFY2(read(u"exporter"_s + QLatin1String(suffix)) == editor, suffix);
    }
}

ADD_TEST_CLASS(tst_ExporterAndEditor)
#include "tst_exporterandeditor.moc"
