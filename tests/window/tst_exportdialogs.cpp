#include "render/gaugepainter.h"
#include "render/imageexport.h"
#include "support/dialogs.h"
#include "support/editor.h"
#include "support/records.h"
#include "support/testmain.h"
#include "support/warnings.h"

#include <QBuffer>
#include <QDir>
#include <QFile>
#include <QFileDialog>
#include <QImage>
#include <QImageReader>
#include <QLineEdit>
#include <QPainter>
#include <QTemporaryDir>
#include <QTest>
#include <QXmlStreamReader>

#include <cmath>
#include <memory>

using namespace Qt::StringLiterals;

namespace {

QByteArray contents(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

/// The layers drawn without the export: the same image, straight from the painter.
QImage drawn(const QList<gaugeData> &layers, int size)
{
    QImage image(size, size, QImage::Format_ARGB32);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    paintGauge(painter, size, layers);
    return image;
}

/// Makes the gauge of two layers that is exported here.
void makeGauge(Editor &editor)
{
    editor.addLayer(u"second"_s);
    editor.preview()->layers[0] = sampleLayer();
    editor.preview()->layers[0].tickCountEnabled = true;
    editor.preview()->layers[1].divisionLineWidth.fill(6.0);
}

} // namespace

/// Saving the gauge as a picture, through the buttons and the real file dialog.
class tst_ExportDialogs : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();

    void dialogAsksForFileToSave_data();
    void dialogAsksForFileToSave();
    void suffixIsAdded_data();
    void suffixIsAdded();
    void otherSuffixIsKept_data();
    void otherSuffixIsKept();
    void cancelWritesNothing_data();
    void cancelWritesNothing();
    void pathThatCannotBeWrittenIsSilent_data();
    void pathThatCannotBeWrittenIsSilent();
    void existingFileIsReplaced_data();
    void existingFileIsReplaced();

