#include "documents.h"
#include "model/gaugefile.h"
#include "support/dialogs.h"
#include "support/network.h"
#include "support/testmain.h"
#include "support/warnings.h"
#include "window.h"

#include <QDir>
#include <QDoubleSpinBox>
#include <QFile>
#include <QFileDialog>
#include <QLineEdit>
#include <QListWidget>
#include <QSpinBox>
#include <QTemporaryDir>
#include <QTest>

#include <optional>

/// "Save Keyframes CSV": where it asks, the file that it writes, and what becomes of failures.
class tst_KeyframesDialog : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { m_proxy.emplace(); }
    void init();
    void cleanupTestCase();

    void asksForTheFile();
    void writesTheTicksOfALayer();
    void writesAFullCircleOnce();
    void writesTheLayersOneAfterAnother();
    void writesTheLatestEdits();
    void quotesANameThatNeedsIt_data();
    void quotesANameThatNeedsIt();
    void completesANameWithoutSuffix();
    void replacesAnExistingFile();
    void doesNothingWhenCancelled();
    void tellsWhenTheFileCannotBeOpened();
    void tellsWhenTheFolderVanished();
    void keepsTheGaugeWhenTheDiskIsFull();

private:
    /// Saves the keyframes of a window into a file and reads it.
    QByteArray tableOf(const Window &window);
    /// Makes a file of these layers, and a window that has it loaded.
    void load(Window &window, const QList<gaugeLayer> &layers);

    std::optional<SilentProxy> m_proxy;
    std::optional<QTemporaryDir> m_folder;
    std::optional<DialogAnswers> m_answers;
};

void tst_KeyframesDialog::init()
{
    failOnUnexpectedWarnings();
    m_folder.emplace();
    m_answers.emplace();
}

void tst_KeyframesDialog::cleanupTestCase()
{
    m_folder.reset();
    m_proxy.reset();
}

QByteArray tst_KeyframesDialog::tableOf(const Window &window)
{
    const QString path = m_folder->filePath(QStringLiteral("Keyframes.csv"));
    m_answers->expectFile(path);
    press(window, "saveKeyFrameButton");
    return contentOf(path);
}

void tst_KeyframesDialog::load(Window &window, const QList<gaugeLayer> &layers)
{
    const QString path = m_folder->filePath(QStringLiteral("Dial.gauge"));
    QVERIFY(writeFile(path, gaugeFile::write(layers)));
    ::load(window, *m_answers, path);
}

void tst_KeyframesDialog::asksForTheFile()
{
    const Window window;
    m_answers->expect<QFileDialog>([&window](QFileDialog &dialog) {
        QCOMPARE(dialog.parentWidget(), &window);
        QVERIFY(dialog.isModal());
        QCOMPARE(dialog.windowTitle(), QStringLiteral("Save Keyframes CSV"));
        QCOMPARE(dialog.nameFilters(), QStringList(QStringLiteral("CSV file (*.csv)")));
        QCOMPARE(dialog.defaultSuffix(), QStringLiteral("csv"));
        QCOMPARE(dialog.acceptMode(), QFileDialog::AcceptSave);
        QCOMPARE(dialog.directory().absolutePath(), QCoreApplication::applicationDirPath());
        QCOMPARE(dialog.findChild<QLineEdit *>(QStringLiteral("fileNameEdit"))->text(), QString());
        QVERIFY(!dialog.testOption(QFileDialog::DontConfirmOverwrite));
        dialog.reject();
    });
    press(window, "saveKeyFrameButton");
    QCOMPARE(m_answers->problems(), QStringList());
}

void tst_KeyframesDialog::writesTheTicksOfALayer()
{
    gaugeData layer;
    layer.startAngle = 10;
    layer.angleLength = 90;
    layer.divisionCount.front() = 4;
    layer.tickCountStart = -1;
    layer.tickCountIncrement = 0.5;
    layer.tickCountEnabled = false; // the labels need not be shown
    layer.tickCountSkipFirst = true;
    Window window;
    load(window, {{QStringLiteral("Name"), layer}});
    // A quarter of 90 degrees apart, and every line ends in a carriage return alone.
    QCOMPARE(tableOf(window), QByteArray("Layer,Tick,Angle\r"
                                         "Name,-1,10\r"
                                         "Name,-0.5,32.5\r"
                                         "Name,0,55\r"
                                         "Name,0.5,77.5\r"
                                         "Name,1,100\r"));
    QCOMPARE(m_answers->problems(), QStringList());
}

void tst_KeyframesDialog::writesAFullCircleOnce()
{
    gaugeData layer;
    layer.startAngle = 45;
    layer.angleLength = 360;
    layer.divisionCount.front() = 4;
    layer.tickCountIncrement = 3;
    Window window;
    load(window, {{QStringLiteral("Clock"), layer}});
    QCOMPARE(tableOf(window), QByteArray("Layer,Tick,Angle\r"
                                         "Clock,0,45\r"
                                         "Clock,3,135\r"
                                         "Clock,6,225\r"
                                         "Clock,9,315\r"));
    QCOMPARE(m_answers->problems(), QStringList());
}

void tst_KeyframesDialog::writesTheLayersOneAfterAnother()
{
    gaugeData none;
    none.divisionCount.front() = 0;
    gaugeData one;
    one.startAngle = 30;
    one.angleLength = 60;
    one.divisionCount.front() = 1;
    gaugeData other = one;
    other.startAngle = 90;
    Window window;
    load(window,
         {{QStringLiteral("Zähler"), one}, {QStringLiteral("None"), none}, {QStringLiteral("B"), other}});
    QCOMPARE(tableOf(window), QByteArray("Layer,Tick,Angle\r"
                                         "Z\xC3\xA4hler,0,30\r"
                                         "Z\xC3\xA4hler,1,90\r"
                                         "B,0,90\r"
                                         "B,1,150\r"));
    QCOMPARE(m_answers->problems(), QStringList());
}

