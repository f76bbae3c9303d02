#include "support/testmain.h"
#include "support/warnings.h"
#include "ui_window.h"

#include <QTest>

using namespace Qt::StringLiterals;

namespace {

/// A margin or spacing that the form leaves to the style.
constexpr int standard = -1;

/// An item of a layout as the tables below write it: its name or "spacer", with its cell in a grid, and the
/// span where it is more than one cell.
QString describe(const QLayout &layout, int index)
{
    QLayoutItem &item = *layout.itemAt(index);
    QString name = u"spacer"_s;
    if (item.widget() != nullptr)
        name = item.widget()->objectName();
    else if (item.layout() != nullptr)
        name = item.layout()->objectName();
    const auto *grid = qobject_cast<const QGridLayout *>(&layout);
    if (grid == nullptr)
        return name;

    int row = 0;
    int column = 0;
    int rows = 0;
    int columns = 0;
    grid->getItemPosition(index, &row, &column, &rows, &columns);
    const QString cell = u"%1,%2 %3"_s.arg(row).arg(column).arg(name);
    return rows == 1 && columns == 1 ? cell : u"%1 (%2x%3)"_s.arg(cell).arg(rows).arg(columns);
}

/// The layout or the widget that a layout lies in.
QString ownerName(const QLayout &layout)
{
    return layout.parent()->objectName();
}

/// What a margin that is left to the style comes to: nothing within another layout.
int standardMargin(const QLayout &layout, QStyle::PixelMetric metric)
{
    const auto *owner = qobject_cast<const QWidget *>(layout.parent());
    return owner == nullptr ? 0 : owner->style()->pixelMetric(metric, nullptr, owner);
}

/// What a spacing that is left to the style comes to: the one of the layout around it.
int standardSpacing(const QLayout &layout, QStyle::PixelMetric metric)
{
    if (const auto *owner = qobject_cast<const QWidget *>(layout.parent()))
        return owner->style()->pixelMetric(metric, nullptr, owner);
    return qobject_cast<const QLayout *>(layout.parent())->spacing();
}

} // namespace

/// The tree of layouts: what lies in what, in which cell, with which margins and spacing.
class tst_FormLayout : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { failOnUnexpectedWarnings(); }

    void layout_data();
    void layout();
    void thereAreNoOtherLayouts();
    void onlyPresetListStretches();
    void spacer_data();
    void spacer();

private:
    QWidget m_widget;
    Ui_Window m_form;

public:
    tst_FormLayout() { m_form.setupUi(&m_widget); }
};

