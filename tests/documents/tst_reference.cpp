#include "documents.h"
#include "render/renderarea.h"
#include "support/dialogs.h"
#include "support/network.h"
#include "support/testmain.h"
#include "support/warnings.h"
#include "window.h"

#include <QDateTime>
#include <QFile>
#include <QFileDialog>
#include <QImage>
#include <QLabel>
#include <QPainter>
#include <QTemporaryDir>
#include <QTest>

#include <optional>

namespace {

constexpr int canvas = 512;

/// A picture of which no two pixels within reach of each other are alike, so that a shift or a scale shows.
QImage pattern(int size)
{
    QImage image(size, size, QImage::Format_RGB32);
    for (int y = 0; y < size; ++y) {
        for (int x = 0; x < size; ++x)
            image.setPixelColor(x, y, QColor(x % 256, y % 256, (x / 256 + y / 256 * 4) * 10));
    }
    return image;
}

/// A picture of one colour.
QImage plain(const QColor &color)
{
    QImage image(canvas, canvas, QImage::Format_RGB32);
    image.fill(color);
    return image;
}

/// What the label behind the preview shows.
QImage shown(const Window &window)
{
    return control<QLabel>(window, "referenceLabel")->grab().toImage().convertToFormat(QImage::Format_RGB32);
}

} // namespace

/// The reference picture behind the preview.
class tst_Reference : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { m_proxy.emplace(); }
    void init();
    void cleanupTestCase();

    void asksForThePicture();
    void startsWithAText();
    void showsThePictureCentredAtItsOwnSize_data();
    void showsThePictureCentredAtItsOwnSize();
    void liesBehindTheMarks();
    void replacesAnEarlierPicture();
    void readsAnyFormat_data();
    void readsAnyFormat();
    void showsThePixelsOfNowNotThoseOfBefore();
    void clears();
    void clearsTheTextForGood();
    void keepsWhatIsShownWhenCancelled();
    void keepsWhatIsShownWhenAFileCannotBeRead_data();
    void keepsWhatIsShownWhenAFileCannotBeRead();
    void leavesNoTraceInWhatIsSaved_data();
    void leavesNoTraceInWhatIsSaved();

private:
    /// Writes a picture and loads it behind the preview.
    void show(const Window &window, const QString &fileName, const QImage &picture);
    void loadReference(const Window &window, const QString &path);

    std::optional<SilentProxy> m_proxy;
    std::optional<QTemporaryDir> m_folder;
    std::optional<DialogAnswers> m_answers;
};

void tst_Reference::init()
{
    failOnUnexpectedWarnings();
    m_folder.emplace();
    m_answers.emplace();
}

void tst_Reference::cleanupTestCase()
{
    m_folder.reset();
    m_proxy.reset();
}

void tst_Reference::loadReference(const Window &window, const QString &path)
{
    m_answers->expectFile(path);
    press(window, "loadReferenceButton");
    QCOMPARE(m_answers->problems(), QStringList());
}

void tst_Reference::show(const Window &window, const QString &fileName, const QImage &picture)
{
    const QString path = m_folder->filePath(fileName);
    QVERIFY(picture.save(path, "PNG"));
    loadReference(window, path);
}

void tst_Reference::asksForThePicture()
{
    const Window window;
    m_answers->expect<QFileDialog>([&window](QFileDialog &dialog) {
        QCOMPARE(dialog.parentWidget(), &window);
        QVERIFY(dialog.isModal());
        QCOMPARE(dialog.windowTitle(), QStringLiteral("Load Reference Image (512x512)"));
        QCOMPARE(dialog.nameFilters(), QStringList(QStringLiteral("png Files (*.png)")));
        QCOMPARE(dialog.acceptMode(), QFileDialog::AcceptOpen);
        QCOMPARE(dialog.fileMode(), QFileDialog::ExistingFile);
        QCOMPARE(dialog.directory().absolutePath(), QCoreApplication::applicationDirPath());
        dialog.reject();
    });
    press(window, "loadReferenceButton");
    QCOMPARE(m_answers->problems(), QStringList());
}

void tst_Reference::startsWithAText()
{
    const Window window;
    const auto *label = control<QLabel>(window, "referenceLabel");
    QCOMPARE(label->text(), QStringLiteral("Gauge Preview"));
    QVERIFY(label->pixmap().isNull());
}