    void pngIsTheDrawingOfTheStack_data();
    void pngIsTheDrawingOfTheStack();
    void pngAtTheCanvasSizeIsThePreview();
    void pngIsTransparentBetweenTheMarks();
    void pngOfEmptyStackHoldsTheCentreDotAlone();
    void svgHasTheChosenSize_data();
    void svgHasTheChosenSize();
    void svgIsWhatTheDrawingGives_data();
    void svgIsWhatTheDrawingGives();
    void svgNamesItself();
    void referencePictureLeavesNoTrace_data();
    void referencePictureLeavesNoTrace();
    void exportLeavesTheGaugeAlone_data();
    void exportLeavesTheGaugeAlone();

private:
    /// Presses an export button and types the path into its dialog.
    static void exportTo(const Editor &editor, const QString &button, const QString &path);
    static void addFormats();
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

void tst_ExportDialogs::exportTo(const Editor &editor, const QString &button, const QString &path)
{
    DialogAnswers answers;
    answers.expectFile(path);
    editor.control<QPushButton>(button)->click();
    QCOMPARE(answers.problems(), QStringList());
}

void tst_ExportDialogs::addFormats()
{
    QTest::addColumn<QString>("button");
    QTest::addColumn<QString>("suffix");
    QTest::newRow("PNG") << u"savePNGButton"_s << u"png"_s;
    QTest::newRow("SVG") << u"saveSVGButton"_s << u"svg"_s;
}

void tst_ExportDialogs::dialogAsksForFileToSave_data()
{
    QTest::addColumn<QString>("button");
    QTest::addColumn<QString>("caption");
    QTest::addColumn<QString>("filter");
    QTest::addColumn<QString>("suffix");
    QTest::newRow("PNG") << u"savePNGButton"_s << u"Save PNG"_s << u"PNG file (*.png)"_s << u"png"_s;
    QTest::newRow("SVG") << u"saveSVGButton"_s << u"Save SVG"_s << u"SVG file (*.svg)"_s << u"svg"_s;
}

void tst_ExportDialogs::dialogAsksForFileToSave()
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
        dialog.reject(); // first, since a failing comparison goes no further
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

void tst_ExportDialogs::suffixIsAdded_data()
{
    addFormats();
}

void tst_ExportDialogs::suffixIsAdded()
{
    QFETCH(QString, button);
    QFETCH(QString, suffix);
    const Editor editor;
    exportTo(editor, button, path(u"face"_s));
    QCOMPARE(files(), QStringList(u"face."_s + suffix));
    QVERIFY(!contents(path(u"face."_s + suffix)).isEmpty());
}

void tst_ExportDialogs::otherSuffixIsKept_data()
{
    addFormats();
}

void tst_ExportDialogs::otherSuffixIsKept()
{
    QFETCH(QString, button);
    QFETCH(QString, suffix);
    const Editor editor;
    exportTo(editor, button, path(u"face.picture"_s));
    QCOMPARE(files(), QStringList(u"face.picture"_s));
    // The format is the button's, whatever the name says.
    QCOMPARE(QImageReader::imageFormat(path(u"face.picture"_s)), suffix.toLatin1());
}

void tst_ExportDialogs::cancelWritesNothing_data()
{
    addFormats();
}

void tst_ExportDialogs::cancelWritesNothing()
{
    QFETCH(QString, button);
    QFETCH(QString, suffix);
    const Editor editor;
    DialogAnswers answers;
    answers.expect<QFileDialog>([this, &suffix](QFileDialog &dialog) {
        dialog.findChild<QLineEdit *>(u"fileNameEdit"_s)->setText(path(u"face."_s + suffix));
        dialog.reject();
    });
    editor.control<QPushButton>(button)->click();
    QCOMPARE(answers.problems(), QStringList());
    QCOMPARE(files(), QStringList());
}

void tst_ExportDialogs::pathThatCannotBeWrittenIsSilent_data()
{
    addFormats();
}

void tst_ExportDialogs::pathThatCannotBeWrittenIsSilent()
{
    QFETCH(QString, button);
    QFETCH(QString, suffix);
    QFile file(path(u"no folder"_s));
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.close();

    const Editor editor;
    // No message comes: an unexpected dialog would be a problem.
    exportTo(editor, button, path(u"no folder/face."_s + suffix));
    QCOMPARE(files(), QStringList(u"no folder"_s));
    QCOMPARE(contents(path(u"no folder"_s)), QByteArray());

    // And the editor goes on.
    editor.control<QDoubleSpinBox>("gaugeStartAngleSpinBox"_L1)->setValue(30.0);
    QCOMPARE(editor.preview()->layers.first().startAngle, 30.0);
    exportTo(editor, button, path(u"face."_s + suffix));
    QVERIFY(files().contains(u"face."_s + suffix));
}

void tst_ExportDialogs::existingFileIsReplaced_data()
{
    addFormats();
}

void tst_ExportDialogs::existingFileIsReplaced()
{
    QFETCH(QString, button);
    QFETCH(QString, suffix);
    const QString target = path(u"face."_s + suffix);
    const Editor editor;
    exportTo(editor, button, target);
    const QByteArray expected = contents(target);
    QFile file(target);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(QByteArray(1 << 20, 'x'));
    file.close();
    exportTo(editor, button, target);
    QCOMPARE(contents(target), expected);
}

void tst_ExportDialogs::pngIsTheDrawingOfTheStack_data()
{
    QTest::addColumn<int>("size");
    for (const int size : {64, 96, 512, 1024, 4096})
        QTest::addRow("%d", size) << size;
}

void tst_ExportDialogs::pngIsTheDrawingOfTheStack()
{
    QFETCH(int, size);
    Editor editor;
    makeGauge(editor);
    editor.control<QSpinBox>("pngSizeSpinBox"_L1)->setValue(size);
    exportTo(editor, u"savePNGButton"_s, path(u"face.png"_s));
    const QImage image(path(u"face.png"_s));
    QCOMPARE(image.size(), QSize(size, size));
    QVERIFY(image.hasAlphaChannel());
    QCOMPARE(image.convertToFormat(QImage::Format_ARGB32), drawn(editor.preview()->layers, size));
}

void tst_ExportDialogs::pngAtTheCanvasSizeIsThePreview()
{
    Editor editor;
    makeGauge(editor);
    exportTo(editor, u"savePNGButton"_s, path(u"face.png"_s));
    const QImage exported = QImage(path(u"face.png"_s)).convertToFormat(QImage::Format_ARGB32);

    editor.show();
    QImage shown(512, 512, QImage::Format_ARGB32_Premultiplied);
    shown.fill(Qt::transparent);
    editor.preview()->render(&shown, QPoint(), QRegion(), QWidget::DrawChildren);
    // What a pixel is made of differs by the formats' rounding alone.
    for (int y = 0; y < 512; ++y) {
        for (int x = 0; x < 512; ++x)
            QVERIFY2(qAbs(exported.pixelColor(x, y).alpha() - shown.pixelColor(x, y).alpha()) <= 1,
                     qPrintable(u"%1, %2"_s.arg(x).arg(y)));
    }
}

void tst_ExportDialogs::pngIsTransparentBetweenTheMarks()
{
    const Editor editor;
    exportTo(editor, u"savePNGButton"_s, path(u"face.png"_s));
    const QImage image = QImage(path(u"face.png"_s)).convertToFormat(QImage::Format_ARGB32);
    // The first layer sweeps from 12 to 4 o'clock at 0.74 of the radius and beyond.
    for (int y = 0; y < 512; ++y) {
        for (int x = 0; x < 512; ++x) {
            const double distance = std::hypot(x + 0.5 - 256.0, y + 0.5 - 256.0);
            const bool withinDial = x > 256 - 20 && distance < 250.0 + 2.0 && distance > 0.74 * 250.0 - 50.0;
            const bool withinDot = distance < 3.0 + 2.0;
            if (!withinDial && !withinDot)
                QCOMPARE(image.pixel(x, y), qRgba(0, 0, 0, 0));
        }
    }
    QCOMPARE(image.pixelColor(256, 256), QColor(Qt::white));
}

void tst_ExportDialogs::pngOfEmptyStackHoldsTheCentreDotAlone()
{
    const Editor editor;
    editor.preview()->layers.clear();
    exportTo(editor, u"savePNGButton"_s, path(u"face.png"_s));
    const QImage image = QImage(path(u"face.png"_s)).convertToFormat(QImage::Format_ARGB32);
    QCOMPARE(image.size(), QSize(512, 512));
    // A disc of 6 units with a line of a pixel around it.
    for (int y = 0; y < 512; ++y) {
        for (int x = 0; x < 512; ++x) {
            const double distance = std::hypot(x + 0.5 - 256.0, y + 0.5 - 256.0);
            if (distance > 3.0 + 2.0)
                QCOMPARE(image.pixel(x, y), qRgba(0, 0, 0, 0));
            else if (distance < 2.0)
                QCOMPARE(image.pixel(x, y), qRgba(255, 255, 255, 255));
        }
    }
}

void tst_ExportDialogs::svgHasTheChosenSize_data()
{
    QTest::addColumn<int>("size");
    for (const int size : {64, 512, 1024, 4096})
        QTest::addRow("%d", size) << size;
}

void tst_ExportDialogs::svgHasTheChosenSize()
{
    QFETCH(int, size);
    const Editor editor;
    editor.control<QSpinBox>("pngSizeSpinBox"_L1)->setValue(size);
    exportTo(editor, u"saveSVGButton"_s, path(u"face.svg"_s));
    QXmlStreamReader xml(contents(path(u"face.svg"_s)));
    QVERIFY(xml.readNextStartElement());
    QCOMPARE(xml.name(), u"svg"_s);
    const QXmlStreamAttributes attributes = xml.attributes();
    QCOMPARE(attributes.value("viewBox"_L1).toString(), u"0 0 %1 %1"_s.arg(size));
    // Lengths are written in millimetres, two decimals, of which 25.4 are an inch of 96 dots.
    for (const auto side : {"width"_L1, "height"_L1}) {
        QString length = attributes.value(side).toString();
        QVERIFY(length.endsWith("mm"_L1));
        length.chop(2);
        QVERIFY(qAbs(length.toDouble() / 25.4 * 96.0 - size) < 0.05);
    }
}

void tst_ExportDialogs::svgIsWhatTheDrawingGives_data()
{
    svgHasTheChosenSize_data();
}

void tst_ExportDialogs::svgIsWhatTheDrawingGives()
{
    QFETCH(int, size);
    Editor editor;
    makeGauge(editor);
    editor.control<QSpinBox>("pngSizeSpinBox"_L1)->setValue(size);
    exportTo(editor, u"saveSVGButton"_s, path(u"face.svg"_s));
    QBuffer expected;
    QVERIFY(expected.open(QIODevice::WriteOnly));
    QVERIFY(writeSvg(expected, size, editor.preview()->layers));
    QCOMPARE(contents(path(u"face.svg"_s)), expected.data());
}

void tst_ExportDialogs::svgNamesItself()
{
    const Editor editor;
    exportTo(editor, u"saveSVGButton"_s, path(u"face.svg"_s));
    const QByteArray svg = contents(path(u"face.svg"_s));
    QVERIFY(svg.contains("<title>Corvalence 2 Gauge</title>"));
    QVERIFY(svg.contains("<desc>A gauge generated in Corvalence 2Saved to SVG.</desc>"));
}

void tst_ExportDialogs::referencePictureLeavesNoTrace_data()
{
    addFormats();
}

void tst_ExportDialogs::referencePictureLeavesNoTrace()
{
    QFETCH(QString, button);
    QFETCH(QString, suffix);
    QImage picture(512, 512, QImage::Format_RGB32);
    picture.fill(Qt::magenta);
    QVERIFY(picture.save(path(u"reference.png"_s)));
    Editor editor;
    makeGauge(editor);
    exportTo(editor, button, path(u"without."_s + suffix));
    exportTo(editor, u"loadReferenceButton"_s, path(u"reference.png"_s));
    QCOMPARE(editor.control<QLabel>("referenceLabel"_L1)->pixmap().size(), QSize(512, 512));
    exportTo(editor, button, path(u"with."_s + suffix));
    QCOMPARE(contents(path(u"with."_s + suffix)), contents(path(u"without."_s + suffix)));
}

void tst_ExportDialogs::exportLeavesTheGaugeAlone_data()
{
    addFormats();
}

void tst_ExportDialogs::exportLeavesTheGaugeAlone()
{
    QFETCH(QString, button);
    QFETCH(QString, suffix);
    Editor editor;
    makeGauge(editor);
    const QList<gaugeData> before = editor.preview()->layers;
    // It draws the stack as it is; the working copy is neither drawn nor saved.
    editor.preview()->workingLayer = sampleLayer(3);
    exportTo(editor, button, path(u"face."_s + suffix));
    QCOMPARE(editor.preview()->layers.size(), 2);
    for (int row = 0; row < 2; ++row)
        QCOMPARE(differingFields(editor.preview()->layers.at(row), before.at(row)), QStringList());
    QCOMPARE(differingFields(editor.preview()->workingLayer, sampleLayer(3)), QStringList());
}

ADD_TEST_CLASS(tst_ExportDialogs)
#include "tst_exportdialogs.moc"