void tst_FormLayout::layout_data()
{
    QTest::addColumn<QString>("kind");
    QTest::addColumn<QString>("owner");
    QTest::addColumn<QMargins>("margins");
    QTest::addColumn<int>("spacing");
    QTest::addColumn<QLayout::SizeConstraint>("constraint");
    QTest::addColumn<QStringList>("items");

    const QString vertical = u"QVBoxLayout"_s;
    const QString horizontal = u"QHBoxLayout"_s;
    const QString grid = u"QGridLayout"_s;
    const QMargins none(standard, standard, standard, standard);
    const QMargins left(4, standard, standard, standard);
    const QMargins sides(4, standard, 4, standard);
    const QMargins all(4, 4, 4, 4);
    const auto row = [](const char *name, const QString &kind, const char *owner, const QMargins &margins,
                        int spacing, QLayout::SizeConstraint constraint, const QString &items) {
        QTest::newRow(name) << kind << QString::fromLatin1(owner) << margins << spacing << constraint
                            << items.split(u"; "_s);
    };
    constexpr auto usual = QLayout::SetDefaultConstraint;

    row("verticalLayout", vertical, "Window", none, standard, usual, u"MainForm"_s);
    row("MainForm", vertical, "verticalLayout", none, standard, usual, u"MainBar; MainLayout"_s);
    row("MainBar", horizontal, "MainForm", none, standard, usual,
        u"GaugeAngleSettings; spacer; PresetSettings"_s);
    row("GaugeAngleSettings", grid, "MainBar", left, standard, usual,
        u"0,0 label; 0,1 gaugeStartAngleSpinBox; 0,2 label_2; 0,3 gaugeAngleLengthSpinBox; 0,4 label_36; "
        "0,5 gaugeBiasSpinBox; 0,6 label_37; 0,7 biasTypeComboBox"_s);
    row("PresetSettings", grid, "MainBar", left, standard, usual,
        u"0,0 label_35; 0,1 presetComboBox; 0,2 saveButton; 0,3 loadButton"_s);
    row("MainLayout", grid, "MainForm", none, 2, QLayout::SetMinimumSize,
        u"0,0 GaugeSettings; 0,1 WorkingColumn; 0,2 spacer; 0,3 Layers"_s);
    row("GaugeSettings", vertical, "MainLayout", {standard, standard, 2, standard}, 2, usual,
        u"DivisionsBox; spacer; ArcsBox; spacer; TicksBox"_s);
    row("WorkingColumn", vertical, "MainLayout", none, standard, QLayout::SetFixedSize,
        u"RenderBox; spacer; horizontalLayout_3"_s);
    row("horizontalLayout_3", horizontal, "WorkingColumn", none, standard, usual,
        u"gridLayout_11; aboutLabel"_s);
    row("gridLayout_11", grid, "horizontalLayout_3", none, standard, usual,
        u"0,0 saveSVGButton; 1,0 horizontalLayout; 0,1 loadReferenceButton; 1,1 clearReferenceButton; "
        "2,0 saveKeyFrameButton; 2,1 checkUpdatesButton"_s);
    row("horizontalLayout", horizontal, "gridLayout_11", none, standard, usual,
        u"savePNGButton; pngSizeSpinBox"_s);
    row("verticalLayout_5", vertical, "Layers", all, 2, usual,
        u"layerList; AddLayerButton; RemoveLayerButton; SaveLayerButton"_s);

    row("verticalLayout_2", vertical, "DivisionsBox", all, 2, usual,
        u"gridLayout_2; line; gridLayout_3; line_2; gridLayout_4; roundedTickCapsCheckBox"_s);
    row("gridLayout_2", grid, "verticalLayout_2", sides, 2, usual,
        u"0,0 label_3; 0,1 gaugeDivisions1SpinBox; 0,2 label_4; 0,3 gaugeDivisions1WidthSpinBox; "
        "0,4 gaugeDivisions1ColorButton (2x1); 1,0 label_6; 1,1 gaugeDivisions1InnerRadiusSpinBox; "
        "1,2 label_5; 1,3 gaugeDivisions1OuterRadiusSpinBox"_s);
    row("gridLayout_3", grid, "verticalLayout_2", sides, 2, usual,
        u"0,0 label_8; 0,1 gaugeDivisions2SpinBox; 0,2 label_7; 0,3 gaugeDivisions2WidthSpinBox; "
        "0,4 gaugeDivisions2ColorButton (2x1); 1,0 label_9; 1,1 gaugeDivisions2InnerRadiusSpinBox; "
        "1,2 label_10; 1,3 gaugeDivisions2OuterRadiusSpinBox"_s);
    row("gridLayout_4", grid, "verticalLayout_2", sides, 2, usual,
        u"0,0 label_12; 0,1 gaugeDivisions3SpinBox; 0,2 label_11; 0,3 gaugeDivisions3WidthSpinBox; "
        "0,4 gaugeDivisions3ColorButton (2x1); 1,0 label_13; 1,1 gaugeDivisions3InnerRadiusSpinBox; "
        "1,2 label_14; 1,3 gaugeDivisions3OuterRadiusSpinBox"_s);

    row("verticalLayout_3", vertical, "ArcsBox", all, 2, usual,
        u"gridLayout_5; line_4; gridLayout_6; line_3; gridLayout_7; line_5; gridLayout_8; "
        "roundedArcCapsCheckBox"_s);
    row("gridLayout_5", grid, "verticalLayout_3", sides, 2, usual,
        u"0,0 label_16; 0,1 arc1StartAngleSpinBox; 0,2 label_15; 0,3 arc1AngleLengthSpinBox; "
        "0,4 arc1ColorButton (2x1); 1,0 label_17; 1,1 arc1RadiusSpinBox; 1,2 label_18; 1,3 arc1WidthSpinBox"_s);
    row("gridLayout_6", grid, "verticalLayout_3", sides, 2, usual,
        u"0,0 label_20; 0,1 arc2StartAngleSpinBox; 0,2 label_19; 0,3 arc2AngleLengthSpinBox; "
        "0,4 arc2ColorButton (2x1); 1,0 label_21; 1,1 arc2RadiusSpinBox; 1,2 label_22; 1,3 arc2WidthSpinBox"_s);
    row("gridLayout_7", grid, "verticalLayout_3", sides, 2, usual,
        u"0,0 label_24; 0,1 arc3StartAngleSpinBox; 0,2 label_23; 0,3 arc3AngleLengthSpinBox; "
        "0,4 arc3ColorButton (2x1); 1,0 label_25; 1,1 arc3RadiusSpinBox; 1,2 label_26; 1,3 arc3WidthSpinBox"_s);
    row("gridLayout_8", grid, "verticalLayout_3", sides, 2, usual,
        u"0,0 label_28; 0,1 arc4StartAngleSpinBox; 0,2 label_27; 0,3 arc4AngleLengthSpinBox; "
        "0,4 arc4ColorButton (2x1); 1,0 label_29; 1,1 arc4RadiusSpinBox; 1,2 label_30; 1,3 arc4WidthSpinBox"_s);

    row("verticalLayout_6", vertical, "TicksBox", all, 4, usual, u"gridLayout_9; horizontalLayout_2"_s);
    row("gridLayout_9", grid, "verticalLayout_6", sides, 2, usual,
        u"0,0 label_31; 0,1 tickCountRadiusSpinBox; 0,2 label_32; 0,3 tickCountStartSpinBox; "
        "0,4 tickColorButton (2x1); 1,0 label_33; 1,1 tickCountDecimalPlacesSpinBox; 1,2 label_34; "
        "1,3 tickCountIncrementSpinBox"_s);
    row("horizontalLayout_2", horizontal, "verticalLayout_6", {standard, 2, 6, 0}, 2, usual,
        u"verticalLayout_4; tickCountFontButton"_s);
    row("verticalLayout_4", vertical, "horizontalLayout_2", left, 2, usual,
        u"tickCountCheckBox; tickCountRotateCheckBox; skipFirstTickCheckBox"_s);
}

