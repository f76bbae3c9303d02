#include "documents.h"
#include "model/gaugefile.h"
#include "support/dialogs.h"
#include "support/network.h"
#include "support/testmain.h"
#include "support/warnings.h"
#include "window.h"

#include <QAbstractButton>
#include <QDoubleSpinBox>
#include <QListWidget>
#include <QPushButton>
#include <QTemporaryDir>
#include <QTest>

#include <functional>
#include <optional>

/// The question that a load asks when the active layer is not the default one: beside it, over it or not at
/// all.
class tst_LoadQuestion : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { m_proxy.emplace(); }
    void init();
    void cleanupTestCase();

    void looksAsItShould();
    void comesAfterEveryEdit_data();
    void comesAfterEveryEdit();
    void comesNotWhenTheEditIsTakenBack();
    void appendsEveryLayer_data();
    void appendsEveryLayer();
    void overwritesTheActiveLayerAlone();
    void changesNothingOtherwise_data();
    void changesNothingOtherwise();

private:
    /// Gives a window three layers, of which the middle one is active and edited.
    void prepare(Window &window, DialogAnswers &answers) const;
    static QList<gaugeLayer> prepared();
    void loadTwo(Window &window, DialogAnswers &answers,
                 const std::function<void(QMessageBox &)> &answer) const;

    std::optional<SilentProxy> m_proxy;
    QTemporaryDir m_folder;
};

void tst_LoadQuestion::init()
{
    failOnUnexpectedWarnings();
}

void tst_LoadQuestion::cleanupTestCase()
{
    m_proxy.reset();
}

void tst_LoadQuestion::prepare(Window &window, DialogAnswers &answers) const
{
    const QString path = m_folder.filePath(QStringLiteral("Start.gauge"));
    QVERIFY(writeFile(path, gaugeFile::write({{QStringLiteral("One"), sampleLayer(1)},
                                              {QStringLiteral("Two"), sampleLayer(2)},
                                              {QStringLiteral("Three"), sampleLayer(3)}})));
    load(window, answers, path);
    control<QListWidget>(window, "layerList")->setCurrentRow(1);
    control<QDoubleSpinBox>(window, "gaugeStartAngleSpinBox")->setValue(77.5);
}

QList<gaugeLayer> tst_LoadQuestion::prepared()
{
    gaugeData edited = sampleLayer(2);
    edited.startAngle = 77.5;
    return {{QStringLiteral("One"), sampleLayer(1)},
            {QStringLiteral("Two"), edited},
            {QStringLiteral("Three"), sampleLayer(3)}};
}

void tst_LoadQuestion::loadTwo(Window &window, DialogAnswers &answers,
                               const std::function<void(QMessageBox &)> &answer) const
{
    const QString path = m_folder.filePath(QStringLiteral("Two.gauge"));
    QVERIFY(writeFile(path, gaugeFile::write({{QStringLiteral("Marks"), sampleLayer(16)},
                                              {QStringLiteral("Zones"), sampleLayer(17)}})));
    load(window, answers, path, [&] { answers.expect<QMessageBox>(answer); });
    QCOMPARE(answers.problems(), QStringList());
}

void tst_LoadQuestion::looksAsItShould()
{
    Window window;
    DialogAnswers answers;
    prepare(window, answers);
    loadTwo(window, answers, [&window](QMessageBox &box) {
        QCOMPARE(box.parentWidget(), &window);
        QVERIFY(box.isModal());
        QCOMPARE(box.windowTitle(), QStringLiteral("Load Gauge"));
        QCOMPARE(box.icon(), QMessageBox::Question);
        QCOMPARE(box.text(), QStringLiteral("The current layer has been modified."));
        QCOMPARE(
            box.informativeText(),
            QStringLiteral("Add the loaded gauge as new layers, or overwrite the current layer with it?"));

        const QList<QPushButton *> buttons = box.findChildren<QPushButton *>(); // as they were added
        QCOMPARE(buttons.size(), 3);
        QCOMPARE(buttons.at(0)->text(), QStringLiteral("Add As New Layers"));
        QCOMPARE(box.buttonRole(buttons.at(0)), QMessageBox::AcceptRole);
        QCOMPARE(buttons.at(1)->text(), QStringLiteral("Overwrite Current Layer"));
        QCOMPARE(box.buttonRole(buttons.at(1)), QMessageBox::DestructiveRole);
        QCOMPARE(box.standardButton(buttons.at(2)), QMessageBox::Cancel);
        QCOMPARE(box.defaultButton(), buttons.at(0));
        box.reject();
    });
}

