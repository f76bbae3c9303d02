#include "support/dialogs.h"
#include "support/editor.h"
#include "support/paintcounter.h"
#include "support/records.h"
#include "support/testmain.h"
#include "support/warnings.h"

#include <QColorDialog>
#include <QFileDialog>
#include <QFontDialog>
#include <QInputDialog>
#include <QMessageBox>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {

/// The answer of a server that could not be reached.
class FailedReply : public QNetworkReply
{
    Q_OBJECT

public:
    explicit FailedReply(QObject *parent)
        : QNetworkReply(parent)
    {
        setError(HostNotFoundError, u"no such host"_s);
        setFinished(true);
    }
    void abort() override {}

protected:
    qint64 readData(char * /*data*/, qint64 /*maxSize*/) override { return -1; }
};

} // namespace

/// Each control reaches its own slot: seen by what the slot does, so that a missing connection fails and so
/// does one to the slot of another ring or arc. The rows are in the order of the window's connections.
class tst_Connections : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { failOnUnexpectedWarnings(); }

    void spinBoxEditsItsFieldOfTheActiveLayer_data();
    void spinBoxEditsItsFieldOfTheActiveLayer();
    void biasTypeChosenByTheUserEditsItsField();
    void colorButtonEditsItsField_data();
    void colorButtonEditsItsField();
    void decimalPlacesReachTheirOwnSlot();
    void fontButtonAsksForTheFont();
    void checkBoxEditsItsField_data();
    void checkBoxEditsItsField();
    void saveButtonAsksForFile_data();
    void saveButtonAsksForFile();
    void loadButtonAsksForFile_data();
    void loadButtonAsksForFile();
    void presetChosenByTheUserIsLoaded();
    void selectingRowShowsItsLayer();
    void changedRowIsRenamed();
    void addLayerButtonAsksForName();
    void removeLayerButtonRemoves();
    void clearReferenceButtonClears();
    void checkForUpdatesButtonIsUsersOwnCheck();
    void checkedFromCodeCallsNothing_data();
    void checkedFromCodeCallsNothing();
    void indexFromCodeCallsNothing();
    void exportSizeTriggersNothing();

private:
    /// The fields in which the active layer, row 1 of two, differs from before; "..." in front when the
    /// working copy and the row do not agree or when the other row was touched.
    static QStringList changedFields(const Editor &editor, const gaugeData &before);
};

QStringList tst_Connections::changedFields(const Editor &editor, const gaugeData &before)
{
    const RenderArea &preview = *editor.preview();
    QStringList changed = differingFields(before, preview.layers.at(1));
    if (differingFields(before, preview.workingLayer) != changed)
        changed.prepend(u"working copy and row differ"_s);
    if (!differingFields(preview.layers.at(0), gaugeData()).isEmpty())
        changed.prepend(u"another row was changed"_s);
    return changed;
}

void tst_Connections::spinBoxEditsItsFieldOfTheActiveLayer_data()
{
    QTest::addColumn<double>("value");
    QTest::addColumn<QString>("field");
    QTest::newRow("gaugeStartAngleSpinBox") << 45.25 << u"startAngle"_s;
    QTest::newRow("gaugeAngleLengthSpinBox") << 270.0 << u"angleLength"_s;
    QTest::newRow("gaugeBiasSpinBox") << 0.75 << u"bias"_s;
    const auto rings = [](const char *control, double value, const char *field) {
        for (int ring = 1; ring <= 3; ++ring) {
            QTest::addRow("gaugeDivisions%d%s", ring, control)
                << value << u"%1[%2]"_s.arg(QLatin1StringView(field)).arg(ring - 1);
        }
    };
    rings("SpinBox", 10, "divisionCount");
    rings("InnerRadiusSpinBox", 0.5, "divisionInnerRadius");
    rings("OuterRadiusSpinBox", 0.625, "divisionOuterRadius");
    rings("WidthSpinBox", 3.5, "divisionLineWidth");
    const auto arcs = [](const char *control, double value, const char *field) {
        for (int arc = 1; arc <= 4; ++arc) {
            QTest::addRow("arc%d%s", arc, control)
                << value << u"%1[%2]"_s.arg(QLatin1StringView(field)).arg(arc - 1);
        }
    };
    arcs("StartAngleSpinBox", -90.5, "arcStartAngle");
    arcs("AngleLengthSpinBox", 33.5, "arcAngleLength");
    arcs("RadiusSpinBox", 0.875, "arcRadius");
    arcs("WidthSpinBox", 12.5, "arcWidth");
    QTest::newRow("tickCountRadiusSpinBox") << 0.25 << u"tickCountRadius"_s;
    QTest::newRow("tickCountStartSpinBox") << 100.0 << u"tickCountStart"_s;
    QTest::newRow("tickCountIncrementSpinBox") << 50.0 << u"tickCountIncrement"_s;
}