void tst_FormLayout::layout()
{
    QFETCH(QString, kind);
    QFETCH(QString, owner);
    QFETCH(QMargins, margins);
    QFETCH(int, spacing);
    QFETCH(QLayout::SizeConstraint, constraint);
    QFETCH(QStringList, items);
    const auto *layout = m_widget.findChild<QLayout *>(QString::fromLatin1(QTest::currentDataTag()));
    QVERIFY(layout != nullptr);
    QCOMPARE(QString::fromLatin1(layout->metaObject()->className()), kind);
    QCOMPARE(ownerName(*layout), owner);
    QCOMPARE(layout->sizeConstraint(), constraint);

    const auto resolved = [layout](int margin, QStyle::PixelMetric metric) {
        return margin == standard ? standardMargin(*layout, metric) : margin;
    };
    QCOMPARE(layout->contentsMargins(), QMargins(resolved(margins.left(), QStyle::PM_LayoutLeftMargin),
                                                 resolved(margins.top(), QStyle::PM_LayoutTopMargin),
                                                 resolved(margins.right(), QStyle::PM_LayoutRightMargin),
                                                 resolved(margins.bottom(), QStyle::PM_LayoutBottomMargin)));

    const auto expectedSpacing = [layout, spacing](QStyle::PixelMetric metric) {
        return spacing == standard ? standardSpacing(*layout, metric) : spacing;
    };
    if (const auto *grid = qobject_cast<const QGridLayout *>(layout)) {
        QCOMPARE(grid->horizontalSpacing(), expectedSpacing(QStyle::PM_LayoutHorizontalSpacing));
        QCOMPARE(grid->verticalSpacing(), expectedSpacing(QStyle::PM_LayoutVerticalSpacing));
    } else {
        QCOMPARE(layout->spacing(),
                 expectedSpacing(kind == "QHBoxLayout"_L1 ? QStyle::PM_LayoutHorizontalSpacing
                                                          : QStyle::PM_LayoutVerticalSpacing));
    }

    QStringList found;
    for (int index = 0; index < layout->count(); ++index) {
        found.append(describe(*layout, index));
        QCOMPARE(layout->itemAt(index)->alignment(), Qt::Alignment());
    }
    QCOMPARE(found, items);
}

