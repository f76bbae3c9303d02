#include "exporterrun.h"
#include "model/gaugefile.h"
#include "support/testmain.h"

#include <QImage>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QRegularExpression>
#include <QTest>

using namespace Qt::StringLiterals;

/// Pictures for microcontrollers. tests/firmware/run reads them with other programs.
class tst_RawPictures : public ExporterTest
{
    Q_OBJECT

private Q_SLOTS:
    void holdTheUpperBitsOfEachColour_data();
    void holdTheUpperBitsOfEachColour();
    void haveAnAlphaPlaneWhereTransparent();
    void areCroppedToTheirMarks();
    void anEmptyPartIsOnePixel();
    void jsonListsTheCrops();
    void sourcesHaveSafeNames();
    void refusesSourcesThatAreTooLarge();

private:
    /// Writes a gauge with an upright needle: a line of 2 units from the radius 0.2 to 0.6.
    void writeNeedle(double width = 2.0) const;
};

namespace {

/// A black needle for layers of the default gauge, which begin at 0 degrees.
gaugeLayer needle(double width)
{
    gaugeLayer layer{u"Needle"_s, {}};
    layer.data.divisionCount = {1, 1, 1};
    layer.data.angleLength = 360.0;
    layer.data.divisionInnerRadius[0] = 0.2;
    layer.data.divisionOuterRadius[0] = 0.6;
    layer.data.divisionLineWidth[0] = width;
    layer.data.arcAngleLength = {};
    layer.data.tickCountEnabled = false;
    return layer;
}

} // namespace

void tst_RawPictures::writeNeedle(double width) const
{
    gaugeLayer line = needle(width);
    if (width <= 0.0)
        line.data.divisionCount[0] = 0;
    write(u"Dial.gauge"_s, gaugeFile::write({{u"Face"_s, {}}, line}));
}

void tst_RawPictures::holdTheUpperBitsOfEachColour_data()
{
    QTest::addColumn<int>("low");
    QTest::newRow("little") << 0;
    QTest::newRow("big") << 1;
}

void tst_RawPictures::holdTheUpperBitsOfEachColour()
{
    QFETCH(const int, low);
    const QByteArray order = QTest::currentDataTag();
    QCOMPARE(run("-s 128 -b #fedcba -f png,rgb565 Dial.gauge --byte-order "_ba + order).status, 0);
    const QImage png = QImage(path(u"Dial.png"_s));
    const QByteArray raw = read(u"Dial.rgb565"_s);
    QCOMPARE(raw.size(), 128 * 128 * 2); // opaque
    for (int index = 0; index < 128 * 128; ++index) {
        const QColor expected = png.pixelColor(index % 128, index / 128);
        const int pixel = static_cast<uchar>(raw.at(2 * index + low)) |
                          static_cast<uchar>(raw.at(2 * index + 1 - low)) << 8;
        QCOMPARE(pixel >> 11, expected.red() >> 3);
        QCOMPARE(pixel >> 5 & 63, expected.green() >> 2);
        QCOMPARE(pixel & 31, expected.blue() >> 3);
    }
}

void tst_RawPictures::haveAnAlphaPlaneWhereTransparent()
{
    QCOMPARE(run("-s 128 -f png,rgb565 Dial.gauge").status, 0);
    const QImage png = QImage(path(u"Dial.png"_s));
    const QByteArray raw = read(u"Dial.rgb565"_s);
    QCOMPARE(raw.size(), 128 * 128 * 3);
    for (int index = 0; index < 128 * 128; ++index)
        QCOMPARE(static_cast<uchar>(raw.at(2 * 128 * 128 + index)),
                 png.pixelColor(index % 128, index / 128).alpha());
}

