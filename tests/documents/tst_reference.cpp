#include "support/dialogs.h"
#include "support/editor.h"
#include "support/files.h"
#include "support/testmain.h"
#include "support/warnings.h"

#include <QDateTime>
#include <QImage>
#include <QLabel>
#include <QPainter>
#include <QTemporaryDir>
#include <QTest>

#include <optional>

using namespace Qt::StringLiterals;

namespace {

/// The width and height of the preview.
constexpr int canvasSize = 512;

/// A picture in which no two pixels near each other have the same colour, so that any shift or scaling shows.
QImage pattern(int size = canvasSize)
{
    QImage image(size, size, QImage::Format_RGB32);
    for (int y = 0; y < size; ++y) {
        for (int x = 0; x < size; ++x)
            image.setPixelColor(x, y, QColor(x % 256, y % 256, (x / 256 + y / 256 * 4) * 10));
    }
    return image;
}

QImage plainPicture(const QColor &color)
{
    QImage image(canvasSize, canvasSize, QImage::Format_RGB32);
    image.fill(color);
    return image;
}

QLabel &referenceLabel(const Editor &editor)
{
    return *editor.control<QLabel>("referenceLabel"_L1);
}

/// The picture that the label behind the preview shows.
QImage shownPicture(const Editor &editor)
{
    return referenceLabel(editor).grab().toImage().convertToFormat(QImage::Format_RGB32);
}

} // namespace

/// The reference picture behind the preview.
class tst_Reference : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();

    void pictureIsCentredAtItsOwnSize_data();
    void pictureIsCentredAtItsOwnSize();
    void pictureIsBehindTheMarks();
    void formatIsDetectedFromTheContent();
    void changedFileIsReadAgain();
    void clearRemovesTextAndPicture();
    void unreadablePictureChangesNothing_data();
    void unreadablePictureChangesNothing();
    void pictureIsNotSaved_data();
    void pictureIsNotSaved();

private:
    /// Saves a picture and loads it behind the preview.
    void load(const QImage &picture, const char *format = "PNG") const;
    /// Loads a file, which may not be a picture.
    void loadFile(const QString &path) const;

    std::optional<QTemporaryDir> m_folder;
    std::optional<Editor> m_editor;
};

void tst_Reference::init()
{
    failOnUnexpectedWarnings();
    m_folder.emplace();
    m_editor.emplace();
}

void tst_Reference::loadFile(const QString &path) const
{
    DialogAnswers answers;
    answers.expectFile(path);
    m_editor->press(u"loadReferenceButton"_s);
    QCOMPARE(answers.problems(), QStringList());
}

void tst_Reference::load(const QImage &picture, const char *format) const
{
    const QString path = m_folder->filePath(u"Dial.png"_s);
    QVERIFY(picture.save(path, format));
    loadFile(path);
}

void tst_Reference::pictureIsCentredAtItsOwnSize_data()
{
    QTest::addColumn<int>("size");
    for (const int size : {canvasSize, 256, 1024, 1})
        QTest::addRow("%d", size) << size;
}

void tst_Reference::pictureIsCentredAtItsOwnSize()
{
    QFETCH(const int, size);
    QImage expected = plainPicture(Qt::black);
    QPainter painter(&expected);
    painter.drawImage((canvasSize - size) / 2, (canvasSize - size) / 2, pattern(size));
    painter.end();
    load(plainPicture(Qt::red)); // is replaced
    load(pattern(size));
    QCOMPARE(shownPicture(*m_editor), expected);
}

void tst_Reference::pictureIsBehindTheMarks()
{
    m_editor->show();
    load(pattern());
    RenderArea &preview = *m_editor->preview();
    // The layout places the preview below the title of the group, whose height depends on the style.
    const QPoint offset = referenceLabel(*m_editor).pos() - preview.pos();
    QCOMPARE(offset.x(), 0);
    QVERIFY(qAbs(offset.y()) <= 2);

    QImage expected(canvasSize, canvasSize, QImage::Format_RGB32);
    QPainter painter(&expected);
    painter.drawImage(offset, pattern());
    preview.paint(painter, canvasSize);
    painter.end();
    const QRect common = preview.rect().intersected(preview.rect().translated(offset));
    const QImage actual = preview.parentWidget()->grab(common.translated(preview.pos())).toImage();
    QCOMPARE(actual.convertToFormat(QImage::Format_RGB32), expected.copy(common));
    QCOMPARE(expected.pixelColor(canvasSize / 2, canvasSize / 2), QColor(Qt::white)); // the centre dot
}

void tst_Reference::formatIsDetectedFromTheContent()
{
    load(pattern(), "BMP");
    QCOMPARE(shownPicture(*m_editor), pattern());
}

void tst_Reference::changedFileIsReadAgain()
{
    const QString path = m_folder->filePath(u"Dial.bmp"_s);
    const QDateTime time = QDateTime::fromSecsSinceEpoch(1'700'000'000);
    for (const QColor &color : {QColor(Qt::red), QColor(Qt::green)}) {
        // The files have the same size and time.
        QVERIFY(plainPicture(color).save(path, "BMP"));
        QFile file(path);
        QVERIFY(file.open(QIODevice::ReadWrite) && file.setFileTime(time, QFileDevice::FileModificationTime));
        file.close();
        loadFile(path);
        QCOMPARE(shownPicture(*m_editor), plainPicture(color));
    }
}

void tst_Reference::clearRemovesTextAndPicture()
{
    const QLabel &label = referenceLabel(*m_editor);
    QCOMPARE(label.text(), u"Gauge Preview"_s);
    for (int i = 0; i < 2; ++i) {
        m_editor->press(u"clearReferenceButton"_s);
        QCOMPARE(label.text(), QString());
        QVERIFY(label.pixmap().isNull());
        QCOMPARE(shownPicture(*m_editor), plainPicture(Qt::black));
        load(pattern());
    }
    QCOMPARE(shownPicture(*m_editor), pattern());
}

void tst_Reference::unreadablePictureChangesNothing_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::newRow("empty") << QByteArray();
    QTest::newRow("a gauge") << QByteArray("{\"layers\": [{}]}");
    QTest::newRow("only a signature") << QByteArray("\x89PNG\r\n\x1a\n");
}

void tst_Reference::unreadablePictureChangesNothing()
{
    QFETCH(const QByteArray, content);
    const QString path = m_folder->filePath(u"Broken.png"_s);
    writeFile(path, content);
    for (int i = 0; i < 2; ++i) { // with the initial text, and with a picture
        const QStringList before = m_editor->state();
        QTest::ignoreMessage(QtDebugMsg, "Failed to load image.");
        loadFile(path);
        QCOMPARE(m_editor->state(), before);
        load(pattern());
    }
}

void tst_Reference::pictureIsNotSaved_data()
{
    QTest::addColumn<QString>("button");
    QTest::newRow("gauge") << u"saveButton"_s;
    QTest::newRow("layer") << u"SaveLayerButton"_s;
    QTest::newRow("keyframes") << u"saveKeyFrameButton"_s;
}

void tst_Reference::pictureIsNotSaved()
{
    QFETCH(const QString, button);
    const QString path = m_folder->filePath(u"Saved.txt"_s);
    const auto save = [&] {
        DialogAnswers answers;
        answers.expectFile(path);
        m_editor->press(button);
        return answers.problems().isEmpty() ? readFile(path) : QByteArray();
    };
    const QByteArray without = save();
    QVERIFY(!without.isEmpty());
    load(pattern());
    QCOMPARE(save(), without);
}

ADD_TEST_CLASS(tst_Reference)
#include "tst_reference.moc"
