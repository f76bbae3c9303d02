#include "model/gaugefile.h"
#include "support/dialogs.h"
#include "support/editor.h"
#include "support/files.h"
#include "support/testmain.h"
#include "support/warnings.h"

#include <QTemporaryDir>
#include <QTest>

#include <optional>

using namespace Qt::StringLiterals;

/// The content of saved gauges, presets and keyframes.
class tst_Saving : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();

    void latestEditsAreSaved_data();
    void latestEditsAreSaved();
    void noLayerIsSavedWithoutACurrentRow();

private:
    std::optional<QTemporaryDir> m_folder;
};

void tst_Saving::init()
{
    failOnUnexpectedWarnings();
    m_folder.emplace();
}

void tst_Saving::latestEditsAreSaved_data()
{
    gaugeData marks;
    marks.startAngle = 45;
    marks.divisionCount[0] = 1;
    const QList<gaugeLayer> layers{
        {u"Layer 1"_s, {}}, {u"Zähler \"a\", <b>"_s, marks}, {u"same"_s, {}}, {u"same"_s, {}}};

    QTest::addColumn<QString>("button");
    QTest::addColumn<QByteArray>("content");
    QTest::newRow("gauge") << u"saveButton"_s << gaugeFile::write(layers);
    QTest::newRow("layer") << u"SaveLayerButton"_s << gaugeFile::write({layers.at(1)});
    const QByteArray same = "same,0,0\rsame,1,30\rsame,2,60\rsame,3,90\rsame,4,120\r";
    QTest::newRow("keyframes") << u"saveKeyFrameButton"_s
                               << "Layer,Tick,Angle\r" + QByteArray(same).replace("same", "Layer 1") +
                                      "\"Z\xC3\xA4hler \"\"a\"\", <b>\",0,45\r"
                                      "\"Z\xC3\xA4hler \"\"a\"\", <b>\",1,165\r" +
                                      same + same;
}

void tst_Saving::latestEditsAreSaved()
{
    QFETCH(const QString, button);
    QFETCH(const QByteArray, content);
    const Editor editor;
    for (const QString &name : {u"Zähler \"a\", <b>"_s, u"same"_s, u"same"_s})
        editor.addLayer(name);
    editor.layerList()->setCurrentRow(1);
    editor.control<QDoubleSpinBox>("gaugeStartAngleSpinBox"_L1)->setValue(45);
    editor.control<QSpinBox>("gaugeDivisions1SpinBox"_L1)->setValue(1);

    const QStringList before = editor.state();
    const QString path = m_folder->filePath(u"Dial.txt"_s);
    DialogAnswers answers;
    answers.expectFile(path);
    editor.press(button);
    QCOMPARE(answers.problems(), QStringList());
    QCOMPARE(readFile(path), content);
    QCOMPARE(editor.state(), before);
}

void tst_Saving::noLayerIsSavedWithoutACurrentRow()
{
    const Editor editor;
    editor.layerList()->setCurrentRow(-1);
    const DialogAnswers answers;
    editor.press(u"SaveLayerButton"_s);
    QCOMPARE(answers.problems(), QStringList());
}

ADD_TEST_CLASS(tst_Saving)
#include "tst_saving.moc"
