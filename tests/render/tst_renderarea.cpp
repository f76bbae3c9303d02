#include "dial.h"
#include "render/keyframes.h"
#include "render/renderarea.h"
#include "render/sweep.h"
#include "support/namedvalues.h"
#include "support/paintcounter.h"
#include "support/records.h"
#include "support/testmain.h"
#include "support/warnings.h"

#include <QMetaMethod>
#include <QPainter>
#include <QTest>

#include <functional>

using namespace Qt::StringLiterals;

/// The preview widget: its slots, its layers and what it shows.
class tst_RenderArea : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { failOnUnexpectedWarnings(); }

    void defaults();
    void isTransparent();
    void slotsAreRegisteredInOrder();
    void settersSetTheirFieldsOnly();
    void defaultArguments();
    void loadAndSave();
    void invalidRowsAreIgnored();
    void otherFunctions();
    void repaints();
    void showsTheLayers();
    void showsSavedChangesOnly();
    void doesNotScale();
    void paintsOnAnyPainter();
};

namespace {

using Action = std::function<void(RenderArea &)>;

/// What the widget shows on a transparent background.
QImage shown(RenderArea &area)
{
    QImage image(area.size(), QImage::Format_ARGB32);
    image.fill(Qt::transparent);
    area.render(&image, QPoint(), QRegion(), QWidget::RenderFlags());
    return image;
}

/// The setters, each called with the values of @a layer and with the names of the fields that it sets.
QList<std::pair<Action, QStringList>> setters(const gaugeData &layer)
{
    QList<std::pair<Action, QStringList>> calls{
        {[=](RenderArea &a) {
             a.setAngles(layer.startAngle, layer.angleLength, layer.bias, layer.midpointBias);
         },
         {u"startAngle"_s, u"angleLength"_s, u"bias"_s, u"midpointBias"_s}},
        {[](RenderArea &a) { a.setRoundCaps(true, false); }, {u"roundedTickCaps"_s}},
        {[](RenderArea &a) { a.setRoundCaps(false, true); }, {u"roundedArcCaps"_s}},
        {[](RenderArea &a) { a.setTickCounts(true, 0.0, 1.0, 0, 0.74, true, false); },
         {u"tickCountRotate"_s}},
        {[](RenderArea &a) { a.setTickCounts(true, 0.0, 1.0, 0, 0.74, false, true); },
         {u"tickCountSkipFirst"_s}},
        {[=](RenderArea &a) {
             a.setTickCounts(layer.tickCountEnabled, layer.tickCountStart, layer.tickCountIncrement,
                             layer.tickCountDecimalPlaces, layer.tickCountRadius, false, false,
                             layer.tickCountFont, layer.tickCountColor);
         },
         {u"tickCountEnabled"_s, u"tickCountStart"_s, u"tickCountIncrement"_s, u"tickCountDecimalPlaces"_s,
          u"tickCountRadius"_s, u"tickCountFont.family"_s, u"tickCountFont.pointSize"_s,
          u"tickCountFont.bold"_s, u"tickCountFont.italic"_s, u"tickCountColor"_s}}};

    const std::array rings{&RenderArea::setDivisions1, &RenderArea::setDivisions2,
                           &RenderArea::setDivisions3};
    for (size_t i = 0; i < rings.size(); ++i) {
        calls.append({[=](RenderArea &a) {
                          (a.*rings.at(i))(layer.divisionCount.at(i), layer.divisionInnerRadius.at(i),
                                           layer.divisionOuterRadius.at(i), layer.divisionLineWidth.at(i),
                                           layer.divisionColor.at(i));
                      },
                      u"divisionCount[%1] divisionInnerRadius[%1] divisionOuterRadius[%1] "
                      "divisionLineWidth[%1] divisionColor[%1]"_s.arg(i)
                          .split(u' ')});
    }
    const std::array arcs{&RenderArea::setArc1, &RenderArea::setArc2, &RenderArea::setArc3,
                          &RenderArea::setArc4};
    for (size_t i = 0; i < arcs.size(); ++i) {
        calls.append(
            {[=](RenderArea &a) {
                 (a.*arcs.at(i))(layer.arcStartAngle.at(i), layer.arcAngleLength.at(i), layer.arcRadius.at(i),
                                 layer.arcWidth.at(i), layer.arcColor.at(i));
             },
             u"arcStartAngle[%1] arcAngleLength[%1] arcRadius[%1] arcWidth[%1] arcColor[%1]"_s.arg(i).split(
                 u' ')});
    }
    return calls;
}

} // namespace

