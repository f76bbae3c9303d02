#include "exporterrun.h"
#include "model/gaugefile.h"
#include "support/dialogs.h"
#include "support/editor.h"
#include "support/network.h"
#include "support/testmain.h"

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

void tst_ExporterAndEditor::writeTheSame_data()
{
    QTest::addColumn<QByteArray>("gauge");
    QTest::addColumn<int>("size");
    QTest::newRow("layers without names")
        << gaugeFile::write({{{}, {}}, {{}, {}}, {u"a,\"b\""_s, {}}, {{}, {}}}) << 64;
    QTest::newRow("file of an earlier version") << sampleLayer().toQString().toUtf8() << 300;
    QTest::newRow("colours with alpha")
        << QByteArray(R"({"layers": [{"arcs": [{"width": 60, "color": "#80ff0000"}]}]})") << 128;
    QTest::newRow("a name that UTF-8 cannot hold")
        << QByteArray(R"({"layers": [{"name": "half \ud83d a pair"}, {"name": "d\u00f6\ud83d\ude00"}]})")
        << 64;
    QTest::newRow("large") << readFile(QStringLiteral(CORVALENCE_SOURCE "/samples/Speedometer.gauge"))
                           << 2048;
}

void tst_ExporterAndEditor::writeTheSame()
{
    QFETCH(const QByteArray, gauge);
    QFETCH(const int, size);
    write(u"My dial.v2.gauge"_s, gauge);
    Editor editor;
    DialogAnswers answers;
    editor.load(path(u"My dial.v2.gauge"_s), answers);
    editor.control<QSpinBox>("pngSizeSpinBox"_L1)->setValue(size);
    for (const auto &[button, suffix] :
         {std::pair(u"savePNGButton"_s, u"png"_s), std::pair(u"saveSVGButton"_s, u"svg"_s),
          std::pair(u"saveKeyFrameButton"_s, u"csv"_s), std::pair(u"saveButton"_s, u"gauge"_s)}) {
        answers.expectFile(path(u"editor."_s + suffix));
        editor.press(button);
    }
    QCOMPARE(answers.problems(), QStringList());

    const ExporterRun result = run({u"-f"_s, u"png,svg,csv,gauge"_s, u"-s"_s, QString::number(size), u"-n"_s,
                                    u"exporter"_s, u"My dial.v2.gauge"_s});
    QCOMPARE(result.err, QByteArray());
    QCOMPARE(result.status, 0);
    const QImage editorPicture(path(u"editor.png"_s));
    QVERIFY(!editorPicture.isNull());
    const QImage exporterPicture(path(u"exporter.png"_s));
    QCOMPARE(exporterPicture.convertToFormat(editorPicture.format()), editorPicture);
    for (const char *suffix : {".svg", ".csv", ".gauge"}) {
        const QByteArray editorFile = read(u"editor"_s + QLatin1String(suffix));
        QVERIFY2(!editorFile.isEmpty(), suffix);
        QVERIFY2(read(u"exporter"_s + QLatin1String(suffix)) == editorFile, suffix);
    }
}

ADD_TEST_CLASS(tst_ExporterAndEditor)
#include "tst_exporterandeditor.moc"
