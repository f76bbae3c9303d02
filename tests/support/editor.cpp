#include "support/editor.h"

#include "support/dialogs.h"

#include <QInputDialog>
#include <QTest>

using namespace Qt::StringLiterals;

QListWidget *Editor::layerList() const
{
    return control<QListWidget>("layerList"_L1);
}

void Editor::call(const char *slot)
{
    if (!QMetaObject::invokeMethod(&window, slot))
        qFatal("The window has no slot \"%s\".", slot);
}

void Editor::addLayer(const QString &name) const
{
    DialogAnswers answers;
    answers.expect<QInputDialog>([name](QInputDialog &dialog) {
        dialog.setTextValue(name);
        dialog.accept();
    });
    control<QPushButton>("AddLayerButton"_L1)->click();
    if (!answers.problems().isEmpty())
        qFatal("No layer was added: %s", qPrintable(answers.problems().join(u"; "_s)));
}

void Editor::show()
{
    window.show();
    if (!QTest::qWaitForWindowExposed(&window))
        qFatal("The window does not come up.");
    QCoreApplication::processEvents();
}

QStringList boundControls()
{
    QStringList names{u"gaugeStartAngleSpinBox"_s, u"gaugeAngleLengthSpinBox"_s, u"gaugeBiasSpinBox"_s,
                      u"biasTypeComboBox"_s, u"roundedTickCapsCheckBox"_s};
    for (int ring = 1; ring <= 3; ++ring) {
        for (const auto control : {"SpinBox"_L1, "InnerRadiusSpinBox"_L1, "OuterRadiusSpinBox"_L1,
                                   "WidthSpinBox"_L1, "ColorButton"_L1})
            names.append(u"gaugeDivisions%1%2"_s.arg(ring).arg(control));
    }
    names.append(u"roundedArcCapsCheckBox"_s);
    for (int arc = 1; arc <= 4; ++arc) {
        for (const auto control : {"StartAngleSpinBox"_L1, "AngleLengthSpinBox"_L1, "RadiusSpinBox"_L1,
                                   "WidthSpinBox"_L1, "ColorButton"_L1})
            names.append(u"arc%1%2"_s.arg(arc).arg(control));
    }
    names += {u"tickCountRadiusSpinBox"_s,  u"tickCountDecimalPlacesSpinBox"_s,
              u"tickCountStartSpinBox"_s,   u"tickCountIncrementSpinBox"_s,
              u"tickCountFontButton"_s,     u"tickColorButton"_s,
              u"tickCountRotateCheckBox"_s, u"tickCountCheckBox"_s,
              u"skipFirstTickCheckBox"_s};
    return names;
}
