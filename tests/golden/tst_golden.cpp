#include "model/gaugefile.h"
#include "render/imageexport.h"
#include "support/dialogs.h"
#include "support/editor.h"
#include "support/files.h"
#include "support/testmain.h"
#include "support/warnings.h"

#include <QAbstractButton>
#include <QBuffer>
#include <QDir>
#include <QFileInfo>
#include <QProcess>
#include <QRawFont>
#include <QRegularExpression>
#include <QSpinBox>
#include <QStandardPaths>
#include <QTest>
#include <QtEndian>

#include <cmath>

using namespace Qt::StringLiterals;

/// Loads each gauge in gauges/, saves it in each format as a user does, and compares the files with
/// expected/.
///
/// If CORVALENCE_RENEW_GOLDENS is set, the saved files replace the expected ones.
class tst_Golden : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init() { failOnUnexpectedWarnings(); }

    void document_data() { addGauges(); }
    void document();
    void keyframes_data() { addGauges(); }
    void keyframes();
    void svg_data() { addGauges(); }
    void svg();
    void png_data() { addGauges(); }
    void png();
    void otherRenderer_data() { addGauges(); }
    void otherRenderer();

private:
    static void addGauges();
    /// Loads the gauge of the current row in a new window and saves it with a button. Returns the file's
    /// path.
    static QString save(QLatin1StringView button, const QString &suffix);

    QString m_otherFonts; ///< Why texts cannot be compared. Empty if they can.
};