void tst_Connections::spinBoxEditsItsFieldOfTheActiveLayer()
{
    QFETCH(double, value);
    QFETCH(QString, field);
    Editor editor;
    editor.addLayer(u"second"_s);
    editor.layerList()->setCurrentRow(1);
    const gaugeData before = editor.preview()->workingLayer;

    const QString name = QString::fromLatin1(QTest::currentDataTag());
    if (auto *box = editor.window.findChild<QDoubleSpinBox *>(name))
        box->setValue(value);
    else
        editor.control<QSpinBox>(name)->setValue(static_cast<int>(value));
    QCOMPARE(changedFields(editor, before), QStringList(field));
    QCOMPARE(valuesOf(editor.preview()->workingLayer).value(field.toLatin1()).toDouble(), value);
}

void tst_Connections::biasTypeChosenByTheUserEditsItsField()
{
    Editor editor;
    editor.addLayer(u"second"_s);
    editor.layerList()->setCurrentRow(1);
    const gaugeData before = editor.preview()->workingLayer;
    QTest::keyClick(editor.control<QComboBox>("biasTypeComboBox"_L1), Qt::Key_Down);
    QCOMPARE(changedFields(editor, before), QStringList(u"midpointBias"_s));
    QVERIFY(editor.preview()->workingLayer.midpointBias);
}

void tst_Connections::colorButtonEditsItsField_data()
{
    QTest::addColumn<QString>("field");
    QTest::newRow("gaugeDivisions1ColorButton") << u"divisionColor[0]"_s;
    QTest::newRow("gaugeDivisions2ColorButton") << u"divisionColor[1]"_s;
    QTest::newRow("gaugeDivisions3ColorButton") << u"divisionColor[2]"_s;
    QTest::newRow("arc1ColorButton") << u"arcColor[0]"_s;
    QTest::newRow("arc2ColorButton") << u"arcColor[1]"_s;
    QTest::newRow("arc3ColorButton") << u"arcColor[2]"_s;
    QTest::newRow("arc4ColorButton") << u"arcColor[3]"_s;
    QTest::newRow("tickColorButton") << u"tickCountColor"_s;
}

void tst_Connections::colorButtonEditsItsField()
{
    QFETCH(QString, field);
    Editor editor;
    editor.addLayer(u"second"_s);
    editor.layerList()->setCurrentRow(1);
    const gaugeData before = editor.preview()->workingLayer;

    DialogAnswers answers;
    answers.expect<QColorDialog>([](QColorDialog &dialog) {
        dialog.setCurrentColor(QColor(18, 52, 86));
        dialog.accept();
    });
    auto *button = editor.control<QToolButton>(QString::fromLatin1(QTest::currentDataTag()));
    button->click();
    QCOMPARE(answers.problems(), QStringList());
    QCOMPARE(changedFields(editor, before), QStringList(field));
    QCOMPARE(button->styleSheet(), u"background-color: #123456}"_s);
}

void tst_Connections::decimalPlacesReachTheirOwnSlot()
{
    Editor editor;
    editor.addLayer(u"second"_s);
    editor.layerList()->setCurrentRow(1);
    const gaugeData before = editor.preview()->workingLayer;
    editor.control<QSpinBox>("tickCountDecimalPlacesSpinBox"_L1)->setValue(2);
    QCOMPARE(changedFields(editor, before), QStringList(u"tickCountDecimalPlaces"_s));
    QCOMPARE(editor.control<QDoubleSpinBox>("tickCountStartSpinBox"_L1)->decimals(), 2);
}