void tst_KeyframesDialog::writesTheLatestEdits()
{
    const Window window;
    control<QDoubleSpinBox>(window, "gaugeStartAngleSpinBox")->setValue(15);
    control<QDoubleSpinBox>(window, "gaugeAngleLengthSpinBox")->setValue(30);
    control<QSpinBox>(window, "gaugeDivisions1SpinBox")->setValue(2);
    control<QListWidget>(window, "layerList")->item(0)->setText(QStringLiteral("Renamed"));
    QCOMPARE(tableOf(window), QByteArray("Layer,Tick,Angle\r"
                                         "Renamed,0,15\r"
                                         "Renamed,1,30\r"
                                         "Renamed,2,45\r"));
    QCOMPARE(m_answers->problems(), QStringList());
}

void tst_KeyframesDialog::quotesANameThatNeedsIt_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QByteArray>("field");
    QTest::newRow("plain") << QStringLiteral("Layer 1; 'x'\t") << QByteArray("Layer 1; 'x'\t");
    QTest::newRow("comma") << QStringLiteral("a,b") << QByteArray("\"a,b\"");
    QTest::newRow("quotes") << QStringLiteral("a \"b\"") << QByteArray("\"a \"\"b\"\"\"");
    QTest::newRow("line feed") << QStringLiteral("a\nb") << QByteArray("\"a\nb\"");
    QTest::newRow("carriage return") << QStringLiteral("a\rb") << QByteArray("\"a\rb\"");
}

void tst_KeyframesDialog::quotesANameThatNeedsIt()
{
    QFETCH(const QString, name);
    QFETCH(const QByteArray, field);
    gaugeData layer;
    layer.startAngle = 30;
    layer.angleLength = 60;
    layer.divisionCount.front() = 1;
    Window window;
    load(window, {{name, layer}});
    QCOMPARE(tableOf(window), "Layer,Tick,Angle\r" + field + ",0,30\r" + field + ",1,90\r");
    QCOMPARE(m_answers->problems(), QStringList());
}

void tst_KeyframesDialog::completesANameWithoutSuffix()
{
    const Window window;
    m_answers->expectFile(m_folder->filePath(QStringLiteral("Angles")));
    press(window, "saveKeyFrameButton");
    QCOMPARE(m_answers->problems(), QStringList());
    QCOMPARE(QDir(m_folder->path()).entryList(QDir::Files), QStringList(QStringLiteral("Angles.csv")));
}

void tst_KeyframesDialog::replacesAnExistingFile()
{
    const QString path = m_folder->filePath(QStringLiteral("Keyframes.csv"));
    QVERIFY(writeFile(path, QByteArray(1'000'000, 'x')));
    const Window window;
    control<QSpinBox>(window, "gaugeDivisions1SpinBox")->setValue(0);
    QCOMPARE(tableOf(window), QByteArray("Layer,Tick,Angle\r"));
    QCOMPARE(m_answers->problems(), QStringList());
}

void tst_KeyframesDialog::doesNothingWhenCancelled()
{
    const Window window;
    const QStringList before = stateOf(window);
    m_answers->expect<QFileDialog>([this](QFileDialog &dialog) {
        dialog.findChild<QLineEdit *>(QStringLiteral("fileNameEdit"))
            ->setText(m_folder->filePath(QStringLiteral("Angles.csv")));
        dialog.reject();
    });
    press(window, "saveKeyFrameButton");
    QCOMPARE(m_answers->problems(), QStringList());
    QVERIFY(QDir(m_folder->path()).isEmpty());
    QCOMPARE(stateOf(window), before);
}

void tst_KeyframesDialog::tellsWhenTheFileCannotBeOpened()
{
    const QString parent = m_folder->filePath(QStringLiteral("file"));
    QVERIFY(writeFile(parent, "content"));
    const Window window;
    const QStringList before = stateOf(window);
    m_answers->expectFile(parent + QLatin1String("/Angles.csv"));
    m_answers->expectMessage(&window, QMessageBox::Information, QStringLiteral("Unable to open file"),
                             QStringLiteral("Not a directory"));
    press(window, "saveKeyFrameButton");
    QCOMPARE(m_answers->problems(), QStringList());
    QCOMPARE(contentOf(parent), QByteArray("content"));
    QCOMPARE(stateOf(window), before);
}

void tst_KeyframesDialog::tellsWhenTheFolderVanished()
{
    const Window window;
    m_answers->expect<QFileDialog>([this](QFileDialog &dialog) {
        dialog.findChild<QLineEdit *>(QStringLiteral("fileNameEdit"))
            ->setText(m_folder->filePath(QStringLiteral("Angles.csv")));
        QVERIFY(m_folder->remove());
        static_cast<QDialog &>(dialog).accept();
    });
    m_answers->expectMessage(&window, QMessageBox::Information, QStringLiteral("Unable to open file"),
                             QStringLiteral("No such file or directory"));
    press(window, "saveKeyFrameButton");
    QCOMPARE(m_answers->problems(), QStringList());
}

void tst_KeyframesDialog::keepsTheGaugeWhenTheDiskIsFull()
{
    const QString path = m_folder->filePath(QStringLiteral("Full.csv"));
    QVERIFY(QFile::link(QStringLiteral("/dev/full"), path));
    const Window window;
    const QStringList before = stateOf(window);
    m_answers->expectFile(path);
    press(window, "saveKeyFrameButton");
    QCOMPARE(m_answers->problems(), QStringList());
    QCOMPARE(stateOf(window), before);
}

ADD_TEST_CLASS(tst_KeyframesDialog)
#include "tst_keyframesdialog.moc"