void tst_FormLayout::thereAreNoOtherLayouts()
{
    qsizetype named = 0;
    const auto layouts = m_widget.findChildren<QLayout *>();
    for (const QLayout *layout : layouts)
        named += layout->objectName().isEmpty() ? 0 : 1; // those within Qt's own widgets have no names
    QCOMPARE(named, 25);
}

void tst_FormLayout::onlyPresetListStretches()
{
    QStringList stretching;
    const auto layouts = m_widget.findChildren<QLayout *>();
    for (const QLayout *layout : layouts) {
        if (const auto *grid = qobject_cast<const QGridLayout *>(layout)) {
            for (int column = 0; column < grid->columnCount(); ++column) {
                if (grid->columnStretch(column) != 0 || grid->columnMinimumWidth(column) != 0)
                    stretching.append(u"%1 column %2: %3"_s.arg(grid->objectName())
                                          .arg(column)
                                          .arg(grid->columnStretch(column)));
            }
            for (int row = 0; row < grid->rowCount(); ++row) {
                if (grid->rowStretch(row) != 0 || grid->rowMinimumHeight(row) != 0)
                    stretching.append(u"%1 row %2"_s.arg(grid->objectName()).arg(row));
            }
        } else if (const auto *box = qobject_cast<const QBoxLayout *>(layout)) {
            for (int index = 0; index < box->count(); ++index) {
                if (box->stretch(index) != 0)
                    stretching.append(u"%1 item %2"_s.arg(box->objectName()).arg(index));
            }
        }
    }
    QCOMPARE(stretching, QStringList(u"PresetSettings column 1: 1"_s));
}

void tst_FormLayout::spacer_data()
{
    QTest::addColumn<QString>("layout");
    QTest::addColumn<int>("index");
    QTest::addColumn<QSize>("sizeHint");

    QTest::newRow("between the sweep and the presets") << u"MainBar"_s << 1 << QSize(40, 20);
    QTest::newRow("beside the layers") << u"MainLayout"_s << 2 << QSize(40, 20);
    QTest::newRow("below the divisions") << u"GaugeSettings"_s << 1 << QSize(20, 40);
    QTest::newRow("below the arcs") << u"GaugeSettings"_s << 3 << QSize(20, 40);
    QTest::newRow("below the preview") << u"WorkingColumn"_s << 1 << QSize(20, 40);
}

void tst_FormLayout::spacer()
{
    QFETCH(QString, layout);
    QFETCH(int, index);
    QFETCH(QSize, sizeHint);
    QSpacerItem *item = m_widget.findChild<QLayout *>(layout)->itemAt(index)->spacerItem();
    QVERIFY(item != nullptr);
    QCOMPARE(item->sizeHint(), sizeHint);
    QCOMPARE(item->sizePolicy().horizontalPolicy(), QSizePolicy::Expanding);
    QCOMPARE(item->sizePolicy().verticalPolicy(), QSizePolicy::Minimum);
}

ADD_TEST_CLASS(tst_FormLayout)
#include "tst_formlayout.moc"