void tst_Reference::showsThePictureCentredAtItsOwnSize_data()
{
    QTest::addColumn<int>("size");
    for (const int size : {canvas, 256, 1024, 100, 1})
        QTest::addRow("%d", size) << size;
}

void tst_Reference::showsThePictureCentredAtItsOwnSize()
{
    QFETCH(const int, size);
    const Window window;
    const QImage picture = pattern(size);
    show(window, QStringLiteral("Dial.png"), picture);

    // Black around a smaller one; of a larger one only the middle.
    QImage expected(canvas, canvas, QImage::Format_RGB32);
    expected.fill(Qt::black);
    for (int y = 0; y < canvas; ++y) {
        for (int x = 0; x < canvas; ++x) {
            const QPoint source(x + (size - canvas) / 2, y + (size - canvas) / 2);
            if (picture.rect().contains(source))
                expected.setPixel(x, y, picture.pixel(source));
        }
    }
    const QImage actual = shown(window);
    QCOMPARE(actual.size(), QSize(canvas, canvas));
    QCOMPARE(actual, expected);
}

void tst_Reference::liesBehindTheMarks()
{
    Window window;
    window.show();
    QVERIFY(QTest::qWaitForWindowExposed(&window));
    show(window, QStringLiteral("Dial.png"), pattern(canvas));

    const auto *label = control<QLabel>(window, "referenceLabel");
    const auto *preview = window.findChild<RenderArea *>();
    QCOMPARE(preview->size(), label->size());
    // The layout puts the preview below the group's title, whose height is the style's.
    const QPoint offset = label->pos() - preview->pos();
    QCOMPARE(offset.x(), 0);
    QVERIFY(qAbs(offset.y()) <= 2);

    // The picture with the marks over it, as far as both reach.
    QImage expected(canvas, canvas, QImage::Format_RGB32);
    QPainter painter(&expected);
    painter.drawImage(offset, pattern(canvas));
    window.findChild<RenderArea *>()->paint(painter, canvas);
    painter.end();
    const QRect both = QRect(offset, label->size()).intersected(preview->rect());
    const QImage actual = preview->parentWidget()->grab(both.translated(preview->pos())).toImage();
    QCOMPARE(actual.convertToFormat(QImage::Format_RGB32), expected.copy(both));
    QCOMPARE(expected.pixelColor(canvas / 2, canvas / 2), QColor(Qt::white)); // the dot at the centre
}

void tst_Reference::replacesAnEarlierPicture()
{
    const Window window;
    show(window, QStringLiteral("Large.png"), plain(Qt::red));
    show(window, QStringLiteral("Dial.png"), pattern(canvas));
    QCOMPARE(shown(window), pattern(canvas));
}

void tst_Reference::readsAnyFormat_data()
{
    QTest::addColumn<QString>("fileName");
    QTest::addColumn<QByteArray>("format");
    QTest::newRow("BMP") << QStringLiteral("Dial.bmp") << QByteArray("BMP");
    QTest::newRow("PPM") << QStringLiteral("Dial.ppm") << QByteArray("PPM");
    QTest::newRow("BMP named as PNG") << QStringLiteral("Dial.png") << QByteArray("BMP");
    QTest::newRow("PNG without a suffix") << QStringLiteral("Dial") << QByteArray("PNG");
}

void tst_Reference::readsAnyFormat()
{
    QFETCH(const QString, fileName);
    QFETCH(const QByteArray, format);
    const QString path = m_folder->filePath(fileName);
    QVERIFY(pattern(canvas).save(path, format.constData()));
    const Window window;
    loadReference(window, path);
    QCOMPARE(shown(window), pattern(canvas));
}

