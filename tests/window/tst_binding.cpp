#include "support/editor.h"
#include "support/paintcounter.h"
#include "support/testmain.h"
#include "support/warnings.h"

#include <QSet>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {

/// The active layer, row 1 of two.
class EditorOfTwoLayers : public Editor
{
public:
    EditorOfTwoLayers()
    {
        addLayer(u"second"_s);
        layerList()->setCurrentRow(1);
    }

    /// The fields in which the active layer differs from @a before. Says so if the working copy differs from
    /// the row, or if the other row has changed.
    [[nodiscard]] QStringList changedFields(const gaugeData &before) const
    {
        QStringList changed = differingFields(before, preview()->layers.at(1));
        if (!differingFields(preview()->workingLayer, preview()->layers.at(1)).isEmpty())
            changed.append(u"working copy"_s);
        if (!differingFields(preview()->layers.at(0), gaugeData()).isEmpty())
            changed.append(u"other row"_s);
        return changed;
    }
};

} // namespace

/// Edits of the controls change the active layer.
class tst_Binding : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { failOnUnexpectedWarnings(); }

    void editChangesItsFieldOnly_data();
    void editChangesItsFieldOnly();
    void slotStoresAllControlsOfItsGroup_data();
    void slotStoresAllControlsOfItsGroup();
    void slotsOfNewWindowKeepTheDefaults();
    void valueSetByCodeChangesNothing_data();
    void valueSetByCodeChangesNothing();
    void exportSizeChangesNothing();
    void typedNumberReachesTheLayer();
    void editRepaintsThePreview();
    void editWithoutActiveLayerChangesTheWorkingCopyOnly();
    void midpointIsAnyTypeButTheFirst();
    void decimalPlacesRoundStartAndIncrement();
    void firstLabelEditTakesTheButtonsFont_data();
    void firstLabelEditTakesTheButtonsFont();
    void colorIsReadFromTheButton();
};

void tst_Binding::editChangesItsFieldOnly_data()
{
    QTest::addColumn<QVariant>("value");
    for (const GaugeField &field : gaugeFields()) {
        // The font dialog offers only fonts that are installed.
        if (field.position != GaugeField::insideFont || field.name.endsWith("pointSize"))
            QTest::newRow(field.name) << field.other;
    }
}

void tst_Binding::editChangesItsFieldOnly()
{
    QFETCH(QVariant, value);
    const GaugeField &field = gaugeField(QTest::currentDataTag());
    const EditorOfTwoLayers editor;
    // Start and increment show as many decimals.
    editor.edit(gaugeField("tickCountDecimalPlaces"), 2);
    const gaugeData before = editor.preview()->workingLayer;
    editor.edit(field, value);
    QCOMPARE(editor.changedFields(before), QStringList(QString::fromLatin1(field.name)));
    QCOMPARE(field.get(editor.preview()->workingLayer), value);
    QCOMPARE(field.get(editor.shownLayer()), value);
}

void tst_Binding::slotStoresAllControlsOfItsGroup_data()
{
    QTest::addColumn<QStringList>("fields");
    QMap<QByteArray, QStringList> fields;
    for (const GaugeField &field : gaugeFields())
        fields[slotOf(field)].append(QString::fromLatin1(field.name));
    fields["tickDecimalsChanged"] = fields["tickSettingsChanged"];
    QCOMPARE(fields.size(), 11);
    for (auto row = fields.cbegin(); row != fields.cend(); ++row)
        QTest::newRow(row.key()) << row.value();
}

void tst_Binding::slotStoresAllControlsOfItsGroup()
{
    QFETCH(QStringList, fields);
    Editor editor;
    editor.preview()->workingLayer = sampleLayer();
    editor.call("setActiveGauge");
    // Now the controls show one layer, and the working copy and the row hold another.
    editor.preview()->workingLayer = gaugeData();
    editor.call(QTest::currentDataTag());
    QCOMPARE(differingFields(editor.preview()->workingLayer, gaugeData()), fields);
    QCOMPARE(differingFields(editor.preview()->layers.first(), gaugeData()), fields);
    for (const QString &name : fields) {
        const GaugeField &field = gaugeField(name.toLatin1());
        QCOMPARE(field.get(editor.preview()->workingLayer), field.other);
    }
}

void tst_Binding::slotsOfNewWindowKeepTheDefaults()
{
    // In particular, colours are read from buttons that were never shown.
    Editor editor;
    QSet<QByteArray> called;
    for (const GaugeField &field : gaugeFields())
        called.insert(slotOf(field));
    for (const QByteArray &slot : std::as_const(called))
        editor.call(slot);
    QStringList changed = differingFields(editor.preview()->layers.first(), gaugeData());
    changed.removeIf([](const QString &name) { return name.startsWith("tickCountFont"_L1); });
    QCOMPARE(changed, QStringList());
}

void tst_Binding::valueSetByCodeChangesNothing_data()
{
    QTest::addColumn<QVariant>("value");
    for (const GaugeField &field : gaugeFields()) {
        if (field.kind == GaugeField::Flag && field.position != GaugeField::insideFont)
            QTest::newRow(field.name) << field.other;
    }
}