void tst_RenderArea::defaults()
{
    RenderArea area;
    QVERIFY(area.layers.isEmpty());
    QCOMPARE(differingFields(area.workingLayer, gaugeData()), QStringList());
    QCOMPARE(area.sizeHint(), QSize(512, 512));
    QCOMPARE(area.minimumSizeHint(), QSize(100, 100));
    area.workingLayer = sampleLayer();
    QCOMPARE(differingFields(area.defaultGauge(), gaugeData()), QStringList());
}

void tst_RenderArea::isTransparent()
{
    QWidget parent;
    const RenderArea area(&parent);
    QCOMPARE(area.parentWidget(), &parent);
    QVERIFY(!area.isWindow());
    QVERIFY(area.testAttribute(Qt::WA_TranslucentBackground));
    QVERIFY(area.testAttribute(Qt::WA_OpaquePaintEvent));
    QVERIFY(area.testAttribute(Qt::WA_NoSystemBackground));
    QVERIFY(!area.autoFillBackground());
    QCOMPARE(area.styleSheet(), u"QWidget{background-color: transparent;}"_s);
    QCOMPARE(area.palette().color(QPalette::Window), QColor(Qt::transparent));
    QCOMPARE(RenderArea().windowOpacity(), 0.0);
}

void tst_RenderArea::slotsAreRegisteredInOrder()
{
    // moc also registers the forms without default arguments.
    QStringList expected{
        u"setAngles(double inStartAngle, double inAngleLength, double inBias, bool midpointBias)"_s,
        u"setRoundCaps(bool inRoundTickCaps, bool inRoundArcCaps)"_s};
    const QString ring = u"int inDivisions, double inInnerRadius, double inOuterRadius, double inLineWidth"_s;
    const QString arc = u"double inStartAngle, double inAngleLength, double inRadius, double inWidth"_s;
    for (int i = 1; i <= 3; ++i)
        expected << u"setDivisions%1(%2, QColor inColor)"_s.arg(i).arg(ring)
                 << u"setDivisions%1(%2)"_s.arg(i).arg(ring);
    for (int i = 1; i <= 4; ++i)
        expected << u"setArc%1(%2, QColor inColor)"_s.arg(i).arg(arc) << u"setArc%1(%2)"_s.arg(i).arg(arc);
    const QString counts =
        u"setTickCounts(bool inEnable, double inStart, double inIncrement, int inDecPlaces, "
        "double inRadius, bool inRotate, bool inSkipFirst"_s;
    expected << counts + u", QFont inFont, QColor inColor)"_s << counts + u", QFont inFont)"_s
             << counts + u')' << u"manualRedraw()"_s << u"loadLayer(int inIndex)"_s
             << u"saveLayerData(int inIndex)"_s << u"setBackground(QPalette::ColorRole inRole)"_s
             << u"defaultGauge()"_s;

    QStringList found;
    const QMetaObject &meta = RenderArea::staticMetaObject;
    for (int i = meta.methodOffset(); i < meta.methodCount(); ++i) {
        const QMetaMethod method = meta.method(i);
        QCOMPARE(method.methodType(), QMetaMethod::Slot);
        QCOMPARE(method.access(), QMetaMethod::Public);
        QStringList parameters;
        for (int p = 0; p < method.parameterCount(); ++p)
            parameters << QString::fromLatin1(method.parameterTypes().at(p) + ' ' +
                                              method.parameterNames().at(p));
        found << QString::fromLatin1(method.name()) + u'(' + parameters.join(u", "_s) + u')';
    }
    QCOMPARE(found, expected);
}

void tst_RenderArea::settersSetTheirFieldsOnly()
{
    for (const auto &[set, fields] : setters(sampleLayer())) {
        RenderArea area;
        area.layers = {sampleLayer()};
        set(area);
        gaugeData expected;
        for (const QString &name : fields) {
            const GaugeField &field = gaugeField(name.toLatin1());
            field.set(expected, field.other);
        }
        QCOMPARE(differingFields(area.workingLayer, expected), QStringList());
        QCOMPARE(differingFields(area.layers.first(), sampleLayer()), QStringList());
    }
}

void tst_RenderArea::defaultArguments()
{
    RenderArea area;
    area.workingLayer = sampleLayer();
    area.setAngles(0.0, 120.0, 0.5, false);
    area.setRoundCaps(false, false);
    area.setDivisions1(4, 0.8, 1.0, 0.0);
    area.setDivisions2(1, 0.9, 1.0, 0.0);
    area.setDivisions3(1, 0.95, 1.0, 0.0);
    area.setArc1(0.0, 120.0, 1.0, 0.0);
    area.setArc2(0.0, 0.0, 1.0, 0.0);
    area.setArc3(0.0, 0.0, 1.0, 0.0);
    area.setArc4(0.0, 0.0, 1.0, 0.0);
    area.setTickCounts(true, 0.0, 1.0, 0, 0.74, false, false);
    gaugeData expected;
    expected.arcColor.fill(Qt::white);
    QCOMPARE(differingFields(area.workingLayer, expected), QStringList());
}