void tst_Reference::showsThePixelsOfNowNotThoseOfBefore()
{
    const Window window;
    const QString path = m_folder->filePath(QStringLiteral("Dial.bmp"));
    const QDateTime time = QDateTime::fromSecsSinceEpoch(1'700'000'000);
    for (const QColor &color : {QColor(Qt::red), QColor(Qt::green), QColor(Qt::blue)}) {
        // Rewritten within the same second, at the same size.
        QVERIFY(plain(color).save(path, "BMP"));
        QFile file(path);
        QVERIFY(file.open(QIODevice::ReadWrite));
        QVERIFY(file.setFileTime(time, QFileDevice::FileModificationTime));
        file.close();
        loadReference(window, path);
        QCOMPARE(shown(window), plain(color));
    }
}

void tst_Reference::clears()
{
    const Window window;
    show(window, QStringLiteral("Dial.png"), pattern(canvas));
    press(window, "clearReferenceButton");
    const auto *label = control<QLabel>(window, "referenceLabel");
    QVERIFY(label->pixmap().isNull());
    QCOMPARE(label->text(), QString()); // the starting text does not come back
    QCOMPARE(shown(window), plain(Qt::black));

    show(window, QStringLiteral("Dial.png"), pattern(canvas));
    QCOMPARE(shown(window), pattern(canvas));
    QCOMPARE(m_answers->problems(), QStringList());
}

void tst_Reference::clearsTheTextForGood()
{
    const Window window;
    const auto *label = control<QLabel>(window, "referenceLabel");
    press(window, "clearReferenceButton");
    QCOMPARE(label->text(), QString());
    QCOMPARE(shown(window), plain(Qt::black));
    press(window, "clearReferenceButton");
    QCOMPARE(label->text(), QString());
    QCOMPARE(shown(window), plain(Qt::black));
    QCOMPARE(m_answers->problems(), QStringList());
}

void tst_Reference::keepsWhatIsShownWhenCancelled()
{
    const Window window;
    show(window, QStringLiteral("Dial.png"), pattern(canvas));
    const QStringList before = stateOf(window);
    m_answers->expectAndCancel<QFileDialog>();
    press(window, "loadReferenceButton");
    QCOMPARE(m_answers->problems(), QStringList());
    QCOMPARE(stateOf(window), before);
}

void tst_Reference::keepsWhatIsShownWhenAFileCannotBeRead_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::newRow("empty") << QByteArray();
    QTest::newRow("text") << QByteArray("no picture");
    QTest::newRow("a signature alone") << QByteArray("\x89PNG\r\n\x1a\n");
    QTest::newRow("a gauge") << QByteArray("{\"layers\": [{}]}");
}

void tst_Reference::keepsWhatIsShownWhenAFileCannotBeRead()
{
    QFETCH(const QByteArray, content);
    const QString path = m_folder->filePath(QStringLiteral("Broken.png"));
    QVERIFY(writeFile(path, content));
    const Window window;

    // The starting text, then a picture.
    QStringList before = stateOf(window);
    QTest::ignoreMessage(QtDebugMsg, "Failed to load image.");
    loadReference(window, path);
    QCOMPARE(stateOf(window), before);

    show(window, QStringLiteral("Dial.png"), pattern(canvas));
    before = stateOf(window);
    QTest::ignoreMessage(QtDebugMsg, "Failed to load image.");
    loadReference(window, path);
    QCOMPARE(stateOf(window), before);
    QCOMPARE(shown(window), pattern(canvas));
}

void tst_Reference::leavesNoTraceInWhatIsSaved_data()
{
    QTest::addColumn<QByteArray>("button");
    QTest::addColumn<QString>("suffix");
    QTest::newRow("gauge") << QByteArray("saveButton") << QStringLiteral("gauge");
    QTest::newRow("preset") << QByteArray("SaveLayerButton") << QStringLiteral("gauge");
    QTest::newRow("PNG") << QByteArray("savePNGButton") << QStringLiteral("png");
    QTest::newRow("SVG") << QByteArray("saveSVGButton") << QStringLiteral("svg");
    QTest::newRow("keyframes") << QByteArray("saveKeyFrameButton") << QStringLiteral("csv");
}

void tst_Reference::leavesNoTraceInWhatIsSaved()
{
    QFETCH(const QByteArray, button);
    QFETCH(const QString, suffix);
    const QString without = m_folder->filePath(QStringLiteral("Without.") + suffix);
    const QString with = m_folder->filePath(QStringLiteral("With.") + suffix);
    const Window window;
    m_answers->expectFile(without);
    press(window, button);
    show(window, QStringLiteral("Dial.png"), pattern(canvas));
    m_answers->expectFile(with);
    press(window, button);
    QCOMPARE(m_answers->problems(), QStringList());
    QVERIFY(!contentOf(without).isEmpty());
    QCOMPARE(contentOf(with), contentOf(without));
}

ADD_TEST_CLASS(tst_Reference)
#include "tst_reference.moc"
