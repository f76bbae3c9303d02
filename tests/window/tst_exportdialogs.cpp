#include "render/imageexport.h"
#include "support/dialogs.h"
#include "support/editor.h"
#include "support/files.h"
#include "support/testmain.h"
#include "support/warnings.h"

#include <QBuffer>
#include <QDir>
#include <QFileDialog>
#include <QImage>
#include <QLineEdit>
#include <QTemporaryDir>
#include <QTest>

#include <memory>

using namespace Qt::StringLiterals;

/// Saving the gauge as a PNG or SVG with the buttons and the file dialog.
class tst_ExportDialogs : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();

    void dialogAsksForFile_data();
    void dialogAsksForFile();
    void fileName_data();
    void fileName();
    void cancellingWritesNothing_data() { addFormats(); }
    void cancellingWritesNothing();
    void failureIsSilent_data() { addFormats(); }
    void failureIsSilent();
    void fileHoldsTheStackAtTheChosenSize_data();
    void fileHoldsTheStackAtTheChosenSize();

private:
    static void addFormats();
    /// Clicks a button and accepts a file name in its dialog.
    static void clickAndAccept(const Editor &editor, const QString &button, const QString &path);
    [[nodiscard]] QString path(const QString &name) const { return m_folder->filePath(name); }
    [[nodiscard]] QStringList files() const
    {
        return QDir(m_folder->path()).entryList(QDir::Files, QDir::Name);
    }

    std::unique_ptr<QTemporaryDir> m_folder;
};

void tst_ExportDialogs::init()
{
    failOnUnexpectedWarnings();
    m_folder = std::make_unique<QTemporaryDir>();
    QVERIFY(m_folder->isValid());
}

void tst_ExportDialogs::addFormats()
{
    QTest::addColumn<QString>("button");
    QTest::newRow("PNG") << u"savePNGButton"_s;
    QTest::newRow("SVG") << u"saveSVGButton"_s;
}

void tst_ExportDialogs::clickAndAccept(const Editor &editor, const QString &button, const QString &path)
{
    DialogAnswers answers;
    answers.expectFile(path);
    editor.control<QPushButton>(button)->click();
    QCOMPARE(answers.problems(), QStringList());
}

void tst_ExportDialogs::dialogAsksForFile_data()
{
    QTest::addColumn<QString>("button");
    QTest::addColumn<QString>("caption");
    QTest::addColumn<QString>("filter");
    QTest::addColumn<QString>("suffix");
    QTest::newRow("PNG") << u"savePNGButton"_s << u"Save PNG"_s << u"PNG file (*.png)"_s << u"png"_s;
    QTest::newRow("SVG") << u"saveSVGButton"_s << u"Save SVG"_s << u"SVG file (*.svg)"_s << u"svg"_s;
}

void tst_ExportDialogs::dialogAsksForFile()
{
    QFETCH(QString, button);
    QFETCH(QString, caption);
    QFETCH(QString, filter);
    QFETCH(QString, suffix);
    const Editor editor;
    DialogAnswers answers;
    bool asked = false;
    answers.expect<QFileDialog>([&](QFileDialog &dialog) {
        asked = true;
        dialog.reject(); // first, since a failed comparison leaves the function
        QCOMPARE(dialog.windowTitle(), caption);
        QCOMPARE(dialog.nameFilters(), QStringList(filter));
        QCOMPARE(dialog.defaultSuffix(), suffix);
        QCOMPARE(dialog.acceptMode(), QFileDialog::AcceptSave);
        QCOMPARE(dialog.directory(), QDir(QCoreApplication::applicationDirPath()));
        QCOMPARE(dialog.parentWidget(), &editor.window);
        QCOMPARE(dialog.findChild<QLineEdit *>(u"fileNameEdit"_s)->text(), QString());
    });
    editor.control<QPushButton>(button)->click();
    QVERIFY(asked);
    QCOMPARE(answers.problems(), QStringList());
}

