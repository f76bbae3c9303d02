#include "model/gaugefile.h"
#include "render/renderarea.h"
#include "support/dialogs.h"
#include "support/files.h"
#include "support/network.h"
#include "support/testmain.h"
#include "support/warnings.h"
#include "window.h"

#include <QAbstractButton>
#include <QDir>
#include <QFileInfo>
#include <QListWidget>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;

/// The presets and sample gauges that come with the program.
class tst_Starters : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { failOnUnexpectedWarnings(); }

    void thereAreEnough();
    void areWrittenAsTheProgramWrites_data() { addGauges({u"presets"_s, u"samples"_s}); }
    void areWrittenAsTheProgramWrites();
    void useAFontThatIsCommon_data() { addGauges({u"presets"_s, u"samples"_s}); }
    void useAFontThatIsCommon();
    void staySameWhenEdited_data() { addGauges({u"presets"_s, u"samples"_s}); }
    void staySameWhenEdited();
    void haveAPictureInTheGallery_data() { addGauges({u"presets"_s, u"samples"_s}); }
    void haveAPictureInTheGallery();
    void presetsHaveOneLayerAndAPlainName_data() { addGauges({u"presets"_s}); }
    void presetsHaveOneLayerAndAPlainName();
    void presetsLieBesideTheProgram_data() { addGauges({u"presets"_s}); }
    void presetsLieBesideTheProgram();
    void samplesHaveSeveralNamedLayers_data() { addGauges({u"samples"_s}); }
    void samplesHaveSeveralNamedLayers();
    void theIconIsAGauge();

private:
    static QFileInfoList gaugesIn(const QString &folder);
    static void addGauges(const QStringList &folders);
    static QList<gaugeLayer> load(const QString &path);

    SilentProxy m_proxy;
};

QFileInfoList tst_Starters::gaugesIn(const QString &folder)
{
    return QDir(QStringLiteral(CORVALENCE_SOURCE "/") + folder).entryInfoList({u"*.gauge"_s});
}

void tst_Starters::addGauges(const QStringList &folders)
{
    QTest::addColumn<QString>("path");
    for (const QString &folder : folders) {
        for (const QFileInfo &file : gaugesIn(folder))
            QTest::newRow(qPrintable(folder + u'/' + file.fileName())) << file.filePath();
    }
}

QList<gaugeLayer> tst_Starters::load(const QString &path)
{
    QList<gaugeLayer> layers;
    QString error;
    if (!gaugeFile::read(readFile(path), &layers, &error))
        qWarning("%s: %s", qPrintable(path), qPrintable(error));
    return layers;
}

void tst_Starters::thereAreEnough()
{
    QVERIFY(gaugesIn(u"presets"_s).size() >= 16);
    QVERIFY(gaugesIn(u"samples"_s).size() >= 10);
}

void tst_Starters::areWrittenAsTheProgramWrites()
{
    QFETCH(const QString, path);
    const QList<gaugeLayer> layers = load(path);
    QVERIFY(!layers.isEmpty());
    QCOMPARE(gaugeFile::write(layers), readFile(path));
}

void tst_Starters::useAFontThatIsCommon()
{
    QFETCH(const QString, path);
    for (const gaugeLayer &layer : load(path))
        QCOMPARE(layer.data.tickCountFont.family(), u"DejaVu Sans"_s);
}

void tst_Starters::staySameWhenEdited()
{
    // What lies beyond the range of a control would change as soon as its group is touched.
    QFETCH(const QString, path);
    Window window;
    DialogAnswers answers;
    answers.expectFile(path);
    window.findChild<QAbstractButton *>(u"loadButton"_s)->click();

    auto *list = window.findChild<QListWidget *>(u"layerList"_s);
    QCOMPARE(list->count(), load(path).size());
    for (int row = 0; row < list->count(); ++row) {
        list->setCurrentRow(row);
        for (const char *handler :
             {"angleChanged", "capsChanged", "divisions1Changed", "divisions2Changed", "divisions3Changed",
              "arc1Changed", "arc2Changed", "arc3Changed", "arc4Changed", "tickSettingsChanged"})
            QVERIFY2(QMetaObject::invokeMethod(&window, handler), handler);
    }
    const QTemporaryDir folder;
    const QString saved = folder.filePath(u"saved.gauge"_s);
    answers.expectFile(saved);
    window.findChild<QAbstractButton *>(u"saveButton"_s)->click();
    QCOMPARE(answers.problems(), QStringList());
    QCOMPARE(readFile(saved), readFile(path));
}

void tst_Starters::haveAPictureInTheGallery()
{
    QFETCH(const QString, path);
    const QFileInfo gauge(path);
    const QString picture =
        u"gallery/"_s + gauge.dir().dirName() + u'/' + gauge.completeBaseName() + u".png"_s;
    QVERIFY(QFile::exists(QStringLiteral(CORVALENCE_SOURCE "/docs/") + picture));
    const QString link = u"("_s + QString(picture).replace(u' ', u"%20"_s) + u')';
    QVERIFY(QString::fromUtf8(readFile(QStringLiteral(CORVALENCE_SOURCE "/docs/gallery.md"))).contains(link));
}

void tst_Starters::presetsHaveOneLayerAndAPlainName()
{
    QFETCH(const QString, path);
    const QString name = QFileInfo(path).completeBaseName();
    // The preset list cuts a name at its first dot.
    QVERIFY(!name.contains(u'.'));
    const QList<gaugeLayer> layers = load(path);
    QCOMPARE(layers.size(), 1);
    QCOMPARE(layers.first().name, name);
}

void tst_Starters::presetsLieBesideTheProgram()
{
    QFETCH(const QString, path);
    const QString copy = QStringLiteral(CORVALENCE_PRESETS_COPY "/") + QFileInfo(path).fileName();
    QCOMPARE(readFile(copy), readFile(path));
}

void tst_Starters::samplesHaveSeveralNamedLayers()
{
    QFETCH(const QString, path);
    const QList<gaugeLayer> layers = load(path);
    QVERIFY(layers.size() > 1);
    for (const gaugeLayer &layer : layers)
        QVERIFY(!layer.name.isEmpty());
}

void tst_Starters::theIconIsAGauge()
{
    QVERIFY(!load(QStringLiteral(CORVALENCE_SOURCE "/packaging/icon.gauge")).isEmpty());
    const QIcon icon(QStringLiteral(CORVALENCE_SOURCE "/corvalence.ico"));
    QList<int> widths;
    for (const QSize &size : icon.availableSizes())
        widths.append(size.width());
    QCOMPARE(widths, QList<int>({16, 24, 32, 48, 64, 128, 256}));
}

ADD_TEST_CLASS(tst_Starters)
#include "tst_starters.moc"
