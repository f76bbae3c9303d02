#include "support/editor.h"
#include "support/testmain.h"
#include "support/warnings.h"
#include "ui_window.h"

#include <QDir>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {

/// The order in which the Tab key goes through the form.
QStringList tabOrder()
{
    QStringList order{u"gaugeStartAngleSpinBox"_s, u"gaugeAngleLengthSpinBox"_s, u"gaugeBiasSpinBox"_s,
                      u"biasTypeComboBox"_s};
    for (int ring = 1; ring <= 3; ++ring) {
        for (const auto control : {"SpinBox"_L1, "WidthSpinBox"_L1, "InnerRadiusSpinBox"_L1,
                                   "OuterRadiusSpinBox"_L1, "ColorButton"_L1})
            order.append(u"gaugeDivisions%1%2"_s.arg(ring).arg(control));
    }
    order.append(u"roundedTickCapsCheckBox"_s);
    for (int arc = 1; arc <= 4; ++arc) {
        for (const auto control : {"StartAngleSpinBox"_L1, "AngleLengthSpinBox"_L1, "RadiusSpinBox"_L1,
                                   "WidthSpinBox"_L1, "ColorButton"_L1})
            order.append(u"arc%1%2"_s.arg(arc).arg(control));
    }
    order += {u"roundedArcCapsCheckBox"_s,
              u"tickCountRadiusSpinBox"_s,
              u"tickCountStartSpinBox"_s,
              u"tickCountDecimalPlacesSpinBox"_s,
              u"tickCountIncrementSpinBox"_s,
              u"tickColorButton"_s,
              u"tickCountCheckBox"_s,
              u"tickCountRotateCheckBox"_s,
              u"skipFirstTickCheckBox"_s,
              u"tickCountFontButton"_s,
              u"saveSVGButton"_s,
              u"savePNGButton"_s,
              u"pngSizeSpinBox"_s,
              u"saveKeyFrameButton"_s,
              u"loadReferenceButton"_s,
              u"clearReferenceButton"_s,
              u"layerList"_s,
              u"AddLayerButton"_s,
              u"RemoveLayerButton"_s,
              u"SaveLayerButton"_s,
              u"presetComboBox"_s,
              u"saveButton"_s,
              u"loadButton"_s};
    return order;
}

} // namespace

/// The form itself, mostly on a plain widget: its name and sizes, the tab order and what its boxes let
/// through.
class tst_Form : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { failOnUnexpectedWarnings(); }

    void namesAnUnnamedWidget();
    void leavesAnExistingNameAlone();
    void titleIsThePlaceholder();
    void hasItsInitialSizeAndMinimum();
    void takesTheIconFromBesideTheBuildFolder();
    void separatorIsSunkenLine_data();
    void separatorIsSunkenLine();
    void backdropLiesInThePreviewGroup();
    void tabKeyGoesThroughTheControls();
    void firstTickValueIsClamped();
    void firstTickValueRefusesDigitsBeyondItsRange();
    void incrementTakesThousands();
    void primaryCountGoesDownToZero();
    void otherCountsStopAtOne_data();
    void otherCountsStopAtOne();
    void previewGroupKeepsItsSize_data();
    void previewGroupKeepsItsSize();
};

void tst_Form::namesAnUnnamedWidget()
{
    QWidget widget;
    Ui_Window form;
    form.setupUi(&widget);
    QCOMPARE(widget.objectName(), u"Window"_s);
}

void tst_Form::leavesAnExistingNameAlone()
{
    QWidget widget;
    widget.setObjectName(u"named before"_s);
    Ui_Window form;
    form.setupUi(&widget);
    QCOMPARE(widget.objectName(), u"named before"_s);
}

void tst_Form::titleIsThePlaceholder()
{
    QWidget widget;
    Ui_Window form;
    form.setupUi(&widget);
    QCOMPARE(widget.windowTitle(), u"Form"_s);
    widget.setWindowTitle(u"another"_s);
    form.retranslateUi(&widget);
    QCOMPARE(widget.windowTitle(), u"Form"_s);
}

void tst_Form::hasItsInitialSizeAndMinimum()
{
    QWidget widget;
    Ui_Window form;
    form.setupUi(&widget);
    QCOMPARE(widget.size(), QSize(1280, 760));
    QCOMPARE(widget.minimumSize(), QSize(156, 0));
    QCOMPARE(widget.maximumSize(), QSize(QWIDGETSIZE_MAX, QWIDGETSIZE_MAX));
}

void tst_Form::takesTheIconFromBesideTheBuildFolder()
{
    // The path is relative: with an icon one folder above the current one, the widget has it.
    const QTemporaryDir folder;
    QVERIFY(QDir(folder.path()).mkdir(u"build"_s));
    QImage picture(16, 16, QImage::Format_RGB32);
    picture.fill(QColor(0, 120, 240));
    QVERIFY(picture.save(folder.filePath(u"corvalence.ico"_s), "png"));
    const QString before = QDir::currentPath();
    QVERIFY(QDir::setCurrent(folder.filePath(u"build"_s)));

    QWidget widget;
    Ui_Window form;
    form.setupUi(&widget);
    const QPixmap shown = widget.windowIcon().pixmap(QSize(16, 16), QIcon::Normal, QIcon::Off);
    QVERIFY(QDir::setCurrent(before));
    QCOMPARE(shown.toImage().pixelColor(8, 8), QColor(0, 120, 240));
}