void tst_ExportDialogs::fileName_data()
{
    QTest::addColumn<QString>("button");
    QTest::addColumn<QString>("typed");
    QTest::addColumn<QString>("file");
    QTest::addColumn<QByteArray>("start");
    const QByteArray png("\x89PNG");
    const QByteArray svg("<?xml");
    QTest::newRow("PNG") << u"savePNGButton"_s << u"face"_s << u"face.png"_s << png;
    QTest::newRow("SVG") << u"saveSVGButton"_s << u"face"_s << u"face.svg"_s << svg;
    QTest::newRow("PNG with another suffix") << u"savePNGButton"_s << u"face.svg"_s << u"face.svg"_s << png;
    QTest::newRow("SVG with another suffix") << u"saveSVGButton"_s << u"face.png"_s << u"face.png"_s << svg;
}

void tst_ExportDialogs::fileName()
{
    QFETCH(QString, button);
    QFETCH(QString, typed);
    QFETCH(QString, file);
    QFETCH(QByteArray, start);
    clickAndAccept(Editor(), button, path(typed));
    QCOMPARE(files(), QStringList(file));
    QCOMPARE(readFile(path(file)).left(start.size()), start);
}

void tst_ExportDialogs::cancellingWritesNothing()
{
    QFETCH(QString, button);
    const Editor editor;
    DialogAnswers answers;
    answers.expect<QFileDialog>([this](QFileDialog &dialog) {
        dialog.findChild<QLineEdit *>(u"fileNameEdit"_s)->setText(path(u"face"_s));
        dialog.reject();
    });
    editor.control<QPushButton>(button)->click();
    QCOMPARE(answers.problems(), QStringList());
    QCOMPARE(files(), QStringList());
}

void tst_ExportDialogs::failureIsSilent()
{
    QFETCH(QString, button);
    writeFile(path(u"file"_s), "unchanged");
    const Editor editor;
    // A message would be an unexpected dialog.
    clickAndAccept(editor, button, path(u"file/face"_s));
    QCOMPARE(files(), QStringList(u"file"_s));
    QCOMPARE(readFile(path(u"file"_s)), QByteArray("unchanged"));
    clickAndAccept(editor, button, path(u"face.picture"_s));
    QCOMPARE(files(), (QStringList{u"face.picture"_s, u"file"_s}));
}

void tst_ExportDialogs::fileHoldsTheStackAtTheChosenSize_data()
{
    QTest::addColumn<int>("size");
    for (const int size : {64, 1024})
        QTest::addRow("%d", size) << size;
}

void tst_ExportDialogs::fileHoldsTheStackAtTheChosenSize()
{
    QFETCH(int, size);
    const Editor editor;
    editor.addLayer(u"second"_s);
    const QList<gaugeData> layers{sampleLayer(1), sampleLayer(2)};
    editor.preview()->layers = layers;
    // Neither the working copy nor the reference image is exported.
    editor.preview()->workingLayer = sampleLayer(3);
    QImage reference(512, 512, QImage::Format_RGB32);
    reference.fill(Qt::magenta);
    QVERIFY(reference.save(path(u"reference.png"_s)));
    clickAndAccept(editor, u"loadReferenceButton"_s, path(u"reference.png"_s));
    QVERIFY(!editor.control<QLabel>("referenceLabel"_L1)->pixmap().isNull());
    // Longer files are replaced.
    writeFile(path(u"face.png"_s), QByteArray(1 << 20, 'x'));
    writeFile(path(u"face.svg"_s), QByteArray(1 << 20, 'x'));

    editor.control<QSpinBox>("pngSizeSpinBox"_L1)->setValue(size);
    clickAndAccept(editor, u"savePNGButton"_s, path(u"face.png"_s));
    clickAndAccept(editor, u"saveSVGButton"_s, path(u"face.svg"_s));
    QBuffer png;
    QBuffer svg;
    QVERIFY(png.open(QIODevice::WriteOnly) && writePng(png, size, layers));
    QVERIFY(svg.open(QIODevice::WriteOnly) && writeSvg(svg, size, layers));
    QVERIFY(readFile(path(u"face.png"_s)) == png.data());
    QCOMPARE(readFile(path(u"face.svg"_s)), svg.data());
    QCOMPARE(QImage(path(u"face.png"_s)).size(), QSize(size, size));

    QCOMPARE(differingFields(editor.preview()->layers.at(0), layers.at(0)), QStringList());
    QCOMPARE(differingFields(editor.preview()->layers.at(1), layers.at(1)), QStringList());
    QCOMPARE(differingFields(editor.preview()->workingLayer, sampleLayer(3)), QStringList());
}

ADD_TEST_CLASS(tst_ExportDialogs)
#include "tst_exportdialogs.moc"