void tst_RawPictures::areCroppedToTheirMarks()
{
    writeNeedle();
    QCOMPARE(run("--split Needle -f rgb565,c -s 512 Dial.gauge").status, 0);
    // From 150 to 50 units above the centre, and two pixels wide.
    QCOMPARE(read(u"Dial-needle.rgb565"_s).size(), 2 * 100 * 2);
    QCOMPARE(read(u"Dial-face.rgb565"_s).size(), 512 * 512 * 3);
    const QByteArray code = read(u"Dial-needle.c"_s);
    for (const char *line :
         {"const uint16_t dial_needle_width = 2;", "const uint16_t dial_needle_height = 100;",
          "const uint16_t dial_needle_stride = 4;", "const int16_t dial_needle_pivot_x = 1;",
          "const int16_t dial_needle_pivot_y = 150;"})
        QVERIFY2(code.contains(line), line);
    QCOMPARE(run("--overwrite --no-crop --split Needle -f rgb565 -s 512 Dial.gauge").status, 0);
    QCOMPARE(read(u"Dial-needle.rgb565"_s).size(), 512 * 512 * 3);
}

void tst_RawPictures::anEmptyPartIsOnePixel()
{
    writeNeedle(0.0);
    QCOMPARE(run("--split Needle -f rgb565 Dial.gauge").status, 0);
    QCOMPARE(read(u"Dial-needle.rgb565"_s), QByteArray(3, '\0'));
}

void tst_RawPictures::jsonListsTheCrops()
{
    writeNeedle();
    const auto parts = [this](const QByteArray &arguments) -> QJsonArray {
        const ExporterRun result = run(arguments + " --overwrite -q --split Needle -s 512,256 Dial.gauge"_ba);
        return result.status != 0
                   ? QJsonArray()
                   : QJsonDocument::fromJson(read(u"Dial.json"_s)).object().value(u"parts"_s).toArray();
    };
    const QJsonArray both = parts("-f json,c");
    QVERIFY(!both.at(0).toObject().contains(u"crops"_s));
    const QJsonArray crops = both.at(1).toObject().value(u"crops"_s).toArray();
    QCOMPARE(crops.size(), 2);
    QCOMPARE(crops.at(0).toObject(), QJsonObject({{u"size"_s, 512},
                                                  {u"x"_s, 255},
                                                  {u"y"_s, 106},
                                                  {u"width"_s, 2},
                                                  {u"height"_s, 100},
                                                  {u"pivot"_s, QJsonArray{1, 150}}}));
    QCOMPARE(crops.at(1).toObject().value(u"pivot"_s).toArray().at(1).toDouble(), 75.0);
    for (const char *withoutCrop : {"-f json", "-f json,png", "-f json,c --no-crop"})
        QVERIFY(!parts(withoutCrop).at(1).toObject().contains(u"crops"_s));
}

void tst_RawPictures::sourcesHaveSafeNames()
{
    const QString name = u"1*@NAME@\\ \"</script>int"_s.remove(u'/');
    write(name + u".gauge"_s, read(u"Dial.gauge"_s));
    QCOMPARE(run({u"-f"_s, u"c"_s, u"-s"_s, u"64"_s, name + u".gauge"_s}).status, 0);
    const QByteArray code = read(name + u".c"_s);
    QVERIFY(QRegularExpression(u"const uint16_t gauge_1_name_script_int_[0-9a-f]{6}_width = 64;"_s)
                .match(QString::fromUtf8(code))
                .hasMatch());
    QVERIFY(code.contains("The gauge \"1<002a>@NAME@<005c> <0022><script>int\" as"));
    QCOMPARE(code.count("*/"), 2);
}

void tst_RawPictures::refusesSourcesThatAreTooLarge()
{
    for (const char *arguments : {"-f c -s 16384 Dial.gauge", "-f c -s 16384 --dry-run Dial.gauge"}) {
        const ExporterRun result = run(arguments);
        QCOMPARE(result.err, "Dial.gauge: The c file would be larger than 1 GiB.\n"_ba);
        QCOMPARE(result.status, 1);
    }
}

ADD_TEST_CLASS(tst_RawPictures)
#include "tst_rawpictures.moc"