namespace {

/// Other processors may round blended colours in another way.
constexpr int channelTolerance = 2;

/// Another renderer draws edges and labels in another way, so the means of small squares are compared. A
/// missing white line changes the mean of its squares by about 32.
constexpr int squareSize = 8;
constexpr int lineTolerance = 20;
constexpr int denseLineTolerance = 30;
constexpr int labelTolerance = 80;

/// The versions that the expected files were made with.
constexpr auto expectedQtVersion = "6.4.2"_L1;
constexpr double expectedFontRevision = 2.37;

const QString goldenFolder = QStringLiteral(CORVALENCE_GOLDEN);

/// Why labels look different with this font. Empty if they do not.
QString fontDifference(const QString &family, const QString &expectedFamily)
{
    const QRawFont font = QRawFont::fromFont(QFont(family, 10));
    if (font.familyName() != expectedFamily)
        return u"\"%1\" is \"%2\", not %3 (package fonts-dejavu-core)"_s.arg(family, font.familyName(),
                                                                             expectedFamily);
    // Bytes 4 to 7 of the table are the revision as a 16.16 fixed-point number.
    const QByteArray head = font.fontTable("head");
    const double revision = head.size() < 8 ? 0.0 : qFromBigEndian<quint32>(head.constData() + 4) / 65536.0;
    if (std::abs(revision - expectedFontRevision) > 0.005)
        return u"%1 has the version %2, not %3"_s.arg(expectedFamily).arg(revision).arg(expectedFontRevision);
    return {};
}

QByteArray withoutLabels(const QByteArray &svg)
{
    static const QRegularExpression label(u"<text.*?</text>"_s,
                                          QRegularExpression::DotMatchesEverythingOption);
    return QString::fromUtf8(svg).remove(label).toUtf8();
}

QString expectedPath(const QString &saved)
{
    return goldenFolder + u"/expected/"_s + QFileInfo(saved).fileName();
}

/// Replaces the expected file if this was requested.
bool renewed(const QString &saved)
{
    if (!qEnvironmentVariableIsSet("CORVALENCE_RENEW_GOLDENS"))
        return false;
    writeFile(expectedPath(saved), readFile(saved));
    return true;
}

/// The largest difference of a channel, 0 to 255; 256 for images of different sizes.
int largestDifference(const QImage &a, const QImage &b)
{
    if (a.size() != b.size() || a.isNull())
        return 256;
    int largest = 0;
    for (int y = 0; y < a.height(); ++y) {
        for (int x = 0; x < a.width(); ++x) {
            const QRgb one = a.pixel(x, y);
            const QRgb other = b.pixel(x, y);
            largest =
                std::max({largest, std::abs(qRed(one) - qRed(other)), std::abs(qGreen(one) - qGreen(other)),
                          std::abs(qBlue(one) - qBlue(other)), std::abs(qAlpha(one) - qAlpha(other))});
        }
    }
    return largest;
}

/// An image whose pixels are the means of the squares of @a image. Colours are multiplied with their alpha.
QImage meansOfSquares(const QImage &image)
{
    QImage means = image.convertToFormat(QImage::Format_ARGB32_Premultiplied)
                       .scaled(image.size() / squareSize, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
    means.reinterpretAsFormat(QImage::Format_ARGB32); // compare the premultiplied values
    return means;
}

} // namespace

void tst_Golden::initTestCase()
{
    QVERIFY(QDir().mkpath(QCoreApplication::applicationDirPath() + u"/actual"_s));

    if (QLatin1StringView(qVersion()) != expectedQtVersion)
        m_otherFonts = u"Qt is %1, not %2"_s.arg(QLatin1StringView(qVersion()), expectedQtVersion);
    for (const auto &[family, expected] : {std::pair(u"Sans Serif"_s, u"DejaVu Sans"_s),
                                           {u"DejaVu Serif"_s, u"DejaVu Serif"_s},
                                           {u"DejaVu Sans Mono"_s, u"DejaVu Sans Mono"_s}}) {
        if (m_otherFonts.isEmpty())
            m_otherFonts = fontDifference(family, expected);
    }
}

void tst_Golden::addGauges()
{
    QTest::addColumn<int>("size");
    const QHash<QString, int> otherSizes{{u"plain"_s, 256}, {u"clock"_s, 768}, {u"dense"_s, 1024}};
    for (const QFileInfo &file : QDir(goldenFolder + u"/gauges"_s).entryInfoList(QDir::Files))
        QTest::newRow(qPrintable(file.baseName())) << otherSizes.value(file.baseName(), 512);
}

QString tst_Golden::save(QLatin1StringView button, const QString &suffix)
{
    QFETCH(const int, size);
    const QString name = QString::fromLatin1(QTest::currentDataTag());
    QString path = QCoreApplication::applicationDirPath() + u"/actual/"_s + name + suffix;
    QFile::remove(path);

    Editor editor;
    editor.show();
    DialogAnswers dialogs;
    dialogs.expectFile(goldenFolder + u"/gauges/"_s + name + u".gauge"_s);
    editor.control<QAbstractButton>("loadButton"_L1)->click();
    editor.control<QSpinBox>("pngSizeSpinBox"_L1)->setValue(size);
    dialogs.expectFile(path);
    editor.control<QAbstractButton>(button)->click();
    for (const QString &problem : dialogs.problems())
        qWarning("%s", qPrintable(problem)); // fails the test
    return path;
}

void tst_Golden::document()
{
    const QString path = save("saveButton"_L1, u".json"_s);
    if (renewed(path))
        QSKIP("renewed");
    QCOMPARE(readFile(path), readFile(expectedPath(path)));
}

void tst_Golden::keyframes()
{
    const QString path = save("saveKeyFrameButton"_L1, u".csv"_s);
    if (renewed(path))
        QSKIP("renewed");
    QCOMPARE(readFile(path), readFile(expectedPath(path)));
}

void tst_Golden::svg()
{
    const QString path = save("saveSVGButton"_L1, u".svg"_s);
    if (renewed(path))
        QSKIP("renewed");
    if (QLatin1StringView(qVersion()) != expectedQtVersion)
        QSKIP(qPrintable(m_otherFonts));
    QCOMPARE(withoutLabels(readFile(path)), withoutLabels(readFile(expectedPath(path))));
    if (!m_otherFonts.isEmpty())
        QSKIP(qPrintable(m_otherFonts));
    QCOMPARE(readFile(path), readFile(expectedPath(path)));
}

void tst_Golden::png()
{
    const QString path = save("savePNGButton"_L1, u".png"_s);
    if (renewed(path))
        QSKIP("renewed");
    if (!m_otherFonts.isEmpty())
        QSKIP(qPrintable(m_otherFonts));
    QCOMPARE_LE(largestDifference(QImage(path), QImage(expectedPath(path))), channelTolerance);
}

void tst_Golden::otherRenderer()
{
    const QString renderer = QStandardPaths::findExecutable(u"rsvg-convert"_s);
    if (renderer.isEmpty())
        QSKIP("rsvg-convert (package librsvg2-bin) is not installed");
    const QString name = QString::fromLatin1(QTest::currentDataTag());
    QList<gaugeLayer> loaded;
    QVERIFY(gaugeFile::read(readFile(goldenFolder + u"/gauges/"_s + name + u".gauge"_s), &loaded, nullptr));

    // Only at 512 pixels do other renderers draw lines of width 0 as Qt does.
    constexpr int size = 512;
    for (const bool labels : {false, true}) {
        QList<gaugeData> layers;
        for (const gaugeLayer &layer : loaded) {
            layers.append(layer.data);
            layers.last().tickCountEnabled = layer.data.tickCountEnabled && labels;
        }
        QBuffer svg;
        QVERIFY(svg.open(QIODevice::WriteOnly));
        QVERIFY(writeSvg(svg, size, layers));
        QProcess process;
        process.start(renderer, {u"-w"_s, QString::number(size), u"-h"_s, QString::number(size)});
        process.write(svg.data());
        process.closeWriteChannel();
        QVERIFY(process.waitForFinished());
        const QImage drawn = QImage::fromData(process.readAllStandardOutput(), "png");
        const int tolerance = labels               ? labelTolerance
                              : name == "dense"_L1 ? denseLineTolerance
                                                   : lineTolerance;
        QCOMPARE_LE(largestDifference(meansOfSquares(gaugeImage(size, layers)), meansOfSquares(drawn)),
                    tolerance);
    }
}

ADD_TEST_CLASS(tst_Golden)
#include "tst_golden.moc"