void tst_Connections::fontButtonAsksForTheFont()
{
    Editor editor;
    editor.addLayer(u"second"_s);
    editor.layerList()->setCurrentRow(1);
    const gaugeData before = editor.preview()->workingLayer;
    DialogAnswers answers;
    answers.expect<QFontDialog>([](QFontDialog &dialog) {
        QFont font = dialog.currentFont();
        font.setPointSize(24);
        dialog.setCurrentFont(font);
        dialog.accept();
    });
    editor.control<QPushButton>("tickCountFontButton"_L1)->click();
    QCOMPARE(answers.problems(), QStringList());
    QCOMPARE(changedFields(editor, before), QStringList(u"tickCountFont.pointSize"_s));
    QCOMPARE(editor.preview()->workingLayer.tickCountFont.pointSize(), 24);
}

void tst_Connections::checkBoxEditsItsField_data()
{
    QTest::addColumn<QString>("field");
    QTest::newRow("tickCountRotateCheckBox") << u"tickCountRotate"_s;
    QTest::newRow("tickCountCheckBox") << u"tickCountEnabled"_s;
    QTest::newRow("skipFirstTickCheckBox") << u"tickCountSkipFirst"_s;
    QTest::newRow("roundedTickCapsCheckBox") << u"roundedTickCaps"_s;
    QTest::newRow("roundedArcCapsCheckBox") << u"roundedArcCaps"_s;
}

void tst_Connections::checkBoxEditsItsField()
{
    QFETCH(QString, field);
    Editor editor;
    editor.addLayer(u"second"_s);
    editor.layerList()->setCurrentRow(1);
    const gaugeData before = editor.preview()->workingLayer;
    auto *box = editor.control<QCheckBox>(QString::fromLatin1(QTest::currentDataTag()));
    box->click();
    QCOMPARE(changedFields(editor, before), QStringList(field));
    box->click();
    QCOMPARE(changedFields(editor, before), QStringList());
}

void tst_Connections::saveButtonAsksForFile_data()
{
    QTest::addColumn<QString>("caption");
    QTest::newRow("saveSVGButton") << u"Save SVG"_s;
    QTest::newRow("savePNGButton") << u"Save PNG"_s;
    QTest::newRow("saveKeyFrameButton") << u"Save Keyframes CSV"_s;
    QTest::newRow("saveButton") << u"Save Gauge"_s;
    QTest::newRow("SaveLayerButton") << u"Save Layer As Preset"_s;
}

void tst_Connections::saveButtonAsksForFile()
{
    QFETCH(QString, caption);
    const Editor editor;
    QString shown;
    DialogAnswers answers;
    answers.expect<QFileDialog>([&shown](QFileDialog &dialog) {
        shown = dialog.windowTitle();
        dialog.reject();
    });
    editor.control<QPushButton>(QString::fromLatin1(QTest::currentDataTag()))->click();
    QCOMPARE(answers.problems(), QStringList());
    QCOMPARE(shown, caption);
}

void tst_Connections::loadButtonAsksForFile_data()
{
    QTest::addColumn<QString>("caption");
    QTest::newRow("loadButton") << u"Load Gauge"_s;
    QTest::newRow("loadReferenceButton") << u"Load Reference Image (512x512)"_s;
}

void tst_Connections::loadButtonAsksForFile()
{
    saveButtonAsksForFile();
}

void tst_Connections::presetChosenByTheUserIsLoaded()
{
    const Editor editor;
    auto &presets = *editor.control<QComboBox>("presetComboBox"_L1);
    presets.clear();
    presets.addItems({u"first"_s, u"a preset that is not there"_s});
    QString title;
    DialogAnswers answers;
    answers.expect<QMessageBox>([&title](QMessageBox &box) {
        title = box.windowTitle();
        box.reject();
    });
    presets.setCurrentIndex(1); // from code: nothing is loaded yet
    presets.setCurrentIndex(0);
    QTest::keyClick(&presets, Qt::Key_Down);
    QCOMPARE(answers.problems(), QStringList());
    QCOMPARE(title, u"Unable to open file"_s);
}

void tst_Connections::selectingRowShowsItsLayer()
{
    Editor editor;
    editor.addLayer(u"second"_s);
    editor.preview()->layers[1].startAngle = 77.0;
    editor.layerList()->setCurrentRow(1);
    QCOMPARE(editor.control<QDoubleSpinBox>("gaugeStartAngleSpinBox"_L1)->value(), 77.0);
}

