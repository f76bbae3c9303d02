#include "pictures.h"
#include "render/gaugepainter.h"
#include "support/dialogs.h"
#include "support/testmain.h"
#include "support/warnings.h"
#include "window.h"

#include <QAbstractButton>
#include <QApplication>
#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QProcess>
#include <QRawFont>
#include <QRegularExpression>
#include <QSpinBox>
#include <QStandardPaths>
#include <QTest>
#include <QtEndian>

#include <cmath>

namespace {

/// Processors with other instructions may round a blended channel otherwise.
constexpr int roundingOfAChannel = 2;

/// The squares by which the drawings of two rasterisers are compared, and how far their means may be apart. A
/// white line of one pixel is worth 32 in a square of 8; where lines crowd, what two rasterisers make of
/// lines over lines adds up. Labels are set closer on whole pixels than between them, so that they are told
/// apart by the golden texts and pictures alone.
constexpr int areaSide = 8;
constexpr double lineTolerance = 20.0;
constexpr double crowdedLineTolerance = 30.0;
constexpr double labelTolerance = 80.0;

/// What the golden texts and pictures were drawn with.
constexpr const char *pinnedQt = "6.4.2";
constexpr double pinnedFontRevision = 2.37;

const QString golden = QStringLiteral(CORVALENCE_GOLDEN);

/// Where what comes out lies, to be looked at when it is not as agreed.
QString output()
{
    return QCoreApplication::applicationDirPath() + QLatin1String("/actual/");
}

QByteArray contents(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

/// Why the labels cannot look as in the golden pictures; empty when they can.
QString foreignFont(const QString &family, const QString &wanted)
{
    const QRawFont font = QRawFont::fromFont(QFont(family, 10));
    if (font.familyName() != wanted)
        return QStringLiteral("\"%1\" is \"%2\" here; the golden labels are set in %3 %4 (fonts-dejavu-core)")
            .arg(family, font.familyName(), wanted)
            .arg(pinnedFontRevision);
    // The table's second field: the revision, in sixteen bits before and after the point.
    const QByteArray head = font.fontTable("head");
    const double revision = head.size() < 8 ? 0.0 : qFromBigEndian<quint32>(head.constData() + 4) / 65536.0;
    if (std::abs(revision - pinnedFontRevision) > 0.005)
        return QStringLiteral("%1 is of version %2 here, not %3")
            .arg(wanted)
            .arg(revision)
            .arg(pinnedFontRevision);
    return {};
}

QByteArray withoutLabels(const QByteArray &svg)
{
    static const QRegularExpression label(QStringLiteral("<text.*?</text>"),
                                          QRegularExpression::DotMatchesEverythingOption);
    return QString::fromUtf8(svg).remove(label).toUtf8();
}

} // namespace

/// Twelve gauges, loaded and saved in every form as a user does, are what was once looked at and agreed on.
///
/// With CORVALENCE_RENEW_GOLDENS set, what comes out becomes what is agreed on, for a person to look at.
class tst_Golden : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init() { failOnUnexpectedWarnings(); }

    void savesTheAgreedDocument_data() { addGauges(); }
    void savesTheAgreedDocument();
    void savesTheAgreedKeyframes_data() { addGauges(); }
    void savesTheAgreedKeyframes();
    void savesTheAgreedDrawing_data() { addGauges(); }
    void savesTheAgreedDrawing();
    void savesTheAgreedPicture_data() { addGauges(); }
    void savesTheAgreedPicture();
    void drawingLooksLikeThePicture_data() { addGauges(); }
    void drawingLooksLikeThePicture();

private:
    static void addGauges();
    /// Loads the gauge of the row that runs into a new window and saves it by one of its buttons, pictures
    /// and drawings at @a size. Returns the path of the file.
    static QString save(const char *button, const QString &suffix, int size);
    /// Whether the file that came out was made the agreed one instead of being compared with it.
    static bool renewed(const QString &actual);
    static QString agreed(const QString &actual);

    QString
        m_foreign; ///< Why drawings and pictures cannot be compared to the last letter; empty when they can.
};

void tst_Golden::initTestCase()
{
    QVERIFY(QDir().mkpath(output()));

    if (QLatin1String(qVersion()) != QLatin1String(pinnedQt))
        m_foreign =
            QStringLiteral("Qt is %1 here, not %2").arg(QLatin1String(qVersion()), QLatin1String(pinnedQt));
    for (const auto &[family, wanted] : {std::pair("Sans Serif", "DejaVu Sans"),
                                         {"DejaVu Serif", "DejaVu Serif"},
                                         {"DejaVu Sans Mono", "DejaVu Sans Mono"}}) {
        if (m_foreign.isEmpty())
            m_foreign = foreignFont(QLatin1String(family), QLatin1String(wanted));
    }
    if (!m_foreign.isEmpty())
        qInfo("Labels and pictures are not compared: %s.", qPrintable(m_foreign));
}

void tst_Golden::addGauges()
{
    QTest::addColumn<int>("size");
    for (const auto &[name, size] : {std::pair("plain", 256),
                                     {"speed", 512},
                                     {"clock", 768},
                                     {"backwards", 512},
                                     {"exponential", 512},
                                     {"midpoint", 512},
                                     {"limits", 512},
                                     {"rounded", 512},
                                     {"labels", 512},
                                     {"dense", 1024},
                                     {"stack", 512},
                                     {"older", 512}})
        QTest::newRow(name) << size;
}