void tst_Binding::valueSetByCodeChangesNothing()
{
    QFETCH(QVariant, value);
    const GaugeField &field = gaugeField(QTest::currentDataTag());
    const EditorOfTwoLayers editor;
    auto *control = editor.control<QWidget>(field.control);
    control->setProperty("checked", value);
    control->setProperty("currentIndex", value.toInt());
    QCOMPARE(field.get(editor.shownLayer()), value);
    QCOMPARE(editor.changedFields(gaugeData()), QStringList());
}

void tst_Binding::exportSizeChangesNothing()
{
    Editor editor;
    editor.preview()->workingLayer = sampleLayer();
    editor.show();
    const PaintCounter paints(editor.preview());
    auto *size = editor.control<QSpinBox>("pngSizeSpinBox"_L1);
    QTest::keyClick(size, Qt::Key_Up);
    QCoreApplication::processEvents();
    QCOMPARE(size->value(), 512 + 32);
    QCOMPARE(differingFields(editor.preview()->workingLayer, sampleLayer()), QStringList());
    QCOMPARE(differingFields(editor.preview()->layers.first(), gaugeData()), QStringList());
    QCOMPARE(paints.count(), 0);
}

void tst_Binding::typedNumberReachesTheLayer()
{
    const Editor editor;
    auto *box = editor.control<QDoubleSpinBox>("gaugeAngleLengthSpinBox"_L1);
    box->selectAll();
    QTest::keyClicks(box, u"270"_s);
    QCOMPARE(editor.preview()->layers.first().angleLength, 270.0);
    QTest::keyClick(box, Qt::Key_Up);
    QCOMPARE(editor.preview()->layers.first().angleLength, 271.0);
}

void tst_Binding::editRepaintsThePreview()
{
    Editor editor;
    editor.show();
    const PaintCounter paints(editor.preview());
    editor.edit(gaugeField("startAngle"), 30.0);
    QCoreApplication::processEvents();
    QVERIFY(paints.count() > 0);
}

void tst_Binding::editWithoutActiveLayerChangesTheWorkingCopyOnly()
{
    const Editor editor;
    editor.layerList()->setCurrentRow(-1);
    editor.edit(gaugeField("startAngle"), 30.0);
    QCOMPARE(editor.preview()->workingLayer.startAngle, 30.0);
    QCOMPARE(differingFields(editor.preview()->layers.first(), gaugeData()), QStringList());
}

void tst_Binding::midpointIsAnyTypeButTheFirst()
{
    Editor editor;
    for (const int index : {1, 0, -1}) {
        editor.control<QComboBox>("biasTypeComboBox"_L1)->setCurrentIndex(index);
        editor.call("angleChanged");
        QCOMPARE(editor.preview()->layers.first().midpointBias, index != 0);
    }
}

void tst_Binding::decimalPlacesRoundStartAndIncrement()
{
    const Editor editor;
    editor.edit(gaugeField("tickCountDecimalPlaces"), 3);
    editor.edit(gaugeField("tickCountStart"), 1.125);
    editor.edit(gaugeField("tickCountIncrement"), 0.75);
    QCOMPARE(editor.preview()->layers.first().tickCountStart, 1.125);
    editor.edit(gaugeField("tickCountDecimalPlaces"), 0);
    QCOMPARE(editor.preview()->layers.first().tickCountStart, 1.0);
    QCOMPARE(editor.preview()->layers.first().tickCountIncrement, 1.0);
    for (const auto name : {"tickCountStartSpinBox"_L1, "tickCountIncrementSpinBox"_L1})
        QCOMPARE(editor.control<QDoubleSpinBox>(name)->decimals(), 0);
}

void tst_Binding::firstLabelEditTakesTheButtonsFont_data()
{
    QTest::addColumn<QVariant>("value");
    for (const GaugeField &field : gaugeFields()) {
        if (slotOf(field) == "tickSettingsChanged" && field.position != GaugeField::insideFont)
            QTest::newRow(field.name) << field.other;
    }
}

void tst_Binding::firstLabelEditTakesTheButtonsFont()
{
    QFETCH(QVariant, value);
    const GaugeField &field = gaugeField(QTest::currentDataTag());
    const Editor editor;
    editor.edit(gaugeField("tickCountDecimalPlaces"), 2);
    editor.preview()->workingLayer = gaugeData();
    editor.control<QPushButton>("tickCountFontButton"_L1)->setFont(QFont(u"Monospace"_s, 19));
    editor.edit(field, value);
    QCOMPARE(editor.preview()->workingLayer.tickCountFont.family(), u"Monospace"_s);
    QCOMPARE(editor.preview()->layers.first().tickCountFont.pointSize(), 19);
}

void tst_Binding::colorIsReadFromTheButton()
{
    Editor editor;
    auto *button = editor.control<QToolButton>("arc2ColorButton"_L1);
    for (const bool shown : {false, true}) {
        if (shown)
            editor.show();
        const QColor color = shown ? QColor(1, 35, 69) : QColor(171, 205, 239);
        button->setStyleSheet(u"background-color: %1}"_s.arg(color.name()));
        editor.call("arc2Changed");
        QCOMPARE(editor.preview()->layers.first().arcColor[1], color);
    }
}

ADD_TEST_CLASS(tst_Binding)
#include "tst_binding.moc"