void tst_Connections::changedRowIsRenamed()
{
    const Editor editor;
    editor.layerList()->item(0)->setText(u"  needle "_s);
    QCOMPARE(editor.layerList()->item(0)->text(), u"needle"_s);
}

void tst_Connections::addLayerButtonAsksForName()
{
    const Editor editor;
    DialogAnswers answers;
    answers.expectAndCancel<QInputDialog>();
    editor.control<QPushButton>("AddLayerButton"_L1)->click();
    QCOMPARE(answers.problems(), QStringList());
}

void tst_Connections::removeLayerButtonRemoves()
{
    Editor editor;
    editor.addLayer(u"second"_s);
    editor.control<QPushButton>("RemoveLayerButton"_L1)->click();
    QCOMPARE(editor.layerList()->count(), 1);
    QCOMPARE(editor.layerList()->item(0)->text(), u"second"_s);
}

void tst_Connections::clearReferenceButtonClears()
{
    const Editor editor;
    auto &backdrop = *editor.control<QLabel>("referenceLabel"_L1);
    QVERIFY(!backdrop.text().isEmpty());
    editor.control<QPushButton>("clearReferenceButton"_L1)->click();
    QVERIFY(backdrop.text().isEmpty());
}

void tst_Connections::checkForUpdatesButtonIsUsersOwnCheck()
{
    Editor editor;
    const auto requests = [&editor] { return editor.window.findChildren<QNetworkReply *>().size(); };
    QCOMPARE(requests(), 1); // the silent one of the start
    QString title;
    DialogAnswers answers;
    answers.expect<QMessageBox>([&title](QMessageBox &box) {
        title = box.windowTitle();
        box.reject();
    });
    editor.control<QPushButton>("checkUpdatesButton"_L1)->click();
    QCOMPARE(requests(), 2);
    // Only a check of the user's own tells of its failure.
    QVERIFY(QMetaObject::invokeMethod(
        &editor.window, "onUpdateCheckFinished",
        Q_ARG(QNetworkReply *, new FailedReply(&editor.window)))); // NOLINT: the window takes it
    QCOMPARE(answers.problems(), QStringList());
    QCOMPARE(title, u"Update Check Failed"_s);
}

void tst_Connections::checkedFromCodeCallsNothing_data()
{
    checkBoxEditsItsField_data();
}

void tst_Connections::checkedFromCodeCallsNothing()
{
    const Editor editor;
    auto *box = editor.control<QCheckBox>(QString::fromLatin1(QTest::currentDataTag()));
    box->setChecked(!box->isChecked());
    QCOMPARE(differingFields(editor.preview()->workingLayer, gaugeData()), QStringList());
    QCOMPARE(differingFields(editor.preview()->layers.first(), gaugeData()), QStringList());
}

void tst_Connections::indexFromCodeCallsNothing()
{
    const Editor editor;
    editor.control<QComboBox>("biasTypeComboBox"_L1)->setCurrentIndex(1);
    QVERIFY(!editor.preview()->workingLayer.midpointBias);
    QVERIFY(!editor.preview()->layers.first().midpointBias);
}

void tst_Connections::exportSizeTriggersNothing()
{
    Editor editor;
    editor.show();
    // What a handler would take over, or write away, stays as it is.
    editor.control<QComboBox>("biasTypeComboBox"_L1)->setCurrentIndex(1);
    for (const auto name : {"roundedTickCapsCheckBox"_L1, "tickCountRotateCheckBox"_L1})
        editor.control<QCheckBox>(name)->setChecked(true);
    editor.preview()->workingLayer = sampleLayer();
    QCoreApplication::processEvents();
    const PaintCounter paints(editor.preview());

    auto &size = *editor.control<QSpinBox>("pngSizeSpinBox"_L1);
    size.setValue(1024);
    QTest::keyClick(&size, Qt::Key_Up);
    QCoreApplication::processEvents();
    QCOMPARE(size.value(), 1024 + 32);
    QCOMPARE(differingFields(editor.preview()->workingLayer, sampleLayer()), QStringList());
    QCOMPARE(differingFields(editor.preview()->layers.first(), gaugeData()), QStringList());
    QCOMPARE(paints.count(), 0);
}

ADD_TEST_CLASS(tst_Connections)
#include "tst_connections.moc"