QString tst_Golden::save(const char *button, const QString &suffix, int size)
{
    const QString name = QLatin1String(QTest::currentDataTag());
    QString path = output() + name + suffix;
    QFile::remove(path);

    Window window;
    window.show();
    DialogAnswers dialogs;
    dialogs.expectFile(golden + QLatin1String("/gauges/") + name + QLatin1String(".gauge"));
    QTest::mouseClick(window.findChild<QAbstractButton *>(QStringLiteral("loadButton")), Qt::LeftButton);
    window.findChild<QSpinBox *>(QStringLiteral("pngSizeSpinBox"))->setValue(size);
    dialogs.expectFile(path);
    QTest::mouseClick(window.findChild<QAbstractButton *>(QLatin1String(button)), Qt::LeftButton);
    const QStringList problems = dialogs.problems();
    if (!problems.isEmpty())
        QTest::qFail(qPrintable(problems.join(QLatin1String("; "))), __FILE__, __LINE__);
    return path;
}

QString tst_Golden::agreed(const QString &actual)
{
    return golden + QLatin1String("/expected/") + QFileInfo(actual).fileName();
}

bool tst_Golden::renewed(const QString &actual)
{
    if (!qEnvironmentVariableIsSet("CORVALENCE_RENEW_GOLDENS"))
        return false;
    QDir().mkpath(QFileInfo(agreed(actual)).path());
    QFile::remove(agreed(actual));
    return QFile::copy(actual, agreed(actual));
}

void tst_Golden::savesTheAgreedDocument()
{
    const QString actual = save("saveButton", QStringLiteral(".json"), canvasSize);
    if (renewed(actual))
        QSKIP("renewed; look at it");
    QCOMPARE(contents(actual), contents(agreed(actual)));
}

void tst_Golden::savesTheAgreedKeyframes()
{
    const QString actual = save("saveKeyFrameButton", QStringLiteral(".csv"), canvasSize);
    if (renewed(actual))
        QSKIP("renewed; look at it");
    QCOMPARE(contents(actual), contents(agreed(actual)));
}

void tst_Golden::savesTheAgreedDrawing()
{
    QFETCH(const int, size);
    const QString actual = save("saveSVGButton", QStringLiteral(".svg"), size);
    if (renewed(actual))
        QSKIP("renewed; look at it");
    if (QLatin1String(qVersion()) != QLatin1String(pinnedQt))
        QSKIP(qPrintable(m_foreign));
    QCOMPARE(withoutLabels(contents(actual)), withoutLabels(contents(agreed(actual))));
    if (!m_foreign.isEmpty())
        QSKIP(qPrintable(m_foreign));
    QCOMPARE(contents(actual), contents(agreed(actual)));
}

void tst_Golden::savesTheAgreedPicture()
{
    QFETCH(const int, size);
    const QString actual = save("savePNGButton", QStringLiteral(".png"), size);
    if (renewed(actual))
        QSKIP("renewed; look at it");
    if (!m_foreign.isEmpty())
        QSKIP(qPrintable(m_foreign));
    const int difference = largestDifference(QImage(actual), QImage(agreed(actual)));
    QVERIFY2(difference <= roundingOfAChannel,
             qPrintable(QStringLiteral("%1 differs by up to %2 from %3")
                            .arg(actual, QString::number(difference), agreed(actual))));
}

void tst_Golden::drawingLooksLikeThePicture()
{
    const QString renderer = QStandardPaths::findExecutable(QStringLiteral("rsvg-convert"));
    if (renderer.isEmpty())
        QSKIP("rsvg-convert (librsvg2-bin) is not installed");
    // At this size alone a line of width 0 is as wide as a renderer takes it to be that does not know of
    // lines that never scale.
    const QImage picture(save("savePNGButton", QStringLiteral("-compared.png"), canvasSize));
    const QByteArray drawing = contents(save("saveSVGButton", QStringLiteral("-compared.svg"), canvasSize));
    const auto drawn = [&renderer](const QByteArray &svg) {
        // The drawing gives its size in millimetres to six digits, from which the pixels do not come back.
        QProcess process;
        process.start(renderer, {QStringLiteral("-w"), QString::number(canvasSize), QStringLiteral("-h"),
                                 QString::number(canvasSize)});
        process.write(svg);
        process.closeWriteChannel();
        process.waitForFinished();
        return QImage::fromData(process.readAllStandardOutput(), "png");
    };
    const QImage whole = drawn(drawing);
    const QImage unlabelled = drawn(withoutLabels(drawing));
    QCOMPARE(whole.size(), picture.size());
    QCOMPARE(unlabelled.size(), picture.size());

    const AreaDifference difference = areaDifference(picture, whole, unlabelled, areaSide);
    const QString found =
        QStringLiteral("in squares of %1 pixels lines differ by up to %2, labels by up to %3")
            .arg(areaSide)
            .arg(difference.lines)
            .arg(difference.labels);
    qInfo("%s", qPrintable(found));
    const bool crowded = QLatin1String(QTest::currentDataTag()) == QLatin1String("dense");
    QVERIFY2(difference.lines <= (crowded ? crowdedLineTolerance : lineTolerance), qPrintable(found));
    QVERIFY2(difference.labels <= labelTolerance, qPrintable(found));
}

ADD_TEST_CLASS(tst_Golden)
#include "tst_golden.moc"