void tst_Form::separatorIsSunkenLine_data()
{
    QTest::addColumn<QString>("name");
    for (const auto name : {"line"_L1, "line_2"_L1, "line_3"_L1, "line_4"_L1, "line_5"_L1})
        QTest::newRow(name.data()) << name.toString();
}

void tst_Form::separatorIsSunkenLine()
{
    QFETCH(QString, name);
    QWidget widget;
    Ui_Window form;
    form.setupUi(&widget);
    const auto *line = widget.findChild<QFrame *>(name);
    QVERIFY(line != nullptr);
    QCOMPARE(line->frameShape(), QFrame::HLine);
    QCOMPARE(line->frameShadow(), QFrame::Sunken);
}

void tst_Form::backdropLiesInThePreviewGroup()
{
    QWidget widget;
    Ui_Window form;
    form.setupUi(&widget);
    QCOMPARE(form.referenceLabel->parentWidget(), form.RenderBox);
    QCOMPARE(form.RenderBox->layout(), nullptr);
    QCOMPARE(form.referenceLabel->geometry(), QRect(26, 33, 512, 512));
    QVERIFY(form.referenceLabel->autoFillBackground());
    QCOMPARE(form.referenceLabel->alignment(), Qt::AlignCenter);
    QCOMPARE(form.referenceLabel->text(), u"Gauge Preview"_s);
}

void tst_Form::tabKeyGoesThroughTheControls()
{
    QWidget widget;
    Ui_Window form;
    form.setupUi(&widget);
    widget.show();
    QVERIFY(QTest::qWaitForWindowActive(&widget));
    const QStringList expected = tabOrder();
    form.gaugeStartAngleSpinBox->setFocus();
    QStringList visited;
    while (visited.size() < expected.size()) {
        QVERIFY(QApplication::focusWidget() != nullptr);
        visited.append(QApplication::focusWidget()->objectName());
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
    }
    QCOMPARE(visited, expected);
}

void tst_Form::firstTickValueIsClamped()
{
    QWidget widget;
    Ui_Window form;
    form.setupUi(&widget);
    form.tickCountStartSpinBox->setValue(5000);
    QCOMPARE(form.tickCountStartSpinBox->value(), 360.0);
    form.tickCountStartSpinBox->setValue(-5000);
    QCOMPARE(form.tickCountStartSpinBox->value(), -360.0);
}

void tst_Form::firstTickValueRefusesDigitsBeyondItsRange()
{
    QWidget widget;
    Ui_Window form;
    form.setupUi(&widget);
    form.tickCountStartSpinBox->selectAll();
    QTest::keyClicks(form.tickCountStartSpinBox, u"3605"_s);
    QTest::keyClick(form.tickCountStartSpinBox, Qt::Key_Return);
    QCOMPARE(form.tickCountStartSpinBox->value(), 360.0);
}

void tst_Form::incrementTakesThousands()
{
    QWidget widget;
    Ui_Window form;
    form.setupUi(&widget);
    form.tickCountIncrementSpinBox->selectAll();
    QTest::keyClicks(form.tickCountIncrementSpinBox, u"5000"_s);
    QTest::keyClick(form.tickCountIncrementSpinBox, Qt::Key_Return);
    QCOMPARE(form.tickCountIncrementSpinBox->value(), 5000.0);
}

void tst_Form::primaryCountGoesDownToZero()
{
    QWidget widget;
    Ui_Window form;
    form.setupUi(&widget);
    form.gaugeDivisions1SpinBox->selectAll();
    QTest::keyClick(form.gaugeDivisions1SpinBox, Qt::Key_0);
    QTest::keyClick(form.gaugeDivisions1SpinBox, Qt::Key_Return);
    QCOMPARE(form.gaugeDivisions1SpinBox->value(), 0);
    QTest::keyClick(form.gaugeDivisions1SpinBox, Qt::Key_Down);
    QCOMPARE(form.gaugeDivisions1SpinBox->value(), 0);
}

void tst_Form::otherCountsStopAtOne_data()
{
    QTest::addColumn<QString>("name");
    QTest::newRow("secondary") << u"gaugeDivisions2SpinBox"_s;
    QTest::newRow("tertiary") << u"gaugeDivisions3SpinBox"_s;
}

void tst_Form::otherCountsStopAtOne()
{
    QFETCH(QString, name);
    QWidget widget;
    Ui_Window form;
    form.setupUi(&widget);
    auto *box = widget.findChild<QSpinBox *>(name);
    box->setValue(2);
    QTest::keyClick(box, Qt::Key_Down);
    QTest::keyClick(box, Qt::Key_Down);
    QCOMPARE(box->value(), 1);
    box->setValue(0);
    QCOMPARE(box->value(), 1);
}

void tst_Form::previewGroupKeepsItsSize_data()
{
    QTest::addColumn<QSize>("window");
    QTest::newRow("as it opens") << QSize(1280, 760);
    QTest::newRow("large") << QSize(2400, 1600);
    QTest::newRow("wide") << QSize(2400, 760);
    QTest::newRow("as small as it gets") << QSize(1, 1);
}

void tst_Form::previewGroupKeepsItsSize()
{
    QFETCH(QSize, window);
    Editor editor;
    editor.window.resize(window);
    editor.show();
    QCOMPARE(editor.control<QGroupBox>("RenderBox"_L1)->size(), QSize(564, 564));
    QCOMPARE(editor.preview()->size(), QSize(512, 512));
    QCOMPARE(editor.control<QLabel>("referenceLabel"_L1)->geometry(), QRect(26, 33, 512, 512));
}

ADD_TEST_CLASS(tst_Form)
#include "tst_form.moc"