void tst_RenderArea::loadAndSave()
{
    RenderArea area;
    area.layers = {sampleLayer(1), sampleLayer(2), sampleLayer(3)};
    area.loadLayer(2);
    QCOMPARE(differingFields(area.workingLayer, sampleLayer(3)), QStringList());
    area.saveLayerData(0);
    QCOMPARE(area.layers.size(), 3);
    QCOMPARE(differingFields(area.layers.at(0), sampleLayer(3)), QStringList());
    QCOMPARE(differingFields(area.layers.at(1), sampleLayer(2)), QStringList());
    QCOMPARE(differingFields(area.layers.at(2), sampleLayer(3)), QStringList());
}

void tst_RenderArea::invalidRowsAreIgnored()
{
    for (const int count : {0, 2}) {
        for (const int row : {-1, count, minInt, maxInt}) {
            RenderArea area;
            area.layers = QList<gaugeData>(count);
            area.workingLayer = sampleLayer();
            area.loadLayer(row);
            QCOMPARE(differingFields(area.workingLayer, sampleLayer()), QStringList());
            area.saveLayerData(row);
            QCOMPARE(area.layers.size(), count);
            for (const gaugeData &layer : area.layers)
                QVERIFY(layer.isDefault());
        }
    }
}

void tst_RenderArea::otherFunctions()
{
    RenderArea area;
    area.setBackground(QPalette::Highlight);
    QCOMPARE(area.backgroundRole(), QPalette::Highlight);
    QCOMPARE(RenderArea::applyBias(0.3, 0.2, false), biasedFraction(0.3, 0.2, false));
    QCOMPARE(RenderArea::applyBias(0.3, 0.2, true), biasedFraction(0.3, 0.2, true));
    QCOMPARE(area.layerKeyframes(sampleLayer()), keyframes(sampleLayer()));
}

void tst_RenderArea::repaints()
{
    QWidget window;
    auto *area = new RenderArea(&window);
    area->layers.append(gaugeData());
    window.show();
    QVERIFY(QTest::qWaitForWindowExposed(&window));
    const auto paintsOf = [area](const Action &act) {
        QCoreApplication::processEvents();
        const PaintCounter counter(area);
        act(*area);
        const int paintsAtOnce = counter.count();
        QCoreApplication::processEvents();
        return std::pair(paintsAtOnce, counter.count());
    };
    const std::pair once(0, 1); // the paint event is scheduled
    const std::pair never(0, 0);
    for (const auto &[set, fields] : setters(sampleLayer()))
        QCOMPARE(paintsOf(set), once);
    QCOMPARE(paintsOf([](RenderArea &a) { a.manualRedraw(); }), once);
    QCOMPARE(paintsOf([](RenderArea &a) { a.loadLayer(0); }), once);
    QCOMPARE(paintsOf([](RenderArea &a) { a.loadLayer(-1); }), never);
    QCOMPARE(paintsOf([](RenderArea &a) { a.saveLayerData(0); }), never);
}

void tst_RenderArea::showsTheLayers()
{
    RenderArea area;
    area.resize(512, 512);
    area.workingLayer = sampleLayer(); // not shown
    for (const QList<gaugeData> &layers :
         {QList<gaugeData>(), QList<gaugeData>{busyLayer(true), gaugeData()}}) {
        area.layers = layers;
        QCOMPARE(shown(area), picture(layers));
    }
}

void tst_RenderArea::showsSavedChangesOnly()
{
    RenderArea area;
    area.resize(512, 512);
    area.layers = {gaugeData()};
    const QImage before = shown(area);
    area.setArc1(10.0, 300.0, 0.5, 30.0, Qt::red);
    QCOMPARE(shown(area), before);
    area.saveLayerData(0);
    QVERIFY(shown(area) != before);
}

void tst_RenderArea::doesNotScale()
{
    RenderArea area;
    area.layers = {gaugeData()};
    area.resize(800, 700);
    QCOMPARE(shown(area), picture(area.layers).copy(0, 0, 800, 700));
}

void tst_RenderArea::paintsOnAnyPainter()
{
    RenderArea area;
    area.layers = {busyLayer(true)};
    RecordingDevice device(1024);
    QPainter painter(&device);
    area.paint(painter, 1024);
    painter.end();
    QCOMPARE(descriptions(device.calls()), descriptions(paintedCalls(area.layers, 1024)));
}

ADD_TEST_CLASS(tst_RenderArea)
#include "tst_renderarea.moc"