void tst_LoadQuestion::comesAfterEveryEdit_data()
{
    QTest::addColumn<std::function<void(const Window &)>>("edit");
    const auto row = [](const char *name, const std::function<void(const Window &)> &edit) {
        QTest::newRow(name) << edit;
    };
    row("spin box",
        [](const Window &window) { control<QDoubleSpinBox>(window, "gaugeBiasSpinBox")->stepUp(); });
    row("check box", [](const Window &window) { press(window, "roundedTickCapsCheckBox"); });
    row("count", [](const Window &window) { control<QSpinBox>(window, "gaugeDivisions3SpinBox")->stepUp(); });
}

void tst_LoadQuestion::comesAfterEveryEdit()
{
    QFETCH(const std::function<void(const Window &)>, edit);
    Window window;
    edit(window);
    DialogAnswers answers;
    loadTwo(window, answers, [](QMessageBox &box) { box.reject(); });
}

void tst_LoadQuestion::comesNotWhenTheEditIsTakenBack()
{
    const Window window;
    auto *start = control<QDoubleSpinBox>(window, "gaugeStartAngleSpinBox");
    const double original = start->value();
    start->setValue(original + 10);
    start->setValue(original);
    const QString path = m_folder.filePath(QStringLiteral("One.gauge"));
    QVERIFY(writeFile(path, gaugeFile::write({{QStringLiteral("Marks"), sampleLayer(16)}})));
    DialogAnswers answers;
    load(window, answers, path);
    QCOMPARE(answers.problems(), QStringList());
    QCOMPARE(linesOf(gaugeOf(window)), linesOf({{QStringLiteral("Marks"), sampleLayer(16)}}));
}

void tst_LoadQuestion::appendsEveryLayer_data()
{
    QTest::addColumn<std::function<void(QMessageBox &)>>("answer");
    QTest::newRow("Add As New Layers")
        << std::function([](QMessageBox &box) { box.findChildren<QPushButton *>().at(0)->click(); });
    QTest::newRow("Enter") << std::function([](QMessageBox &box) { QTest::keyClick(&box, Qt::Key_Return); });
}

void tst_LoadQuestion::appendsEveryLayer()
{
    QFETCH(const std::function<void(QMessageBox &)>, answer);
    Window window;
    DialogAnswers answers;
    prepare(window, answers);
    loadTwo(window, answers, answer);
    QCOMPARE(linesOf(gaugeOf(window)),
             linesOf(prepared() + QList<gaugeLayer>{{QStringLiteral("Marks"), sampleLayer(16)},
                                                    {QStringLiteral("Zones"), sampleLayer(17)}}));
    QCOMPARE(control<QListWidget>(window, "layerList")->currentRow(), 3);
    QCOMPARE(control<QDoubleSpinBox>(window, "gaugeStartAngleSpinBox")->value(), 30.16);
}

void tst_LoadQuestion::overwritesTheActiveLayerAlone()
{
    Window window;
    DialogAnswers answers;
    prepare(window, answers);
    loadTwo(window, answers, [](QMessageBox &box) { box.findChildren<QPushButton *>().at(1)->click(); });
    const QList<gaugeLayer> before = prepared();
    QCOMPARE(linesOf(gaugeOf(window)), linesOf({before.at(0),
                                                {QStringLiteral("Marks"), sampleLayer(16)},
                                                before.at(2),
                                                {QStringLiteral("Zones"), sampleLayer(17)}}));
    const auto *list = control<QListWidget>(window, "layerList");
    QCOMPARE(list->currentRow(), 1);
    QCOMPARE(list->item(1)->data(Qt::UserRole).toString(), QStringLiteral("Marks"));
    QCOMPARE(control<QDoubleSpinBox>(window, "gaugeStartAngleSpinBox")->value(), 30.16);
}

void tst_LoadQuestion::changesNothingOtherwise_data()
{
    QTest::addColumn<std::function<void(QMessageBox &)>>("answer");
    QTest::newRow("Cancel") << std::function(
        [](QMessageBox &box) { box.button(QMessageBox::Cancel)->click(); });
    QTest::newRow("Escape") << std::function([](QMessageBox &box) { QTest::keyClick(&box, Qt::Key_Escape); });
    QTest::newRow("closed by its frame") << std::function([](QMessageBox &box) { box.close(); });
}

void tst_LoadQuestion::changesNothingOtherwise()
{
    QFETCH(const std::function<void(QMessageBox &)>, answer);
    Window window;
    DialogAnswers answers;
    prepare(window, answers);
    const QStringList before = stateOf(window);
    loadTwo(window, answers, answer);
    QCOMPARE(stateOf(window), before);
}

ADD_TEST_CLASS(tst_LoadQuestion)
#include "tst_loadquestion.moc"
