#include "exporterrun.h"
#include "model/gaugefile.h"
#include "support/dialogs.h"
#include "support/editor.h"
#include "support/files.h"
#include "support/network.h"
#include "support/testmain.h"
#include "support/warnings.h"

#include <QDir>
#include <QFileInfo>
#include <QIcon>
#include <QTest>

#include <algorithm>

using namespace Qt::StringLiterals;

/// The presets and sample gauges that come with the program.
class tst_Starters : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { failOnUnexpectedWarnings(); }

    void areComplete_data();
    void areComplete();
    void staySameWhenEdited_data() { areComplete_data(); }
    void staySameWhenEdited();
    void theIconIsAGauge();

private:
    SilentProxy m_proxy;
};

namespace {

QString sourcePath(const QString &name)
{
    return QStringLiteral(CORVALENCE_SOURCE "/") + name;
}

/// The presets that scripts/scales makes.
QStringList fittedPresets()
{
    return {u"Logarithmic 1 to 1000"_s, u"Thermistor"_s, u"VU -20 to 3"_s};
}

QList<gaugeLayer> load(const QString &path)
{
    QList<gaugeLayer> layers;
    gaugeFile::read(readFile(path), &layers, nullptr);
    return layers;
}

} // namespace

void tst_Starters::areComplete_data()
{
    QTest::addColumn<QString>("path");
    for (const auto &[folder, minCount] : {std::pair(u"presets"_s, 16), std::pair(u"samples"_s, 10)}) {
        const QFileInfoList gauges = QDir(sourcePath(folder)).entryInfoList({u"*.gauge"_s});
        QVERIFY(gauges.size() >= minCount);
        for (const QFileInfo &gauge : gauges)
            QTest::newRow(qPrintable(folder + u'/' + gauge.fileName())) << gauge.filePath();
    }
}

void tst_Starters::areComplete()
{
    QFETCH(const QString, path);
    const QList<gaugeLayer> layers = load(path);
    QCOMPARE(gaugeFile::write(layers), readFile(path)); // as the program writes it
    for (const gaugeLayer &layer : layers) {
        QVERIFY(!layer.name.isEmpty());
        QCOMPARE(layer.data.tickCountFont.family(), u"DejaVu Sans"_s);
    }

    const QString folder = QFileInfo(path).dir().dirName();
    const QString name = QFileInfo(path).completeBaseName();
    if (folder == "presets"_L1) {
        if (name == "Needle clock hands"_L1)
            QCOMPARE(layers.size(), 2); // they turn by different angles
        else if (fittedPresets().contains(name))
            QVERIFY(layers.size() > 1);
        else
            QCOMPARE(layerNames(readFile(path)), QStringList(name));
        QVERIFY(!name.contains(u'.')); // The preset list cuts a name at its first dot.
        const QString copy = QStringLiteral(CORVALENCE_PRESETS_COPY "/") + QFileInfo(path).fileName();
        QCOMPARE(readFile(copy), readFile(path));
    } else {
        QVERIFY(layers.size() > 1);
    }

    QString picture = u"gallery/%1/%2.png"_s.arg(folder, name);
    QVERIFY(QFile::exists(sourcePath(u"docs/"_s + picture)));
    const QString link = u'(' + picture.replace(u' ', u"%20"_s) + u')';
    QVERIFY(readFile(sourcePath(u"docs/gallery.md"_s)).contains(link.toUtf8()));
}

void tst_Starters::staySameWhenEdited()
{
    // A value beyond the range of its control would change with any control of its group.
    QFETCH(const QString, path);
    Editor editor;
    DialogAnswers answers;
    editor.load(path, answers);
    QCOMPARE(answers.problems(), QStringList());
    for (int row = 0; row < editor.layerList()->count(); ++row) {
        editor.layerList()->setCurrentRow(row);
        for (const GaugeField &field : gaugeFields())
            editor.call(slotOf(field));
    }
    QList<gaugeLayer> expected = load(path);
    for (gaugeLayer &layer : expected) {
        // Scales that corvalence-fit made need a third decimal of the bias and higher numbers than the
        // controls show.
        if (layer.name.startsWith(u"Scale "_s)) {
            layer.data.bias = QString::number(layer.data.bias, 'f', 2).toDouble();
            layer.data.tickCountStart = std::min(layer.data.tickCountStart, 360.0);
        }
    }
    QCOMPARE(editor.differencesFrom(expected), QStringList());
}

void tst_Starters::theIconIsAGauge()
{
    QVERIFY(!load(sourcePath(u"packaging/icon.gauge"_s)).isEmpty());
    QList<int> widths;
    for (const QSize &size : QIcon(sourcePath(u"corvalence.ico"_s)).availableSizes())
        widths.append(size.width());
    QCOMPARE(widths, QList<int>({16, 24, 32, 48, 64, 128, 256}));
}

ADD_TEST_CLASS(tst_Starters)
#include "tst_starters.moc"
